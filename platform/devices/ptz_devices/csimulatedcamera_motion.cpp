#include "ptz_devices/csimulatedcamera.h"

#include "ptz_devices/csimulatedcamera_p.h"

#include "tarn/base/logging.h"

namespace ptz_devices {

using namespace simulation;

// ---------------------------------------------------------------------------
// Requests: motion

quint64 CSimulatedCamera::movePanTilt(int panDirection, int tiltDirection, int speed)
{
    return enqueue(DriverOperation::MovePanTilt, {panDirection, tiltDirection, speed}, speed,
                   [this, panDirection, tiltDirection, speed](DriverReply &reply) {
                       if (!checkAbility(AbilityPtz, reply))
                           return;
                       if (panDirection < -1 || panDirection > 1 || tiltDirection < -1 || tiltDirection > 1) {
                           reply.ok = false;
                           reply.error = tr("Direction must be -1, 0 or 1");
                           return;
                       }
                       if ((panDirection && !checkAbility(AbilityPan, reply))
                           || (tiltDirection && !checkAbility(AbilityTilt, reply)))
                           return;
                       if ((panDirection || tiltDirection) && !checkSpeed(speed, reply))
                           return;
                       if (panDirection || tiltDirection)
                           interruptActivities(true);
                       applyPanTilt(panDirection, tiltDirection, speed);
                       recordEvent(PatternPanTilt, m_panDir, m_tiltDir, m_ptSpeed);
                   });
}

quint64 CSimulatedCamera::stopPanTilt()
{
    const quint64 id = enqueue(DriverOperation::StopPanTilt, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        applyPanTilt(0, 0, 0);
        if (!m_patrol && !m_playing)
            m_targetingPanTilt = false;
        recordEvent(PatternPanTilt, 0, 0, 0);
    });
    m_queue.back()->isStop = true;
    return id;
}

quint64 CSimulatedCamera::zoom(int direction, int speed)
{
    const quint64 id =
        enqueue(DriverOperation::Zoom, {direction, speed}, direction, [this, direction, speed](DriverReply &reply) {
            if (!checkAbility(AbilityZoom, reply))
                return;
            const bool stop = direction == 0 || speed == 0;
            if (!stop && (direction < -1 || direction > 1)) {
                reply.ok = false;
                reply.error = tr("Direction must be -1, 0 or 1");
                return;
            }
            if (!stop && !checkSpeed(speed, reply))
                return;
            if (!stop)
                interruptActivities(true);
            applyZoom(stop ? 0 : direction, stop ? 0 : speed);
            recordEvent(PatternZoom, m_zoomDir, m_zoomSpeed, 0);
        });
    m_queue.back()->isStop = direction == 0 || speed == 0;
    return id;
}

quint64 CSimulatedCamera::focus(int direction, int speed)
{
    return enqueueLensMove(DriverOperation::Focus, direction, speed, &m_focusDir, &m_focusSpeed);
}

quint64 CSimulatedCamera::iris(int direction, int speed)
{
    return enqueueLensMove(DriverOperation::Iris, direction, speed, &m_irisDir, &m_irisSpeed);
}

quint64 CSimulatedCamera::setIrisLevel(double level)
{
    return enqueue(DriverOperation::Iris, {level}, 0, [this, level](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        m_irisDir = m_irisSpeed = 0;
        m_iris = qBound(0.0, level, 1.0);
    });
}

// Focus and iris move alike: held at a speed until stopped, interrupting nothing.
quint64 CSimulatedCamera::enqueueLensMove(DriverOperation operation, int direction, int speed, int *axisDirection,
                                          int *axisSpeed)
{
    const quint64 id = enqueue(operation, {direction, speed}, direction,
                               [this, direction, speed, axisDirection, axisSpeed](DriverReply &reply) {
                                   if (!checkAbility(AbilityPtz, reply))
                                       return;
                                   const bool stop = direction == 0 || speed == 0;
                                   if (!stop && (direction < -1 || direction > 1 || !checkSpeed(speed, reply))) {
                                       if (reply.ok) {
                                           reply.ok = false;
                                           reply.error = tr("Direction must be -1, 0 or 1");
                                       }
                                       return;
                                   }
                                   *axisDirection = stop ? 0 : direction;
                                   *axisSpeed = stop ? 0 : speed;
                               });
    m_queue.back()->isStop = direction == 0 || speed == 0;
    return id;
}

quint64 CSimulatedCamera::setLight(bool on)
{
    return enqueue(DriverOperation::Light, {on}, on ? 1 : 0, [this, on](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            m_light = on;
    });
}

quint64 CSimulatedCamera::setWiper(bool on)
{
    return enqueue(DriverOperation::Wiper, {on}, on ? 1 : 0, [this, on](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            m_wiper = on;
    });
}

quint64 CSimulatedCamera::oneKeyFocus()
{
    return enqueue(DriverOperation::OneKeyFocus, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        m_focusDir = 0;
        m_focusSpeed = 0;
        m_focus = 0.5;
    });
}

quint64 CSimulatedCamera::initLens()
{
    return enqueue(DriverOperation::LensInit, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        applyZoom(0, 0);
        m_targetingZoom = false;
        m_focusDir = m_irisDir = 0;
        m_focusSpeed = m_irisSpeed = 0;
        m_zoom = 1.0;
        m_focus = 0.5;
        m_iris = 0.5;
    });
}

quint64 CSimulatedCamera::setAutoScan(bool on, int speed)
{
    return enqueue(DriverOperation::AutoScan, {on, speed}, on ? 1 : 0, [this, on, speed](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkAbility(AbilityPan, reply))
            return;
        if (!on) {
            m_autoScan = false;
            m_autoScanSpeed = 0;
            return;
        }
        if (!checkSpeed(speed, reply))
            return;
        if (!m_autoScan)
            interruptActivities(false);
        haltManualMotion();
        m_targetingPanTilt = false;
        m_autoScan = true;
        m_autoScanSpeed = speed;
    });
}

quint64 CSimulatedCamera::position3D(const QRectF &area)
{
    return enqueue(DriverOperation::Position3D, {area}, 0, [this, area](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        if (area.isNull() || qFuzzyIsNull(area.width())) {
            reply.ok = false;
            reply.error = tr("The positioning box is empty");
            return;
        }
        const QRectF box = area.normalized();
        const bool zoomOut = area.width() < 0;
        const double fovH = kFieldOfViewAtWide / m_zoom;
        const double fovV = fovH * kAspect;
        double pan = m_pan;
        double tilt = m_tilt;
        if (m_caps.hasAbility(AbilityPan))
            pan = wrapPan(m_pan + (box.center().x() - 0.5) * fovH);
        if (m_caps.hasAbility(AbilityTilt))
            tilt = qBound(m_caps.minTilt, m_tilt - (box.center().y() - 0.5) * fovV, m_caps.maxTilt);
        double zoom = m_zoom;
        if (m_caps.hasAbility(AbilityZoom)) {
            const double factor = qBound(0.01, box.width(), 1.0);
            zoom = zoomOut ? m_zoom * factor : m_zoom / factor;
            zoom = qBound(1.0, zoom, m_caps.maxZoom);
        }
        interruptActivities(true);
        haltManualMotion();
        beginTarget(pan, tilt, zoom, kPresetSpeed);
    });
}

// ---------------------------------------------------------------------------
// Motion helpers

void CSimulatedCamera::applyPanTilt(int panDir, int tiltDir, int speed)
{
    if (panDir || tiltDir) {
        m_targetingPanTilt = false;
        m_autoScan = false;
    }
    m_panDir = panDir;
    m_tiltDir = tiltDir;
    m_ptSpeed = (panDir || tiltDir) ? speed : 0;
}

void CSimulatedCamera::applyZoom(int dir, int speed)
{
    if (dir)
        m_targetingZoom = false;
    m_zoomDir = dir;
    m_zoomSpeed = dir ? speed : 0;
}

void CSimulatedCamera::haltManualMotion()
{
    m_panDir = m_tiltDir = m_ptSpeed = 0;
    m_zoomDir = m_zoomSpeed = 0;
    m_focusDir = m_focusSpeed = 0;
    m_irisDir = m_irisSpeed = 0;
}

void CSimulatedCamera::recordEvent(int kind, int a, int b, int c)
{
    if (!m_recording)
        return;
    PatternEvent ev;
    ev.offset = m_simNow - m_recordStart;
    ev.kind = kind;
    ev.a = a;
    ev.b = b;
    ev.c = c;
    m_recordBuffer.events.append(ev);
}

void CSimulatedCamera::beginTarget(double pan, double tilt, double zoom, int speed)
{
    m_targetPan = wrapPan(pan);
    m_targetTilt = qBound(m_caps.minTilt, tilt, m_caps.maxTilt);
    m_targetZoom = qBound(1.0, zoom, m_caps.maxZoom);
    m_targetSpeed = qBound(m_caps.minSpeed, speed, m_caps.maxSpeed);
    m_targetingPanTilt = true;
    m_targetingZoom = true;
}

bool CSimulatedCamera::activityRunning() const
{
    return m_autoScan || m_patrol || m_playing || m_recording;
}

void CSimulatedCamera::interruptActivities(bool manual)
{
    QVector<QPair<DeviceActivity, int>> stopped;
    if (m_autoScan) {
        m_autoScan = false;
        m_autoScanSpeed = 0;
        stopped.append({DeviceActivity::AutoScan, 0});
    }
    if (m_patrol) {
        if (manual) {
            m_interruptedPatrol = m_patrol;
            m_interruptedPatrolPoint = m_patrolPoint;
        }
        stopped.append({DeviceActivity::Patrol, m_patrol});
        m_patrol = 0;
        m_patrolDwelling = false;
        m_targetingPanTilt = m_targetingZoom = false;
    }
    if (m_playing) {
        stopped.append({DeviceActivity::Pattern, m_playing});
        stopPatternPlayback();
    }
    for (const auto &s : stopped) {
        ZEPH_LOG_INFO("camera %s: %s %d interrupted", qUtf8Printable(m_cameraId),
                      s.first == DeviceActivity::AutoScan ? "auto-scan"
                      : s.first == DeviceActivity::Patrol ? "patrol"
                                                          : "pattern",
                      s.second);
        emit activityInterrupted(s.first, s.second);
    }
}

} // namespace ptz_devices
