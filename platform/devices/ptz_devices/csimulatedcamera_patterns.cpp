#include "ptz_devices/csimulatedcamera.h"

#include "ptz_devices/csimulatedcamera_p.h"

namespace ptz_devices {

using namespace simulation;

// ---------------------------------------------------------------------------
// Requests: patterns

QVector<int> CSimulatedCamera::recordedPatterns() const
{
    return m_patterns.keys().toVector();
}

quint64 CSimulatedCamera::listPatterns()
{
    return enqueue(DriverOperation::ListPatterns, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPattern, reply))
            reply.result = QVariant::fromValue(recordedPatterns());
    });
}

quint64 CSimulatedCamera::startPatternRecord(int number)
{
    return enqueue(DriverOperation::StartPatternRecord, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (m_recording && m_recording != number) {
            reply.ok = false;
            reply.error = tr("Pattern %1 is being recorded").arg(m_recording);
            return;
        }
        interruptActivities(false);
        haltManualMotion();
        m_targetingPanTilt = m_targetingZoom = false;
        m_recording = number;
        m_recordStart = m_simNow;
        m_recordBuffer = Pattern();
        m_recordBuffer.startPan = m_pan;
        m_recordBuffer.startTilt = m_tilt;
        m_recordBuffer.startZoom = m_zoom;
    });
}

quint64 CSimulatedCamera::stopPatternRecord(int number)
{
    const quint64 id =
        enqueue(DriverOperation::StopPatternRecord, {number}, number, [this, number](DriverReply &reply) {
            if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
                return;
            if (m_recording != number) {
                reply.ok = false;
                reply.error = tr("Pattern %1 is not being recorded").arg(number);
                return;
            }
            Pattern pattern = m_recordBuffer;
            pattern.duration = qMax(kMinPatternDuration, m_simNow - m_recordStart);
            m_patterns.insert(number, pattern);
            m_recording = 0;
            m_recordBuffer = Pattern();
            if (!savePatterns())
                storeFailed(reply);
        });
    m_queue.back()->isStop = true;
    return id;
}

quint64 CSimulatedCamera::playPattern(int number)
{
    return enqueue(DriverOperation::PlayPattern, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (!m_patterns.contains(number)) {
            reply.ok = false;
            reply.error = tr("Pattern %1 is not recorded").arg(number);
            return;
        }
        if (m_recording) {
            reply.ok = false;
            reply.error = tr("Pattern %1 is being recorded").arg(m_recording);
            return;
        }
        if (m_playing != number)
            interruptActivities(false);
        haltManualMotion();
        startPatternNow(number);
    });
}

quint64 CSimulatedCamera::stopPattern(int number)
{
    const quint64 id = enqueue(DriverOperation::StopPattern, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply))
            return;
        if (number != 0 && !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (m_playing && (number == 0 || number == m_playing))
            stopPatternPlayback();
    });
    m_queue.back()->isStop = true;
    return id;
}

quint64 CSimulatedCamera::removePattern(int number)
{
    return enqueue(DriverOperation::RemovePattern, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (m_playing == number)
            stopPatternPlayback();
        if (m_recording == number) {
            m_recording = 0;
            m_recordBuffer = Pattern();
        }
        m_patterns.remove(number);
        if (!savePatterns())
            storeFailed(reply);
    });
}

void CSimulatedCamera::startPatternNow(int number)
{
    m_autoScan = false;
    m_patrol = 0;
    const Pattern &pattern = m_patterns[number];
    m_playing = number;
    m_playStart = -1;
    m_playNext = 0;
    beginTarget(pattern.startPan, pattern.startTilt, pattern.startZoom, kPresetSpeed);
}

void CSimulatedCamera::restartPatternCycle()
{
    haltManualMotion();
    const Pattern &pattern = m_patterns[m_playing];
    m_playStart = -1;
    m_playNext = 0;
    beginTarget(pattern.startPan, pattern.startTilt, pattern.startZoom, kPresetSpeed);
}

void CSimulatedCamera::stopPatternPlayback()
{
    if (!m_playing)
        return;
    m_playing = 0;
    m_playStart = -1;
    m_playNext = 0;
    haltManualMotion();
    m_targetingPanTilt = m_targetingZoom = false;
}

quint64 CSimulatedCamera::stopActivity()
{
    const quint64 id = enqueue(DriverOperation::StopActivity, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        m_autoScan = false;
        m_autoScanSpeed = 0;
        m_patrol = 0;
        m_interruptedPatrol = 0;
        stopPatternPlayback();
        haltManualMotion();
        m_targetingPanTilt = m_targetingZoom = false;
    });
    m_queue.back()->isStop = true;
    return id;
}

// ---------------------------------------------------------------------------
// Requests: settings

quint64 CSimulatedCamera::setAutoTrack(bool on)
{
    return enqueue(DriverOperation::SetAutoTrack, {on}, on ? 1 : 0, [this, on](DriverReply &reply) {
        if (!checkAbility(AbilityAutoTracking, reply))
            return;
        m_autoTrack = on;
        reply.result = on;
        if (!saveSettings())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::getAutoTrack()
{
    return enqueue(DriverOperation::GetAutoTrack, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityAutoTracking, reply))
            reply.result = m_autoTrack;
    });
}

quint64 CSimulatedCamera::setParkAction(const ParkAction &action)
{
    return enqueue(
        DriverOperation::SetParkAction, {action.enabled, action.waitingSeconds, int(action.type), action.target},
        int(action.type), [this, action](DriverReply &reply) {
            if (!checkAbility(AbilityParkAction, reply))
                return;
            if (action.waitingSeconds < 5 || action.waitingSeconds > 720) {
                reply.ok = false;
                reply.error = tr("Park waiting time %1 s is outside 5-720 s").arg(action.waitingSeconds);
                return;
            }
            switch (action.type) {
            case ParkActionType::None:
                break;
            case ParkActionType::Preset:
                // Target 0 parks where the camera looks now.
                if (action.target != 0 && !checkRange(action.target, m_caps.presetSlots, tr("Preset"), reply))
                    return;
                break;
            case ParkActionType::Patrol:
                if (!checkRange(action.target, m_caps.patrolSlots, tr("Patrol"), reply))
                    return;
                break;
            default:
                reply.ok = false;
                reply.error = tr("Unknown park action type %1").arg(int(action.type));
                return;
            }
            m_park = action;
            m_parkPan = m_pan;
            m_parkTilt = m_tilt;
            m_parkZoom = m_zoom;
            // Idle time counts from the new setting, not from before it.
            markControl();
            if (!saveSettings())
                storeFailed(reply);
        });
}

quint64 CSimulatedCamera::getParkAction()
{
    return enqueue(DriverOperation::GetParkAction, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityParkAction, reply))
            reply.result = QVariant::fromValue(m_park);
    });
}

quint64 CSimulatedCamera::setPatrolRecovery(const PatrolRecovery &recovery)
{
    return enqueue(DriverOperation::SetPatrolRecovery, {recovery.enabled, recovery.waitingSeconds},
                   recovery.enabled ? 1 : 0, [this, recovery](DriverReply &reply) {
                       if (!checkAbility(AbilityPtz, reply))
                           return;
                       if (recovery.enabled && (recovery.waitingSeconds < 1 || recovery.waitingSeconds > 720)) {
                           reply.ok = false;
                           reply.error =
                               tr("Recovery waiting time %1 s is outside 1-720 s").arg(recovery.waitingSeconds);
                           return;
                       }
                       m_recovery = recovery;
                       if (!recovery.enabled)
                           m_recovery.waitingSeconds = 0;
                       if (!saveSettings())
                           storeFailed(reply);
                   });
}

quint64 CSimulatedCamera::getPatrolRecovery()
{
    return enqueue(DriverOperation::GetPatrolRecovery, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            reply.result = QVariant::fromValue(m_recovery);
    });
}

quint64 CSimulatedCamera::requestStatus()
{
    return enqueue(DriverOperation::GetStatus, {}, 0,
                   [this](DriverReply &reply) { reply.result = QVariant::fromValue(status()); });
}

} // namespace ptz_devices
