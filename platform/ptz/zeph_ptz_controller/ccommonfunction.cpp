#include "zeph_ptz_controller/ccommonfunction.h"

#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

namespace zeph_ptz_controller {

bool CCommonFunction::CheckAbility(const QString &camera_index_code, ResourceData::CameraAbilityType ability)
{
    if (camera_index_code.isEmpty())
        return false;
    const auto camera =
        Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->GetCameraByID(camera_index_code);
    return camera && camera->HasAbility(int(ability));
}

bool CCommonFunction::IsCameraPermissionValid(const QString &owner_index_code, const QString &camera_index_code,
                                              ResourceData::ResourcePermissionItem item)
{
    Q_UNUSED(owner_index_code)
    if (camera_index_code.isEmpty())
        return false;
    return Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->IsCameraPermissionValid(
        std::string(), camera_index_code.toStdString(), int(item));
}

} // namespace zeph_ptz_controller
