#include "onvifsetup.h"

#include "ptz_devices/cdriverfactory.h"
#include "ptz_devices/convifdiscovery.h"
#include "ptz_devices/iptzdriver.h"

#include <QEventLoop>
#include <QFile>
#include <QHostAddress>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <memory>

namespace onvifsetup {

bool CheckCamera(const QString &address, const QString &user, const QString &password, int timeoutMs,
                 QList<int> *abilities, QString *error)
{
    ptz_devices::DriverConfig config;
    config.kind = QStringLiteral("onvif");
    config.model = QStringLiteral("generic");
    config.cameraId = QStringLiteral("check");
    config.address = address;
    config.user = user;
    config.password = password;
    std::unique_ptr<ptz_devices::IPtzDriver> driver(ptz_devices::CDriverFactory::create(config, error));
    if (!driver)
        return false;
    QEventLoop loop;
    bool ok = false;
    *error = QObject::tr("the camera did not answer within %1 s").arg(timeoutMs / 1000.0);
    // The request waits for the connection and fails with its reason.
    const quint64 id = driver->listPresets();
    QObject::connect(driver.get(), &ptz_devices::IPtzDriver::replied, &loop,
                     [&](const ptz_devices::DriverReply &reply) {
                         if (reply.requestId != id)
                             return;
                         ok = reply.ok;
                         if (!ok)
                             *error = reply.error;
                         loop.quit();
                     });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    if (ok) {
        const QVector<int> codes = driver->capabilities().abilities;
        *abilities = QList<int>(codes.begin(), codes.end());
        std::sort(abilities->begin(), abilities->end());
    }
    return ok;
}

QString StoredAddress(const QString &address, const QString &user, const QString &password)
{
    QUrl url(address);
    if (!user.isEmpty()) {
        url.setUserName(user);
        url.setPassword(password);
    }
    return url.toString();
}

void RestrictToOwner(const QString &storePath)
{
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        if (QFile::exists(storePath + suffix))
            QFile::setPermissions(storePath + suffix, QFile::ReadOwner | QFile::WriteOwner);
    }
}

void CreateOwnerOnly(const QString &storePath)
{
    if (QFile::exists(storePath))
        return;
    QFile file(storePath);
    if (file.open(QIODevice::WriteOnly))
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

QStringList Discover(const QString &target, int timeoutMs, QString *error)
{
    QHostAddress address = ptz_devices::COnvifDiscovery::kGroup;
    quint16 port = ptz_devices::COnvifDiscovery::kPort;
    if (!target.isEmpty()) {
        const QUrl url(QStringLiteral("udp://") + target);
        address = QHostAddress(url.host());
        port = quint16(url.port(0));
        if (address.isNull() || port == 0) {
            *error = QObject::tr("--probe expects an address and a port, e.g. 192.168.1.20:3702");
            return {};
        }
    }
    ptz_devices::COnvifDiscovery discovery;
    QStringList found;
    QObject::connect(
        &discovery, &ptz_devices::COnvifDiscovery::found, &discovery,
        [&found](const QString &addresses, const QString &scopes) { found << addresses + QLatin1Char('\t') + scopes; });
    if (!discovery.probe(address, port, error))
        return {};
    QEventLoop loop;
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    return found;
}

} // namespace onvifsetup
