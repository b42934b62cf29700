#include "ptz_devices/csimulatedcamera.h"

#include "ptz_devices/csimulatedcamera_p.h"

namespace ptz_devices {

using namespace simulation;

// ---------------------------------------------------------------------------
// Requests: presets

quint64 CSimulatedCamera::listPresets()
{
    return enqueue(DriverOperation::ListPresets, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            reply.result = QVariant::fromValue(presets());
    });
}

quint64 CSimulatedCamera::setPreset(int number, const QString &name)
{
    return enqueue(DriverOperation::SetPreset, {number, name}, number, [this, number, name](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        DevicePreset p;
        p.number = number;
        p.name = name.trimmed().isEmpty() ? tr("Preset %1").arg(number) : name;
        p.pan = m_pan;
        p.tilt = m_tilt;
        p.zoom = m_zoom;
        m_presets.insert(number, p);
        reply.result = QVariant::fromValue(p);
        if (!savePresets())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::gotoPreset(int number)
{
    return enqueue(DriverOperation::GotoPreset, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        const auto it = m_presets.constFind(number);
        if (it == m_presets.constEnd()) {
            reply.ok = false;
            reply.error = tr("Preset %1 is not set").arg(number);
            return;
        }
        interruptActivities(true);
        haltManualMotion();
        beginTarget(it->pan, it->tilt, it->zoom, kPresetSpeed);
    });
}

quint64 CSimulatedCamera::removePreset(int number)
{
    return enqueue(DriverOperation::RemovePreset, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        if (!m_presets.remove(number)) {
            reply.ok = false;
            reply.error = tr("Preset %1 is not set").arg(number);
            return;
        }
        if (!savePresets())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::renamePreset(int number, const QString &name)
{
    return enqueue(DriverOperation::RenamePreset, {number, name}, number, [this, number, name](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        auto it = m_presets.find(number);
        if (it == m_presets.end()) {
            reply.ok = false;
            reply.error = tr("Preset %1 is not set").arg(number);
            return;
        }
        if (name.trimmed().isEmpty()) {
            reply.ok = false;
            reply.error = tr("A preset name cannot be empty");
            return;
        }
        it->name = name;
        reply.result = QVariant::fromValue(*it);
        if (!savePresets())
            storeFailed(reply);
    });
}

QVector<DevicePreset> CSimulatedCamera::presets() const
{
    QVector<DevicePreset> list;
    list.reserve(m_presets.size());
    for (const DevicePreset &p : m_presets)
        list.append(p);
    return list;
}

// ---------------------------------------------------------------------------
// Requests: patrols

QVector<DevicePatrol> CSimulatedCamera::patrols() const
{
    QVector<DevicePatrol> list;
    for (DevicePatrol patrol : m_patrols) {
        for (DevicePatrolPoint &point : patrol.points)
            point.presetName = m_presets.value(point.preset).name;
        list.append(patrol);
    }
    return list;
}

quint64 CSimulatedCamera::listPatrols()
{
    return enqueue(DriverOperation::ListPatrols, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            reply.result = QVariant::fromValue(patrols());
    });
}

quint64 CSimulatedCamera::readPatrol(int number)
{
    return enqueue(DriverOperation::ReadPatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        DevicePatrol patrol = m_patrols.value(number);
        patrol.number = number;
        for (DevicePatrolPoint &point : patrol.points)
            point.presetName = m_presets.value(point.preset).name;
        reply.result = QVariant::fromValue(patrol);
    });
}

quint64 CSimulatedCamera::writePatrol(int number, const QVector<DevicePatrolPoint> &points)
{
    return enqueue(
        DriverOperation::WritePatrol, {number, QVariant::fromValue(points)}, number,
        [this, number, points](DriverReply &reply) {
            if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
                return;
            if (points.size() > m_caps.pointsPerPatrol) {
                reply.ok = false;
                reply.error =
                    tr("A patrol holds at most %1 points, got %2").arg(m_caps.pointsPerPatrol).arg(points.size());
                return;
            }
            for (int i = 0; i < points.size(); ++i) {
                const DevicePatrolPoint &pt = points.at(i);
                if (pt.preset < 1 || pt.preset > m_caps.presetSlots) {
                    reply.ok = false;
                    reply.error =
                        tr("Point %1: preset %2 is outside 1-%3").arg(i + 1).arg(pt.preset).arg(m_caps.presetSlots);
                    return;
                }
                if (pt.speed < m_caps.minSpeed || pt.speed > m_caps.maxSpeed) {
                    reply.ok = false;
                    reply.error = tr("Point %1: speed %2 is outside %3-%4")
                                      .arg(i + 1)
                                      .arg(pt.speed)
                                      .arg(m_caps.minSpeed)
                                      .arg(m_caps.maxSpeed);
                    return;
                }
                if (pt.dwellSeconds < m_caps.minDwellSeconds || pt.dwellSeconds > m_caps.maxDwellSeconds) {
                    reply.ok = false;
                    reply.error = tr("Point %1: dwell time %2 s is outside %3-%4 s")
                                      .arg(i + 1)
                                      .arg(pt.dwellSeconds)
                                      .arg(m_caps.minDwellSeconds)
                                      .arg(m_caps.maxDwellSeconds);
                    return;
                }
            }
            if (m_patrol == number) {
                m_patrol = 0;
                m_targetingPanTilt = m_targetingZoom = false;
            }
            if (m_interruptedPatrol == number)
                m_interruptedPatrol = 0;
            if (points.isEmpty()) {
                m_patrols.remove(number);
            } else {
                DevicePatrol patrol;
                patrol.number = number;
                patrol.name = tr("Patrol %1").arg(number);
                patrol.points = points;
                for (DevicePatrolPoint &p : patrol.points)
                    p.presetName.clear();
                m_patrols.insert(number, patrol);
            }
            DevicePatrol stored = m_patrols.value(number);
            stored.number = number;
            for (DevicePatrolPoint &p : stored.points)
                p.presetName = m_presets.value(p.preset).name;
            reply.result = QVariant::fromValue(stored);
            if (!savePatrols())
                storeFailed(reply);
        });
}

quint64 CSimulatedCamera::removePatrol(int number)
{
    return enqueue(DriverOperation::RemovePatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        if (m_patrol == number) {
            m_patrol = 0;
            m_targetingPanTilt = m_targetingZoom = false;
        }
        if (m_interruptedPatrol == number)
            m_interruptedPatrol = 0;
        m_patrols.remove(number);
        if (!savePatrols())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::startPatrol(int number)
{
    return enqueue(DriverOperation::StartPatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        const DevicePatrol patrol = m_patrols.value(number);
        if (patrol.points.isEmpty()) {
            reply.ok = false;
            reply.error = tr("Patrol %1 has no points").arg(number);
            return;
        }
        bool reachable = false;
        for (const DevicePatrolPoint &pt : patrol.points)
            reachable = reachable || m_presets.contains(pt.preset);
        if (!reachable) {
            reply.ok = false;
            reply.error = tr("No preset of patrol %1 is set").arg(number);
            return;
        }
        if (m_patrol != number)
            interruptActivities(false);
        m_interruptedPatrol = 0;
        haltManualMotion();
        startPatrolNow(number, 0);
    });
}

quint64 CSimulatedCamera::stopPatrol(int number)
{
    const quint64 id = enqueue(DriverOperation::StopPatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        if (number != 0 && !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        // Stopping what is not running is harmless; the caller's aim is met.
        if (m_patrol && (number == 0 || number == m_patrol)) {
            m_patrol = 0;
            m_targetingPanTilt = m_targetingZoom = false;
        }
        if (number == 0 || m_interruptedPatrol == number)
            m_interruptedPatrol = 0;
    });
    m_queue.back()->isStop = true;
    return id;
}

void CSimulatedCamera::startPatrolNow(int number, int fromPoint)
{
    const DevicePatrol patrol = m_patrols.value(number);
    m_autoScan = false;
    stopPatternPlayback();
    m_patrol = number;
    m_patrolDwelling = false;
    const int count = patrol.points.size();
    for (int i = 0; i < count; ++i) {
        const int index = (fromPoint + i) % count;
        const auto preset = m_presets.constFind(patrol.points.at(index).preset);
        if (preset != m_presets.constEnd()) {
            m_patrolPoint = index;
            beginTarget(preset->pan, preset->tilt, preset->zoom, patrol.points.at(index).speed);
            return;
        }
    }
    // Every preset of the path is gone.
    m_patrol = 0;
}

void CSimulatedCamera::patrolArrived()
{
    const DevicePatrol patrol = m_patrols.value(m_patrol);
    if (m_patrolPoint >= patrol.points.size()) {
        m_patrol = 0;
        return;
    }
    m_patrolDwelling = true;
    m_dwellEnd = m_simNow + qint64(patrol.points.at(m_patrolPoint).dwellSeconds) * 1000;
}

} // namespace ptz_devices
