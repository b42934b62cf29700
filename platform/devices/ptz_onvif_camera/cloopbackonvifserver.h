#pragma once

#include <KDSoapServer/KDSoapServer.h>
#include <KDSoapServer/KDSoapServerObjectInterface.h>

#include <QAbstractSocket>
#include <QObject>
#include <QPointer>

namespace ptz_onvif_camera {

class CLoopbackOnvifCamera;

// The HTTP side of the loopback camera: one server object per connection,
// each handing its requests to the camera and answering when it is done.
class CLoopbackOnvifServer : public KDSoapServer
{
    Q_OBJECT
public:
    explicit CLoopbackOnvifServer(CLoopbackOnvifCamera *camera);
    QObject *createServerObject() override;

private:
    QPointer<CLoopbackOnvifCamera> m_camera;
};

class CLoopbackOnvifServerObject : public QObject, public KDSoapServerObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(KDSoapServerObjectInterface)
public:
    explicit CLoopbackOnvifServerObject(CLoopbackOnvifCamera *camera);

    void processRequest(const KDSoapMessage &request, KDSoapMessage &response, const QByteArray &soapAction) override;
    void processRequestWithPath(const KDSoapMessage &request, KDSoapMessage &response, const QByteArray &soapAction,
                                const QString &path) override;

private:
    void dispatch(const QString &path, const KDSoapMessage &request);
    static void quickAcknowledge(QAbstractSocket *socket);

    QPointer<CLoopbackOnvifCamera> m_camera;
};

} // namespace ptz_onvif_camera
