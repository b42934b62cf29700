#pragma once

#include "site_store/csitestore.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariantList>

#include <functional>

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

    QSqlDatabase db() const { return QSqlDatabase::database(connection, false); }
};

} // namespace site_store
