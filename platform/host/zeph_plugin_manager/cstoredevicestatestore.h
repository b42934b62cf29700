#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include "ptz_devices/idevicestatestore.h"

namespace ZephPluginManager {

// Device state of the drivers kept in the current site store's device-state
// table, one JSON object per camera and key.
class HOST_SERVICES_EXPORT CStoreDeviceStateStore : public ptz_devices::IDeviceStateStore
{
public:
    QJsonObject load(const QString &cameraId, const QString &key) const override;
    bool save(const QString &cameraId, const QString &key, const QJsonObject &value) override;
};

} // namespace ZephPluginManager
