// Synchronous preset reads and the client's own presets of CPTZGetController.
#include "zeph_ptz_controller/cptzgetcontroller.h"

#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_devices/iptzdriver.h"
#include "ptz_plugin_protocol/presetname.h"
#include "site_store/csitestore.h"

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Tr;
using ptz_devices::IPtzDriver;

namespace {
site_store::CSiteStore *Store()
{
    return site_store::CSiteStore::Current();
}
} // namespace

bool CPTZGetController::GetAllPresets(const QString &camera_index_code, QVector<PresetInfo> &presets)
{
    auto *cache = detail::CPTZDataCache::Instance();
    presets = cache->Presets(camera_index_code);
    return cache->HasPresets(camera_index_code);
}

bool CPTZGetController::GetPresetByIndexSync(const QString &camera_index_code, PresetInfo &preset, int preset_index)
{
    const QVector<PresetInfo> list = detail::CPTZDataCache::Instance()->Presets(camera_index_code);
    const bool typed = preset.preset_type == PRESET_TYPE_DEVICE || preset.preset_type == PRESET_TYPE_FISHEYE
                       || preset.preset_type == PRESET_TYPE_VIRTUAL;
    const PresetInfo *first = nullptr;
    for (const PresetInfo &p : list) {
        if (p.preset_index != preset_index)
            continue;
        if (typed && p.preset_type == preset.preset_type) {
            preset = p;
            return true;
        }
        if (!first)
            first = &p;
    }
    if (!first)
        return false;
    preset = *first;
    return true;
}

bool CPTZGetController::AddOnePreset(const QString &camera_index_code, const PresetInfo &preset)
{
    QString error;
    return AddOnePreset(camera_index_code, preset, error);
}

namespace {
bool SaveClientPreset(const QString &camera_index_code, const PresetInfo &preset, bool take_camera_position,
                      QString &error_text)
{
    if (!detail::CameraExists(camera_index_code)) {
        error_text = Tr("The camera %1 is unknown.").arg(camera_index_code);
        return false;
    }
    if (preset.preset_index < 1 || preset.preset_index > detail::kMaxPresetIndex) {
        error_text =
            Tr("The preset number %1 is outside 1 to %2.").arg(preset.preset_index).arg(detail::kMaxPresetIndex);
        return false;
    }
    if (preset.preset_type != PRESET_TYPE_FISHEYE && preset.preset_type != PRESET_TYPE_VIRTUAL) {
        error_text = Tr("Only fish-eye and virtual presets are kept by the client.");
        return false;
    }
    if (!preset.preset_name.empty()) {
        error_text =
            detail::PresetNameFault(camera_index_code, preset.preset_index, preset.preset_type, preset.preset_name);
        if (!error_text.isEmpty())
            return false;
    }
    site_store::VirtualPresetRecord record;
    record.cameraId = camera_index_code;
    record.number = preset.preset_index;
    record.name = QString::fromStdString(preset.preset_name);
    if (record.name.isEmpty())
        record.name = Tr("Preset%1").arg(preset.preset_index);
    record.type = preset.preset_type;
    record.pan = preset.pan;
    record.tilt = preset.tilt;
    record.zoom = preset.zoom;
    const bool no_position = preset.pan == 0.0 && preset.tilt == 0.0 && preset.zoom == 1.0;
    if (take_camera_position && no_position) {
        if (IPtzDriver *driver = detail::DriverForCamera(camera_index_code, nullptr)) {
            const ptz_devices::DeviceStatus status = driver->status();
            record.pan = status.pan;
            record.tilt = status.tilt;
            record.zoom = status.zoom;
        }
    }
    site_store::CSiteStore *store = Store();
    if (!store || !store->upsertVirtualPreset(record)) {
        error_text = store ? store->lastError() : Tr("The site store is not available.");
        return false;
    }
    auto *cache = detail::CPTZDataCache::Instance();
    PresetInfo stored = preset;
    stored.preset_name = record.name.toStdString();
    stored.pan = record.pan;
    stored.tilt = record.tilt;
    stored.zoom = record.zoom;
    if (cache->HasPresets(camera_index_code))
        cache->UpsertPreset(camera_index_code, stored);
    else
        emit cache->SignalPresetsChanged(camera_index_code);
    return true;
}

} // namespace

bool CPTZGetController::AddOnePreset(const QString &camera_index_code, const PresetInfo &preset, QString &error_text)
{
    return SaveClientPreset(camera_index_code, preset, true, error_text);
}

bool CPTZGetController::ModifyPresetName(const QString &camera_index_code, int preset_index, const QString &name,
                                         QString &error_text)
{
    site_store::CSiteStore *store = Store();
    const auto record = store ? store->virtualPreset(camera_index_code, preset_index) : std::nullopt;
    if (!record) {
        error_text = Tr("The camera has no client preset %1.").arg(preset_index);
        return false;
    }
    // A lone surrogate would be replaced on the way to UTF-8; refuse it while it is still visible.
    error_text = CheckPresetName(name);
    if (!error_text.isEmpty())
        return false;
    PresetInfo info;
    info.preset_index = record->number;
    info.preset_type = record->type;
    info.preset_name = name.toStdString();
    info.pan = record->pan;
    info.tilt = record->tilt;
    info.zoom = record->zoom;
    return SaveClientPreset(camera_index_code, info, false, error_text);
}

bool CPTZGetController::DelPreset(const QString &camera_index_code, int preset_index)
{
    QString error;
    return DelPreset(camera_index_code, preset_index, error);
}

bool CPTZGetController::DelPreset(const QString &camera_index_code, int preset_index, QString &error_text)
{
    site_store::CSiteStore *store = Store();
    const auto record = store ? store->virtualPreset(camera_index_code, preset_index) : std::nullopt;
    if (!record) {
        error_text = Tr("The camera has no client preset %1.").arg(preset_index);
        return false;
    }
    if (!store->removeVirtualPreset(camera_index_code, preset_index)) {
        error_text = store->lastError();
        return false;
    }
    detail::CPTZDataCache::Instance()->RemovePreset(camera_index_code, preset_index, record->type);
    return true;
}

} // namespace zeph_ptz_controller
