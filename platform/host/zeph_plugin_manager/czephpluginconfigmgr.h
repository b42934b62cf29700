#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include "tarn/base/singleton.h"

#include <QString>

namespace ZephPluginManager {

// Client configuration of the host, read from the site store's settings.
class HOST_SERVICES_EXPORT CZephPluginConfigMgr : public Tarn::Base::CSingleton<CZephPluginConfigMgr>
{
    friend class Tarn::Base::CSingleton<CZephPluginConfigMgr>;

public:
    // Product type of the installation (setting "ProductType"); empty when unset.
    QString GetProductType() const;

    // A PTZ switch by key (IsSupportPTZLock, IsSupportVirtualPTZ,
    // IsSupportUpdatePTZInfo, ResumeCruiseAfterInterrupt, ShowPreSetTabWidget,
    // ShowExtraButton, ShowUserLevel).
    bool GetSwitch(const QString &key, bool defaultValue = false) const;
    // Number of tracking targets (setting "GetTrackNum").
    int GetTrackNum() const;

private:
    CZephPluginConfigMgr() = default;
    ~CZephPluginConfigMgr() = default;
};

} // namespace ZephPluginManager
