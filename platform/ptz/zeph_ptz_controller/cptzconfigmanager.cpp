#include "zeph_ptz_controller/cptzconfigmanager.h"

#include "ptz_plugin_protocol/ptzlimits.h"
#include "site_store/csitestore.h"

namespace zeph_ptz_controller {

namespace {
bool Switch(const QString &key, bool default_value)
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    return store ? store->boolSetting(key, default_value) : default_value;
}
} // namespace

bool CPTZConfigManager::IsSupportPTZLock() const
{
    return Switch(site_store::CSiteStore::kIsSupportPTZLock, true);
}

bool CPTZConfigManager::IsSupportVirtualPTZ() const
{
    return Switch(site_store::CSiteStore::kIsSupportVirtualPTZ, true);
}

bool CPTZConfigManager::IsSupportUpdatePTZInfo() const
{
    return Switch(site_store::CSiteStore::kIsSupportUpdatePTZInfo, true);
}

bool CPTZConfigManager::ResumeCruiseAfterInterrupt() const
{
    return Switch(site_store::CSiteStore::kResumeCruiseAfterInterrupt, false);
}

bool CPTZConfigManager::ShowPreSetTabWidget() const
{
    return Switch(site_store::CSiteStore::kShowPreSetTabWidget, true);
}

bool CPTZConfigManager::ShowExtraButton() const
{
    return Switch(site_store::CSiteStore::kShowExtraButton, true);
}

bool CPTZConfigManager::ShowUserLevel() const
{
    return Switch(site_store::CSiteStore::kShowUserLevel, true);
}

int CPTZConfigManager::GetTrackNum() const
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    constexpr int fallback = ptz_plugin_protocol::kMaxPatternCount;
    const int num = store ? store->intSetting(site_store::CSiteStore::kGetTrackNum, fallback) : fallback;
    return num >= 0 ? num : fallback;
}

} // namespace zeph_ptz_controller
