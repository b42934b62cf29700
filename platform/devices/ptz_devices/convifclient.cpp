#include "ptz_devices/convifclient.h"

#include "ptz_devices/onvifsoap.h"

#include <KDSoapClient/KDSoapAuthentication.h>
#include <KDSoapClient/KDSoapClientInterface.h>
#include <KDSoapClient/KDSoapPendingCallWatcher.h>

#include <QDateTime>
#include <QNetworkReply>

namespace ptz_devices {

namespace {

QString serviceNamespace(COnvifClient::Service service)
{
    switch (service) {
    case COnvifClient::Service::Device:
        return onvif::kDeviceNs;
    case COnvifClient::Service::Media:
        return onvif::kMediaNs;
    case COnvifClient::Service::Ptz:
        return onvif::kPtzNs;
    case COnvifClient::Service::Imaging:
        return onvif::kImagingNs;
    }
    return QString();
}

// KDSoap reports transport failures as faults whose code is the network error number.
int networkError(const KDSoapMessage &reply)
{
    const KDSoapValue code = onvif::path(reply, {QStringLiteral("Code"), QStringLiteral("Value")});
    const QString text = onvif::text(code.isNull() ? onvif::child(reply, QStringLiteral("faultcode")) : code);
    bool ok = false;
    const int number = text.toInt(&ok);
    return ok ? number : 0;
}

} // namespace

COnvifClient::COnvifClient(QObject *parent)
    : QObject(parent)
{
}

COnvifClient::~COnvifClient()
{
    abortAll();
}

void COnvifClient::setCredentials(const QString &user, const QString &password)
{
    m_user = user;
    m_password = password;
    m_interfaces.clear();
}

void COnvifClient::setAddress(Service service, const QString &address)
{
    if (m_addresses.value(int(service)) == address)
        return;
    m_addresses.insert(int(service), address);
    m_interfaces.remove(int(service));
}

QString COnvifClient::address(Service service) const
{
    return m_addresses.value(int(service));
}

KDSoapClientInterface *COnvifClient::interfaceFor(Service service)
{
    auto it = m_interfaces.find(int(service));
    if (it != m_interfaces.end())
        return it->get();
    auto client = std::make_shared<KDSoapClientInterface>(address(service), serviceNamespace(service));
    client->setSoapVersion(KDSoapClientInterface::SOAP1_2);
    client->setStyle(KDSoapClientInterface::DocumentStyle);
    m_interfaces.insert(int(service), client);
    return client.get();
}

void COnvifClient::call(Service service, const KDSoapMessage &request, const Callback &callback)
{
    KDSoapClientInterface *client = interfaceFor(service);
    if (!m_user.isEmpty()) {
        // Signed anew for every call: the token's time follows the camera's clock.
        KDSoapAuthentication auth;
        auth.setUser(m_user);
        auth.setPassword(m_password);
        auth.setUseWSUsernameToken(true);
        if (m_clockOffsetMs != 0)
            auth.setOverrideWSUsernameCreatedTime(QDateTime::currentDateTimeUtc().addMSecs(m_clockOffsetMs));
        client->setAuthentication(auth);
    }
    const KDSoapPendingCall pending = client->asyncCall(request.name(), request);
    auto *watcher = new KDSoapPendingCallWatcher(pending, this);
    m_calls.insert(watcher, callback);
    connect(watcher, &KDSoapPendingCallWatcher::finished, this, [this](KDSoapPendingCallWatcher *w) {
        const Callback done = m_calls.take(w);
        const KDSoapMessage reply = w->returnMessage();
        w->deleteLater();
        if (!done)
            return;
        if (!reply.isFault()) {
            done(Outcome::Answered, reply, QString());
            return;
        }
        const int error = networkError(reply);
        const KDSoapValue reason = onvif::path(reply, {QStringLiteral("Reason"), QStringLiteral("Text")});
        const QString why = onvif::text(reason.isNull() ? onvif::child(reply, QStringLiteral("faultstring")) : reason);
        if (error > 0 && why.startsWith(QLatin1String("XML error"))) {
            done(Outcome::Refused, reply, tr("the camera sent an answer that cannot be read (%1)").arg(why.left(120)));
            return;
        }
        // Connection-level errors (refused, closed, host not found, timed out, ...) are below 100.
        if (error > 0 && error < 100) {
            done(Outcome::Unreachable, reply, tr("the camera cannot be reached (%1)").arg(why));
            return;
        }
        done(Outcome::Refused, reply, readableFault(onvif::faultDetails(reply)));
    });
}

void COnvifClient::abortAll()
{
    const QList<KDSoapPendingCallWatcher *> watchers = m_calls.keys();
    m_calls.clear();
    for (KDSoapPendingCallWatcher *w : watchers)
        delete w;
}

QString COnvifClient::readableFault(const QString &details)
{
    const QString lower = details.toLower();
    if (lower.contains(QLatin1String("notauthorized")) || lower.contains(QLatin1String("not authorized"))
        || lower.contains(QLatin1String("authentication")) || lower.contains(QLatin1String("unauthorized")))
        return tr("not authorized");
    if (lower.contains(QLatin1String("no such preset")) || lower.contains(QLatin1String("notoken"))
        || lower.contains(QLatin1String("nopreset")))
        return tr("no such preset");
    if (lower.contains(QLatin1String("busy")))
        return tr("the camera is busy");
    if (details.trimmed().isEmpty())
        return tr("the camera refused the request");
    return tr("the camera refused the request: %1").arg(details.trimmed().left(200));
}

} // namespace ptz_devices
