#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include "ptz_devices/ptzdevicetypes.h"

#include <QList>
#include <QMetaObject>
#include <QString>
#include <QVector>

#include <memory>
#include <string>

namespace ptz_devices {
class IPtzDriver;
}

namespace zeph_ptz_controller {
namespace detail {
class CDriverGate;
}
} // namespace zeph_ptz_controller

namespace ZephPluginManager {

class CCameraManager;
class CDriverTestAccess;

// Opens a camera's driver. Only the PTZ controller library, which decides who
// may move a camera, holds one (and tests, to inspect the simulated camera):
// a host or module that wants a camera to move asks the controller library.
class CDriverKey
{
    friend class zeph_ptz_controller::detail::CDriverGate;
    friend class CDriverTestAccess;
    CDriverKey() = default;
};

// One camera of the site as the host knows it: the store's record and the
// device driver the camera manager opened for it. The driver belongs to the
// camera manager and lives as long as the camera stays in the site; it is
// handed only to the holder of a CDriverKey.
class HOST_SERVICES_EXPORT CCamera
{
public:
    struct Data
    {
        std::string id;
        QString name;
        QString driverKind;
        QString driverAddress;
        QString model;
        QList<int> abilities;
        bool cascade = false;
        bool fishEye = false;
        int accessProtocol = 0;
    };

    explicit CCamera(Data data, ptz_devices::IPtzDriver *driver = nullptr);
    ~CCamera();
    CCamera(const CCamera &) = delete;
    CCamera &operator=(const CCamera &) = delete;

    const std::string &GetID() const { return m_data.id; }
    QString GetName() const { return m_data.name; }
    bool IsCascade() const { return m_data.cascade; }
    bool IsFishEye() const { return m_data.fishEye; }
    // ResourceData::AccessProtocol value; 9 marks a camera whose PTZ
    // information cannot be refreshed.
    int GetAccessProtocol() const { return m_data.accessProtocol; }
    QString GetModel() const { return m_data.model; }
    QString GetDriverKind() const { return m_data.driverKind; }
    QList<int> GetAbilities() const { return m_data.abilities; }
    bool HasAbility(int code) const { return m_data.abilities.contains(code); }

    // Null when the driver could not be created (DriverError() says why).
    ptz_devices::IPtzDriver *GetDriver(const CDriverKey &) const { return m_driver; }
    bool HasDriver() const { return m_driver != nullptr; }
    QString DriverError() const { return m_driverError; }

    // The device's presets and patrols as its driver last reported them
    // (list, set, read and remove answers); empty until the first list.
    QVector<ptz_devices::DevicePreset> GetKnownDevicePresets() const { return m_devicePresets; }
    QVector<ptz_devices::DevicePatrol> GetKnownDevicePatrols() const { return m_devicePatrols; }
    bool HasKnownDevicePresets() const { return m_presetsKnown; }
    bool HasKnownDevicePatrols() const { return m_patrolsKnown; }

    const Data &data() const { return m_data; }

private:
    friend class CCameraManager;

    // Used by the camera manager. The camera owns the driver.
    void SetDriver(ptz_devices::IPtzDriver *driver, const QString &error = QString());
    // Hands the driver over without deleting it.
    ptz_devices::IPtzDriver *TakeDriver();
    // Feeds one driver answer into the known lists.
    void NoteReply(const ptz_devices::DriverReply &reply);

    Data m_data;
    ptz_devices::IPtzDriver *m_driver = nullptr;
    QMetaObject::Connection m_replyConnection;
    QString m_driverError;
    QVector<ptz_devices::DevicePreset> m_devicePresets;
    QVector<ptz_devices::DevicePatrol> m_devicePatrols;
    bool m_presetsKnown = false;
    bool m_patrolsKnown = false;
};

using CCameraPtr = std::shared_ptr<CCamera>;

} // namespace ZephPluginManager
