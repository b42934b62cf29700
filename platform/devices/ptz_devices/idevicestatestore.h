#pragma once

#include "ptz_devices/ptz_devices_export.h"

#include <QJsonObject>
#include <QString>

namespace ptz_devices {

// Durable state of a driver, one JSON object per camera and key. The simulated
// camera uses the keys "presets", "patrols", "patterns", "park_action",
// "patrol_recovery" and "auto_track"; the objects are opaque to the store.
// An unknown camera or key loads as an empty object.
class PTZ_DEVICES_EXPORT IDeviceStateStore
{
public:
    virtual ~IDeviceStateStore() = default;

    virtual QJsonObject load(const QString &cameraId, const QString &key) const = 0;
    virtual bool save(const QString &cameraId, const QString &key, const QJsonObject &value) = 0;
};

} // namespace ptz_devices
