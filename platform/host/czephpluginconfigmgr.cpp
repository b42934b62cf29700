#include "zeph_plugin_manager/czephpluginconfigmgr.h"

#include "site_store/csitestore.h"

namespace ZephPluginManager {

QString CZephPluginConfigMgr::GetProductType() const
{
    return site_store::CSiteStore::Current()->setting(site_store::CSiteStore::kProductType);
}

bool CZephPluginConfigMgr::GetSwitch(const QString &key, bool defaultValue) const
{
    return site_store::CSiteStore::Current()->boolSetting(key, defaultValue);
}

int CZephPluginConfigMgr::GetTrackNum() const
{
    return site_store::CSiteStore::Current()->intSetting(site_store::CSiteStore::kGetTrackNum, 0);
}

} // namespace ZephPluginManager
