#include "ptz_devices/csimulatedcamera.h"

#include "ptz_devices/csimulatedcamera_p.h"

#include "tarn/base/logging.h"

namespace ptz_devices {

using namespace simulation;

// ---------------------------------------------------------------------------
// Time

void CSimulatedCamera::onTick(qint64 now, qint64 delta)
{
    Q_UNUSED(delta)
    if (now > m_simNow)
        advance(now - m_simNow);
    notifyStatus();
}

qint64 CSimulatedCamera::timeToNextEvent() const
{
    qint64 next = kNoEvent;
    auto consider = [&next](qint64 t) { next = qMin(next, qMax<qint64>(0, t)); };

    if (isTargeting()) {
        const double v = kDegPerSecondPerStep * m_targetSpeed;
        const double vz = kZoomPerSecondPerStep * m_targetSpeed;
        double seconds = 0.0;
        if (m_targetingPanTilt)
            seconds = qMax(std::abs(panDelta(m_pan, m_targetPan)), std::abs(m_targetTilt - m_tilt)) / v;
        if (m_targetingZoom)
            seconds = qMax(seconds, std::abs(m_targetZoom - m_zoom) / vz);
        consider(qint64(std::ceil(seconds * 1000.0 - 1e-6)));
    }
    if (m_patrol && m_patrolDwelling)
        consider(m_dwellEnd - m_simNow);
    const auto playing = m_playing ? m_patterns.constFind(m_playing) : m_patterns.constEnd();
    if (playing != m_patterns.constEnd() && m_playStart >= 0) {
        if (m_playNext < playing->events.size())
            consider(m_playStart + playing->events.at(m_playNext).offset - m_simNow);
        consider(m_playStart + playing->duration - m_simNow);
    }
    const bool idle = !activityRunning() && !m_panDir && !m_tiltDir && !m_zoomDir;
    if (idle && m_park.enabled && !m_parkDone)
        consider(m_lastControl + qint64(m_park.waitingSeconds) * 1000 - m_simNow);
    if (idle && m_recovery.enabled && m_interruptedPatrol)
        consider(m_lastControl + qint64(m_recovery.waitingSeconds) * 1000 - m_simNow);
    return next;
}

void CSimulatedCamera::advance(qint64 ms)
{
    // Split the step at every event so results do not depend on the tick size.
    handleDueEvents();
    while (ms > 0) {
        const qint64 dt = qBound<qint64>(1, timeToNextEvent(), ms);
        stepPhysics(dt);
        m_simNow += dt;
        ms -= dt;
        handleDueEvents();
    }
}

void CSimulatedCamera::stepPhysics(qint64 ms)
{
    const double s = double(ms) / 1000.0;
    if (m_targetingPanTilt) {
        const double step = kDegPerSecondPerStep * m_targetSpeed * s;
        const double d = panDelta(m_pan, m_targetPan);
        m_pan = std::abs(d) <= step ? m_targetPan : wrapPan(m_pan + (d > 0 ? step : -step));
        m_tilt = approach(m_tilt, m_targetTilt, step);
    } else {
        const double panVelocity =
            m_autoScan ? kDegPerSecondPerStep * m_autoScanSpeed : m_panDir * kDegPerSecondPerStep * m_ptSpeed;
        m_pan = wrapPan(m_pan + panVelocity * s);
        m_tilt = qBound(m_caps.minTilt, m_tilt + m_tiltDir * kDegPerSecondPerStep * m_ptSpeed * s, m_caps.maxTilt);
    }
    if (m_targetingZoom)
        m_zoom = approach(m_zoom, m_targetZoom, kZoomPerSecondPerStep * m_targetSpeed * s);
    else if (m_zoomDir)
        m_zoom = qBound(1.0, m_zoom + m_zoomDir * kZoomPerSecondPerStep * m_zoomSpeed * s, m_caps.maxZoom);
    if (m_focusDir)
        m_focus = qBound(0.0, m_focus + m_focusDir * kLensPerSecondPerStep * m_focusSpeed * s, 1.0);
    if (m_irisDir)
        m_iris = qBound(0.0, m_iris + m_irisDir * kLensPerSecondPerStep * m_irisSpeed * s, 1.0);
}

void CSimulatedCamera::handleDueEvents()
{
    // Bounded: every step either consumes an event or schedules one in the future.
    for (int guard = 0; guard < 64; ++guard) {
        if (!(arriveAtTarget() || dwellElapsed() || playPatternStep() || fireIdleAction()))
            break;
    }
}

bool CSimulatedCamera::arriveAtTarget()
{
    bool arrived = false;
    if (m_targetingPanTilt && qFuzzyCompare(1.0 + panDelta(m_pan, m_targetPan), 1.0)
        && qFuzzyCompare(1.0 + m_tilt, 1.0 + m_targetTilt)) {
        m_pan = m_targetPan;
        m_tilt = m_targetTilt;
        m_targetingPanTilt = false;
        arrived = !m_targetingZoom;
    }
    if (m_targetingZoom && qFuzzyCompare(m_zoom, m_targetZoom)) {
        m_zoom = m_targetZoom;
        m_targetingZoom = false;
        arrived = !m_targetingPanTilt;
    }
    if (!arrived)
        return false;
    if (m_patrol && !m_patrolDwelling)
        patrolArrived();
    else if (m_playing && m_playStart < 0) {
        m_playStart = m_simNow;
        m_playNext = 0;
    }
    return true;
}

bool CSimulatedCamera::dwellElapsed()
{
    if (!m_patrol || !m_patrolDwelling || m_simNow < m_dwellEnd)
        return false;
    const DevicePatrol patrol = m_patrols.value(m_patrol);
    startPatrolNow(m_patrol, patrol.points.isEmpty() ? 0 : (m_patrolPoint + 1) % patrol.points.size());
    return true;
}

bool CSimulatedCamera::playPatternStep()
{
    const auto playing = m_playing ? m_patterns.constFind(m_playing) : m_patterns.constEnd();
    if (playing == m_patterns.constEnd() || m_playStart < 0)
        return false;
    const Pattern &pattern = *playing;
    if (m_playNext < pattern.events.size() && m_simNow >= m_playStart + pattern.events.at(m_playNext).offset) {
        const PatternEvent ev = pattern.events.at(m_playNext++);
        if (ev.kind == PatternPanTilt)
            applyPanTilt(ev.a, ev.b, ev.c);
        else if (ev.kind == PatternZoom)
            applyZoom(ev.a, ev.b);
        return true;
    }
    if (m_playNext >= pattern.events.size() && m_simNow >= m_playStart + pattern.duration) {
        restartPatternCycle();
        return true;
    }
    return false;
}

// Patrol recovery and park action, once the camera has stood idle long enough.
bool CSimulatedCamera::fireIdleAction()
{
    const bool idle = !activityRunning() && !m_panDir && !m_tiltDir && !m_zoomDir;
    const qint64 recoveryAt = m_lastControl + qint64(m_recovery.waitingSeconds) * 1000;
    const qint64 parkAt = m_lastControl + qint64(m_park.waitingSeconds) * 1000;
    if (idle && m_recovery.enabled && m_interruptedPatrol && m_simNow >= recoveryAt
        && (!m_park.enabled || m_parkDone || recoveryAt <= parkAt)) {
        const int number = m_interruptedPatrol;
        m_interruptedPatrol = 0;
        if (m_patrols.contains(number)) {
            ZEPH_LOG_INFO("camera %s: patrol %d resumes", qUtf8Printable(m_cameraId), number);
            startPatrolNow(number, m_interruptedPatrolPoint);
            if (m_patrol)
                emit activityResumed(DeviceActivity::Patrol, number);
        }
        return true;
    }
    if (!idle || !m_park.enabled || m_parkDone || m_simNow < parkAt)
        return false;
    m_parkDone = true;
    ++m_parkActions;
    m_interruptedPatrol = 0;
    ZEPH_LOG_INFO("camera %s: park action %d fires", qUtf8Printable(m_cameraId), int(m_park.type));
    if (m_park.type == ParkActionType::Preset) {
        if (m_park.target == 0) {
            beginTarget(m_parkPan, m_parkTilt, m_parkZoom, kPresetSpeed);
        } else {
            const auto preset = m_presets.constFind(m_park.target);
            if (preset != m_presets.constEnd())
                beginTarget(preset->pan, preset->tilt, preset->zoom, kPresetSpeed);
        }
    } else if (m_park.type == ParkActionType::Patrol && m_patrols.contains(m_park.target)) {
        startPatrolNow(m_park.target, 0);
        if (m_patrol)
            emit activityResumed(DeviceActivity::Patrol, m_park.target);
    }
    return true;
}

void CSimulatedCamera::notifyStatus()
{
    const DeviceStatus s = status();
    if (s == m_lastStatus)
        return;
    m_lastStatus = s;
    emit statusChanged(s);
}

} // namespace ptz_devices
