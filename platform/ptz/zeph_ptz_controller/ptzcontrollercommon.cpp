#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_devices/iptzdriver.h"
#include "ptz_plugin_protocol/presetname.h"
#include "site_store/csitestore.h"
#include "zeph_plugin_manager/ccameramanager.h"

#include <QCoreApplication>

#include <algorithm>

namespace zeph_ptz_controller {
namespace detail {

using namespace ptz_plugin_protocol;

QString Tr(const char *text)
{
    return QCoreApplication::translate("zeph_ptz_controller", text);
}

static ZephPluginManager::CCameraManager *CameraManager()
{
    return Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance();
}

ptz_devices::IPtzDriver *CDriverGate::Driver(const ZephPluginManager::CCamera &camera)
{
    return camera.GetDriver(ZephPluginManager::CDriverKey());
}

ptz_devices::IPtzDriver *DriverForCamera(const QString &camera_index_code, QString *error, bool *unknown_camera)
{
    if (unknown_camera)
        *unknown_camera = false;
    const auto camera = camera_index_code.isEmpty() ? nullptr : CameraManager()->GetCameraByID(camera_index_code);
    if (!camera) {
        if (unknown_camera)
            *unknown_camera = true;
        if (error) {
            *error = camera_index_code.isEmpty() ? Tr("No camera is selected.")
                                                 : Tr("The camera %1 is unknown.").arg(camera_index_code);
        }
        return nullptr;
    }
    ptz_devices::IPtzDriver *driver = CDriverGate::Driver(*camera);
    if (!driver && error) {
        *error = Tr("The camera %1 cannot be reached: %2")
                     .arg(camera->GetName(),
                          camera->DriverError().isEmpty() ? Tr("no device driver") : camera->DriverError());
    }
    return driver;
}

bool CameraExists(const QString &camera_index_code)
{
    return !camera_index_code.isEmpty() && CameraManager()->GetCameraByID(camera_index_code) != nullptr;
}

bool DeviceHasPreset(const QString &camera_index_code, int preset_index)
{
    const auto camera = camera_index_code.isEmpty() ? nullptr : CameraManager()->GetCameraByID(camera_index_code);
    if (!camera)
        return false;
    const auto known = camera->GetKnownDevicePresets();
    if (std::any_of(known.begin(), known.end(),
                    [preset_index](const ptz_devices::DevicePreset &p) { return p.number == preset_index; }))
        return true;
    const auto cached = CPTZDataCache::Instance()->Presets(camera_index_code);
    return std::any_of(cached.begin(), cached.end(), [preset_index](const PresetInfo &p) {
        return p.preset_index == preset_index && p.preset_type == PRESET_TYPE_DEVICE;
    });
}

QString CameraName(const QString &camera_index_code)
{
    const auto camera = camera_index_code.isEmpty() ? nullptr : CameraManager()->GetCameraByID(camera_index_code);
    return camera ? camera->GetName() : QString();
}

PresetInfo ToPresetInfo(const ptz_devices::DevicePreset &preset)
{
    PresetInfo info;
    info.preset_index = preset.number;
    info.preset_type = PRESET_TYPE_DEVICE;
    info.preset_name = preset.name.toStdString();
    info.pan = preset.pan;
    info.tilt = preset.tilt;
    info.zoom = preset.zoom;
    return info;
}

CruisePathLimits CruiseLimitsFor(int cruise_type, ptz_devices::IPtzDriver *driver)
{
    CruisePathLimits limits = DefaultCruisePathLimits(cruise_type);
    if (cruise_type == CRUISE_TYPE_SOFTWARE || cruise_type == CRUISE_TYPE_VIRTUAL || !driver)
        return limits;
    const ptz_devices::DriverCapabilities caps = driver->capabilities();
    limits.max_points = qMin(limits.max_points, caps.pointsPerPatrol);
    limits.min_speed = caps.minSpeed;
    limits.max_speed = caps.maxSpeed;
    limits.min_dwell = caps.minDwellSeconds;
    limits.max_dwell = caps.maxDwellSeconds;
    return limits;
}

QString CheckCruisePoints(const std::vector<CruisePoint> &points, int cruise_type, ptz_devices::IPtzDriver *driver)
{
    return ptz_plugin_protocol::CheckCruisePoints(points, CruiseLimitsFor(cruise_type, driver));
}

QString PresetNameFault(const QString &camera_index_code, int preset_index, int preset_type,
                        const std::string &utf8_name)
{
    const QString fault = CheckPresetName(utf8_name);
    if (!fault.isEmpty())
        return fault;
    const QString name = QString::fromStdString(utf8_name);
    auto taken = [&](int number, int type, const QString &other) {
        return number != preset_index && type == preset_type && other == name;
    };
    if (preset_type == PRESET_TYPE_DEVICE) {
        for (const PresetInfo &p : CPTZDataCache::Instance()->Presets(camera_index_code)) {
            if (taken(p.preset_index, p.preset_type, QString::fromStdString(p.preset_name)))
                return DuplicatePresetNameError(name);
        }
        if (const auto camera = CameraManager()->GetCameraByID(camera_index_code)) {
            for (const ptz_devices::DevicePreset &p : camera->GetKnownDevicePresets()) {
                if (taken(p.number, PRESET_TYPE_DEVICE, p.name))
                    return DuplicatePresetNameError(name);
            }
        }
    } else if (site_store::CSiteStore *store = site_store::CSiteStore::Current()) {
        for (const site_store::VirtualPresetRecord &r : store->virtualPresets(camera_index_code)) {
            if (taken(r.number, r.type, r.name))
                return DuplicatePresetNameError(name);
        }
    }
    return QString();
}

void CPTZDataCache::SetPresets(const QString &camera, const QVector<PresetInfo> &presets)
{
    m_presets.insert(camera, presets);
}

void CPTZDataCache::UpsertPreset(const QString &camera, const PresetInfo &preset)
{
    QVector<PresetInfo> &list = m_presets[camera];
    auto same = [&preset](const PresetInfo &p) {
        return p.preset_index == preset.preset_index && p.preset_type == preset.preset_type;
    };
    auto it = std::find_if(list.begin(), list.end(), same);
    if (it != list.end()) {
        *it = preset;
    } else {
        list.append(preset);
        std::stable_sort(list.begin(), list.end(), [](const PresetInfo &a, const PresetInfo &b) {
            if (a.preset_type != b.preset_type)
                return a.preset_type < b.preset_type;
            return a.preset_index < b.preset_index;
        });
    }
    emit SignalPresetsChanged(camera);
}

void CPTZDataCache::RemovePreset(const QString &camera, int preset_index, int preset_type)
{
    auto it = m_presets.find(camera);
    if (it == m_presets.end())
        return;
    const int before = it->size();
    it->erase(std::remove_if(it->begin(), it->end(),
                             [&](const PresetInfo &p) {
                                 return p.preset_index == preset_index
                                        && (preset_type < 0 || p.preset_type == preset_type);
                             }),
              it->end());
    if (it->size() != before)
        emit SignalPresetsChanged(camera);
}

void CPTZDataCache::Clear()
{
    m_presets.clear();
    m_locks.clear();
    m_edit_patrols.clear();
}

} // namespace detail
} // namespace zeph_ptz_controller
