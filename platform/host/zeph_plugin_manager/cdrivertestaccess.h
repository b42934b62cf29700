#pragma once

#include "zeph_plugin_manager/ccameramanager.h"

#include <QString>

namespace ZephPluginManager {

// Tests only: the driver of a camera of the site, so that a test can inspect
// the simulated camera (its position, request log, faults). Applications move
// cameras through the PTZ controller library, which checks who may.
class CDriverTestAccess
{
public:
    static ptz_devices::IPtzDriver *GetDriver(const QString &cameraId)
    {
        const auto camera = CCameraManager::Instance()->GetCameraByID(cameraId);
        return camera ? camera->GetDriver(CDriverKey()) : nullptr;
    }
};

} // namespace ZephPluginManager
