#include "zeph_plugin_manager/devicepatrolpoints.h"

namespace ZephPluginManager {

ptz_plugin_protocol::CruisePoint ToCruisePoint(const ptz_devices::DevicePatrolPoint &point)
{
    ptz_plugin_protocol::CruisePoint p;
    p.preset_index = uint32_t(qMax(0, point.preset));
    p.speed = point.speed;
    p.dwell_time = point.dwellSeconds;
    p.preset_name = point.presetName.toStdString();
    return p;
}

ptz_devices::DevicePatrolPoint ToDevicePoint(const ptz_plugin_protocol::CruisePoint &point)
{
    ptz_devices::DevicePatrolPoint p;
    p.preset = int(point.preset_index);
    p.speed = point.speed;
    p.dwellSeconds = point.dwell_time;
    p.presetName = QString::fromStdString(point.preset_name);
    return p;
}

} // namespace ZephPluginManager
