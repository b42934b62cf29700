#include "zeph_ptz_controller/ccommonfunction.h"

#include "site_store/csitestore.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

namespace zeph_ptz_controller {

bool CCommonFunction::CheckAbility(const QString &camera_index_code, ResourceData::CameraAbilityType ability)
{
    if (camera_index_code.isEmpty())
        return false;
    const auto camera = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->GetCameraByID(
        camera_index_code);
    return camera && camera->HasAbility(int(ability));
}

QString CCommonFunction::ResolveUser(const QString &owner_index_code)
{
    if (owner_index_code.isEmpty())
        return QString();
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    if (store && store->user(owner_index_code))
        return owner_index_code;
    return QString();
}

bool CCommonFunction::IsCameraPermissionValid(const QString &owner_index_code, const QString &camera_index_code,
                                              ResourceData::ResourcePermissionItem item)
{
    if (camera_index_code.isEmpty())
        return false;
    return Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->IsCameraPermissionValid(
        ResolveUser(owner_index_code).toStdString(), camera_index_code.toStdString(), int(item));
}

} // namespace zeph_ptz_controller
