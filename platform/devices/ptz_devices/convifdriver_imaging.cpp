#include "ptz_devices/convifdriver.h"

#include "ptz_devices/convifclient.h"
#include "ptz_devices/convifrequestqueue.h"
#include "ptz_devices/onvifsoap.h"

#include <QTimer>

#include <algorithm>

// The lens through the imaging service: continuous focus, one-key focus as a
// switch to automatic focus, and the iris as the exposure's fixed attenuation.
namespace ptz_devices {

namespace ov = onvif;
using Axis = COnvifRequestQueue::Axis;
using Service = COnvifClient::Service;

namespace {

constexpr double kIrisStepsPerRange = 10.0; // a step at full speed moves a tenth of the camera's range

KDSoapValue schema(const QString &name, const QList<KDSoapValue> &children)
{
    return ov::element(ov::kSchemaNs, name, children);
}

} // namespace

void COnvifDriver::readImagingOptions(const KDSoapMessage &reply)
{
    const KDSoapValue iris = ov::child(ov::find(reply, QStringLiteral("Exposure")), QStringLiteral("Iris"));
    m_profile.irisMin = ov::text(ov::child(iris, QStringLiteral("Min"))).toDouble();
    m_profile.irisMax = ov::text(ov::child(iris, QStringLiteral("Max"))).toDouble();
    const QList<KDSoapValue> modes =
        ov::children(ov::find(reply, QStringLiteral("Focus")), QStringLiteral("AutoFocusModes"));
    m_profile.autoFocus = std::any_of(modes.begin(), modes.end(),
                                      [](const KDSoapValue &mode) { return ov::text(mode) == QLatin1String("AUTO"); });
    if (!hasIris()) {
        connected();
        return;
    }
    connectStep(
        int(Service::Imaging), imagingRequest(QStringLiteral("GetImagingSettings"), {}),
        [this](const KDSoapMessage &r) { readImagingSettings(r); }, true);
}

void COnvifDriver::readImagingSettings(const KDSoapMessage &reply)
{
    const KDSoapValue iris = ov::child(ov::find(reply, QStringLiteral("Exposure")), QStringLiteral("Iris"));
    bool ok = false;
    const double value = ov::text(iris).toDouble(&ok);
    m_profile.irisValue =
        ok ? std::clamp(value, m_profile.irisMin, m_profile.irisMax) : (m_profile.irisMin + m_profile.irisMax) / 2.0;
    m_status.iris = irisFraction(m_profile.irisValue);
    connected();
}

bool COnvifDriver::hasIris() const
{
    return m_profile.irisMax > m_profile.irisMin;
}

// The iris as the status reports it: 0 closed .. 1 open over the camera's range.
double COnvifDriver::irisFraction(double value) const
{
    return (value - m_profile.irisMin) / (m_profile.irisMax - m_profile.irisMin);
}

// Every imaging operation names the profile's video source first.
KDSoapMessage COnvifDriver::imagingRequest(const QString &operation, const KDSoapValueList &more) const
{
    KDSoapValueList args;
    args << ov::element(ov::kImagingNs, QStringLiteral("VideoSourceToken"), m_profile.videoSourceToken);
    for (const KDSoapValue &value : more)
        args << value;
    return ov::body(ov::kImagingNs, operation, args);
}

void COnvifDriver::setImagingSettings(const KDSoapValue &setting, const Completion &done)
{
    KDSoapValueList args;
    args << ov::element(ov::kImagingNs, QStringLiteral("ImagingSettings"), KDSoapValueList{} << setting)
         << ov::element(ov::kImagingNs, QStringLiteral("ForcePersistence"), false);
    soap(int(Service::Imaging), imagingRequest(QStringLiteral("SetImagingSettings"), args), done);
}

quint64 COnvifDriver::focus(int direction, int speed)
{
    if (m_connected && m_client->address(Service::Imaging).isEmpty())
        return unsupported(DriverOperation::Focus, direction);
    const bool stop = direction == 0 || speed <= 0;
    const double v =
        stop ? 0.0 : ov::velocityFromSpeed(direction, std::clamp(speed, 1, m_caps.maxSpeed), m_caps.maxSpeed, 1.0);
    const auto send = [this, stop, v](const auto &done) {
        KDSoapValueList args;
        if (!stop) {
            const KDSoapValue speedValue = ov::element(ov::kSchemaNs, QStringLiteral("Speed"), v);
            args << ov::element(ov::kImagingNs, QStringLiteral("Focus"),
                                KDSoapValueList{} << schema(QStringLiteral("Continuous"), {speedValue}));
        }
        soap(int(Service::Imaging), imagingRequest(stop ? QStringLiteral("Stop") : QStringLiteral("Move"), args), done);
    };
    return submit(DriverOperation::Focus, direction, Axis::FocusAxis, stop, !stop, send);
}

quint64 COnvifDriver::oneKeyFocus()
{
    if (m_connected && !m_profile.autoFocus)
        return unsupported(DriverOperation::OneKeyFocus);
    return submit(DriverOperation::OneKeyFocus, 0, Axis::NoAxis, false, false, [this](const auto &done) {
        const KDSoapValue mode = ov::element(ov::kSchemaNs, QStringLiteral("AutoFocusMode"), QStringLiteral("AUTO"));
        setImagingSettings(schema(QStringLiteral("Focus"), {mode}), done);
    });
}

quint64 COnvifDriver::iris(int direction, int speed)
{
    if (m_connected && !hasIris())
        return unsupported(DriverOperation::Iris, direction);
    if (direction == 0 || speed <= 0) {
        // Nothing moves between steps: the release drops waiting steps and sends nothing.
        m_heldIris = Move();
        return submit(DriverOperation::Iris, 0, Axis::IrisAxis, true, false,
                      [](const auto &done) { done(true, QString(), QVariant()); });
    }
    m_heldIris = {Axis::IrisAxis, std::clamp(direction, -1, 1), 0, std::clamp(speed, m_caps.minSpeed, m_caps.maxSpeed)};
    if (!m_renewTimer->isActive())
        m_renewTimer->start(std::max(50, moveTimeout() / 3));
    return irisStep(false);
}

quint64 COnvifDriver::irisStep(bool internal)
{
    const Move step = m_heldIris;
    const quint64 id =
        submit(DriverOperation::Iris, step.x, Axis::IrisAxis, false, true, [this, step](const auto &done) {
            const double range = m_profile.irisMax - m_profile.irisMin;
            const double target =
                std::clamp(m_profile.irisValue + step.x * range * step.speed / m_caps.maxSpeed / kIrisStepsPerRange,
                           m_profile.irisMin, m_profile.irisMax);
            const QList<KDSoapValue> exposure{
                ov::element(ov::kSchemaNs, QStringLiteral("Mode"), QStringLiteral("MANUAL")),
                ov::element(ov::kSchemaNs, QStringLiteral("Iris"), target)};
            setImagingSettings(schema(QStringLiteral("Exposure"), exposure),
                               [this, done, target](bool ok, const QString &error, const QVariant &result) {
                                   if (ok) {
                                       m_profile.irisValue = target;
                                       m_status.iris = irisFraction(target);
                                       emit statusChanged(status());
                                   }
                                   done(ok, error, result);
                               });
        });
    if (internal)
        m_internal.insert(id);
    return id;
}

} // namespace ptz_devices
