#include "site_store/csitestore.h"

#include "csitestore_p.h"

#include "tarn/base/logging.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>
#include <QSqlError>
#include <QStandardPaths>
#include <QTimeZone>

#include <atomic>

namespace site_store {

const QString CSiteStore::kAllCameras = QStringLiteral("*");
const char *const CSiteStore::kPathEnvVar = "PTZ_SITE_STORE";
const QString CSiteStore::kIsSupportPTZLock = QStringLiteral("IsSupportPTZLock");
const QString CSiteStore::kIsSupportVirtualPTZ = QStringLiteral("IsSupportVirtualPTZ");
const QString CSiteStore::kIsSupportUpdatePTZInfo = QStringLiteral("IsSupportUpdatePTZInfo");
const QString CSiteStore::kResumeCruiseAfterInterrupt = QStringLiteral("ResumeCruiseAfterInterrupt");
const QString CSiteStore::kShowPreSetTabWidget = QStringLiteral("ShowPreSetTabWidget");
const QString CSiteStore::kShowExtraButton = QStringLiteral("ShowExtraButton");
const QString CSiteStore::kShowUserLevel = QStringLiteral("ShowUserLevel");
const QString CSiteStore::kGetTrackNum = QStringLiteral("GetTrackNum");
const QString CSiteStore::kProductType = QStringLiteral("ProductType");
const QString CSiteStore::kCurrentUser = QStringLiteral("CurrentUser");

namespace {

constexpr int kSchemaVersion = 1;

const char *const kSchema[] = {
    "CREATE TABLE IF NOT EXISTS meta (key TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS cameras (id TEXT PRIMARY KEY, name TEXT NOT NULL, driver_kind TEXT NOT NULL,"
    " driver_address TEXT NOT NULL, model TEXT NOT NULL, abilities TEXT NOT NULL, cascade INTEGER NOT NULL,"
    " fisheye INTEGER NOT NULL, access_protocol INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS users (name TEXT PRIMARY KEY, ptz_level INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS permissions (user TEXT NOT NULL, camera_id TEXT NOT NULL, item INTEGER NOT NULL,"
    " PRIMARY KEY (user, camera_id, item))",
    "CREATE TABLE IF NOT EXISTS settings (key TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS virtual_presets (camera_id TEXT NOT NULL, number INTEGER NOT NULL,"
    " name TEXT NOT NULL, type INTEGER NOT NULL, pan REAL NOT NULL, tilt REAL NOT NULL, zoom REAL NOT NULL,"
    " PRIMARY KEY (camera_id, number))",
    "CREATE TABLE IF NOT EXISTS patrols (camera_id TEXT NOT NULL, number INTEGER NOT NULL, type INTEGER NOT NULL,"
    " name TEXT NOT NULL, points TEXT NOT NULL, PRIMARY KEY (camera_id, number))",
    "CREATE TABLE IF NOT EXISTS park_actions (camera_id TEXT PRIMARY KEY, enabled INTEGER NOT NULL,"
    " wait_seconds INTEGER NOT NULL, action_type INTEGER NOT NULL, target_id INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS recovery (camera_id TEXT PRIMARY KEY, enabled INTEGER NOT NULL,"
    " wait_seconds INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS locks (camera_id TEXT PRIMARY KEY, holder TEXT NOT NULL,"
    " holder_level INTEGER NOT NULL, expires_at INTEGER NOT NULL, holder_detail TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS device_state (camera_id TEXT NOT NULL, key TEXT NOT NULL, json TEXT NOT NULL,"
    " PRIMARY KEY (camera_id, key))",
};

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

// Process-wide current store.
QMutex g_currentMutex;
std::unique_ptr<CSiteStore> g_current;
std::atomic<quint64> g_generation{1};
std::atomic<int> g_connectionCounter{0};

// The SQL driver must not outlive the application object: drop the current
// store when the application ends rather than at static destruction.
void dropCurrentAtExit()
{
    std::unique_ptr<CSiteStore> old;
    QMutexLocker lock(&g_currentMutex);
    old = std::move(g_current);
    ++g_generation;
}

void registerExitCleanup()
{
    static bool registered = false;
    if (!registered && QCoreApplication::instance()) {
        registered = true;
        qAddPostRoutine(dropCurrentAtExit);
    }
}

} // namespace

// ---------------------------------------------------------------- lifetime

CSiteStore::CSiteStore(QObject *parent)
    : QObject(parent)
    , d(new Private)
{
    d->connection = QStringLiteral("site_store_%1").arg(++g_connectionCounter);
    qRegisterMetaType<site_store::CSiteStore::Table>("site_store::CSiteStore::Table");
}

CSiteStore::~CSiteStore()
{
    {
        QSqlDatabase db = d->db();
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(d->connection);
}

namespace {

// Runs one statement; on failure fills `error`.
bool run(QSqlQuery &q, const QString &sql, const QVariantList &binds, QString *error)
{
    if (!q.prepare(sql)) {
        if (error)
            *error = q.lastError().text();
        return false;
    }
    for (const QVariant &b : binds) {
        // A null QString would bind as SQL NULL; columns hold empty text instead.
        if (b.userType() == QMetaType::QString && b.toString().isNull())
            q.addBindValue(QString(QLatin1String("")));
        else
            q.addBindValue(b);
    }
    if (!q.exec()) {
        if (error)
            *error = q.lastError().text();
        return false;
    }
    return true;
}

// Opens the connection and prepares the schema; false with a reason when the
// file is unusable.
bool prepareDatabase(QSqlDatabase &db, bool inMemory, bool *isNew, QString *error)
{
    if (!db.open()) {
        *error = db.lastError().text();
        return false;
    }
    QSqlQuery q(db);
    // Any read of a file that is not a database fails here already.
    if (!run(q, QStringLiteral("PRAGMA quick_check"), {}, error))
        return false;
    if (!q.next() || q.value(0).toString() != QLatin1String("ok")) {
        *error = QCoreApplication::translate("site_store::CSiteStore", "integrity check failed: %1")
                     .arg(q.value(0).toString());
        return false;
    }
    q.finish();
    if (!inMemory) {
        if (!run(q, QStringLiteral("PRAGMA journal_mode=WAL"), {}, error))
            return false;
        q.next();
        if (q.value(0).toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) != 0) {
            *error = QCoreApplication::translate("site_store::CSiteStore", "the journal cannot be switched to WAL");
            return false;
        }
        q.finish();
        // With WAL, NORMAL keeps every committed transaction across a crash of
        // the process; only a power loss may lose the last ones.
        if (!run(q, QStringLiteral("PRAGMA synchronous=NORMAL"), {}, error)
            || !run(q, QStringLiteral("PRAGMA busy_timeout=5000"), {}, error))
            return false;
    }
    if (!db.transaction()) {
        *error = db.lastError().text();
        return false;
    }
    for (const char *statement : kSchema) {
        if (!run(q, QString::fromLatin1(statement), {}, error)) {
            db.rollback();
            return false;
        }
    }
    if (!run(q, QStringLiteral("SELECT value FROM meta WHERE key = 'schema_version'"), {}, error)) {
        db.rollback();
        return false;
    }
    if (q.next()) {
        const int version = q.value(0).toInt();
        if (version > kSchemaVersion) {
            q.finish();
            db.rollback();
            *error = QCoreApplication::translate("site_store::CSiteStore",
                                                 "the store was written by a newer version (schema %1)")
                         .arg(version);
            return false;
        }
    } else if (!run(q, QStringLiteral("INSERT INTO meta (key, value) VALUES ('schema_version', ?)"),
                    {QString::number(kSchemaVersion)}, error)) {
        db.rollback();
        return false;
    }
    // The demo site is written once, in the same transaction as its mark, so
    // an interrupted seeding is simply redone.
    if (!run(q, QStringLiteral("SELECT value FROM meta WHERE key = 'seeded'"), {}, error)) {
        db.rollback();
        return false;
    }
    *isNew = !q.next();
    q.finish();
    if (!db.commit()) {
        *error = db.lastError().text();
        return false;
    }
    return true;
}

} // namespace

std::unique_ptr<CSiteStore> CSiteStore::OpenInMemory()
{
    std::unique_ptr<CSiteStore> store(new CSiteStore);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), store->d->connection);
    db.setDatabaseName(QStringLiteral(":memory:"));
    bool isNew = true;
    QString error;
    if (!prepareDatabase(db, true, &isNew, &error)) {
        // Nothing sensible is left to fall back to; report and go on empty.
        store->d->openError = error;
        ZEPH_LOG_WARN("in-memory site store failed: %s", qUtf8Printable(error));
        return store;
    }
    store->seedDemoSite();
    return store;
}

std::unique_ptr<CSiteStore> CSiteStore::Open(const QString &path)
{
    QString error;
    if (path.isEmpty()) {
        error = tr("no file name was given");
    } else {
        const QFileInfo info(path);
        if (info.exists() && !info.isFile())
            error = tr("%1 is not a file").arg(QDir::toNativeSeparators(path));
        else if (!QDir().mkpath(info.absolutePath()))
            error = tr("the folder %1 cannot be created").arg(QDir::toNativeSeparators(info.absolutePath()));
    }

    if (error.isEmpty()) {
        std::unique_ptr<CSiteStore> store(new CSiteStore);
        store->d->path = path;
        bool isNew = false;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), store->d->connection);
            db.setDatabaseName(path);
            if (!prepareDatabase(db, false, &isNew, &error))
                db.close();
        }
        if (error.isEmpty()) {
            if (isNew && !store->seedDemoSite())
                ZEPH_LOG_WARN("seeding the site store %s failed: %s", qUtf8Printable(path),
                              qUtf8Printable(store->lastError()));
            ZEPH_LOG_INFO("site store %s opened%s", qUtf8Printable(path), isNew ? " (new, demo site)" : "");
            return store;
        }
    }

    std::unique_ptr<CSiteStore> fallback = OpenInMemory();
    fallback->d->fallback = true;
    fallback->d->openError =
        tr("The site store %1 cannot be used (%2). The client runs on a temporary demo site that is not saved.")
            .arg(QDir::toNativeSeparators(path), error);
    ZEPH_LOG_WARN("%s", qUtf8Printable(fallback->d->openError));
    return fallback;
}

QString CSiteStore::DefaultPath()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (dir.isEmpty())
        dir = QDir::homePath() + QStringLiteral("/.ptz-site");
    return dir + QStringLiteral("/site.sqlite");
}

QString CSiteStore::ResolvePath(const QStringList &arguments)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &a = arguments.at(i);
        if (a == QLatin1String("--site") && i + 1 < arguments.size())
            return arguments.at(i + 1);
        if (a.startsWith(QLatin1String("--site=")))
            return a.mid(7);
    }
    const QString env = qEnvironmentVariable(kPathEnvVar);
    if (!env.isEmpty())
        return env;
    return DefaultPath();
}

CSiteStore *CSiteStore::Current()
{
    QMutexLocker lock(&g_currentMutex);
    if (!g_current) {
        const QStringList args = QCoreApplication::instance() ? QCoreApplication::arguments() : QStringList();
        g_current = Open(ResolvePath(args));
        ++g_generation;
        registerExitCleanup();
    }
    return g_current.get();
}

void CSiteStore::InstallCurrent(std::unique_ptr<CSiteStore> store)
{
    std::unique_ptr<CSiteStore> old;
    {
        QMutexLocker lock(&g_currentMutex);
        old = std::move(g_current);
        g_current = std::move(store);
        ++g_generation;
        registerExitCleanup();
    }
}

quint64 CSiteStore::CurrentGeneration()
{
    return g_generation.load();
}

QString CSiteStore::path() const { return d->path; }
bool CSiteStore::isFallback() const { return d->fallback; }
QString CSiteStore::openError() const { return d->openError; }
QString CSiteStore::lastError() const { return d->lastError; }

// ---------------------------------------------------------------- helpers

namespace {

bool validCameraId(const QString &id) { return !id.trimmed().isEmpty(); }

} // namespace

// One write in its own transaction (or the surrounding batch's).
#define SITE_WRITE_BEGIN()                                                   \
    d->cache.clear();                                                        \
    QSqlDatabase db = d->db();                                               \
    if (!db.isOpen()) {                                                      \
        d->lastError = tr("The site store is not open.");                    \
        return false;                                                        \
    }                                                                        \
    const bool ownTransaction = d->batchDepth == 0;                          \
    if (ownTransaction && !db.transaction()) {                               \
        d->lastError = db.lastError().text();                                \
        return false;                                                        \
    }                                                                        \
    QSqlQuery q(db);                                                         \
    QString error

#define SITE_WRITE_FAIL()                                                    \
    do {                                                                     \
        q.finish();                                                          \
        d->cache.clear();                                                    \
        if (ownTransaction)                                                  \
            db.rollback();                                                   \
        d->lastError = error;                                                \
        return false;                                                        \
    } while (0)

#define SITE_WRITE_END(table, camera)                                        \
    do {                                                                     \
        q.finish();                                                          \
        d->cache.clear();                                                    \
        if (ownTransaction && !db.commit()) {                                \
            d->lastError = db.lastError().text();                            \
            db.rollback();                                                   \
            return false;                                                    \
        }                                                                    \
        d->lastError.clear();                                                \
        if (ownTransaction)                                                  \
            emit changed(table, camera);                                     \
        return true;                                                         \
    } while (0)

#define SITE_READ_BEGIN(fallbackValue)                                       \
    QSqlDatabase db = d->db();                                               \
    if (!db.isOpen())                                                        \
        return fallbackValue;                                                \
    QSqlQuery q(db);                                                         \
    q.setForwardOnly(true);                                                  \
    QString error

// ---------------------------------------------------------------- cameras

QList<CameraRecord> CSiteStore::cameras() const
{
    SITE_READ_BEGIN({});
    QList<CameraRecord> out;
    if (!run(q, QStringLiteral("SELECT id, name, driver_kind, driver_address, model, abilities, cascade, fisheye,"
                               " access_protocol FROM cameras ORDER BY name, id"), {}, &error)) {
        d->lastError = error;
        return out;
    }
    while (q.next())
        out << cameraFromQuery(q);
    return out;
}

std::optional<CameraRecord> CSiteStore::camera(const QString &id) const
{
    if (d->cacheable()) {
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
    SITE_READ_BEGIN(std::nullopt);
    if (!run(q, QStringLiteral("SELECT id, name, driver_kind, driver_address, model, abilities, cascade, fisheye,"
                               " access_protocol FROM cameras WHERE id = ?"), {id}, &error)) {
        d->lastError = error;
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    return cameraFromQuery(q);
}

bool CSiteStore::upsertCamera(const CameraRecord &c)
{
    if (!validCameraId(c.id)) {
        d->lastError = tr("A camera needs an identifier.");
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO cameras (id, name, driver_kind, driver_address, model,"
                               " abilities, cascade, fisheye, access_protocol) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
             {c.id, c.name, c.driverKind, c.driverAddress, c.model, abilitiesToText(c.abilities),
              int(c.cascade), int(c.fishEye), c.accessProtocol},
             &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Cameras, c.id);
}

bool CSiteStore::removeCamera(const QString &id)
{
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("DELETE FROM cameras WHERE id = ?"), {id}, &error))
        SITE_WRITE_FAIL();
    if (q.numRowsAffected() == 0) {
        error = tr("The camera %1 does not exist.").arg(id);
        SITE_WRITE_FAIL();
    }
    // The camera's own rows go with it; wildcard permissions stay.
    static const char *const kPerCamera[] = {"permissions", "virtual_presets", "patrols", "park_actions",
                                             "recovery", "locks", "device_state"};
    for (const char *table : kPerCamera) {
        if (!run(q, QStringLiteral("DELETE FROM %1 WHERE camera_id = ?").arg(QLatin1String(table)), {id}, &error))
            SITE_WRITE_FAIL();
    }
    SITE_WRITE_END(Table::Cameras, id);
}

// ---------------------------------------------------------------- users

QList<UserRecord> CSiteStore::users() const
{
    SITE_READ_BEGIN({});
    QList<UserRecord> out;
    if (!run(q, QStringLiteral("SELECT name, ptz_level FROM users ORDER BY name"), {}, &error)) {
        d->lastError = error;
        return out;
    }
    while (q.next())
        out << UserRecord{q.value(0).toString(), q.value(1).toInt()};
    return out;
}

std::optional<UserRecord> CSiteStore::user(const QString &name) const
{
    if (d->cacheable()) {
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
    SITE_READ_BEGIN(std::nullopt);
    if (!run(q, QStringLiteral("SELECT name, ptz_level FROM users WHERE name = ?"), {name}, &error)) {
        d->lastError = error;
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    return UserRecord{q.value(0).toString(), q.value(1).toInt()};
}

bool CSiteStore::upsertUser(const UserRecord &u)
{
    if (u.name.trimmed().isEmpty()) {
        d->lastError = tr("A user needs a name.");
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO users (name, ptz_level) VALUES (?, ?)"), {u.name, u.ptzLevel},
             &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Users, QString());
}

bool CSiteStore::removeUser(const QString &name)
{
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("DELETE FROM users WHERE name = ?"), {name}, &error))
        SITE_WRITE_FAIL();
    if (q.numRowsAffected() == 0) {
        error = tr("The user %1 does not exist.").arg(name);
        SITE_WRITE_FAIL();
    }
    if (!run(q, QStringLiteral("DELETE FROM permissions WHERE user = ?"), {name}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Users, QString());
}

QList<PermissionRecord> CSiteStore::permissions(const QString &user) const
{
    SITE_READ_BEGIN({});
    QList<PermissionRecord> out;
    if (!run(q, QStringLiteral("SELECT user, camera_id, item FROM permissions WHERE user = ? ORDER BY camera_id, item"),
             {user}, &error)) {
        d->lastError = error;
        return out;
    }
    while (q.next())
        out << PermissionRecord{q.value(0).toString(), q.value(1).toString(), q.value(2).toInt()};
    return out;
}

bool CSiteStore::grantPermission(const QString &user, const QString &cameraId, int item)
{
    if (user.isEmpty() || !validCameraId(cameraId)) {
        d->lastError = tr("A permission needs a user and a camera.");
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR IGNORE INTO permissions (user, camera_id, item) VALUES (?, ?, ?)"),
             {user, cameraId, item}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Permissions, cameraId == kAllCameras ? QString() : cameraId);
}

bool CSiteStore::revokePermission(const QString &user, const QString &cameraId, int item)
{
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("DELETE FROM permissions WHERE user = ? AND camera_id = ? AND item = ?"),
             {user, cameraId, item}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Permissions, cameraId == kAllCameras ? QString() : cameraId);
}

bool CSiteStore::hasPermission(const QString &user, const QString &cameraId, int item) const
{
    if (d->cacheable()) {
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
    SITE_READ_BEGIN(false);
    if (!run(q, QStringLiteral("SELECT 1 FROM permissions WHERE user = ? AND item = ? AND camera_id IN (?, ?)"),
             {user, item, cameraId, kAllCameras}, &error)) {
        d->lastError = error;
        return false;
    }
    return q.next();
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
    if (d->cacheable()) {
        auto hit = d->cache.settings.constFind(key);
        if (hit == d->cache.settings.constEnd())
            hit = d->cache.settings.insert(key, readSetting(key));
        return hit->value_or(defaultValue);
    }
    return readSetting(key).value_or(defaultValue);
}

std::optional<QString> CSiteStore::readSetting(const QString &key) const
{
    SITE_READ_BEGIN(std::nullopt);
    if (!run(q, QStringLiteral("SELECT value FROM settings WHERE key = ?"), {key}, &error)) {
        d->lastError = error;
        return std::nullopt;
    }
    return q.next() ? std::optional<QString>(q.value(0).toString()) : std::nullopt;
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
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)"), {key, value}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Settings, QString());
}

bool CSiteStore::setBoolSetting(const QString &key, bool value)
{
    return setSetting(key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

// ---------------------------------------------------------------- presets

QList<VirtualPresetRecord> CSiteStore::virtualPresets(const QString &cameraId) const
{
    SITE_READ_BEGIN({});
    QList<VirtualPresetRecord> out;
    if (!run(q, QStringLiteral("SELECT camera_id, number, name, type, pan, tilt, zoom FROM virtual_presets"
                               " WHERE camera_id = ? ORDER BY number"), {cameraId}, &error)) {
        d->lastError = error;
        return out;
    }
    while (q.next())
        out << presetFromQuery(q);
    return out;
}

std::optional<VirtualPresetRecord> CSiteStore::virtualPreset(const QString &cameraId, int number) const
{
    SITE_READ_BEGIN(std::nullopt);
    if (!run(q, QStringLiteral("SELECT camera_id, number, name, type, pan, tilt, zoom FROM virtual_presets"
                               " WHERE camera_id = ? AND number = ?"), {cameraId, number}, &error)) {
        d->lastError = error;
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    return presetFromQuery(q);
}

bool CSiteStore::upsertVirtualPreset(const VirtualPresetRecord &p)
{
    if (!validCameraId(p.cameraId)) {
        d->lastError = tr("A preset needs a camera.");
        return false;
    }
    if (p.number < 1 || p.number > 256) {
        d->lastError = tr("Preset number %1 is outside 1 to 256.").arg(p.number);
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO virtual_presets (camera_id, number, name, type, pan, tilt, zoom)"
                               " VALUES (?, ?, ?, ?, ?, ?, ?)"),
             {p.cameraId, p.number, p.name, p.type, p.pan, p.tilt, p.zoom}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::VirtualPresets, p.cameraId);
}

bool CSiteStore::removeVirtualPreset(const QString &cameraId, int number)
{
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("DELETE FROM virtual_presets WHERE camera_id = ? AND number = ?"), {cameraId, number},
             &error))
        SITE_WRITE_FAIL();
    if (q.numRowsAffected() == 0) {
        error = tr("Preset %1 does not exist.").arg(number);
        SITE_WRITE_FAIL();
    }
    SITE_WRITE_END(Table::VirtualPresets, cameraId);
}

// ---------------------------------------------------------------- patrols

QList<PatrolRecord> CSiteStore::patrols(const QString &cameraId) const
{
    SITE_READ_BEGIN({});
    QList<PatrolRecord> out;
    if (!run(q, QStringLiteral("SELECT camera_id, number, type, name, points FROM patrols WHERE camera_id = ?"
                               " ORDER BY number"), {cameraId}, &error)) {
        d->lastError = error;
        return out;
    }
    while (q.next())
        out << patrolFromQuery(q);
    return out;
}

std::optional<PatrolRecord> CSiteStore::patrol(const QString &cameraId, int number) const
{
    SITE_READ_BEGIN(std::nullopt);
    if (!run(q, QStringLiteral("SELECT camera_id, number, type, name, points FROM patrols"
                               " WHERE camera_id = ? AND number = ?"), {cameraId, number}, &error)) {
        d->lastError = error;
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    return patrolFromQuery(q);
}

bool CSiteStore::upsertPatrol(const PatrolRecord &p)
{
    if (!validCameraId(p.cameraId)) {
        d->lastError = tr("A patrol needs a camera.");
        return false;
    }
    if (p.number < 1 || p.number > 8) {
        d->lastError = tr("Patrol number %1 is outside 1 to 8.").arg(p.number);
        return false;
    }
    if (p.points.size() > 32) {
        d->lastError = tr("A patrol holds at most 32 points, not %1.").arg(p.points.size());
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO patrols (camera_id, number, type, name, points)"
                               " VALUES (?, ?, ?, ?, ?)"),
             {p.cameraId, p.number, p.type, p.name, pointsToJson(p.points)}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Patrols, p.cameraId);
}

bool CSiteStore::removePatrol(const QString &cameraId, int number)
{
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("DELETE FROM patrols WHERE camera_id = ? AND number = ?"), {cameraId, number}, &error))
        SITE_WRITE_FAIL();
    if (q.numRowsAffected() == 0) {
        error = tr("Patrol %1 does not exist.").arg(number);
        SITE_WRITE_FAIL();
    }
    SITE_WRITE_END(Table::Patrols, cameraId);
}

// ---------------------------------------------------------------- park action, recovery

ParkActionRecord CSiteStore::parkAction(const QString &cameraId) const
{
    ParkActionRecord r;
    r.cameraId = cameraId;
    SITE_READ_BEGIN(r);
    if (!run(q, QStringLiteral("SELECT enabled, wait_seconds, action_type, target_id FROM park_actions"
                               " WHERE camera_id = ?"), {cameraId}, &error)) {
        d->lastError = error;
        return r;
    }
    if (q.next()) {
        r.enabled = q.value(0).toInt() != 0;
        r.waitSeconds = q.value(1).toInt();
        r.actionType = q.value(2).toInt();
        r.targetId = q.value(3).toInt();
    }
    return r;
}

bool CSiteStore::setParkAction(const ParkActionRecord &r)
{
    if (!validCameraId(r.cameraId)) {
        d->lastError = tr("A park action needs a camera.");
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO park_actions (camera_id, enabled, wait_seconds, action_type,"
                               " target_id) VALUES (?, ?, ?, ?, ?)"),
             {r.cameraId, int(r.enabled), r.waitSeconds, r.actionType, r.targetId}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::ParkActions, r.cameraId);
}

RecoveryRecord CSiteStore::recovery(const QString &cameraId) const
{
    RecoveryRecord r;
    r.cameraId = cameraId;
    SITE_READ_BEGIN(r);
    if (!run(q, QStringLiteral("SELECT enabled, wait_seconds FROM recovery WHERE camera_id = ?"), {cameraId}, &error)) {
        d->lastError = error;
        return r;
    }
    if (q.next()) {
        r.enabled = q.value(0).toInt() != 0;
        r.waitSeconds = q.value(1).toInt();
    }
    return r;
}

bool CSiteStore::setRecovery(const RecoveryRecord &r)
{
    if (!validCameraId(r.cameraId)) {
        d->lastError = tr("A recovery setting needs a camera.");
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO recovery (camera_id, enabled, wait_seconds) VALUES (?, ?, ?)"),
             {r.cameraId, int(r.enabled), r.waitSeconds}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Recovery, r.cameraId);
}

// ---------------------------------------------------------------- locks

std::optional<LockRecord> CSiteStore::lock(const QString &cameraId, const QDateTime &now) const
{
    std::optional<LockRecord> row;
    if (d->cacheable()) {
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
    SITE_READ_BEGIN(std::nullopt);
    if (!run(q, QStringLiteral("SELECT holder, holder_level, expires_at, holder_detail FROM locks WHERE camera_id = ?"), {cameraId},
             &error)) {
        d->lastError = error;
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    LockRecord r;
    r.cameraId = cameraId;
    r.holder = q.value(0).toString();
    r.holderLevel = q.value(1).toInt();
    r.expiresAt = QDateTime::fromMSecsSinceEpoch(q.value(2).toLongLong(), Qt::UTC);
    r.holderDetail = q.value(3).toString();
    return r;
}

bool CSiteStore::setLock(const LockRecord &r)
{
    if (!validCameraId(r.cameraId) || r.holder.isEmpty() || !r.expiresAt.isValid()) {
        d->lastError = tr("A lock needs a camera, a holder and an expiry time.");
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO locks (camera_id, holder, holder_level, expires_at,"
                               " holder_detail) VALUES (?, ?, ?, ?, ?)"),
             {r.cameraId, r.holder, r.holderLevel, r.expiresAt.toMSecsSinceEpoch(), r.holderDetail}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Locks, r.cameraId);
}

bool CSiteStore::clearLock(const QString &cameraId)
{
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("DELETE FROM locks WHERE camera_id = ?"), {cameraId}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::Locks, cameraId);
}

// ---------------------------------------------------------------- device state

QByteArray CSiteStore::deviceState(const QString &cameraId, const QString &key) const
{
    SITE_READ_BEGIN({});
    if (!run(q, QStringLiteral("SELECT json FROM device_state WHERE camera_id = ? AND key = ?"), {cameraId, key},
             &error)) {
        d->lastError = error;
        return {};
    }
    return q.next() ? q.value(0).toString().toUtf8() : QByteArray();
}

QStringList CSiteStore::deviceStateKeys(const QString &cameraId) const
{
    SITE_READ_BEGIN({});
    QStringList out;
    if (!run(q, QStringLiteral("SELECT key FROM device_state WHERE camera_id = ? ORDER BY key"), {cameraId}, &error)) {
        d->lastError = error;
        return out;
    }
    while (q.next())
        out << q.value(0).toString();
    return out;
}

bool CSiteStore::setDeviceState(const QString &cameraId, const QString &key, const QByteArray &json)
{
    if (!validCameraId(cameraId) || key.isEmpty()) {
        d->lastError = tr("Device state needs a camera and a key.");
        return false;
    }
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("INSERT OR REPLACE INTO device_state (camera_id, key, json) VALUES (?, ?, ?)"),
             {cameraId, key, QString::fromUtf8(json)}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::DeviceState, cameraId);
}

bool CSiteStore::removeDeviceState(const QString &cameraId, const QString &key)
{
    SITE_WRITE_BEGIN();
    if (!run(q, QStringLiteral("DELETE FROM device_state WHERE camera_id = ? AND key = ?"), {cameraId, key}, &error))
        SITE_WRITE_FAIL();
    SITE_WRITE_END(Table::DeviceState, cameraId);
}

} // namespace site_store
