#pragma once

#include "site_store/csitestore.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariantList>

#include <functional>
#include <optional>

namespace site_store {

struct CSiteStore::Private
{
    QString connection;
    QString path;
    bool fallback = false;
    QString openError;
    QString lastError;
    // Writes inside a batch share the batch's transaction; change signals are
    // collapsed into one Table::All at its end.
    int batchDepth = 0;

    // Rows read outside a batch, kept until the next write: a bound panel asks for the same camera,
    // user, permission, switch and lock on every press, and each SQL round trip costs tens of microseconds.
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
    bool cacheable() const { return batchDepth == 0; }

    QSqlDatabase db() const { return QSqlDatabase::database(connection, false); }
};

} // namespace site_store
