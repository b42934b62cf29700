#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include "ptz_devices/onvifsoap.h"

#include <KDSoapClient/KDSoapMessageAddressingProperties.h>
#include <KDSoapClient/KDSoapUdpClient.h>

#include <QHostAddress>
#include <QUdpSocket>
#include <QUuid>

// The WS-Discovery responder: answers probes with the device service address.
namespace ptz_onvif_camera {

namespace ov = ptz_devices::onvif;

bool CLoopbackOnvifCamera::startDiscovery(QString *error)
{
    m_endpointId = QStringLiteral("urn:uuid:") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_discovery = new KDSoapUdpClient(this);
    if (!m_discovery->bind(quint16(m_options.discoveryPort),
                           QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint)) {
        if (error)
            *error = tr("Cannot answer discovery probes on UDP port %1").arg(m_options.discoveryPort);
        delete m_discovery;
        m_discovery = nullptr;
        return false;
    }
    // Probes come to the discovery group; the library binds its sockets but does not join it.
    const QList<QUdpSocket *> sockets = m_discovery->findChildren<QUdpSocket *>();
    for (QUdpSocket *socket : sockets) {
        if (socket->localAddress().protocol() == QAbstractSocket::IPv4Protocol)
            socket->joinMulticastGroup(QHostAddress(QStringLiteral("239.255.255.250")));
    }
    connect(m_discovery, &KDSoapUdpClient::receivedMessage, this,
            [this](const KDSoapMessage &message, const KDSoapHeaders &, const QHostAddress &address, quint16 port) {
                if (message.name() == QLatin1String("Probe"))
                    answerProbe(message, address, port);
            });
    return true;
}

void CLoopbackOnvifCamera::answerProbe(const KDSoapMessage &probe, const QHostAddress &address, quint16 port)
{
    KDSoapValueList endpoint;
    endpoint << ov::element(QStringLiteral("http://schemas.xmlsoap.org/ws/2004/08/addressing"),
                            QStringLiteral("Address"), m_endpointId);
    KDSoapValue types =
        ov::element(ov::kDiscoveryNs, QStringLiteral("Types"), QStringLiteral("dn:NetworkVideoTransmitter"));
    types.addNamespaceDeclaration(QXmlStreamNamespaceDeclaration(QStringLiteral("dn"), ov::kNetworkNs));
    KDSoapValueList match;
    match << ov::element(QStringLiteral("http://schemas.xmlsoap.org/ws/2004/08/addressing"),
                         QStringLiteral("EndpointReference"), endpoint)
          << types
          << ov::element(ov::kDiscoveryNs, QStringLiteral("Scopes"),
                         QStringLiteral("onvif://www.onvif.org/type/ptz onvif://www.onvif.org/name/Loopback "
                                        "onvif://www.onvif.org/hardware/%1")
                             .arg(m_options.model))
          << ov::element(ov::kDiscoveryNs, QStringLiteral("XAddrs"), deviceAddress())
          << ov::element(ov::kDiscoveryNs, QStringLiteral("MetadataVersion"), 1);
    KDSoapMessage reply =
        ov::body(ov::kDiscoveryNs, QStringLiteral("ProbeMatches"),
                 QList<KDSoapValue>{} << ov::element(ov::kDiscoveryNs, QStringLiteral("ProbeMatch"), match));
    KDSoapMessageAddressingProperties addressing;
    addressing.setAddressingNamespace(KDSoapMessageAddressingProperties::Addressing200408);
    addressing.setAction(ov::kDiscoveryNs + QStringLiteral("/ProbeMatches"));
    addressing.setMessageID(QStringLiteral("urn:uuid:") + QUuid::createUuid().toString(QUuid::WithoutBraces));
    addressing.addRelationship(
        KDSoapMessageRelationship::Relationship(probe.messageAddressingProperties().messageID()));
    reply.setMessageAddressingProperties(addressing);
    m_discovery->sendMessage(reply, KDSoapHeaders(), address, port);
}

} // namespace ptz_onvif_camera
