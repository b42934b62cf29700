#include "zeph_plugin_manager/ccamera.h"

#include "ptz_devices/iptzdriver.h"

#include <QCoreApplication>

#include <algorithm>

namespace ZephPluginManager {

CCamera::CCamera(Data data, ptz_devices::IPtzDriver *driver)
    : m_data(std::move(data))
{
    if (driver)
        SetDriver(driver);
}

CCamera::~CCamera()
{
    SetDriver(nullptr);
}

void CCamera::SetDriver(ptz_devices::IPtzDriver *driver, const QString &error)
{
    if (m_driver != driver) {
        QObject::disconnect(m_replyConnection);
        if (m_driver) {
            // The driver may be inside one of its own signals; let the event
            // loop delete it when there is one.
            if (QCoreApplication::instance())
                m_driver->deleteLater();
            else
                delete m_driver;
        }
        m_driver = driver;
        m_devicePresets.clear();
        m_devicePatrols.clear();
        m_presetsKnown = m_patrolsKnown = false;
        if (m_driver) {
            m_replyConnection = QObject::connect(m_driver, &ptz_devices::IPtzDriver::replied, m_driver,
                                                 [this](const ptz_devices::DriverReply &reply) { NoteReply(reply); });
        }
    }
    m_driverError = error;
}

ptz_devices::IPtzDriver *CCamera::TakeDriver()
{
    QObject::disconnect(m_replyConnection);
    ptz_devices::IPtzDriver *driver = m_driver;
    m_driver = nullptr;
    return driver;
}

void CCamera::NoteReply(const ptz_devices::DriverReply &reply)
{
    using ptz_devices::DriverOperation;
    if (!reply.ok)
        return;
    auto byPreset = [](const ptz_devices::DevicePreset &a, const ptz_devices::DevicePreset &b) {
        return a.number < b.number;
    };
    auto byPatrol = [](const ptz_devices::DevicePatrol &a, const ptz_devices::DevicePatrol &b) {
        return a.number < b.number;
    };
    auto removePreset = [this](int number) {
        m_devicePresets.erase(
            std::remove_if(m_devicePresets.begin(), m_devicePresets.end(),
                           [number](const ptz_devices::DevicePreset &p) { return p.number == number; }),
            m_devicePresets.end());
    };
    auto removePatrol = [this](int number) {
        m_devicePatrols.erase(
            std::remove_if(m_devicePatrols.begin(), m_devicePatrols.end(),
                           [number](const ptz_devices::DevicePatrol &p) { return p.number == number; }),
            m_devicePatrols.end());
    };

    switch (reply.operation) {
    case DriverOperation::ListPresets:
        m_devicePresets = reply.result.value<QVector<ptz_devices::DevicePreset>>();
        std::sort(m_devicePresets.begin(), m_devicePresets.end(), byPreset);
        m_presetsKnown = true;
        break;
    case DriverOperation::SetPreset:
    case DriverOperation::RenamePreset:
        if (reply.result.canConvert<ptz_devices::DevicePreset>()) {
            const auto preset = reply.result.value<ptz_devices::DevicePreset>();
            removePreset(preset.number);
            m_devicePresets.insert(std::lower_bound(m_devicePresets.begin(), m_devicePresets.end(), preset, byPreset),
                                   preset);
        }
        break;
    case DriverOperation::RemovePreset:
        removePreset(reply.number);
        break;
    case DriverOperation::ListPatrols:
        m_devicePatrols = reply.result.value<QVector<ptz_devices::DevicePatrol>>();
        std::sort(m_devicePatrols.begin(), m_devicePatrols.end(), byPatrol);
        m_patrolsKnown = true;
        break;
    case DriverOperation::ReadPatrol:
        if (reply.result.canConvert<ptz_devices::DevicePatrol>()) {
            const auto patrol = reply.result.value<ptz_devices::DevicePatrol>();
            if (patrol.number <= 0)
                break;
            removePatrol(patrol.number);
            if (!patrol.points.isEmpty())
                m_devicePatrols.insert(
                    std::lower_bound(m_devicePatrols.begin(), m_devicePatrols.end(), patrol, byPatrol), patrol);
        }
        break;
    case DriverOperation::RemovePatrol:
        removePatrol(reply.number);
        break;
    default:
        break;
    }
}

} // namespace ZephPluginManager
