#pragma once

#include "csitestore_p.h"

#include <QSqlDatabase>
#include <QSqlQuery>

namespace site_store {

// One write to the store. The outermost guard owns the SQL transaction: it refuses to start when the
// store is read-only or its file went away, commits only through commit(), rolls back whatever was
// not committed when it goes out of scope, and reports success only after checking that the commit
// reached the store's own file. Guards made while another is alive join its transaction (a batch).
class CSiteTransaction
{
public:
    CSiteTransaction(CSiteStore *store, CSiteStore::Private &d);
    ~CSiteTransaction();
    CSiteTransaction(const CSiteTransaction &) = delete;
    CSiteTransaction &operator=(const CSiteTransaction &) = delete;

    // False when the write cannot start; the reason is in lastError().
    bool isOpen() const { return m_open; }
    // Runs one statement of the write; false with the reason in lastError() on failure.
    bool exec(const QString &sql, const QVariantList &binds = {});
    int rowsAffected() const { return m_query.numRowsAffected(); }
    // Ends the write as failed with `error`; always false.
    bool fail(const QString &error);
    // Commits (the outermost guard) and announces the change; false when the data did not reach the file.
    bool commit(CSiteStore::Table table, const QString &cameraId);

private:
    void leave();
    void refuseFurtherWrites(const QString &problem);

    CSiteStore *m_store;
    CSiteStore::Private &m_d;
    QSqlDatabase m_db;
    QSqlQuery m_query;
    bool m_open = false;
    bool m_own = false;
    bool m_inside = false; // counted in the store's batch depth
};

} // namespace site_store
