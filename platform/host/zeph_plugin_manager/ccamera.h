#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include <QList>
#include <QString>

#include <memory>
#include <string>

namespace ptz_devices {
class IPtzDriver;
}

namespace ZephPluginManager {

// One camera of the site as the host knows it: the store's record and the
// device driver the camera manager opened for it. The driver belongs to the
// camera manager and lives as long as the camera stays in the site.
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
    ptz_devices::IPtzDriver *GetDriver() const { return m_driver; }
    QString DriverError() const { return m_driverError; }

    // Used by the camera manager.
    void SetDriver(ptz_devices::IPtzDriver *driver, const QString &error = QString());
    const Data &data() const { return m_data; }

private:
    Data m_data;
    ptz_devices::IPtzDriver *m_driver = nullptr;
    QString m_driverError;
};

using CCameraPtr = std::shared_ptr<CCamera>;

} // namespace ZephPluginManager
