#pragma once

#include "ptz_devices/ptzdevicetypes.h"

#include <KDSoapClient/KDSoapMessage.h>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>

class QHostAddress;
class QTimer;
class KDSoapUdpClient;

namespace ptz_devices {
class CSimulatedCamera;
}

namespace ptz_onvif_camera {

class CLoopbackOnvifServer;

// An ONVIF PTZ camera on 127.0.0.1: device, media, PTZ and imaging services
// over HTTP/SOAP, driving a simulated camera's head. Used by the tests, the
// benchmark and the demo site, so the whole path to a network camera runs on
// any machine.
//
// Every continuous move carries a timeout; a move that is not renewed in time
// stops by itself, even when no client is left to release it.
class CLoopbackOnvifCamera : public QObject
{
    Q_OBJECT
public:
    struct Options
    {
        quint16 port = 0; // 0: any free port
        QString user;     // empty: no credentials asked
        QString password;
        int latencyMs = 0; // added before every answer
        QString model = QStringLiteral("speed-dome");
        int defaultTimeoutMs = 5000; // for moves that name no timeout
        int discoveryPort = 0;       // WS-Discovery responder (3702); 0: none
        int clockSkewSeconds = 0;    // the camera's clock minus the true time
    };
    using Responder = std::function<void(const KDSoapMessage &)>;

    explicit CLoopbackOnvifCamera(const Options &options, QObject *parent = nullptr);
    ~CLoopbackOnvifCamera() override;

    bool start(QString *error = nullptr);
    // Closes the port as a camera that lost power would (the head keeps its
    // timeout); start() serves again on the same port.
    void stop();
    bool isServing() const;
    quint16 port() const;
    QString deviceAddress() const;
    bool isAnsweringDiscovery() const { return m_discovery != nullptr; }

    ptz_devices::CSimulatedCamera *camera() const { return m_camera.get(); }
    void setLatency(int ms) { m_options.latencyMs = ms; }
    void setCredentials(const QString &user, const QString &password);
    // The next `count` authorised requests fail with a fault of this reason
    // (for instance "The camera is busy").
    void failNextRequests(int count, const QString &reason);
    // Operations received, by name, in arrival order.
    QStringList receivedOperations() const { return m_received; }
    void clearReceivedOperations() { m_received.clear(); }

    // Called by the server objects for every request.
    void handle(const QString &path, const KDSoapMessage &request, const KDSoapHeaders &headers,
                const Responder &respond);

Q_SIGNALS:
    void requestReceived(const QString &operation);

private:
    using Handler = void (CLoopbackOnvifCamera::*)(const KDSoapMessage &, const Responder &);

    bool authorised(const KDSoapHeaders &headers) const;
    QDateTime now() const;
    void answer(const Responder &respond, const KDSoapMessage &message);
    void answerFault(const Responder &respond, const QString &reason);
    void answerEmpty(const Responder &respond, const QString &ns, const QString &name);
    void afterCamera(quint64 requestId, const Responder &respond, const QString &ns, const QString &name);
    void registerHandlers();
    QString serviceAddress(const QString &path) const;

    // Device and media services.
    void getDeviceInformation(const KDSoapMessage &request, const Responder &respond);
    void getCapabilities(const KDSoapMessage &request, const Responder &respond);
    void getServices(const KDSoapMessage &request, const Responder &respond);
    void getSystemDateAndTime(const KDSoapMessage &request, const Responder &respond);
    void getProfiles(const KDSoapMessage &request, const Responder &respond);
    // PTZ service.
    void getNodes(const KDSoapMessage &request, const Responder &respond);
    void getConfigurationOptions(const KDSoapMessage &request, const Responder &respond);
    void continuousMove(const KDSoapMessage &request, const Responder &respond);
    void stopMove(const KDSoapMessage &request, const Responder &respond);
    void getStatus(const KDSoapMessage &request, const Responder &respond);
    void getPresets(const KDSoapMessage &request, const Responder &respond);
    void setPreset(const KDSoapMessage &request, const Responder &respond);
    int knownPreset(const KDSoapMessage &request, const Responder &respond);
    void gotoPreset(const KDSoapMessage &request, const Responder &respond);
    void removePreset(const KDSoapMessage &request, const Responder &respond);
    void sendAuxiliaryCommand(const KDSoapMessage &request, const Responder &respond);
    // Preset tours (the head's patrols).
    void getPresetTours(const KDSoapMessage &request, const Responder &respond);
    void createPresetTour(const KDSoapMessage &request, const Responder &respond);
    void modifyPresetTour(const KDSoapMessage &request, const Responder &respond);
    void operatePresetTour(const KDSoapMessage &request, const Responder &respond);
    void removePresetTour(const KDSoapMessage &request, const Responder &respond);
    KDSoapValue presetTour(const ptz_devices::DevicePatrol &patrol) const;
    int tourNumber(const QString &token) const;
    // Imaging service.
    void imagingMove(const KDSoapMessage &request, const Responder &respond);
    void imagingStop(const KDSoapMessage &request, const Responder &respond);
    void getImagingOptions(const KDSoapMessage &request, const Responder &respond);
    void getImagingSettings(const KDSoapMessage &request, const Responder &respond);
    void setImagingSettings(const KDSoapMessage &request, const Responder &respond);

    // WS-Discovery responder.
    bool startDiscovery(QString *error);
    void answerProbe(const KDSoapMessage &probe, const QHostAddress &address, quint16 port);

    KDSoapValue ptzNode() const;
    KDSoapValue position() const;
    int presetNumber(const QString &token) const;
    bool hasPanTilt() const;
    bool hasZoom() const;

    Options m_options;
    std::unique_ptr<ptz_devices::CSimulatedCamera> m_camera;
    CLoopbackOnvifServer *m_server = nullptr;
    quint16 m_port = 0;
    QHash<QString, Handler> m_handlers; // "path|operation"
    QHash<quint64, std::function<void(const ptz_devices::DriverReply &)>> m_waiting;
    QTimer *m_panTiltDeadMan = nullptr;
    QTimer *m_zoomDeadMan = nullptr;
    int m_failNext = 0;
    QString m_failReason;
    QStringList m_received;
    QSet<int> m_createdTours; // created but still without spots
    KDSoapUdpClient *m_discovery = nullptr;
    QString m_endpointId;
};

} // namespace ptz_onvif_camera
