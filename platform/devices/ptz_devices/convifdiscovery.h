#pragma once

#include "ptz_devices/ptz_devices_export.h"

#include <QHostAddress>
#include <QObject>
#include <QStringList>

class KDSoapUdpClient;
class KDSoapMessage;
class KDSoapHeaders;

namespace ptz_devices {

// Finds ONVIF cameras with a WS-Discovery probe (multicast by default).
class PTZ_DEVICES_EXPORT COnvifDiscovery : public QObject
{
    Q_OBJECT
public:
    static const QHostAddress kGroup; // 239.255.255.250
    static constexpr quint16 kPort = 3702;

    explicit COnvifDiscovery(QObject *parent = nullptr);
    ~COnvifDiscovery() override;

    // Sends one probe; answers arrive as found() until the object is deleted.
    bool probe(const QHostAddress &address = kGroup, quint16 port = kPort, QString *error = nullptr);

Q_SIGNALS:
    // One answering device: its service addresses (space separated) and scopes.
    void found(const QString &addresses, const QString &scopes);

private:
    void onMessage(const KDSoapMessage &message);

    KDSoapUdpClient *m_client = nullptr;
    QStringList m_seen;
    bool m_bound = false;
};

} // namespace ptz_devices
