// Cameras, users, permissions and switches of the site.
#include "site_store/csitestore.h"

#include "csitestore_p.h"
#include "csitetransaction.h"

#include <algorithm>

namespace site_store {

namespace {

QString abilitiesToText(QList<int> abilities)
{
    std::sort(abilities.begin(), abilities.end());
    QStringList parts;
    for (int a : qAsConst(abilities))
        parts << QString::number(a);
    return parts.join(QLatin1Char(','));
}

QList<int> abilitiesFromText(const QString &text)
{
    QList<int> out;
    const QStringList parts = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &p : parts) {
        bool ok = false;
        const int v = p.trimmed().toInt(&ok);
        if (ok && !out.contains(v))
            out << v;
    }
    std::sort(out.begin(), out.end());
    return out;
}

CameraRecord cameraFromQuery(const QSqlQuery &q)
{
    CameraRecord c;
    c.id = q.value(0).toString();
    c.name = q.value(1).toString();
    c.driverKind = q.value(2).toString();
    c.driverAddress = q.value(3).toString();
    c.model = q.value(4).toString();
    c.abilities = abilitiesFromText(q.value(5).toString());
    c.cascade = q.value(6).toInt() != 0;
    c.fishEye = q.value(7).toInt() != 0;
    c.accessProtocol = q.value(8).toInt();
    return c;
}

UserRecord userFromQuery(const QSqlQuery &q)
{
    return UserRecord{q.value(0).toString(), q.value(1).toInt()};
}

} // namespace

// ---------------------------------------------------------------- cameras

QList<CameraRecord> CSiteStore::cameras() const
{
    return d->selectAll(QStringLiteral("SELECT id, name, driver_kind, driver_address, model, abilities, cascade,"
                                       " fisheye, access_protocol FROM cameras ORDER BY name, id"),
                        {}, cameraFromQuery);
}

std::optional<CameraRecord> CSiteStore::camera(const QString &id) const
{
    if (d->useCache()) {
        const auto hit = d->cache.cameras.constFind(id);
        if (hit != d->cache.cameras.constEnd())
            return *hit;
        const std::optional<CameraRecord> row = readCamera(id);
        d->cache.cameras.insert(id, row);
        return row;
    }
    return readCamera(id);
}

std::optional<CameraRecord> CSiteStore::readCamera(const QString &id) const
{
    return d->selectOne(QStringLiteral("SELECT id, name, driver_kind, driver_address, model, abilities, cascade,"
                                       " fisheye, access_protocol FROM cameras WHERE id = ?"),
                        {id}, cameraFromQuery);
}

bool CSiteStore::upsertCamera(const CameraRecord &c)
{
    if (!validCameraId(c.id)) {
        d->lastError = tr("A camera needs an identifier.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO cameras (id, name, driver_kind, driver_address, model,"
                               " abilities, cascade, fisheye, access_protocol) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                {c.id, c.name, c.driverKind, c.driverAddress, c.model, abilitiesToText(c.abilities), int(c.cascade),
                 int(c.fishEye), c.accessProtocol}))
        return false;
    return t.commit(Table::Cameras, c.id);
}

bool CSiteStore::removeCamera(const QString &id)
{
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("DELETE FROM cameras WHERE id = ?"), {id}))
        return false;
    if (t.rowsAffected() == 0)
        return t.fail(tr("The camera %1 does not exist.").arg(id));
    // The camera's own rows go with it; wildcard permissions stay.
    static const char *const kPerCamera[] = {"permissions", "virtual_presets", "patrols",     "park_actions",
                                             "recovery",    "locks",           "device_state"};
    for (const char *table : kPerCamera) {
        if (!t.exec(QStringLiteral("DELETE FROM %1 WHERE camera_id = ?").arg(QLatin1String(table)), {id}))
            return false;
    }
    return t.commit(Table::Cameras, id);
}

// ---------------------------------------------------------------- users

QList<UserRecord> CSiteStore::users() const
{
    return d->selectAll(QStringLiteral("SELECT name, ptz_level FROM users ORDER BY name"), {}, userFromQuery);
}

std::optional<UserRecord> CSiteStore::user(const QString &name) const
{
    if (d->useCache()) {
        const auto hit = d->cache.users.constFind(name);
        if (hit != d->cache.users.constEnd())
            return *hit;
        const std::optional<UserRecord> row = readUser(name);
        d->cache.users.insert(name, row);
        return row;
    }
    return readUser(name);
}

std::optional<UserRecord> CSiteStore::readUser(const QString &name) const
{
    return d->selectOne(QStringLiteral("SELECT name, ptz_level FROM users WHERE name = ?"), {name}, userFromQuery);
}

bool CSiteStore::upsertUser(const UserRecord &u)
{
    if (u.name.trimmed().isEmpty()) {
        d->lastError = tr("A user needs a name.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO users (name, ptz_level) VALUES (?, ?)"), {u.name, u.ptzLevel}))
        return false;
    return t.commit(Table::Users, QString());
}

bool CSiteStore::removeUser(const QString &name)
{
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("DELETE FROM users WHERE name = ?"), {name}))
        return false;
    if (t.rowsAffected() == 0)
        return t.fail(tr("The user %1 does not exist.").arg(name));
    if (!t.exec(QStringLiteral("DELETE FROM permissions WHERE user = ?"), {name}))
        return false;
    return t.commit(Table::Users, QString());
}

QList<PermissionRecord> CSiteStore::permissions(const QString &user) const
{
    return d->selectAll(QStringLiteral("SELECT user, camera_id, item FROM permissions WHERE user = ?"
                                       " ORDER BY camera_id, item"),
                        {user}, [](const QSqlQuery &q) {
                            return PermissionRecord{q.value(0).toString(), q.value(1).toString(), q.value(2).toInt()};
                        });
}

bool CSiteStore::grantPermission(const QString &user, const QString &cameraId, int item)
{
    if (user.isEmpty() || !validCameraId(cameraId)) {
        d->lastError = tr("A permission needs a user and a camera.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR IGNORE INTO permissions (user, camera_id, item) VALUES (?, ?, ?)"),
                {user, cameraId, item}))
        return false;
    return t.commit(Table::Permissions, cameraId == kAllCameras ? QString() : cameraId);
}

bool CSiteStore::revokePermission(const QString &user, const QString &cameraId, int item)
{
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("DELETE FROM permissions WHERE user = ? AND camera_id = ? AND item = ?"),
                {user, cameraId, item}))
        return false;
    return t.commit(Table::Permissions, cameraId == kAllCameras ? QString() : cameraId);
}

bool CSiteStore::hasPermission(const QString &user, const QString &cameraId, int item) const
{
    if (d->useCache()) {
        const QString key = user + QLatin1Char('\n') + cameraId + QLatin1Char('\n') + QString::number(item);
        const auto hit = d->cache.permissions.constFind(key);
        if (hit != d->cache.permissions.constEnd())
            return *hit;
        const bool granted = readPermission(user, cameraId, item);
        d->cache.permissions.insert(key, granted);
        return granted;
    }
    return readPermission(user, cameraId, item);
}

bool CSiteStore::readPermission(const QString &user, const QString &cameraId, int item) const
{
    auto q = d->select(QStringLiteral("SELECT 1 FROM permissions WHERE user = ? AND item = ? AND camera_id IN (?, ?)"),
                       {user, item, cameraId, kAllCameras});
    if (!q)
        return false;
    return q->next();
}

QString CSiteStore::currentUserName() const
{
    return setting(kCurrentUser);
}

bool CSiteStore::setCurrentUser(const QString &name)
{
    if (!user(name)) {
        d->lastError = tr("The user %1 does not exist.").arg(name);
        return false;
    }
    return setSetting(kCurrentUser, name);
}

// ---------------------------------------------------------------- settings

QString CSiteStore::setting(const QString &key, const QString &defaultValue) const
{
    if (d->useCache()) {
        auto hit = d->cache.settings.constFind(key);
        if (hit == d->cache.settings.constEnd())
            hit = d->cache.settings.insert(key, readSetting(key));
        return hit->value_or(defaultValue);
    }
    return readSetting(key).value_or(defaultValue);
}

std::optional<QString> CSiteStore::readSetting(const QString &key) const
{
    return d->selectOne(QStringLiteral("SELECT value FROM settings WHERE key = ?"), {key},
                        [](const QSqlQuery &q) { return q.value(0).toString(); });
}

bool CSiteStore::boolSetting(const QString &key, bool defaultValue) const
{
    const QString v = setting(key).trimmed().toLower();
    if (v == QLatin1String("true") || v == QLatin1String("1") || v == QLatin1String("yes") || v == QLatin1String("on"))
        return true;
    if (v == QLatin1String("false") || v == QLatin1String("0") || v == QLatin1String("no") || v == QLatin1String("off"))
        return false;
    return defaultValue;
}

int CSiteStore::intSetting(const QString &key, int defaultValue) const
{
    bool ok = false;
    const int v = setting(key).trimmed().toInt(&ok);
    return ok ? v : defaultValue;
}

bool CSiteStore::setSetting(const QString &key, const QString &value)
{
    if (key.isEmpty()) {
        d->lastError = tr("A setting needs a key.");
        return false;
    }
    CSiteTransaction t(this, *d);
    if (!t.exec(QStringLiteral("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)"), {key, value}))
        return false;
    return t.commit(Table::Settings, QString());
}

bool CSiteStore::setBoolSetting(const QString &key, bool value)
{
    return setSetting(key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

} // namespace site_store
