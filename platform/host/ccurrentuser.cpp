#include "zeph_plugin_manager/ccurrentuser.h"

#include "site_store/csitestore.h"

#include "tarn/base/logging.h"

namespace ZephPluginManager {

QString CCurrentUser::GetUserName() const
{
    return site_store::CSiteStore::Current()->currentUserName();
}

std::string CCurrentUser::GetUserID() const
{
    return GetUserName().toStdString();
}

int CCurrentUser::GetPTZLevel() const
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    const auto user = store->user(store->currentUserName());
    return user ? user->ptzLevel : -1;
}

bool CCurrentUser::SetUser(const QString &name)
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    if (!store->setCurrentUser(name)) {
        m_lastError = store->lastError();
        ZEPH_LOG_WARN("user %s not selected: %s", qUtf8Printable(name), qUtf8Printable(m_lastError));
        return false;
    }
    m_lastError.clear();
    ZEPH_LOG_INFO("current user is %s", qUtf8Printable(name));
    emit SignalUserChanged(name);
    return true;
}

QString CCurrentUser::LastError() const
{
    return m_lastError;
}

} // namespace ZephPluginManager
