#pragma once

#include "ptz_devices/idevicestatestore.h"
#include "ptz_devices/ptz_devices_export.h"

#include <QHash>

namespace ptz_devices {

// In-memory state store, for tests and for cameras created without a site store.
class PTZ_DEVICES_EXPORT CMemoryDeviceStateStore : public IDeviceStateStore
{
public:
    CMemoryDeviceStateStore() = default;

    QJsonObject load(const QString &cameraId, const QString &key) const override;
    bool save(const QString &cameraId, const QString &key, const QJsonObject &value) override;

    // Makes every later save fail (returns false, keeps the old value).
    void setFailSaves(bool fail) { m_failSaves = fail; }
    int saveCount() const { return m_saveCount; }
    void clear();

private:
    QHash<QString, QJsonObject> m_values; // "<camera>\n<key>"
    bool m_failSaves = false;
    int m_saveCount = 0;
};

} // namespace ptz_devices
