#include "zeph_plugin_manager/chostsession.h"

#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/ccurrentuser.h"

#include "site_store/csitestore.h"

namespace ZephPluginManager {

CHostSession::Result CHostSession::Start(const QStringList &arguments)
{
    using site_store::CSiteStore;
    Result result;
    CCameraManager::Instance()->Clear();
    CSiteStore::InstallCurrent(CSiteStore::Open(CSiteStore::ResolvePath(arguments)));
    CSiteStore *store = CSiteStore::Current();
    result.storeFallback = store->isFallback();
    result.storePath = store->path();
    if (store->isFallback() || store->isReadOnly())
        result.messages << store->openError();

    QString user;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &a = arguments.at(i);
        if (a == QLatin1String("--user") && i + 1 < arguments.size())
            user = arguments.at(i + 1);
        else if (a.startsWith(QLatin1String("--user=")))
            user = a.mid(7);
    }
    if (!user.isEmpty() && !CCurrentUser::Instance()->SetUser(user))
        result.messages << CCurrentUser::Instance()->LastError();
    return result;
}

void CHostSession::Stop()
{
    CCameraManager::Instance()->Clear();
    site_store::CSiteStore::InstallCurrent(nullptr);
}

} // namespace ZephPluginManager
