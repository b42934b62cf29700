#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include "ptz_devices/csimulatedcamera.h"
#include "ptz_devices/onvifsoap.h"

#include <QDateTime>
#include <QTimer>

#include <algorithm>
#include <cmath>

// PTZ and imaging services of the loopback camera.
namespace ptz_onvif_camera {

using namespace ptz_devices;
namespace ov = ptz_devices::onvif;

namespace {

const QString kNoPreset = QStringLiteral("No such preset");

int sign(double v)
{
    return v > 0.0 ? 1 : (v < 0.0 ? -1 : 0);
}

KDSoapValue vector2D(const QString &ns, double x, double y, const QString &space = QString())
{
    KDSoapValue v = ov::element(ns, QStringLiteral("PanTilt"));
    v.childValues().attributes() << ov::attribute(QStringLiteral("x"), x) << ov::attribute(QStringLiteral("y"), y);
    if (!space.isEmpty())
        v.childValues().attributes() << ov::attribute(QStringLiteral("space"), space);
    return v;
}

KDSoapValue vector1D(const QString &ns, double x)
{
    KDSoapValue v = ov::element(ns, QStringLiteral("Zoom"));
    v.childValues().attributes() << ov::attribute(QStringLiteral("x"), x);
    return v;
}

double coordinate(const KDSoapValue &value, const char *name)
{
    return ov::attributeValue(value, QLatin1String(name)).toDouble();
}

} // namespace

KDSoapValue CLoopbackOnvifCamera::position() const
{
    const DeviceStatus s = m_camera->status();
    const DriverCapabilities caps = m_camera->capabilities();
    KDSoapValueList position;
    position << vector2D(ov::kSchemaNs, ov::xFromPan(s.pan), ov::yFromTilt(s.tilt, caps.minTilt, caps.maxTilt))
             << vector1D(ov::kSchemaNs, ov::xFromZoom(s.zoom, caps.maxZoom));
    return ov::element(ov::kSchemaNs, QStringLiteral("Position"), position);
}

int CLoopbackOnvifCamera::presetNumber(const QString &token) const
{
    bool ok = false;
    const int number = token.toInt(&ok);
    return ok && number >= 1 && number <= m_camera->capabilities().presetSlots ? number : 0;
}

void CLoopbackOnvifCamera::continuousMove(const KDSoapMessage &request, const Responder &respond)
{
    const KDSoapValue velocity = ov::child(request, QStringLiteral("Velocity"));
    const KDSoapValue panTilt = ov::child(velocity, QStringLiteral("PanTilt"));
    const KDSoapValue zoom = ov::child(velocity, QStringLiteral("Zoom"));
    int timeout = ov::durationMs(ov::text(ov::child(request, QStringLiteral("Timeout"))));
    if (timeout <= 0)
        timeout = m_options.defaultTimeoutMs;
    const int maxSpeed = m_camera->capabilities().maxSpeed;
    quint64 last = 0;
    if (!panTilt.isNull()) {
        const double x = coordinate(panTilt, "x");
        const double y = coordinate(panTilt, "y");
        const int speed = ov::speedFromVelocity(std::max(std::abs(x), std::abs(y)), maxSpeed, 1.0);
        last = speed == 0 ? m_camera->stopPanTilt() : m_camera->movePanTilt(sign(x), sign(y), speed);
        m_panTiltDeadMan->start(timeout);
    }
    if (!zoom.isNull()) {
        const double x = coordinate(zoom, "x");
        last = m_camera->zoom(sign(x), ov::speedFromVelocity(x, maxSpeed, 1.0));
        m_zoomDeadMan->start(timeout);
    }
    if (last == 0) {
        answerFault(respond, QStringLiteral("No velocity given"));
        return;
    }
    afterCamera(last, respond, ov::kPtzNs, QStringLiteral("ContinuousMove"));
}

void CLoopbackOnvifCamera::stopMove(const KDSoapMessage &request, const Responder &respond)
{
    const KDSoapValue panTiltFlag = ov::child(request, QStringLiteral("PanTilt"));
    const KDSoapValue zoomFlag = ov::child(request, QStringLiteral("Zoom"));
    // An axis that is not named is stopped too; a named one only when true.
    const bool panTilt = panTiltFlag.isNull() || ov::isTrue(panTiltFlag);
    const bool zoom = zoomFlag.isNull() || ov::isTrue(zoomFlag);
    quint64 last = 0;
    if (panTilt) {
        m_panTiltDeadMan->stop();
        last = m_camera->stopPanTilt();
    }
    if (zoom) {
        m_zoomDeadMan->stop();
        last = m_camera->zoom(0, 0);
    }
    if (last == 0) {
        answerEmpty(respond, ov::kPtzNs, QStringLiteral("Stop"));
        return;
    }
    afterCamera(last, respond, ov::kPtzNs, QStringLiteral("Stop"));
}

void CLoopbackOnvifCamera::getStatus(const KDSoapMessage &, const Responder &respond)
{
    const DeviceStatus s = m_camera->status();
    const auto moving = [](bool on) { return on ? QStringLiteral("MOVING") : QStringLiteral("IDLE"); };
    KDSoapValueList moveStatus;
    moveStatus << ov::element(ov::kSchemaNs, QStringLiteral("PanTilt"), moving(s.panTiltMoving))
               << ov::element(ov::kSchemaNs, QStringLiteral("Zoom"), moving(s.zoomMoving));
    KDSoapValueList status;
    status << position() << ov::element(ov::kSchemaNs, QStringLiteral("MoveStatus"), moveStatus)
           << ov::element(ov::kSchemaNs, QStringLiteral("UtcTime"),
                          QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    answer(respond, ov::body(ov::kPtzNs, QStringLiteral("GetStatusResponse"),
                             KDSoapValueList{} << ov::element(ov::kPtzNs, QStringLiteral("PTZStatus"), status)));
}

void CLoopbackOnvifCamera::getPresets(const KDSoapMessage &, const Responder &respond)
{
    const DriverCapabilities caps = m_camera->capabilities();
    KDSoapValueList presets;
    const QVector<DevicePreset> list = m_camera->presets();
    for (const DevicePreset &p : list) {
        KDSoapValueList position;
        position << vector2D(ov::kSchemaNs, ov::xFromPan(p.pan), ov::yFromTilt(p.tilt, caps.minTilt, caps.maxTilt))
                 << vector1D(ov::kSchemaNs, ov::xFromZoom(p.zoom, caps.maxZoom));
        KDSoapValue preset =
            ov::element(ov::kPtzNs, QStringLiteral("Preset"),
                        KDSoapValueList{} << ov::element(ov::kSchemaNs, QStringLiteral("Name"), p.name)
                                          << ov::element(ov::kSchemaNs, QStringLiteral("PTZPosition"), position));
        preset.childValues().attributes() << ov::attribute(QStringLiteral("token"), QString::number(p.number));
        presets << preset;
    }
    answer(respond, ov::body(ov::kPtzNs, QStringLiteral("GetPresetsResponse"), presets));
}

void CLoopbackOnvifCamera::setPreset(const KDSoapMessage &request, const Responder &respond)
{
    const QString token = ov::text(ov::child(request, QStringLiteral("PresetToken")));
    const QString name = ov::child(request, QStringLiteral("PresetName")).value().toString();
    int number = presetNumber(token);
    if (token.isEmpty()) {
        // A new preset takes the lowest free slot.
        QVector<int> used;
        for (const DevicePreset &p : m_camera->presets())
            used << p.number;
        number = 1;
        while (used.contains(number))
            ++number;
        if (number > m_camera->capabilities().presetSlots) {
            answerFault(respond, QStringLiteral("Too many presets"));
            return;
        }
    } else if (number == 0) {
        answerFault(respond, kNoPreset);
        return;
    }
    const quint64 id = m_camera->setPreset(number, name);
    m_waiting.insert(id, [this, respond, number](const DriverReply &reply) {
        if (!reply.ok) {
            answerFault(respond, reply.error);
            return;
        }
        answer(respond, ov::body(ov::kPtzNs, QStringLiteral("SetPresetResponse"),
                                 KDSoapValueList{} << ov::element(ov::kPtzNs, QStringLiteral("PresetToken"),
                                                                  QString::number(number))));
    });
}

// The number of the request's preset token, or 0 after answering the fault for an unknown one.
int CLoopbackOnvifCamera::knownPreset(const KDSoapMessage &request, const Responder &respond)
{
    const int number = presetNumber(ov::text(ov::child(request, QStringLiteral("PresetToken"))));
    const QVector<DevicePreset> presets = m_camera->presets();
    if (std::none_of(presets.begin(), presets.end(), [number](const DevicePreset &p) { return p.number == number; })) {
        answerFault(respond, kNoPreset);
        return 0;
    }
    return number;
}

void CLoopbackOnvifCamera::gotoPreset(const KDSoapMessage &request, const Responder &respond)
{
    if (const int number = knownPreset(request, respond))
        afterCamera(m_camera->gotoPreset(number), respond, ov::kPtzNs, QStringLiteral("GotoPreset"));
}

void CLoopbackOnvifCamera::removePreset(const KDSoapMessage &request, const Responder &respond)
{
    if (const int number = knownPreset(request, respond))
        afterCamera(m_camera->removePreset(number), respond, ov::kPtzNs, QStringLiteral("RemovePreset"));
}

void CLoopbackOnvifCamera::sendAuxiliaryCommand(const KDSoapMessage &request, const Responder &respond)
{
    const QString command = ov::text(ov::child(request, QStringLiteral("AuxiliaryData")));
    quint64 id = 0;
    if (hasPanTilt() && (command == ov::kLightOn || command == ov::kLightOff))
        id = m_camera->setLight(command == ov::kLightOn);
    else if (hasPanTilt() && (command == ov::kWiperOn || command == ov::kWiperOff))
        id = m_camera->setWiper(command == ov::kWiperOn);
    if (id == 0) {
        answerFault(respond, QStringLiteral("Auxiliary command not supported: %1").arg(command));
        return;
    }
    const QString response = command.section(QLatin1Char('|'), 1);
    m_waiting.insert(id, [this, respond, response](const DriverReply &reply) {
        if (!reply.ok) {
            answerFault(respond, reply.error);
            return;
        }
        answer(respond,
               ov::body(ov::kPtzNs, QStringLiteral("SendAuxiliaryCommandResponse"),
                        KDSoapValueList{} << ov::element(ov::kPtzNs, QStringLiteral("AuxiliaryResponse"), response)));
    });
}

void CLoopbackOnvifCamera::imagingMove(const KDSoapMessage &request, const Responder &respond)
{
    const KDSoapValue speed =
        ov::path(request, {QStringLiteral("Focus"), QStringLiteral("Continuous"), QStringLiteral("Speed")});
    if (speed.isNull()) {
        answerFault(respond, QStringLiteral("Only continuous focus moves are supported"));
        return;
    }
    const double v = speed.value().toDouble();
    const int maxSpeed = m_camera->capabilities().maxSpeed;
    afterCamera(m_camera->focus(sign(v), ov::speedFromVelocity(v, maxSpeed, 1.0)), respond, ov::kImagingNs,
                QStringLiteral("Move"));
}

void CLoopbackOnvifCamera::imagingStop(const KDSoapMessage &, const Responder &respond)
{
    afterCamera(m_camera->focus(0, 0), respond, ov::kImagingNs, QStringLiteral("Stop"));
}

// The head's iris 0..1 is the exposure's iris range as it is; automatic focus is its one-key focus.
void CLoopbackOnvifCamera::getImagingOptions(const KDSoapMessage &, const Responder &respond)
{
    const QList<KDSoapValue> focus{
        ov::element(ov::kSchemaNs, QStringLiteral("AutoFocusModes"), QStringLiteral("AUTO")),
        ov::element(ov::kSchemaNs, QStringLiteral("AutoFocusModes"), QStringLiteral("MANUAL"))};
    const QList<KDSoapValue> exposure{ov::element(ov::kSchemaNs, QStringLiteral("Mode"), QStringLiteral("AUTO")),
                                      ov::element(ov::kSchemaNs, QStringLiteral("Mode"), QStringLiteral("MANUAL")),
                                      ov::range(QStringLiteral("Iris"), 0.0, 1.0)};
    const QList<KDSoapValue> options{ov::element(ov::kSchemaNs, QStringLiteral("Exposure"), exposure),
                                     ov::element(ov::kSchemaNs, QStringLiteral("Focus"), focus)};
    answer(respond,
           ov::body(ov::kImagingNs, QStringLiteral("GetOptionsResponse"),
                    KDSoapValueList{} << ov::element(ov::kImagingNs, QStringLiteral("ImagingOptions"), options)));
}

void CLoopbackOnvifCamera::getImagingSettings(const KDSoapMessage &, const Responder &respond)
{
    const QList<KDSoapValue> exposure{ov::element(ov::kSchemaNs, QStringLiteral("Mode"), QStringLiteral("MANUAL")),
                                      ov::element(ov::kSchemaNs, QStringLiteral("Iris"), m_camera->status().iris)};
    const QList<KDSoapValue> settings{ov::element(ov::kSchemaNs, QStringLiteral("Exposure"), exposure)};
    answer(respond,
           ov::body(ov::kImagingNs, QStringLiteral("GetImagingSettingsResponse"),
                    KDSoapValueList{} << ov::element(ov::kImagingNs, QStringLiteral("ImagingSettings"), settings)));
}

void CLoopbackOnvifCamera::setImagingSettings(const KDSoapMessage &request, const Responder &respond)
{
    const KDSoapValue settings = ov::child(request, QStringLiteral("ImagingSettings"));
    const KDSoapValue iris = ov::path(settings, {QStringLiteral("Exposure"), QStringLiteral("Iris")});
    const QString focusMode = ov::text(ov::path(settings, {QStringLiteral("Focus"), QStringLiteral("AutoFocusMode")}));
    quint64 id = 0;
    if (!iris.isNull())
        id = m_camera->setIrisLevel(ov::text(iris).toDouble());
    else if (focusMode == QLatin1String("AUTO"))
        id = m_camera->oneKeyFocus();
    if (id == 0) {
        answerFault(respond, QStringLiteral("Only the iris and automatic focus can be set"));
        return;
    }
    afterCamera(id, respond, ov::kImagingNs, QStringLiteral("SetImagingSettings"));
}

} // namespace ptz_onvif_camera
