#pragma once

#include "zeph_plugin_manager/ccamera.h"
#include "zeph_plugin_manager/host_services_export.h"

#include "tarn/base/singleton.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace ptz_devices {
class CSimClock;
class IPtzDriver;
} // namespace ptz_devices

namespace ZephPluginManager {

// The site's cameras, read from the current site store, each with its device
// driver. Cameras are loaded on first use and again by Reload() (also after
// the store's camera table changed). Drivers are created with the driver
// factory and keep their durable state in the store.
class HOST_SERVICES_EXPORT CCameraManager : public QObject, public Tarn::Base::CSingleton<CCameraManager>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CCameraManager>;

public:
    // Empty pointer for an unknown id.
    std::shared_ptr<CCamera> GetCameraByID(const std::string &cameraId);
    std::shared_ptr<CCamera> GetCameraByID(const QString &cameraId);
    // In the store's order (by name).
    std::vector<std::shared_ptr<CCamera>> GetCameras();
    QStringList GetCameraIDs();

    // Clock handed to simulated drivers created from now on (null: their own
    // real-time clock). Tests set a manual clock before the first lookup.
    void SetSimClock(ptz_devices::CSimClock *clock);

    // Rebuilds the camera list from the store; drivers of cameras whose record
    // did not change are kept.
    void Reload();
    // Drops every camera and driver (before a store switch or at shutdown).
    void Clear();

Q_SIGNALS:
    void SignalCamerasChanged();

private:
    CCameraManager();
    ~CCameraManager() override;

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZephPluginManager
