#pragma once

#include "ptz_plugin_protocol/cruisepath.h"
#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "ptz_plugin_protocol/ptzlimits.h"

#include "tarn/base/singleton.h"
#include "zeph_plugin_manager/devicepatrolpoints.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

namespace ptz_devices {
class IPtzDriver;
struct DevicePatrolPoint;
struct DevicePreset;
} // namespace ptz_devices

namespace ZephPluginManager {
class CCamera;
}

namespace zeph_ptz_controller {
namespace detail {

// The boundary's limits, under the names this library's sources use.
using ptz_plugin_protocol::kDefaultLockSeconds;
using ptz_plugin_protocol::kMaxCruiseIndex;
using ptz_plugin_protocol::kMaxCruisePoints;
using ptz_plugin_protocol::kMaxLockSeconds;
using ptz_plugin_protocol::kMaxPresetIndex;
using ptz_plugin_protocol::kMaxSpeed;
using ptz_plugin_protocol::kMinSpeed;
using ptz_plugin_protocol::kSoftwareMaxDwell;
using ptz_plugin_protocol::kSoftwareMinDwell;
using ptz_plugin_protocol::kVirtualMaxDwell;
using ptz_plugin_protocol::kVirtualMinDwell;

QString Tr(const char *text);

// The one door from the controller library to the host's drivers.
class CDriverGate
{
public:
    static ptz_devices::IPtzDriver *Driver(const ZephPluginManager::CCamera &camera);
};

// The camera's driver through the host's camera manager; null with a
// readable reason for an unknown camera or a camera without a driver.
// `unknown_camera` tells the two apart.
ptz_devices::IPtzDriver *DriverForCamera(const QString &camera_index_code, QString *error,
                                         bool *unknown_camera = nullptr);
bool CameraExists(const QString &camera_index_code);
// Whether the camera holds a preset of this number, by the lists its driver
// last reported (the universal controller renames such a preset on a set).
bool DeviceHasPreset(const QString &camera_index_code, int preset_index);
QString CameraName(const QString &camera_index_code);

ptz_plugin_protocol::PresetInfo ToPresetInfo(const ptz_devices::DevicePreset &preset);
using ZephPluginManager::ToCruisePoint;
using ZephPluginManager::ToDevicePoint;

// Patrol limits of a kind, narrowed to what the camera's driver reports for device patrols.
ptz_plugin_protocol::CruisePathLimits CruiseLimitsFor(int cruise_type, ptz_devices::IPtzDriver *driver);
// The points of a path against the limits of its kind; empty text when valid.
QString CheckCruisePoints(const std::vector<ptz_plugin_protocol::CruisePoint> &points, int cruise_type,
                          ptz_devices::IPtzDriver *driver);

// A name a request carries for preset `preset_index` of `preset_type`: the
// name rules, and no other preset of that type on the camera called the same.
// A readable reason, empty when the name may be kept.
QString PresetNameFault(const QString &camera_index_code, int preset_index, int preset_type,
                        const std::string &utf8_name);

// Data read from devices and the store, shared by every getter controller so
// that a static lookup (GetPresetByIndexSync) and the universal controller's
// preset changes reach every panel.
class CPTZDataCache : public QObject, public Tarn::Base::CSingleton<CPTZDataCache>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CPTZDataCache>;

public:
    QVector<ptz_plugin_protocol::PresetInfo> Presets(const QString &camera) const { return m_presets.value(camera); }
    bool HasPresets(const QString &camera) const { return m_presets.contains(camera); }
    void SetPresets(const QString &camera, const QVector<ptz_plugin_protocol::PresetInfo> &presets);
    // Replaces the preset of the same number and type, or adds it; keeps the list ordered.
    void UpsertPreset(const QString &camera, const ptz_plugin_protocol::PresetInfo &preset);
    void RemovePreset(const QString &camera, int preset_index, int preset_type);

    ptz_plugin_protocol::PTZLockStatusResponse LockStatus(const QString &camera) const { return m_locks.value(camera); }
    bool HasLockStatus(const QString &camera) const { return m_locks.contains(camera); }
    void SetLockStatus(const QString &camera, const ptz_plugin_protocol::PTZLockStatusResponse &status)
    {
        m_locks.insert(camera, status);
    }

    ptz_plugin_protocol::GetCruiseRouteResponse EditPatrol(const QString &camera) const
    {
        return m_edit_patrols.value(camera);
    }
    bool HasEditPatrol(const QString &camera) const { return m_edit_patrols.contains(camera); }
    void SetEditPatrol(const QString &camera, const ptz_plugin_protocol::GetCruiseRouteResponse &route)
    {
        m_edit_patrols.insert(camera, route);
    }

    void Clear();

Q_SIGNALS:
    // The preset list of a camera changed outside a getter's own query.
    void SignalPresetsChanged(QString camera_index_code);

private:
    CPTZDataCache() = default;
    ~CPTZDataCache() override = default;

    QHash<QString, QVector<ptz_plugin_protocol::PresetInfo>> m_presets;
    QHash<QString, ptz_plugin_protocol::PTZLockStatusResponse> m_locks;
    QHash<QString, ptz_plugin_protocol::GetCruiseRouteResponse> m_edit_patrols;
};

} // namespace detail
} // namespace zeph_ptz_controller
