#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include "ptz_devices/ptzdevicetypes.h"
#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

// A patrol point as a driver holds it and as the boundary records carry it. The host reads the
// device patrols it knows of through these, and so does the controller library.
namespace ZephPluginManager {

HOST_SERVICES_EXPORT ptz_plugin_protocol::CruisePoint ToCruisePoint(const ptz_devices::DevicePatrolPoint &point);
HOST_SERVICES_EXPORT ptz_devices::DevicePatrolPoint ToDevicePoint(const ptz_plugin_protocol::CruisePoint &point);

} // namespace ZephPluginManager
