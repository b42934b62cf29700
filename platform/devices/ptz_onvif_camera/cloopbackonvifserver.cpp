#include "ptz_onvif_camera/cloopbackonvifserver.h"

#include "ptz_devices/onvifsoap.h"
#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include <QTcpSocket>
#include <QUrl>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace ptz_onvif_camera {

CLoopbackOnvifServer::CLoopbackOnvifServer(CLoopbackOnvifCamera *camera)
    : KDSoapServer(camera)
    , m_camera(camera)
{
    setPath(ptz_devices::onvif::kDevicePath);
}

QObject *CLoopbackOnvifServer::createServerObject()
{
    return new CLoopbackOnvifServerObject(m_camera);
}

CLoopbackOnvifServerObject::CLoopbackOnvifServerObject(CLoopbackOnvifCamera *camera)
    : m_camera(camera)
{
}

void CLoopbackOnvifServerObject::processRequest(const KDSoapMessage &request, KDSoapMessage &, const QByteArray &)
{
    dispatch(ptz_devices::onvif::kDevicePath, request);
}

void CLoopbackOnvifServerObject::processRequestWithPath(const KDSoapMessage &request, KDSoapMessage &,
                                                        const QByteArray &, const QString &path)
{
    dispatch(QUrl(path).path(), request);
}

void CLoopbackOnvifServerObject::quickAcknowledge(QAbstractSocket *socket)
{
    // HTTP clients that write a request's headers and body apart wait for the
    // headers' acknowledgement before sending the body; acknowledge every read
    // at once instead of after the usual delay (about 40 ms per request).
    if (!socket || socket->property("quickAck").toBool())
        return;
    socket->setProperty("quickAck", true);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QAbstractSocket::readyRead, socket, [socket] {
        const int on = 1;
        ::setsockopt(int(socket->socketDescriptor()), IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
    });
}

void CLoopbackOnvifServerObject::dispatch(const QString &path, const KDSoapMessage &request)
{
    if (!m_camera) {
        setFault(QStringLiteral("Receiver"), QStringLiteral("The camera is shutting down"));
        return;
    }
    quickAcknowledge(serverSocket());
    // Every answer is sent later: the head answers from its own queue.
    const KDSoapDelayedResponseHandle handle = prepareDelayedResponse();
    QPointer<CLoopbackOnvifServerObject> self(this);
    m_camera->handle(path, request, requestHeaders(), [self, handle](const KDSoapMessage &reply) {
        if (self)
            self->sendDelayedResponse(handle, reply);
    });
}

} // namespace ptz_onvif_camera
