// PTZ data of the cameras: client presets and patrols, park action, recovery, locks, device state.
#include "site_store/csitestore.h"

#include "csitestore_p.h"
#include "csitetransaction.h"
#include "ptz_plugin_protocol/ptzlimits.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace site_store {

using namespace ptz_plugin_protocol;

namespace {

QString pointsToJson(const QVector<PatrolPointRecord> &points)
{
    QJsonArray array;
    for (const PatrolPointRecord &p : points) {
        QJsonObject o;
        o.insert(QStringLiteral("preset"), p.preset);
        o.insert(QStringLiteral("speed"), p.speed);
        o.insert(QStringLiteral("dwell"), p.dwell);
        if (!p.presetName.isEmpty())
            o.insert(QStringLiteral("presetName"), p.presetName);
        array.append(o);
    }
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

QVector<PatrolPointRecord> pointsFromJson(const QString &text)
{
    QVector<PatrolPointRecord> out;
    const QJsonArray array = QJsonDocument::fromJson(text.toUtf8()).array();
    out.reserve(array.size());
    for (const QJsonValue &v : array) {
        const QJsonObject o = v.toObject();
        PatrolPointRecord p;
        p.preset = o.value(QStringLiteral("preset")).toInt();
        p.speed = o.value(QStringLiteral("speed")).toInt();
        p.dwell = o.value(QStringLiteral("dwell")).toInt();
        p.presetName = o.value(QStringLiteral("presetName")).toString();
        out.append(p);
    }
    return out;
}

VirtualPresetRecord presetFromQuery(const QSqlQuery &q)
{
    VirtualPresetRecord p;
    p.cameraId = q.value(0).toString();
    p.number = q.value(1).toInt();
    p.name = q.value(2).toString();
    p.type = q.value(3).toInt();
    p.pan = q.value(4).toDouble();
    p.tilt = q.value(5).toDouble();
    p.zoom = q.value(6).toDouble();
    return p;
}

PatrolRecord patrolFromQuery(const QSqlQuery &q)
{
    PatrolRecord p;
    p.cameraId = q.value(0).toString();
    p.number = q.value(1).toInt();
    p.type = q.value(2).toInt();
    p.name = q.value(3).toString();
    p.points = pointsFromJson(q.value(4).toString());
    return p;
}

} // namespace

// ---------------------------------------------------------------- presets

QList<VirtualPresetRecord> CSiteStore::virtualPresets(const QString &cameraId) const
{
    return d->selectAll(QStringLiteral("SELECT camera_id, number, name, type, pan, tilt, zoom FROM virtual_presets"
                                       " WHERE camera_id = ? ORDER BY number"),
                        {cameraId}, presetFromQuery);
}

std::optional<VirtualPresetRecord> CSiteStore::virtualPreset(const QString &cameraId, int number) const
{
    return d->selectOne(QStringLiteral("SELECT camera_id, number, name, type, pan, tilt, zoom FROM virtual_presets"
                                       " WHERE camera_id = ? AND number = ?"),
                        {cameraId, number}, presetFromQuery);
}

bool CSiteStore::upsertVirtualPreset(const VirtualPresetRecord &p)
{
    if (!validCameraId(p.cameraId)) {
        d->lastError = tr("A preset needs a camera.");
        return false;
    }
    if (p.number < kMinPresetIndex || p.number > kMaxPresetIndex) {
        d->lastError =
            tr("Preset number %1 is outside %2 to %3.").arg(p.number).arg(kMinPresetIndex).arg(kMaxPresetIndex);
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO virtual_presets (camera_id, number, name, type, pan, tilt, zoom)"
                               " VALUES (?, ?, ?, ?, ?, ?, ?)"),
                {p.cameraId, p.number, p.name, p.type, p.pan, p.tilt, p.zoom}))
        return false;
    return t.commit(Table::VirtualPresets, p.cameraId);
}

bool CSiteStore::removeVirtualPreset(const QString &cameraId, int number)
{
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("DELETE FROM virtual_presets WHERE camera_id = ? AND number = ?"), {cameraId, number}))
        return false;
    if (t.rowsAffected() == 0)
        return t.fail(tr("Preset %1 does not exist.").arg(number));
    return t.commit(Table::VirtualPresets, cameraId);
}

// ---------------------------------------------------------------- patrols

QList<PatrolRecord> CSiteStore::patrols(const QString &cameraId) const
{
    return d->selectAll(QStringLiteral("SELECT camera_id, number, type, name, points FROM patrols WHERE camera_id = ?"
                                       " ORDER BY number"),
                        {cameraId}, patrolFromQuery);
}

std::optional<PatrolRecord> CSiteStore::patrol(const QString &cameraId, int number) const
{
    return d->selectOne(QStringLiteral("SELECT camera_id, number, type, name, points FROM patrols"
                                       " WHERE camera_id = ? AND number = ?"),
                        {cameraId, number}, patrolFromQuery);
}

bool CSiteStore::upsertPatrol(const PatrolRecord &p)
{
    if (!validCameraId(p.cameraId)) {
        d->lastError = tr("A patrol needs a camera.");
        return false;
    }
    if (p.number < kMinCruiseIndex || p.number > kMaxCruiseIndex) {
        d->lastError =
            tr("Patrol number %1 is outside %2 to %3.").arg(p.number).arg(kMinCruiseIndex).arg(kMaxCruiseIndex);
        return false;
    }
    if (p.points.size() > kMaxCruisePoints) {
        d->lastError = tr("A patrol holds at most %1 points, not %2.").arg(kMaxCruisePoints).arg(p.points.size());
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO patrols (camera_id, number, type, name, points)"
                               " VALUES (?, ?, ?, ?, ?)"),
                {p.cameraId, p.number, p.type, p.name, pointsToJson(p.points)}))
        return false;
    return t.commit(Table::Patrols, p.cameraId);
}

bool CSiteStore::removePatrol(const QString &cameraId, int number)
{
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("DELETE FROM patrols WHERE camera_id = ? AND number = ?"), {cameraId, number}))
        return false;
    if (t.rowsAffected() == 0)
        return t.fail(tr("Patrol %1 does not exist.").arg(number));
    return t.commit(Table::Patrols, cameraId);
}

// ---------------------------------------------------------------- park action, recovery

ParkActionRecord CSiteStore::parkAction(const QString &cameraId) const
{
    ParkActionRecord r;
    r.cameraId = cameraId;
    auto q = d->select(QStringLiteral("SELECT enabled, wait_seconds, action_type, target_id FROM park_actions"
                                      " WHERE camera_id = ?"),
                       {cameraId});
    if (!q)
        return r;
    if (q->next()) {
        r.enabled = q->value(0).toInt() != 0;
        r.waitSeconds = q->value(1).toInt();
        r.actionType = q->value(2).toInt();
        r.targetId = q->value(3).toInt();
    }
    return r;
}

bool CSiteStore::setParkAction(const ParkActionRecord &r)
{
    if (!validCameraId(r.cameraId)) {
        d->lastError = tr("A park action needs a camera.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO park_actions (camera_id, enabled, wait_seconds, action_type,"
                               " target_id) VALUES (?, ?, ?, ?, ?)"),
                {r.cameraId, int(r.enabled), r.waitSeconds, r.actionType, r.targetId}))
        return false;
    return t.commit(Table::ParkActions, r.cameraId);
}

RecoveryRecord CSiteStore::recovery(const QString &cameraId) const
{
    RecoveryRecord r;
    r.cameraId = cameraId;
    auto q = d->select(QStringLiteral("SELECT enabled, wait_seconds FROM recovery WHERE camera_id = ?"), {cameraId});
    if (!q)
        return r;
    if (q->next()) {
        r.enabled = q->value(0).toInt() != 0;
        r.waitSeconds = q->value(1).toInt();
    }
    return r;
}

bool CSiteStore::setRecovery(const RecoveryRecord &r)
{
    if (!validCameraId(r.cameraId)) {
        d->lastError = tr("A recovery setting needs a camera.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO recovery (camera_id, enabled, wait_seconds) VALUES (?, ?, ?)"),
                {r.cameraId, int(r.enabled), r.waitSeconds}))
        return false;
    return t.commit(Table::Recovery, r.cameraId);
}

// ---------------------------------------------------------------- locks

std::optional<LockRecord> CSiteStore::lock(const QString &cameraId, const QDateTime &now) const
{
    std::optional<LockRecord> row;
    if (d->useCache()) {
        auto hit = d->cache.locks.constFind(cameraId);
        if (hit == d->cache.locks.constEnd())
            hit = d->cache.locks.insert(cameraId, readLock(cameraId));
        row = *hit;
    } else {
        row = readLock(cameraId);
    }
    if (row && row->expiresAt <= now)
        return std::nullopt;
    return row;
}

std::optional<LockRecord> CSiteStore::readLock(const QString &cameraId) const
{
    return d->selectOne(QStringLiteral("SELECT holder, holder_level, expires_at, holder_detail FROM locks"
                                       " WHERE camera_id = ?"),
                        {cameraId}, [&cameraId](const QSqlQuery &q) {
                            LockRecord r;
                            r.cameraId = cameraId;
                            r.holder = q.value(0).toString();
                            r.holderLevel = q.value(1).toInt();
                            r.expiresAt = QDateTime::fromMSecsSinceEpoch(q.value(2).toLongLong(), Qt::UTC);
                            r.holderDetail = q.value(3).toString();
                            return r;
                        });
}

bool CSiteStore::setLock(const LockRecord &r)
{
    if (!validCameraId(r.cameraId) || r.holder.isEmpty() || !r.expiresAt.isValid()) {
        d->lastError = tr("A lock needs a camera, a holder and an expiry time.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO locks (camera_id, holder, holder_level, expires_at,"
                               " holder_detail) VALUES (?, ?, ?, ?, ?)"),
                {r.cameraId, r.holder, r.holderLevel, r.expiresAt.toMSecsSinceEpoch(), r.holderDetail}))
        return false;
    return t.commit(Table::Locks, r.cameraId);
}

bool CSiteStore::clearLock(const QString &cameraId)
{
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("DELETE FROM locks WHERE camera_id = ?"), {cameraId}))
        return false;
    return t.commit(Table::Locks, cameraId);
}

// ---------------------------------------------------------------- device state

QByteArray CSiteStore::deviceState(const QString &cameraId, const QString &key) const
{
    return d
        ->selectOne(QStringLiteral("SELECT json FROM device_state WHERE camera_id = ? AND key = ?"), {cameraId, key},
                    [](const QSqlQuery &q) { return q.value(0).toString().toUtf8(); })
        .value_or(QByteArray());
}

QStringList CSiteStore::deviceStateKeys(const QString &cameraId) const
{
    return d->selectAll(QStringLiteral("SELECT key FROM device_state WHERE camera_id = ? ORDER BY key"), {cameraId},
                        [](const QSqlQuery &q) { return q.value(0).toString(); });
}

bool CSiteStore::setDeviceState(const QString &cameraId, const QString &key, const QByteArray &json)
{
    if (!validCameraId(cameraId) || key.isEmpty()) {
        d->lastError = tr("Device state needs a camera and a key.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO device_state (camera_id, key, json) VALUES (?, ?, ?)"),
                {cameraId, key, QString::fromUtf8(json)}))
        return false;
    return t.commit(Table::DeviceState, cameraId);
}

bool CSiteStore::removeDeviceState(const QString &cameraId, const QString &key)
{
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("DELETE FROM device_state WHERE camera_id = ? AND key = ?"), {cameraId, key}))
        return false;
    return t.commit(Table::DeviceState, cameraId);
}

} // namespace site_store
