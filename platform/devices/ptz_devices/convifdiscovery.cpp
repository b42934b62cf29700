#include "ptz_devices/convifdiscovery.h"

#include "ptz_devices/onvifsoap.h"

#include <KDSoapClient/KDSoapMessageAddressingProperties.h>
#include <KDSoapClient/KDSoapUdpClient.h>

#include <QUuid>

namespace ptz_devices {

const QHostAddress COnvifDiscovery::kGroup(QStringLiteral("239.255.255.250"));

COnvifDiscovery::COnvifDiscovery(QObject *parent)
    : QObject(parent)
    , m_client(new KDSoapUdpClient(this))
{
    connect(m_client, &KDSoapUdpClient::receivedMessage, this,
            [this](const KDSoapMessage &message, const KDSoapHeaders &, const QHostAddress &, quint16) {
                onMessage(message);
            });
}

COnvifDiscovery::~COnvifDiscovery() = default;

bool COnvifDiscovery::probe(const QHostAddress &address, quint16 port, QString *error)
{
    if (!m_bound && !(m_bound = m_client->bind(0, QAbstractSocket::ShareAddress))) {
        if (error)
            *error = tr("cannot open a UDP port for the discovery probe");
        return false;
    }
    KDSoapValue types =
        onvif::element(onvif::kDiscoveryNs, QStringLiteral("Types"), QStringLiteral("dn:NetworkVideoTransmitter"));
    types.addNamespaceDeclaration(QXmlStreamNamespaceDeclaration(QStringLiteral("dn"), onvif::kNetworkNs));
    KDSoapMessage probe = onvif::body(onvif::kDiscoveryNs, QStringLiteral("Probe"), QList<KDSoapValue>{} << types);
    KDSoapMessageAddressingProperties addressing;
    addressing.setAddressingNamespace(KDSoapMessageAddressingProperties::Addressing200408);
    addressing.setAction(onvif::kDiscoveryNs + QStringLiteral("/Probe"));
    addressing.setMessageID(QStringLiteral("urn:uuid:") + QUuid::createUuid().toString(QUuid::WithoutBraces));
    addressing.setDestination(QStringLiteral("urn:schemas-xmlsoap-org:ws:2005:04:discovery"));
    probe.setMessageAddressingProperties(addressing);
    if (!m_client->sendMessage(probe, KDSoapHeaders(), address, port)) {
        if (error)
            *error = tr("the discovery probe could not be sent to %1:%2").arg(address.toString()).arg(port);
        return false;
    }
    return true;
}

void COnvifDiscovery::onMessage(const KDSoapMessage &message)
{
    const QList<KDSoapValue> matches = onvif::children(message, QStringLiteral("ProbeMatch"));
    for (const KDSoapValue &match : matches) {
        const QString addresses = onvif::text(onvif::child(match, QStringLiteral("XAddrs")));
        const QString scopes = onvif::text(onvif::child(match, QStringLiteral("Scopes")));
        if (addresses.isEmpty() || m_seen.contains(addresses))
            continue;
        m_seen << addresses;
        emit found(addresses, scopes);
    }
}

} // namespace ptz_devices
