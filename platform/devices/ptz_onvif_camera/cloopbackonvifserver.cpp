#include "ptz_onvif_camera/cloopbackonvifserver.h"

#include "ptz_devices/onvifsoap.h"
#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include <QUrl>

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

void CLoopbackOnvifServerObject::dispatch(const QString &path, const KDSoapMessage &request)
{
    if (!m_camera) {
        setFault(QStringLiteral("Receiver"), QStringLiteral("The camera is shutting down"));
        return;
    }
    // Every answer is sent later: the head answers from its own queue.
    const KDSoapDelayedResponseHandle handle = prepareDelayedResponse();
    QPointer<CLoopbackOnvifServerObject> self(this);
    m_camera->handle(path, request, requestHeaders(), [self, handle](const KDSoapMessage &reply) {
        if (self)
            self->sendDelayedResponse(handle, reply);
    });
}

} // namespace ptz_onvif_camera
