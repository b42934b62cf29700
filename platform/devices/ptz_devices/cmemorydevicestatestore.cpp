#include "ptz_devices/cmemorydevicestatestore.h"

namespace ptz_devices {

static QString composeKey(const QString &cameraId, const QString &key)
{
    return cameraId + QLatin1Char('\n') + key;
}

QJsonObject CMemoryDeviceStateStore::load(const QString &cameraId, const QString &key) const
{
    return m_values.value(composeKey(cameraId, key));
}

bool CMemoryDeviceStateStore::save(const QString &cameraId, const QString &key, const QJsonObject &value)
{
    if (m_failSaves)
        return false;
    m_values.insert(composeKey(cameraId, key), value);
    ++m_saveCount;
    return true;
}

void CMemoryDeviceStateStore::clear()
{
    m_values.clear();
    m_saveCount = 0;
}

} // namespace ptz_devices
