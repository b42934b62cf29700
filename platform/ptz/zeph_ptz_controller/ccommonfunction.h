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
    // Always the host's signed-in user: the owner identifier is a tag the
    // caller gets echoed back, never an identity, and is not consulted.
    static bool IsCameraPermissionValid(const QString &owner_index_code, const QString &camera_index_code,
                                        ResourceData::ResourcePermissionItem item);

private:
    CCommonFunction() = delete;
};

} // namespace zeph_ptz_controller
