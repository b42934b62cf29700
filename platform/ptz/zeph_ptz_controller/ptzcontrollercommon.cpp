#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_devices/iptzdriver.h"
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

CruisePoint ToCruisePoint(const ptz_devices::DevicePatrolPoint &point)
{
    CruisePoint p;
    p.preset_index = uint32_t(qMax(0, point.preset));
    p.speed = point.speed;
    p.dwell_time = point.dwellSeconds;
    p.preset_name = point.presetName.toStdString();
    return p;
}

ptz_devices::DevicePatrolPoint ToDevicePoint(const CruisePoint &point)
{
    ptz_devices::DevicePatrolPoint p;
    p.preset = int(point.preset_index);
    p.speed = point.speed;
    p.dwellSeconds = point.dwell_time;
    p.presetName = QString::fromStdString(point.preset_name);
    return p;
}

QString CheckCruisePoints(const std::vector<CruisePoint> &points, int cruise_type, ptz_devices::IPtzDriver *driver)
{
    int max_points = kMaxCruisePoints;
    int min_speed = kMinSpeed;
    int max_speed = kMaxSpeed;
    int min_dwell = 1;
    int max_dwell = kSoftwareMaxDwell;
    bool check_speed = true;
    switch (cruise_type) {
    case CRUISE_TYPE_SOFTWARE:
        min_dwell = kSoftwareMinDwell;
        max_dwell = kSoftwareMaxDwell;
        break;
    case CRUISE_TYPE_VIRTUAL:
        min_dwell = kVirtualMinDwell;
        max_dwell = kVirtualMaxDwell;
        check_speed = false; // points over virtual presets carry no speed
        break;
    default:
        if (driver) {
            const ptz_devices::DriverCapabilities caps = driver->capabilities();
            max_points = qMin(max_points, caps.pointsPerPatrol);
            min_speed = caps.minSpeed;
            max_speed = caps.maxSpeed;
            min_dwell = caps.minDwellSeconds;
            max_dwell = caps.maxDwellSeconds;
        }
        break;
    }
    if (int(points.size()) > max_points)
        return Tr("A patrol holds at most %1 points.").arg(max_points);
    for (size_t i = 0; i < points.size(); ++i) {
        const CruisePoint &p = points[i];
        if (p.preset_index < 1 || p.preset_index > uint32_t(kMaxPresetIndex))
            return Tr("Point %1 names preset %2; presets are numbered 1 to %3.")
                .arg(i + 1)
                .arg(p.preset_index)
                .arg(kMaxPresetIndex);
        if (check_speed && (p.speed < min_speed || p.speed > max_speed))
            return Tr("The speed %1 of point %2 is outside %3 to %4.")
                .arg(p.speed)
                .arg(i + 1)
                .arg(min_speed)
                .arg(max_speed);
        if (p.dwell_time < min_dwell || p.dwell_time > max_dwell)
            return Tr("The dwell time %1 s of point %2 is outside %3 to %4 s.")
                .arg(p.dwell_time)
                .arg(i + 1)
                .arg(min_dwell)
                .arg(max_dwell);
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
                                 return p.preset_index == preset_index &&
                                        (preset_type < 0 || p.preset_type == preset_type);
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
