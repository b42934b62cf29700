#include "support/records.h"

ptz_plugin_protocol::PresetInfo Preset(int number, int type, const QString &name, int reserved)
{
    ptz_plugin_protocol::PresetInfo p;
    p.preset_index = number;
    p.preset_type = type;
    p.preset_name = name.toStdString();
    p.reserved = reserved;
    return p;
}

ptz_plugin_protocol::PresetInfo RawPreset(int number, int type, const std::string &name)
{
    ptz_plugin_protocol::PresetInfo p = Preset(number, type, QString());
    p.preset_name = name;
    return p;
}

ptz_devices::DevicePatrolPoint PatrolPoint(int preset, int speed, int dwell)
{
    ptz_devices::DevicePatrolPoint p;
    p.preset = preset;
    p.speed = speed;
    p.dwellSeconds = dwell;
    return p;
}
