// The store's file: opening checks, schema, and noticing a file that changed under the open store.
#include "csitestore_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QtEndian>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace site_store {

namespace {

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

QString tr(const char *text)
{
    return QCoreApplication::translate("site_store::CSiteStore", text);
}

// The first value of a one-row statement, or an invalid QVariant with `error` set.
QVariant scalar(QSqlQuery &q, const QString &sql, QString *error)
{
    if (!runStatement(q, sql, {}, error))
        return {};
    const QVariant value = q.next() ? q.value(0) : QVariant(QVariant::String);
    q.finish();
    return value;
}

// A file that is not a database fails the first read already; a damaged one fails the check.
bool checkIntegrity(QSqlQuery &q, QString *error)
{
    const QVariant result = scalar(q, QStringLiteral("PRAGMA quick_check"), error);
    if (!result.isValid())
        return false;
    if (result.toString() != QLatin1String("ok")) {
        *error = tr("integrity check failed: %1").arg(result.toString());
        return false;
    }
    return true;
}

// Tells our files (stamped, or from before the stamp: a meta table with a schema version) from
// other programs' databases, which are never written. `isEmpty` is true for a file without tables.
bool checkOwnership(QSqlQuery &q, bool *isEmpty, QString *error)
{
    const QVariant id = scalar(q, QStringLiteral("PRAGMA application_id"), error);
    const QVariant tables = scalar(q, QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table'"), error);
    if (!id.isValid() || !tables.isValid())
        return false;
    *isEmpty = tables.toInt() == 0;
    const qint32 applicationId = id.toInt();
    if (applicationId == kApplicationId || *isEmpty)
        return true;
    if (applicationId == 0) {
        const QVariant version = scalar(q,
                                        QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table'"
                                                       " AND name = 'meta'"),
                                        error);
        if (!version.isValid())
            return false;
        if (version.toInt() == 1) {
            const QVariant schema =
                scalar(q, QStringLiteral("SELECT value FROM meta WHERE key = 'schema_version'"), error);
            if (schema.isValid() && !schema.toString().isEmpty())
                return true;
        }
    }
    *error = tr("it is another program's database, not a site store");
    return false;
}

bool checkSchemaVersion(QSqlQuery &q, QString *error)
{
    const QVariant version = scalar(q, QStringLiteral("SELECT value FROM meta WHERE key = 'schema_version'"), error);
    if (!version.isValid())
        return false;
    if (version.toInt() > kSchemaVersion) {
        *error = tr("the store was written by a newer version (schema %1)").arg(version.toInt());
        return false;
    }
    return true;
}

bool switchToWal(QSqlQuery &q, QString *error)
{
    const QVariant mode = scalar(q, QStringLiteral("PRAGMA journal_mode=WAL"), error);
    if (!mode.isValid())
        return false;
    if (mode.toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) != 0) {
        *error = tr("the journal cannot be switched to WAL");
        return false;
    }
    // With WAL, NORMAL keeps every committed transaction across a crash of
    // the process; only a power loss may lose the last ones.
    return runStatement(q, QStringLiteral("PRAGMA synchronous=NORMAL"), {}, error)
           && runStatement(q, QStringLiteral("PRAGMA busy_timeout=5000"), {}, error);
}

// Creates what is missing and stamps the file; tells whether the demo site still has to be written.
bool createSchema(QSqlDatabase &db, QSqlQuery &q, bool *isNew, QString *error)
{
    if (!db.transaction()) {
        *error = db.lastError().text();
        return false;
    }
    bool ok = true;
    for (const char *statement : kSchema)
        ok = ok && runStatement(q, QString::fromLatin1(statement), {}, error);
    ok = ok && checkSchemaVersion(q, error)
         && runStatement(q, QStringLiteral("INSERT OR IGNORE INTO meta (key, value) VALUES ('schema_version', ?)"),
                         {QString::number(kSchemaVersion)}, error)
         && runStatement(q, QStringLiteral("PRAGMA application_id = %1").arg(kApplicationId), {}, error)
         && runStatement(q, QStringLiteral("PRAGMA user_version = %1").arg(kSchemaVersion), {}, error);
    // The demo site is written once, in the same transaction as its mark, so
    // an interrupted seeding is simply redone.
    QVariant seeded;
    if (ok) {
        seeded = scalar(q, QStringLiteral("SELECT value FROM meta WHERE key = 'seeded'"), error);
        ok = seeded.isValid();
    }
    if (!ok) {
        q.finish();
        db.rollback();
        return false;
    }
    *isNew = seeded.isNull() || seeded.toString().isEmpty();
    if (!db.commit()) {
        *error = db.lastError().text();
        return false;
    }
    return true;
}

} // namespace

bool runStatement(QSqlQuery &q, const QString &sql, const QVariantList &binds, QString *error)
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

bool prepareDatabase(QSqlDatabase &db, OpenMode mode, bool *isNew, QString *error)
{
    *isNew = false;
    if (!db.open()) {
        *error = db.lastError().text();
        return false;
    }
    QSqlQuery q(db);
    bool isEmpty = false;
    if (!checkIntegrity(q, error) || !checkOwnership(q, &isEmpty, error))
        return false;
    if (mode == OpenMode::ReadOnly) {
        if (isEmpty) {
            *error = tr("it is read-only and holds no site");
            return false;
        }
        return checkSchemaVersion(q, error);
    }
    if (mode == OpenMode::ReadWrite && !switchToWal(q, error))
        return false;
    if (!createSchema(db, q, isNew, error))
        return false;
    // Writes the stamped header back into the file itself, where a replaced file is recognised.
    if (mode == OpenMode::ReadWrite)
        runStatement(q, QStringLiteral("PRAGMA wal_checkpoint(PASSIVE)"), {}, nullptr);
    q.finish();
    return true;
}

FileIdentity FileIdentity::Of(const QString &path)
{
    FileIdentity id;
#ifdef Q_OS_UNIX
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) == 0) {
        id.exists = true;
        id.device = quint64(st.st_dev);
        id.inode = quint64(st.st_ino);
    }
#else
    id.exists = QFile::exists(path);
#endif
    return id;
}

bool fileHeaderIsStore(const QString &path, bool allowUnstamped)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray header = file.read(100);
    if (header.size() < 100 || !header.startsWith(QByteArrayLiteral("SQLite format 3\0")))
        return false;
    const qint32 id = qFromBigEndian<qint32>(header.constData() + 68);
    return id == kApplicationId || (allowUnstamped && id == 0);
}

bool CSiteStore::Private::useCache()
{
    if (batchDepth > 0)
        return false;
    if (path.isEmpty())
        return true; // an in-memory database has no other connection
    if (!dataVersionQuery) {
        dataVersionQuery.emplace(db());
        dataVersionQuery->setForwardOnly(true);
        dataVersionQuery->prepare(QStringLiteral("PRAGMA data_version"));
    }
    qint64 version = -1;
    if (dataVersionQuery->exec() && dataVersionQuery->next())
        version = dataVersionQuery->value(0).toLongLong();
    dataVersionQuery->finish();
    if (version < 0 || version != dataVersion)
        cache.clear();
    dataVersion = version;
    return true;
}

std::optional<QSqlQuery> CSiteStore::Private::select(const QString &sql, const QVariantList &binds)
{
    QSqlDatabase database = db();
    if (!database.isOpen())
        return std::nullopt;
    QSqlQuery q(database);
    q.setForwardOnly(true);
    QString error;
    if (!runStatement(q, sql, binds, &error)) {
        lastError = error;
        return std::nullopt;
    }
    return q;
}

QString CSiteStore::Private::fileProblem() const
{
    if (path.isEmpty())
        return {};
    const QString file = QDir::toNativeSeparators(path);
    const FileIdentity now = FileIdentity::Of(path);
    if (!now.exists)
        return tr("The site store %1 was removed while the client was running. Changes are no longer saved;"
                  " restart the client to open a site store again.")
            .arg(file);
    if (!(now == identity) || !fileHeaderIsStore(path, !headerStamped))
        return tr("The site store %1 was replaced or overwritten while the client was running. Changes are no"
                  " longer saved; restart the client to open a site store again.")
            .arg(file);
    return {};
}

} // namespace site_store
