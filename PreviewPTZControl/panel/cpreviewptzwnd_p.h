#pragma once

// Shared by the sources of CPreviewPTZWnd only.

#include "tarn/base/singleton.h"

#include "zeph_plugin_manager/czephpluginconfigmgr.h"

#include "ptz_plugin_protocol/resourcedata.h"
#include "zeph_ptz_controller/ccommonfunction.h"
#include "zeph_ptz_controller/cptzconfigmanager.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include <QString>
#include <QStringList>
#include <QStyle>
#include <QWidget>

namespace PreviewPTZControl {
namespace PanelPrivate {

inline zeph_ptz_controller::CPTZStateStorageManager *StateStorage()
{
    return Tarn::Base::CSingleton<zeph_ptz_controller::CPTZStateStorageManager>::Instance();
}

inline zeph_ptz_controller::CPTZConfigManager *Config()
{
    return Tarn::Base::CSingleton<zeph_ptz_controller::CPTZConfigManager>::Instance();
}

inline bool CheckAbility(const QString &camera_index_code, ResourceData::CameraAbilityType ability)
{
    return zeph_ptz_controller::CCommonFunction::CheckAbility(camera_index_code, ability);
}

// Installations with a reduced panel: no add row on the preset tab unless the configuration
// asks for it, and no device/virtual choice in the patrol editor.
inline bool IsCompactProduct()
{
    static const QStringList products{QStringLiteral("ZephViewLite"), QStringLiteral("ZephViewKiosk")};
    return products.contains(
        Tarn::Base::CSingleton<ZephPluginManager::CZephPluginConfigMgr>::Instance()->GetProductType());
}

// Re-applies the style sheet rules after an object-name change.
inline void Repolish(QWidget *widget)
{
    if (!widget)
        return;
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
    widget->update();
}

} // namespace PanelPrivate
} // namespace PreviewPTZControl
