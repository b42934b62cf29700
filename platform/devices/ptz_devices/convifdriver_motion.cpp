#include "ptz_devices/convifdriver.h"

#include "ptz_devices/convifclient.h"
#include "ptz_devices/convifrequestqueue.h"
#include "ptz_devices/onvifsoap.h"

#include <QMetaMethod>
#include <QTimer>

#include <algorithm>

// Continuous moves with their dead-man timeout, stops and status.
namespace ptz_devices {

namespace ov = onvif;
using Axis = COnvifRequestQueue::Axis;

namespace {

constexpr int kShownForMs = 2000; // status() read this recently: the camera is on a screen

KDSoapValue vector(const QString &name, const QList<QPair<const char *, double>> &coordinates, const QString &space)
{
    KDSoapValue v = ov::element(ov::kSchemaNs, name);
    for (const auto &c : coordinates)
        v.childValues().attributes() << ov::attribute(QLatin1String(c.first), c.second);
    if (!space.isEmpty())
        v.childValues().attributes() << ov::attribute(QStringLiteral("space"), space);
    return v;
}

} // namespace

int COnvifDriver::moveTimeout() const
{
    return m_profile.maxTimeoutMs > 0 ? std::min(m_moveTimeoutMs, m_profile.maxTimeoutMs) : m_moveTimeoutMs;
}

KDSoapMessage COnvifDriver::moveRequest(const Move &move) const
{
    // Built when the request goes out, with the ranges the camera reported.
    KDSoapValueList velocity;
    if (move.axes & Axis::PanTiltAxis) {
        const double max = m_profile.panTiltMax;
        velocity << vector(QStringLiteral("PanTilt"),
                           {{"x", ov::velocityFromSpeed(move.x, move.speed, m_caps.maxSpeed, max)},
                            {"y", ov::velocityFromSpeed(move.y, move.speed, m_caps.maxSpeed, max)}},
                           m_profile.panTiltSpace);
    }
    if (move.axes & Axis::ZoomAxis) {
        velocity << vector(QStringLiteral("Zoom"),
                           {{"x", ov::velocityFromSpeed(move.x, move.speed, m_caps.maxSpeed, m_profile.zoomMax)}},
                           m_profile.zoomSpace);
    }
    KDSoapValueList args;
    args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), m_profile.profileToken)
         << ov::element(ov::kPtzNs, QStringLiteral("Velocity"), velocity)
         << ov::element(ov::kPtzNs, QStringLiteral("Timeout"), ov::durationText(moveTimeout()));
    return ov::body(ov::kPtzNs, QStringLiteral("ContinuousMove"), args);
}

quint64 COnvifDriver::continuousMove(DriverOperation operation, const Move &move, bool internal)
{
    const int number = operation == DriverOperation::Zoom ? move.x : 0;
    const quint64 id = submit(operation, number, move.axes, false, true, [this, move](const auto &done) {
        soap(int(COnvifClient::Service::Ptz), moveRequest(move), done);
    });
    if (internal)
        m_internal.insert(id);
    if (!m_renewTimer->isActive())
        m_renewTimer->start(std::max(50, moveTimeout() / 3));
    return id;
}

quint64 COnvifDriver::stopAxes(DriverOperation operation, int axes)
{
    if (axes & Axis::PanTiltAxis)
        m_heldPanTilt = Move();
    if (axes & Axis::ZoomAxis)
        m_heldZoom = Move();
    // Only the named axes stop: a zoom stop leaves pan and tilt running.
    const auto send = [this, axes](const auto &done) {
        KDSoapValueList args;
        args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), m_profile.profileToken)
             << ov::element(ov::kPtzNs, QStringLiteral("PanTilt"), bool(axes & Axis::PanTiltAxis))
             << ov::element(ov::kPtzNs, QStringLiteral("Zoom"), bool(axes & Axis::ZoomAxis));
        soap(int(COnvifClient::Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("Stop"), args), done);
    };
    return submit(operation, 0, axes, true, false, send);
}

quint64 COnvifDriver::movePanTilt(int panDirection, int tiltDirection, int speed)
{
    if ((panDirection == 0 && tiltDirection == 0) || speed <= 0)
        return stopPanTilt();
    if (m_connected && !m_caps.hasAbility(AbilityPan))
        return unsupported(DriverOperation::MovePanTilt);
    m_heldPanTilt = {Axis::PanTiltAxis, std::clamp(panDirection, -1, 1), std::clamp(tiltDirection, -1, 1),
                     std::clamp(speed, m_caps.minSpeed, m_caps.maxSpeed)};
    return continuousMove(DriverOperation::MovePanTilt, m_heldPanTilt, false);
}

quint64 COnvifDriver::stopPanTilt()
{
    return stopAxes(DriverOperation::StopPanTilt, Axis::PanTiltAxis);
}

quint64 COnvifDriver::zoom(int direction, int speed)
{
    if (direction == 0 || speed <= 0)
        return stopAxes(DriverOperation::Zoom, Axis::ZoomAxis);
    if (m_connected && !m_caps.hasAbility(AbilityZoom))
        return unsupported(DriverOperation::Zoom, direction);
    m_heldZoom = {Axis::ZoomAxis, std::clamp(direction, -1, 1), 0, std::clamp(speed, m_caps.minSpeed, m_caps.maxSpeed)};
    return continuousMove(DriverOperation::Zoom, m_heldZoom, false);
}

void COnvifDriver::renewHeldMoves()
{
    if (!m_connected || (!m_heldPanTilt.isHeld() && !m_heldZoom.isHeld() && !m_heldIris.isHeld())) {
        m_renewTimer->stop();
        return;
    }
    // A move still waiting renews by itself when it goes out.
    if (m_heldPanTilt.isHeld() && !m_queue->hasWaiting(DriverOperation::MovePanTilt))
        continuousMove(DriverOperation::MovePanTilt, m_heldPanTilt, true);
    if (m_heldZoom.isHeld() && !m_queue->hasWaiting(DriverOperation::Zoom))
        continuousMove(DriverOperation::Zoom, m_heldZoom, true);
    // The iris has no continuous move: a held button opens or closes it a step at a time.
    if (m_heldIris.isHeld() && !m_queue->hasWaiting(DriverOperation::Iris))
        irisStep(true);
}

quint64 COnvifDriver::stopActivity()
{
    return stopAxes(DriverOperation::StopActivity, Axis::PanTiltAxis | Axis::ZoomAxis);
}

quint64 COnvifDriver::requestStatus()
{
    return submit(DriverOperation::GetStatus, 0, Axis::NoAxis, false, false, [this](const auto &done) {
        KDSoapValueList args;
        args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), m_profile.profileToken);
        soap(int(COnvifClient::Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("GetStatus"), args), done,
             [this](const KDSoapMessage &r) { return readStatus(r); });
    });
}

void COnvifDriver::pollStatus()
{
    const bool shown = (m_statusRead.isValid() && m_statusRead.elapsed() < kShownForMs)
                       || isSignalConnected(QMetaMethod::fromSignal(&IPtzDriver::statusChanged));
    if (!m_connected || m_polling || !shown)
        return;
    m_polling = true;
    KDSoapValueList args;
    args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), m_profile.profileToken);
    soap(
        int(COnvifClient::Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("GetStatus"), args),
        [this](bool, const QString &, const QVariant &) { m_polling = false; },
        [this](const KDSoapMessage &r) { return readStatus(r); });
}

QVariant COnvifDriver::readStatus(const KDSoapMessage &reply)
{
    const KDSoapValue status = ov::find(reply, QStringLiteral("PTZStatus"));
    const KDSoapValue position = ov::child(status, QStringLiteral("Position"));
    const KDSoapValue panTilt = ov::child(position, QStringLiteral("PanTilt"));
    const KDSoapValue zoom = ov::child(position, QStringLiteral("Zoom"));
    DeviceStatus s = m_status;
    if (!panTilt.isNull()) {
        s.pan = ov::panFromX(ov::attributeValue(panTilt, QStringLiteral("x")).toDouble());
        s.tilt =
            ov::tiltFromY(ov::attributeValue(panTilt, QStringLiteral("y")).toDouble(), m_caps.minTilt, m_caps.maxTilt);
    }
    if (!zoom.isNull())
        s.zoom = ov::zoomFromX(ov::attributeValue(zoom, QStringLiteral("x")).toDouble(), m_caps.maxZoom);
    const KDSoapValue moveStatus = ov::child(status, QStringLiteral("MoveStatus"));
    s.panTiltMoving = ov::text(ov::child(moveStatus, QStringLiteral("PanTilt"))) == QLatin1String("MOVING");
    s.zoomMoving = ov::text(ov::child(moveStatus, QStringLiteral("Zoom"))) == QLatin1String("MOVING");
    s.connected = true;
    if (s != m_status) {
        m_status = s;
        emit statusChanged(s);
    }
    return QVariant::fromValue(s);
}

} // namespace ptz_devices
