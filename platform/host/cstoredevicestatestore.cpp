#include "zeph_plugin_manager/cstoredevicestatestore.h"

#include "site_store/csitestore.h"

#include "tarn/base/logging.h"

#include <QJsonDocument>

namespace ZephPluginManager {

QJsonObject CStoreDeviceStateStore::load(const QString &cameraId, const QString &key) const
{
    const QByteArray json = site_store::CSiteStore::Current()->deviceState(cameraId, key);
    if (json.isEmpty())
        return {};
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    if (!doc.isObject()) {
        ZEPH_LOG_WARN("device state %s/%s is unreadable (%s); starting empty", qUtf8Printable(cameraId),
                      qUtf8Printable(key), qUtf8Printable(error.errorString()));
        return {};
    }
    return doc.object();
}

bool CStoreDeviceStateStore::save(const QString &cameraId, const QString &key, const QJsonObject &value)
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    if (store->setDeviceState(cameraId, key, QJsonDocument(value).toJson(QJsonDocument::Compact)))
        return true;
    ZEPH_LOG_WARN("device state %s/%s not saved: %s", qUtf8Printable(cameraId), qUtf8Printable(key),
                  qUtf8Printable(store->lastError()));
    return false;
}

} // namespace ZephPluginManager
