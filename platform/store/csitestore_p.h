#pragma once

#include "site_store/csitestore.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariantList>

#include <optional>
#include <utility>

namespace site_store {

// Marks our files in the SQLite header ("PTZS"), so another program's database is never taken for a store.
constexpr qint32 kApplicationId = 0x50545A53;
constexpr int kSchemaVersion = 1;

// Which file a path names right now, so a file removed or replaced under an open store is noticed.
struct FileIdentity
{
    bool exists = false;
    quint64 device = 0;
    quint64 inode = 0;

    static FileIdentity Of(const QString &path);
    bool operator==(const FileIdentity &o) const
    {
        return exists == o.exists && device == o.device && inode == o.inode;
    }
};

// How a file is opened: created and written, or only read.
enum class OpenMode { Memory, ReadWrite, ReadOnly };

// Runs one statement; on failure fills `error`.
bool runStatement(QSqlQuery &q, const QString &sql, const QVariantList &binds, QString *error);
// Checks that the connection holds a usable store (ours, not newer, not damaged) and, unless read-only,
// creates the tables; `isNew` tells whether the demo site still has to be written.
bool prepareDatabase(QSqlDatabase &db, OpenMode mode, bool *isNew, QString *error);
// True when the first bytes of the file are a SQLite header carrying our application id;
// `allowUnstamped` also accepts an id of 0 (a header not yet written back from the journal).
bool fileHeaderIsStore(const QString &path, bool allowUnstamped);
inline bool validCameraId(const QString &id)
{
    return !id.trimmed().isEmpty();
}

struct CSiteStore::Private
{
    QString connection;
    QString path;
    bool fallback = false;
    QString openError;
    QString lastError;
    // Why writes are refused (a read-only file, or the file went away while open); empty while writable.
    QString refusal;
    // The file as opened; a write first checks that the path still names it.
    FileIdentity identity;
    bool headerStamped = false; // the file's own header carried our id when opened
    // Writes inside a batch share the batch's transaction; change signals are
    // collapsed into one Table::All at its end.
    int batchDepth = 0;

    // Rows read outside a batch, kept until the next write or until another connection commits:
    // a bound panel asks for the same camera, user, permission, switch and lock on every press, and
    // each SQL round trip costs tens of microseconds.
    struct ReadCache
    {
        QHash<QString, std::optional<CameraRecord>> cameras;
        QHash<QString, std::optional<UserRecord>> users;
        QHash<QString, bool> permissions;
        QHash<QString, std::optional<QString>> settings;
        QHash<QString, std::optional<LockRecord>> locks; // unexpired or not: expiry is checked on each read

        void clear()
        {
            cameras.clear();
            users.clear();
            permissions.clear();
            settings.clear();
            locks.clear();
        }
    };
    mutable ReadCache cache;
    // SQLite's count of commits by other connections when the cache was last checked.
    qint64 dataVersion = -1;
    std::optional<QSqlQuery> dataVersionQuery;

    QSqlDatabase db() const { return QSqlDatabase::database(connection, false); }
    // True when reads may be answered from the cache; drops it first when another
    // connection or process committed since the last look.
    bool useCache();
    // Runs a read; the query is positioned before its first row, or nullopt with lastError set.
    std::optional<QSqlQuery> select(const QString &sql, const QVariantList &binds = {});
    // Every row read by `read`, or the first one only; empty when the read fails.
    template <typename Read>
    auto selectAll(const QString &sql, const QVariantList &binds, Read read)
    {
        QList<decltype(read(std::declval<QSqlQuery &>()))> rows;
        auto q = select(sql, binds);
        while (q && q->next())
            rows << read(*q);
        return rows;
    }
    template <typename Read>
    auto selectOne(const QString &sql, const QVariantList &binds, Read read)
    {
        std::optional<decltype(read(std::declval<QSqlQuery &>()))> row;
        auto q = select(sql, binds);
        if (q && q->next())
            row = read(*q);
        return row;
    }
    // Empty while the path still names the file opened, with a store header; else what happened to it.
    QString fileProblem() const;
};

} // namespace site_store
