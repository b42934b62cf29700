#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include "tarn/base/singleton.h"

namespace zeph_ptz_controller {

// Read-only PTZ switches of the installation, answered from the current site
// store's settings on every call (so a changed setting applies at once).
// Defaults when a setting is absent: lock, virtual PTZ, PTZ info refresh,
// preset tab, extra buttons and user level on; resume after interrupt off;
// 4 pattern (track) slots.
class ZEPH_PTZ_CONTROLLER_EXPORT CPTZConfigManager : public Tarn::Base::CSingleton<CPTZConfigManager>
{
    friend class Tarn::Base::CSingleton<CPTZConfigManager>;

public:
    bool IsSupportPTZLock() const;
    bool IsSupportVirtualPTZ() const;
    bool IsSupportUpdatePTZInfo() const;
    bool ResumeCruiseAfterInterrupt() const;
    bool ShowPreSetTabWidget() const;
    bool ShowExtraButton() const;
    bool ShowUserLevel() const;
    int GetTrackNum() const;

private:
    CPTZConfigManager() = default;
    ~CPTZConfigManager() = default;
};

} // namespace zeph_ptz_controller
