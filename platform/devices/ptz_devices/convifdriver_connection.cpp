#include "ptz_devices/convifdriver.h"

#include "ptz_devices/convifclient.h"
#include "ptz_devices/convifrequestqueue.h"
#include "ptz_devices/onvifsoap.h"

#include <QDateTime>
#include <QTimer>

#include <algorithm>
#include <memory>

// Connecting: where the services are, which profile steers the head, and what
// the head can do; then keeping the connection or finding it again.
namespace ptz_devices {

namespace ov = onvif;
using Service = COnvifClient::Service;

constexpr qint64 kSameClockMs = 5000;

void COnvifDriver::startConnect()
{
    if (m_connecting)
        return;
    m_connecting = true;
    ++m_connectGeneration;
    m_client->abortAll();
    m_queue->setMode(COnvifRequestQueue::Mode::Holding);
    m_client->setAddress(Service::Device, m_address);
    // The camera's time comes first (cameras tell it to anyone), so every later token carries a time it accepts.
    connectStep(
        int(Service::Device), ov::body(ov::kDeviceNs, QStringLiteral("GetSystemDateAndTime")),
        [this](const KDSoapMessage &reply) { readClock(reply); }, true);
}

void COnvifDriver::readClock(const KDSoapMessage &reply)
{
    const KDSoapValue utc = ov::find(reply, QStringLiteral("UTCDateTime"));
    const auto number = [&utc](const char *part, const char *name) {
        return ov::text(ov::path(utc, {QLatin1String(part), QLatin1String(name)})).toInt();
    };
    const QDateTime camera(QDate(number("Date", "Year"), number("Date", "Month"), number("Date", "Day")),
                           QTime(number("Time", "Hour"), number("Time", "Minute"), number("Time", "Second")), Qt::UTC);
    const qint64 offset = camera.isValid() ? QDateTime::currentDateTimeUtc().msecsTo(camera) : 0;
    // The camera reports whole seconds: a few seconds apart is the same clock.
    m_client->setClockOffset(std::abs(offset) < kSameClockMs ? 0 : offset);
    KDSoapValueList args;
    args << ov::element(ov::kDeviceNs, QStringLiteral("IncludeCapability"), false);
    connectStep(
        int(Service::Device), ov::body(ov::kDeviceNs, QStringLiteral("GetServices"), args),
        [this](const KDSoapMessage &r) { readServices(r); }, true);
}

void COnvifDriver::connectStep(int service, const KDSoapMessage &request, const Step &next, bool optional)
{
    const quint64 generation = m_connectGeneration;
    auto settled = std::make_shared<bool>(false);
    QTimer::singleShot(m_queue->timeout(), this, [this, generation, settled] {
        if (*settled || generation != m_connectGeneration)
            return;
        *settled = true;
        m_client->abortAll();
        connectFailed(tr("the camera did not answer within %1 s").arg(m_queue->timeout() / 1000.0), false);
    });
    m_client->call(Service(service), request,
                   [this, generation, settled, next, optional](COnvifClient::Outcome outcome,
                                                               const KDSoapMessage &reply, const QString &error) {
                       if (*settled || generation != m_connectGeneration)
                           return;
                       *settled = true;
                       const bool authorisation = error == tr("not authorized");
                       if (outcome == COnvifClient::Outcome::Answered
                           || (optional && outcome == COnvifClient::Outcome::Refused && !authorisation)) {
                           next(outcome == COnvifClient::Outcome::Answered ? reply : KDSoapMessage());
                           return;
                       }
                       connectFailed(error, authorisation);
                   });
}

void COnvifDriver::readServices(const KDSoapMessage &reply)
{
    const QList<KDSoapValue> services = ov::children(reply, QStringLiteral("Service"));
    for (const KDSoapValue &service : services) {
        const QString ns = ov::text(ov::child(service, QStringLiteral("Namespace")));
        const QString address = ov::text(ov::child(service, QStringLiteral("XAddr")));
        if (ns == ov::kMediaNs)
            m_client->setAddress(Service::Media, address);
        else if (ns == ov::kPtzNs)
            m_client->setAddress(Service::Ptz, address);
        else if (ns == ov::kImagingNs)
            m_client->setAddress(Service::Imaging, address);
    }
    if (m_client->address(Service::Media).isEmpty() || m_client->address(Service::Ptz).isEmpty()) {
        // Older cameras only answer the capability question.
        KDSoapValueList args;
        args << ov::element(ov::kDeviceNs, QStringLiteral("Category"), QStringLiteral("All"));
        connectStep(int(Service::Device), ov::body(ov::kDeviceNs, QStringLiteral("GetCapabilities"), args),
                    [this](const KDSoapMessage &r) { readCapabilities(r); });
        return;
    }
    connectStep(int(Service::Media), ov::body(ov::kMediaNs, QStringLiteral("GetProfiles")),
                [this](const KDSoapMessage &r) { readProfiles(r); });
}

void COnvifDriver::readCapabilities(const KDSoapMessage &reply)
{
    const KDSoapValue caps = ov::find(reply, QStringLiteral("Capabilities"));
    const auto address = [&caps](const char *service) {
        return ov::text(ov::path(caps, {QLatin1String(service), QStringLiteral("XAddr")}));
    };
    m_client->setAddress(Service::Media, address("Media"));
    m_client->setAddress(Service::Ptz, address("PTZ"));
    m_client->setAddress(Service::Imaging, address("Imaging"));
    if (m_client->address(Service::Media).isEmpty() || m_client->address(Service::Ptz).isEmpty()) {
        connectFailed(tr("the camera offers no PTZ control"), false);
        return;
    }
    connectStep(int(Service::Media), ov::body(ov::kMediaNs, QStringLiteral("GetProfiles")),
                [this](const KDSoapMessage &r) { readProfiles(r); });
}

void COnvifDriver::readProfiles(const KDSoapMessage &reply)
{
    m_profile = Profile();
    const QList<KDSoapValue> profiles = ov::children(reply, QStringLiteral("Profiles"));
    for (const KDSoapValue &profile : profiles) {
        const KDSoapValue ptz = ov::child(profile, QStringLiteral("PTZConfiguration"));
        if (ptz.isNull())
            continue;
        m_profile.profileToken = ov::attributeValue(profile, QStringLiteral("token"));
        m_profile.configurationToken = ov::attributeValue(ptz, QStringLiteral("token"));
        m_profile.nodeToken = ov::text(ov::child(ptz, QStringLiteral("NodeToken")));
        m_profile.videoSourceToken =
            ov::text(ov::path(profile, {QStringLiteral("VideoSourceConfiguration"), QStringLiteral("SourceToken")}));
        break;
    }
    if (m_profile.profileToken.isEmpty()) {
        connectFailed(tr("the camera offers no PTZ control"), false);
        return;
    }
    connectStep(int(Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("GetNodes")),
                [this](const KDSoapMessage &r) { readNodes(r); });
}

void COnvifDriver::readNodes(const KDSoapMessage &reply)
{
    const QList<KDSoapValue> nodes = ov::children(reply, QStringLiteral("PTZNode"));
    KDSoapValue node = nodes.isEmpty() ? KDSoapValue() : nodes.first();
    for (const KDSoapValue &n : nodes) {
        if (ov::attributeValue(n, QStringLiteral("token")) == m_profile.nodeToken)
            node = n;
    }
    const KDSoapValue spaces = ov::child(node, QStringLiteral("SupportedPTZSpaces"));
    const KDSoapValue panTilt = ov::child(spaces, QStringLiteral("ContinuousPanTiltVelocitySpace"));
    const KDSoapValue zoom = ov::child(spaces, QStringLiteral("ContinuousZoomVelocitySpace"));
    if (!panTilt.isNull()) {
        m_profile.panTiltSpace = ov::text(ov::child(panTilt, QStringLiteral("URI")));
        m_profile.panTiltMax =
            std::abs(ov::text(ov::path(panTilt, {QStringLiteral("XRange"), QStringLiteral("Max")})).toDouble());
    }
    if (!zoom.isNull()) {
        m_profile.zoomSpace = ov::text(ov::child(zoom, QStringLiteral("URI")));
        m_profile.zoomMax =
            std::abs(ov::text(ov::path(zoom, {QStringLiteral("XRange"), QStringLiteral("Max")})).toDouble());
    }
    m_profile.maxPresets = ov::text(ov::child(node, QStringLiteral("MaximumNumberOfPresets"))).toInt();
    m_profile.home = ov::isTrue(ov::child(node, QStringLiteral("HomeSupported")));
    m_profile.maxTours = ov::text(ov::path(node, {QStringLiteral("Extension"), QStringLiteral("SupportedPresetTour"),
                                                  QStringLiteral("MaximumNumberOfPresetTours")}))
                             .toInt();
    for (const KDSoapValue &command : ov::children(node, QStringLiteral("AuxiliaryCommands")))
        m_profile.auxiliary << ov::text(command);

    KDSoapValueList args;
    args << ov::element(ov::kPtzNs, QStringLiteral("ConfigurationToken"), m_profile.configurationToken);
    connectStep(
        int(Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("GetConfigurationOptions"), args),
        [this](const KDSoapMessage &r) { readOptions(r); }, true);
}

void COnvifDriver::readOptions(const KDSoapMessage &reply)
{
    const KDSoapValue max = ov::path(ov::find(reply, QStringLiteral("PTZTimeout")), {QStringLiteral("Max")});
    m_profile.maxTimeoutMs = std::max(0, ov::durationMs(ov::text(max)));
    if (m_client->address(Service::Imaging).isEmpty() || m_profile.videoSourceToken.isEmpty()) {
        connected();
        return;
    }
    connectStep(
        int(Service::Imaging), imagingRequest(QStringLiteral("GetOptions"), {}),
        [this](const KDSoapMessage &r) { readImagingOptions(r); }, true);
}

DriverCapabilities COnvifDriver::capabilitiesFromProfile() const
{
    DriverCapabilities caps = m_caps;
    caps.abilities = {AbilityPtz};
    if (m_profile.panTiltMax > 0.0)
        caps.abilities << AbilityPan << AbilityTilt;
    if (m_profile.zoomMax > 0.0)
        caps.abilities << AbilityZoom;
    caps.presetSlots = std::clamp(m_profile.maxPresets, 0, 256);
    caps.patrolSlots = std::clamp(m_profile.maxTours, 0, 8);
    caps.patternSlots = 0;
    return caps;
}

void COnvifDriver::connected()
{
    m_connecting = false;
    m_connected = true;
    m_lastError.clear();
    m_delayMs = m_firstDelayMs;
    m_caps = capabilitiesFromProfile();
    m_queue->setMode(COnvifRequestQueue::Mode::Running);
    m_pollTimer->start();
    emit connectionChanged(true);
    pollStatus();
}

void COnvifDriver::connectFailed(const QString &error, bool authorisation)
{
    m_connecting = false;
    m_lastError = error;
    m_queue->setMode(COnvifRequestQueue::Mode::Refusing, error);
    // Wrong credentials stay wrong: ask again only rarely, never in a storm.
    scheduleReconnect(authorisation ? std::max(m_maxDelayMs, 60000) : m_delayMs);
}

void COnvifDriver::connectionLost(const QString &error)
{
    if (!m_connected && !m_connecting)
        return;
    const bool wasConnected = m_connected;
    ++m_connectGeneration;
    m_client->abortAll();
    m_connected = false;
    m_connecting = false;
    m_lastError = error;
    // Nobody renews a move any more: the camera's own timeout stops it.
    m_renewTimer->stop();
    m_heldPanTilt = Move();
    m_heldZoom = Move();
    m_heldIris = Move();
    m_pollTimer->stop();
    m_queue->setMode(COnvifRequestQueue::Mode::Refusing, error);
    if (wasConnected) {
        emit connectionChanged(false);
        emit statusChanged(status());
    }
    scheduleReconnect(m_delayMs);
}

void COnvifDriver::scheduleReconnect(int delayMs)
{
    m_reconnectTimer->start(delayMs);
    m_delayMs = std::min(m_delayMs * 2, m_maxDelayMs);
}

} // namespace ptz_devices
