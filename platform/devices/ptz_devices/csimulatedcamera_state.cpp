#include "ptz_devices/csimulatedcamera.h"

#include "ptz_devices/csimulatedcamera_p.h"
#include "ptz_devices/idevicestatestore.h"

#include "tarn/base/logging.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ptz_devices {

using namespace simulation;

namespace {

const QString kKeyPresets = QStringLiteral("presets");
const QString kKeyPatrols = QStringLiteral("patrols");
const QString kKeyPatterns = QStringLiteral("patterns");
const QString kKeyPark = QStringLiteral("park_action");
const QString kKeyRecovery = QStringLiteral("patrol_recovery");
const QString kKeyAutoTrack = QStringLiteral("auto_track");

} // namespace

// ---------------------------------------------------------------------------
// Persistence

void CSimulatedCamera::loadState()
{
    const QJsonArray presets = m_store->load(m_cameraId, kKeyPresets).value(QStringLiteral("items")).toArray();
    for (const QJsonValue &v : presets) {
        const QJsonObject o = v.toObject();
        DevicePreset p;
        p.number = o.value(QStringLiteral("number")).toInt();
        p.name = o.value(QStringLiteral("name")).toString();
        p.pan = o.value(QStringLiteral("pan")).toDouble();
        p.tilt = o.value(QStringLiteral("tilt")).toDouble();
        p.zoom = o.value(QStringLiteral("zoom")).toDouble(1.0);
        if (p.number >= 1 && p.number <= m_caps.presetSlots)
            m_presets.insert(p.number, p);
    }

    const QJsonArray patrols = m_store->load(m_cameraId, kKeyPatrols).value(QStringLiteral("items")).toArray();
    for (const QJsonValue &v : patrols) {
        const QJsonObject o = v.toObject();
        DevicePatrol patrol;
        patrol.number = o.value(QStringLiteral("number")).toInt();
        patrol.name = o.value(QStringLiteral("name")).toString();
        const QJsonArray points = o.value(QStringLiteral("points")).toArray();
        for (const QJsonValue &pv : points) {
            const QJsonObject po = pv.toObject();
            DevicePatrolPoint pt;
            pt.preset = po.value(QStringLiteral("preset")).toInt();
            pt.speed = po.value(QStringLiteral("speed")).toInt();
            pt.dwellSeconds = po.value(QStringLiteral("dwell")).toInt();
            patrol.points.append(pt);
        }
        if (patrol.number >= 1 && patrol.number <= m_caps.patrolSlots && !patrol.points.isEmpty())
            m_patrols.insert(patrol.number, patrol);
    }

    const QJsonArray patterns = m_store->load(m_cameraId, kKeyPatterns).value(QStringLiteral("items")).toArray();
    for (const QJsonValue &v : patterns) {
        const QJsonObject o = v.toObject();
        const int number = o.value(QStringLiteral("number")).toInt();
        Pattern pattern;
        pattern.duration = qMax<qint64>(kMinPatternDuration, qint64(o.value(QStringLiteral("duration")).toDouble()));
        pattern.startPan = o.value(QStringLiteral("startPan")).toDouble();
        pattern.startTilt = o.value(QStringLiteral("startTilt")).toDouble();
        pattern.startZoom = o.value(QStringLiteral("startZoom")).toDouble(1.0);
        const QJsonArray events = o.value(QStringLiteral("events")).toArray();
        for (const QJsonValue &ev : events) {
            const QJsonArray a = ev.toArray();
            if (a.size() != 5)
                continue;
            PatternEvent e;
            e.offset = qint64(a.at(0).toDouble());
            e.kind = a.at(1).toInt();
            e.a = a.at(2).toInt();
            e.b = a.at(3).toInt();
            e.c = a.at(4).toInt();
            pattern.events.append(e);
        }
        if (number >= 1 && number <= m_caps.patternSlots)
            m_patterns.insert(number, pattern);
    }

    const QJsonObject park = m_store->load(m_cameraId, kKeyPark);
    if (!park.isEmpty()) {
        m_park.enabled = park.value(QStringLiteral("enabled")).toBool();
        m_park.waitingSeconds = park.value(QStringLiteral("waitingSeconds")).toInt(5);
        m_park.type = ParkActionType(park.value(QStringLiteral("type")).toInt());
        m_park.target = park.value(QStringLiteral("target")).toInt();
        m_parkPan = park.value(QStringLiteral("pan")).toDouble();
        m_parkTilt = park.value(QStringLiteral("tilt")).toDouble();
        m_parkZoom = park.value(QStringLiteral("zoom")).toDouble(1.0);
    }
    const QJsonObject recovery = m_store->load(m_cameraId, kKeyRecovery);
    m_recovery.enabled = recovery.value(QStringLiteral("enabled")).toBool();
    m_recovery.waitingSeconds = recovery.value(QStringLiteral("waitingSeconds")).toInt();
    m_autoTrack = m_store->load(m_cameraId, kKeyAutoTrack).value(QStringLiteral("enabled")).toBool();
}

bool CSimulatedCamera::savePresets()
{
    QJsonArray items;
    for (const DevicePreset &p : qAsConst(m_presets)) {
        items.append(QJsonObject{{QStringLiteral("number"), p.number},
                                 {QStringLiteral("name"), p.name},
                                 {QStringLiteral("pan"), p.pan},
                                 {QStringLiteral("tilt"), p.tilt},
                                 {QStringLiteral("zoom"), p.zoom}});
    }
    if (m_store->save(m_cameraId, kKeyPresets, QJsonObject{{QStringLiteral("items"), items}}))
        return true;
    ZEPH_LOG_WARN("camera %s: presets not stored", qUtf8Printable(m_cameraId));
    return false;
}

bool CSimulatedCamera::savePatrols()
{
    QJsonArray items;
    for (const DevicePatrol &patrol : qAsConst(m_patrols)) {
        QJsonArray points;
        for (const DevicePatrolPoint &pt : patrol.points) {
            points.append(QJsonObject{{QStringLiteral("preset"), pt.preset},
                                      {QStringLiteral("speed"), pt.speed},
                                      {QStringLiteral("dwell"), pt.dwellSeconds}});
        }
        items.append(QJsonObject{{QStringLiteral("number"), patrol.number},
                                 {QStringLiteral("name"), patrol.name},
                                 {QStringLiteral("points"), points}});
    }
    if (m_store->save(m_cameraId, kKeyPatrols, QJsonObject{{QStringLiteral("items"), items}}))
        return true;
    ZEPH_LOG_WARN("camera %s: patrols not stored", qUtf8Printable(m_cameraId));
    return false;
}

bool CSimulatedCamera::savePatterns()
{
    QJsonArray items;
    for (auto it = m_patterns.constBegin(); it != m_patterns.constEnd(); ++it) {
        QJsonArray events;
        for (const PatternEvent &e : it->events)
            events.append(QJsonArray{double(e.offset), e.kind, e.a, e.b, e.c});
        items.append(QJsonObject{{QStringLiteral("number"), it.key()},
                                 {QStringLiteral("duration"), double(it->duration)},
                                 {QStringLiteral("startPan"), it->startPan},
                                 {QStringLiteral("startTilt"), it->startTilt},
                                 {QStringLiteral("startZoom"), it->startZoom},
                                 {QStringLiteral("events"), events}});
    }
    if (m_store->save(m_cameraId, kKeyPatterns, QJsonObject{{QStringLiteral("items"), items}}))
        return true;
    ZEPH_LOG_WARN("camera %s: patterns not stored", qUtf8Printable(m_cameraId));
    return false;
}

bool CSimulatedCamera::saveSettings()
{
    bool ok = m_store->save(m_cameraId, kKeyPark,
                            QJsonObject{{QStringLiteral("enabled"), m_park.enabled},
                                        {QStringLiteral("waitingSeconds"), m_park.waitingSeconds},
                                        {QStringLiteral("type"), int(m_park.type)},
                                        {QStringLiteral("target"), m_park.target},
                                        {QStringLiteral("pan"), m_parkPan},
                                        {QStringLiteral("tilt"), m_parkTilt},
                                        {QStringLiteral("zoom"), m_parkZoom}});
    ok = m_store->save(m_cameraId, kKeyRecovery,
                       QJsonObject{{QStringLiteral("enabled"), m_recovery.enabled},
                                   {QStringLiteral("waitingSeconds"), m_recovery.waitingSeconds}})
         && ok;
    ok = m_store->save(m_cameraId, kKeyAutoTrack, QJsonObject{{QStringLiteral("enabled"), m_autoTrack}}) && ok;
    if (!ok)
        ZEPH_LOG_WARN("camera %s: settings not stored", qUtf8Printable(m_cameraId));
    return ok;
}

} // namespace ptz_devices
