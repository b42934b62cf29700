#include "csitetransaction.h"

#include "tarn/base/logging.h"

#include <QSqlError>

namespace site_store {

CSiteTransaction::CSiteTransaction(CSiteStore *store, CSiteStore::Private &d)
    : m_store(store)
    , m_d(d)
    , m_db(d.db())
{
    m_d.cache.clear();
    if (!m_d.refusal.isEmpty()) {
        m_d.lastError = m_d.refusal;
        return;
    }
    if (!m_db.isOpen()) {
        m_d.lastError = CSiteStore::tr("The site store is not open.");
        return;
    }
    m_own = m_d.batchDepth == 0;
    if (m_own) {
        const QString problem = m_d.fileProblem();
        if (!problem.isEmpty()) {
            refuseFurtherWrites(problem);
            return;
        }
        if (!m_db.transaction()) {
            m_d.lastError = m_db.lastError().text();
            return;
        }
    }
    m_query = QSqlQuery(m_db);
    ++m_d.batchDepth;
    m_inside = true;
    m_open = true;
}

CSiteTransaction::~CSiteTransaction()
{
    if (m_open && m_own)
        m_db.rollback();
    leave();
}

void CSiteTransaction::leave()
{
    m_query.finish();
    m_d.cache.clear();
    if (m_inside) {
        --m_d.batchDepth;
        m_inside = false;
    }
    m_open = false;
}

bool CSiteTransaction::exec(const QString &sql, const QVariantList &binds)
{
    if (!m_open)
        return false;
    QString error;
    if (runStatement(m_query, sql, binds, &error))
        return true;
    return fail(error);
}

bool CSiteTransaction::fail(const QString &error)
{
    if (m_open && m_own)
        m_db.rollback();
    leave();
    m_d.lastError = error;
    return false;
}

bool CSiteTransaction::commit(CSiteStore::Table table, const QString &cameraId)
{
    if (!m_open)
        return false;
    if (!m_own) {
        leave();
        m_d.lastError.clear();
        return true;
    }
    m_query.finish();
    if (!m_db.commit())
        return fail(m_db.lastError().text());
    leave();
    // A file removed or overwritten during the write took the data with it.
    const QString problem = m_d.fileProblem();
    if (!problem.isEmpty()) {
        refuseFurtherWrites(problem);
        return false;
    }
    m_d.lastError.clear();
    emit m_store->changed(table, cameraId);
    return true;
}

void CSiteTransaction::refuseFurtherWrites(const QString &problem)
{
    const bool first = m_d.refusal.isEmpty();
    m_d.refusal = problem;
    m_d.lastError = problem;
    if (first) {
        ZEPH_LOG_WARN("%s", qUtf8Printable(problem));
        emit m_store->fileLost(problem);
    }
}

} // namespace site_store
