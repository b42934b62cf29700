#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include "ptz_devices/csimulatedcamera.h"
#include "ptz_devices/onvifsoap.h"
#include "ptz_onvif_camera/cloopbackonvifserver.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QHostAddress>
#include <QTimer>

#include <cstdlib>

namespace ptz_onvif_camera {

using namespace ptz_devices;
namespace ov = ptz_devices::onvif;

constexpr qint64 kTokenLifetimeSeconds = 300;

CLoopbackOnvifCamera::CLoopbackOnvifCamera(const Options &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_camera(std::make_unique<CSimulatedCamera>(QStringLiteral("onvif-loopback"), options.model, nullptr, nullptr))
    , m_port(options.port)
{
    connect(m_camera.get(), &IPtzDriver::replied, this, [this](const DriverReply &reply) {
        const auto done = m_waiting.take(reply.requestId);
        if (done)
            done(reply);
    });
    m_panTiltDeadMan = new QTimer(this);
    m_panTiltDeadMan->setSingleShot(true);
    connect(m_panTiltDeadMan, &QTimer::timeout, this, [this] { m_camera->stopPanTilt(); });
    m_zoomDeadMan = new QTimer(this);
    m_zoomDeadMan->setSingleShot(true);
    connect(m_zoomDeadMan, &QTimer::timeout, this, [this] { m_camera->zoom(0, 0); });
    registerHandlers();
}

CLoopbackOnvifCamera::~CLoopbackOnvifCamera()
{
    stop();
    m_waiting.clear();
}

bool CLoopbackOnvifCamera::start(QString *error)
{
    if (isServing())
        return true;
    delete m_server;
    m_server = new CLoopbackOnvifServer(this);
    if (!m_server->listen(QHostAddress::LocalHost, m_port)) {
        if (error)
            *error = tr("Cannot serve on 127.0.0.1:%1: %2").arg(m_port).arg(m_server->errorString());
        delete m_server;
        m_server = nullptr;
        return false;
    }
    m_port = m_server->serverPort();
    // Discovery is a courtesy: the camera serves without it (another one may hold the port).
    if (m_options.discoveryPort != 0 && !m_discovery)
        startDiscovery(nullptr);
    return true;
}

void CLoopbackOnvifCamera::stop()
{
    // Closes the port and every open connection at once.
    if (m_server)
        m_server->suspend();
    delete m_server;
    m_server = nullptr;
}

bool CLoopbackOnvifCamera::isServing() const
{
    return m_server && m_server->isListening();
}

quint16 CLoopbackOnvifCamera::port() const
{
    return m_port;
}

QString CLoopbackOnvifCamera::deviceAddress() const
{
    return serviceAddress(ov::kDevicePath);
}

QString CLoopbackOnvifCamera::serviceAddress(const QString &path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(path);
}

void CLoopbackOnvifCamera::setCredentials(const QString &user, const QString &password)
{
    m_options.user = user;
    m_options.password = password;
}

void CLoopbackOnvifCamera::failNextRequests(int count, const QString &reason)
{
    m_failNext = count;
    m_failReason = reason;
}

void CLoopbackOnvifCamera::handle(const QString &path, const KDSoapMessage &request, const KDSoapHeaders &headers,
                                  const Responder &respond)
{
    const QString operation = request.name();
    m_received << operation;
    emit requestReceived(operation);

    // The clock may be read before signing in, so that clients can fix their time.
    if (operation != QLatin1String("GetSystemDateAndTime") && !authorised(headers)) {
        answerFault(respond, QStringLiteral("Sender not authorized"));
        return;
    }
    if (m_failNext > 0) {
        --m_failNext;
        answerFault(respond, m_failReason);
        return;
    }
    const Handler handler = m_handlers.value(path + QLatin1Char('|') + operation);
    if (!handler) {
        answerFault(respond, QStringLiteral("Optional action not implemented: %1").arg(operation));
        return;
    }
    (this->*handler)(request, respond);
}

bool CLoopbackOnvifCamera::authorised(const KDSoapHeaders &headers) const
{
    if (m_options.user.isEmpty())
        return true;
    for (const KDSoapMessage &header : headers) {
        if (header.name() != QLatin1String("Security"))
            continue;
        const KDSoapValue token = ov::child(header, QStringLiteral("UsernameToken"));
        if (ov::text(ov::child(token, QStringLiteral("Username"))) != m_options.user)
            return false;
        const KDSoapValue password = ov::child(token, QStringLiteral("Password"));
        if (ov::attributeValue(password, QStringLiteral("Type")).endsWith(QLatin1String("#PasswordText")))
            return ov::text(password) == m_options.password;
        const QByteArray nonce = QByteArray::fromBase64(ov::text(ov::child(token, QStringLiteral("Nonce"))).toLatin1());
        const QByteArray created = ov::text(ov::child(token, QStringLiteral("Created"))).toUtf8();
        // Tokens created far from the camera's own time are refused, as cameras do against replays.
        const QDateTime createdAt = QDateTime::fromString(QString::fromUtf8(created), Qt::ISODateWithMs);
        if (!createdAt.isValid() || std::abs(createdAt.secsTo(now())) > kTokenLifetimeSeconds)
            return false;
        const QByteArray digest =
            QCryptographicHash::hash(nonce + created + m_options.password.toUtf8(), QCryptographicHash::Sha1)
                .toBase64();
        return !nonce.isEmpty() && ov::text(password).toLatin1() == digest;
    }
    return false;
}

QDateTime CLoopbackOnvifCamera::now() const
{
    return QDateTime::currentDateTimeUtc().addSecs(m_options.clockSkewSeconds);
}

void CLoopbackOnvifCamera::answer(const Responder &respond, const KDSoapMessage &message)
{
    // Always later than the request, after the configured latency.
    QTimer::singleShot(m_options.latencyMs, this, [respond, message] { respond(message); });
}

void CLoopbackOnvifCamera::answerFault(const Responder &respond, const QString &reason)
{
    KDSoapMessage fault;
    fault.createFaultMessage(QStringLiteral("Sender"), reason, KDSoap::SOAP1_2);
    answer(respond, fault);
}

void CLoopbackOnvifCamera::answerEmpty(const Responder &respond, const QString &ns, const QString &name)
{
    answer(respond, ov::body(ns, name + QStringLiteral("Response")));
}

void CLoopbackOnvifCamera::afterCamera(quint64 requestId, const Responder &respond, const QString &ns,
                                       const QString &name)
{
    m_waiting.insert(requestId, [this, respond, ns, name](const DriverReply &reply) {
        if (reply.ok)
            answerEmpty(respond, ns, name);
        else
            answerFault(respond, reply.error);
    });
}

void CLoopbackOnvifCamera::registerHandlers()
{
    const auto add = [this](const QString &path, const char *operation, Handler handler) {
        m_handlers.insert(path + QLatin1Char('|') + QLatin1String(operation), handler);
    };
    add(ov::kDevicePath, "GetDeviceInformation", &CLoopbackOnvifCamera::getDeviceInformation);
    add(ov::kDevicePath, "GetCapabilities", &CLoopbackOnvifCamera::getCapabilities);
    add(ov::kDevicePath, "GetServices", &CLoopbackOnvifCamera::getServices);
    add(ov::kDevicePath, "GetSystemDateAndTime", &CLoopbackOnvifCamera::getSystemDateAndTime);
    add(ov::kMediaPath, "GetProfiles", &CLoopbackOnvifCamera::getProfiles);
    add(ov::kPtzPath, "GetNodes", &CLoopbackOnvifCamera::getNodes);
    add(ov::kPtzPath, "GetConfigurationOptions", &CLoopbackOnvifCamera::getConfigurationOptions);
    add(ov::kPtzPath, "ContinuousMove", &CLoopbackOnvifCamera::continuousMove);
    add(ov::kPtzPath, "Stop", &CLoopbackOnvifCamera::stopMove);
    add(ov::kPtzPath, "GetStatus", &CLoopbackOnvifCamera::getStatus);
    add(ov::kPtzPath, "GetPresets", &CLoopbackOnvifCamera::getPresets);
    add(ov::kPtzPath, "SetPreset", &CLoopbackOnvifCamera::setPreset);
    add(ov::kPtzPath, "GotoPreset", &CLoopbackOnvifCamera::gotoPreset);
    add(ov::kPtzPath, "RemovePreset", &CLoopbackOnvifCamera::removePreset);
    add(ov::kPtzPath, "SendAuxiliaryCommand", &CLoopbackOnvifCamera::sendAuxiliaryCommand);
    add(ov::kPtzPath, "GetPresetTours", &CLoopbackOnvifCamera::getPresetTours);
    add(ov::kPtzPath, "CreatePresetTour", &CLoopbackOnvifCamera::createPresetTour);
    add(ov::kPtzPath, "ModifyPresetTour", &CLoopbackOnvifCamera::modifyPresetTour);
    add(ov::kPtzPath, "OperatePresetTour", &CLoopbackOnvifCamera::operatePresetTour);
    add(ov::kPtzPath, "RemovePresetTour", &CLoopbackOnvifCamera::removePresetTour);
    add(ov::kImagingPath, "Move", &CLoopbackOnvifCamera::imagingMove);
    add(ov::kImagingPath, "Stop", &CLoopbackOnvifCamera::imagingStop);
    add(ov::kImagingPath, "GetOptions", &CLoopbackOnvifCamera::getImagingOptions);
    add(ov::kImagingPath, "GetImagingSettings", &CLoopbackOnvifCamera::getImagingSettings);
    add(ov::kImagingPath, "SetImagingSettings", &CLoopbackOnvifCamera::setImagingSettings);
}

} // namespace ptz_onvif_camera
