#pragma once

#include "ptz_devices/ptz_devices_export.h"

#include <KDSoapClient/KDSoapMessage.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class KDSoapClientInterface;
class KDSoapPendingCallWatcher;

namespace ptz_devices {

// SOAP calls to the services of one ONVIF camera, signed with a WS-UsernameToken.
class PTZ_DEVICES_EXPORT COnvifClient : public QObject
{
    Q_OBJECT
public:
    enum class Service { Device, Media, Ptz, Imaging };

    // How a call ended: answered, refused by the camera (a SOAP fault or an
    // HTTP error), or the camera could not be reached at all.
    enum class Outcome { Answered, Refused, Unreachable };
    using Callback = std::function<void(Outcome outcome, const KDSoapMessage &reply, const QString &error)>;

    explicit COnvifClient(QObject *parent = nullptr);
    ~COnvifClient() override;

    void setCredentials(const QString &user, const QString &password);
    // The camera's clock minus ours: a camera refuses tokens created too far from its own time.
    void setClockOffset(qint64 ms) { m_clockOffsetMs = ms; }
    void setAddress(Service service, const QString &address);
    QString address(Service service) const;

    // Answered through `callback` unless abortAll() comes first.
    void call(Service service, const KDSoapMessage &request, const Callback &callback);
    // Forgets every call on the wire; their answers are never delivered.
    void abortAll();

    // A readable text for a SOAP fault of the camera.
    static QString readableFault(const QString &details);

private:
    KDSoapClientInterface *interfaceFor(Service service);

    QString m_user;
    QString m_password;
    qint64 m_clockOffsetMs = 0;
    QHash<int, QString> m_addresses;
    QHash<int, std::shared_ptr<KDSoapClientInterface>> m_interfaces;
    QHash<KDSoapPendingCallWatcher *, Callback> m_calls;
};

} // namespace ptz_devices
