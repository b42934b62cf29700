#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include "ptz_plugin_protocol/resourcedata.h"

#include <QString>

namespace zeph_ptz_controller {

// Ability and permission checks against the site's camera and user records.
class ZEPH_PTZ_CONTROLLER_EXPORT CCommonFunction
{
public:
    // False for an unknown camera.
    static bool CheckAbility(const QString &camera_index_code, ResourceData::CameraAbilityType ability);
    // The owner identifier names the user to check when it is a user of the
    // site; anything else (empty included) checks the current user.
    static bool IsCameraPermissionValid(const QString &owner_index_code, const QString &camera_index_code,
                                        ResourceData::ResourcePermissionItem item);
    // The user whose rights and lock apply to a request of this owner: the
    // owner when it names a site user, else the current user (empty text).
    static QString ResolveUser(const QString &owner_index_code);

private:
    CCommonFunction() = delete;
};

} // namespace zeph_ptz_controller
