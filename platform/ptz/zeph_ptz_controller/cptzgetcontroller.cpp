#include "zeph_ptz_controller/cptzgetcontroller.h"

#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_devices/iptzdriver.h"
#include "site_store/csitestore.h"
#include "tarn/base/logging.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QHash>
#include <QMap>
#include <QPair>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <algorithm>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Tr;
using ptz_devices::IPtzDriver;

struct CPTZGetController::Query
{
    enum Kind { Presets, SyncPresets, AllPatrols, SinglePatrol, PatrolTypeOpen, PatrolTypeDelete, ExecPatrol, SetPatrol, Patterns, LockStatus };

    Kind kind = Presets;
    QString camera;
    int cruise_index = 0;
    bool stop = false;
    int type = CRUISE_TYPE_NONE;
    std::vector<CruisePoint> points;
    quint64 generation = 0;

    bool ok = false;
    QString error;
    QVector<int> patterns;
    QVector<CruiseInfo> patrols;
    int min_dwell = detail::kVirtualMinDwell;
    int max_dwell = detail::kVirtualMaxDwell;
    QString cruise_id;
};

struct CPTZGetController::Private
{
    using Key = QPair<const QObject *, quint64>;
    QString camera;
    QMap<Key, std::shared_ptr<CPTZGetController::Query>> pending;
    QSet<const QObject *> connected;
    quint64 generation = 1;
    int later = 0;
    QHash<QString, QString> last_error;
};

namespace {

site_store::CSiteStore *Store()
{
    return site_store::CSiteStore::Current();
}

QVector<PresetInfo> ClientPresets(const QString &camera)
{
    QVector<PresetInfo> list;
    if (!Store())
        return list;
    const auto records = Store()->virtualPresets(camera);
    for (const site_store::VirtualPresetRecord &r : records) {
        PresetInfo info;
        info.preset_index = r.number;
        info.preset_type = r.type;
        info.preset_name = r.name.toStdString();
        info.pan = r.pan;
        info.tilt = r.tilt;
        info.zoom = r.zoom;
        list.append(info);
    }
    std::stable_sort(list.begin(), list.end(), [](const PresetInfo &a, const PresetInfo &b) {
        return a.preset_type != b.preset_type ? a.preset_type < b.preset_type : a.preset_index < b.preset_index;
    });
    return list;
}

std::vector<CruisePoint> PointsOf(const site_store::PatrolRecord &record)
{
    std::vector<CruisePoint> points;
    for (const site_store::PatrolPointRecord &r : record.points) {
        CruisePoint p;
        p.preset_index = uint32_t(qMax(0, r.preset));
        p.speed = r.speed;
        p.dwell_time = r.dwell;
        p.preset_name = r.presetName.toStdString();
        points.push_back(p);
    }
    return points;
}

// The driver's own device presets and patrols are only asked of cameras that move.
bool HasDevicePtz(IPtzDriver *driver)
{
    return driver && !driver->capabilities().fishEye;
}

} // namespace

CPTZGetController::CPTZGetController(QObject *parent) : QObject(parent), d(new Private)
{
    registerMetaTypes();
    connect(detail::CPTZDataCache::Instance(), &detail::CPTZDataCache::SignalPresetsChanged, this,
            &CPTZGetController::OnPresetsChanged, Qt::QueuedConnection);
}

CPTZGetController::~CPTZGetController() = default;

void CPTZGetController::SetCamera(const QString &camera_index_code)
{
    d->camera = camera_index_code;
}

QString CPTZGetController::GetCamera() const
{
    return d->camera;
}

int CPTZGetController::PendingQueryCount() const
{
    return d->pending.size() + d->later;
}

bool CPTZGetController::ReadAuxiliaryState(const QString &camera_index_code)
{
    IPtzDriver *driver = detail::DriverForCamera(camera_index_code, nullptr);
    if (!driver || !driver->isConnected())
        return false;
    const ptz_devices::DeviceStatus status = driver->status();
    CPTZStateStorageManager *storage = CPTZStateStorageManager::Instance();
    storage->SetLight(camera_index_code, status.light);
    storage->SetWiper(camera_index_code, status.wiper);
    return true;
}

QString CPTZGetController::LastErrorText(const QString &camera_index_code) const
{
    return d->last_error.value(camera_index_code);
}

void CPTZGetController::StopGettingData()
{
    ++d->generation;
    d->pending.clear();
}

void CPTZGetController::ClearCachedData()
{
    detail::CPTZDataCache::Instance()->Clear();
}

void CPTZGetController::OnPresetsChanged(const QString &camera_index_code)
{
    if (!camera_index_code.isEmpty() && camera_index_code == d->camera)
        emit SignalGetPresetsSuc(camera_index_code);
}

void CPTZGetController::Later(const std::shared_ptr<Query> &query)
{
    ++d->later;
    QTimer::singleShot(0, this, [this, query] {
        --d->later;
        Complete(query);
    });
}

void CPTZGetController::Send(const std::shared_ptr<Query> &query)
{
    query->generation = d->generation;
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(query->camera, &error, &unknown);
    if (unknown) {
        query->error = error;
        Later(query);
        return;
    }
    if (driver && !d->connected.contains(driver)) {
        d->connected.insert(driver);
        connect(driver, &IPtzDriver::replied, this, &CPTZGetController::OnDriverReplied);
        connect(driver, &QObject::destroyed, this, [this](QObject *gone) {
            d->connected.remove(gone);
            const auto keys = d->pending.keys();
            for (const auto &key : keys) {
                if (key.first != gone)
                    continue;
                const auto query = d->pending.take(key);
                query->ok = false;
                query->error = Tr("The camera was removed before it answered.");
                Later(query);
            }
        });
    }

    site_store::CSiteStore *store = Store();
    std::optional<site_store::PatrolRecord> record;
    if (query->cruise_index > 0 && store)
        record = store->patrol(query->camera, query->cruise_index);
    const bool client_slot = record && record->type != CRUISE_TYPE_DEVICE;
    auto send = [&](quint64 id) {
        d->pending.insert(qMakePair(static_cast<const QObject *>(driver), id), query);
    };
    const bool device = HasDevicePtz(driver);

    switch (query->kind) {
    case Query::Presets:
    case Query::SyncPresets:
        if (device) {
            send(driver->listPresets());
            return;
        }
        if (!driver && !error.isEmpty() && !detail::CameraName(query->camera).isEmpty()) {
            // A camera that moves but cannot be reached has no usable list.
            query->error = error;
            Later(query);
            return;
        }
        detail::CPTZDataCache::Instance()->SetPresets(query->camera, ClientPresets(query->camera));
        query->ok = true;
        Later(query);
        return;
    case Query::AllPatrols:
        if (device) {
            send(driver->listPatrols());
            return;
        }
        query->ok = true;
        Later(query);
        return;
    case Query::SinglePatrol:
    case Query::ExecPatrol:
        if (query->cruise_index < 1 || query->cruise_index > detail::kMaxCruiseIndex) {
            query->error = Tr("The patrol number %1 is outside 1 to %2.").arg(query->cruise_index).arg(detail::kMaxCruiseIndex);
            Later(query);
            return;
        }
        if (client_slot || !device) {
            GetCruiseRouteResponse route;
            route.camera_index_code = query->camera.toStdString();
            route.cruise_index = query->cruise_index;
            if (record) {
                route.cruise_name = record->name.toStdString();
                route.cruise_type = record->type;
                route.points = PointsOf(*record);
            }
            query->type = route.cruise_type;
            query->points = route.points;
            if (query->kind == Query::SinglePatrol)
                detail::CPTZDataCache::Instance()->SetEditPatrol(query->camera, route);
            query->ok = true;
            Later(query);
            return;
        }
        send(driver->readPatrol(query->cruise_index));
        return;
    case Query::PatrolTypeOpen:
    case Query::PatrolTypeDelete:
        if (query->cruise_index < 1 || query->cruise_index > detail::kMaxCruiseIndex) {
            query->error = Tr("The patrol number %1 is outside 1 to %2.").arg(query->cruise_index).arg(detail::kMaxCruiseIndex);
            Later(query);
            return;
        }
        if (driver && device) {
            query->min_dwell = driver->capabilities().minDwellSeconds;
            query->max_dwell = driver->capabilities().maxDwellSeconds;
        }
        if (record) {
            query->type = record->type;
            query->cruise_id = QString::number(record->number);
            if (record->type == CRUISE_TYPE_SOFTWARE) {
                query->min_dwell = detail::kSoftwareMinDwell;
                query->max_dwell = detail::kSoftwareMaxDwell;
            } else if (record->type == CRUISE_TYPE_VIRTUAL) {
                query->min_dwell = detail::kVirtualMinDwell;
                query->max_dwell = detail::kVirtualMaxDwell;
            }
            query->ok = true;
            Later(query);
            return;
        }
        if (device) {
            send(driver->listPatrols());
            return;
        }
        query->ok = true;
        Later(query);
        return;
    case Query::SetPatrol: {
        const QString invalid = detail::CheckCruisePoints(query->points, query->type, driver);
        if (query->cruise_index < 1 || query->cruise_index > detail::kMaxCruiseIndex) {
            query->error = Tr("The patrol number %1 is outside 1 to %2.").arg(query->cruise_index).arg(detail::kMaxCruiseIndex);
        } else if (!invalid.isEmpty()) {
            query->error = invalid;
        } else if (query->type == CRUISE_TYPE_DEVICE) {
            if (!device) {
                query->error = error.isEmpty() ? Tr("This camera keeps no patrols of its own.") : error;
            } else {
                QVector<ptz_devices::DevicePatrolPoint> points;
                for (const CruisePoint &p : query->points)
                    points.append(detail::ToDevicePoint(p));
                send(query->points.empty() ? driver->removePatrol(query->cruise_index)
                                           : driver->writePatrol(query->cruise_index, points));
                return;
            }
        } else if (store) {
            site_store::PatrolRecord r;
            r.cameraId = query->camera;
            r.number = query->cruise_index;
            r.type = query->type;
            r.name = record ? record->name : QStringLiteral("cruise%1").arg(query->cruise_index);
            for (const CruisePoint &p : query->points) {
                site_store::PatrolPointRecord point;
                point.preset = int(p.preset_index);
                point.speed = p.speed;
                point.dwell = p.dwell_time;
                point.presetName = QString::fromStdString(p.preset_name);
                r.points.append(point);
            }
            query->ok = store->upsertPatrol(r);
            if (!query->ok)
                query->error = store->lastError();
        }
        Later(query);
        return;
    }
    case Query::Patterns:
        if (device && driver->capabilities().patternSlots > 0) {
            send(driver->listPatterns());
            return;
        }
        query->error = driver ? Tr("This camera has no patterns.") : error;
        Later(query);
        return;
    case Query::LockStatus: {
        PTZLockStatusRequest request;
        request.camera_index_code = query->camera.toStdString();
        PTZLockStatusResponse response;
        auto *business = Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance();
        query->ok = business->GetPTZLockStatus(request, response);
        if (query->ok)
            detail::CPTZDataCache::Instance()->SetLockStatus(query->camera, response);
        else
            query->error = business->LastError();
        Later(query);
        return;
    }
    }
}

void CPTZGetController::OnDriverReplied(const ptz_devices::DriverReply &reply)
{
    const auto query = d->pending.take(qMakePair(static_cast<const QObject *>(sender()), reply.requestId));
    if (!query)
        return;
    query->ok = reply.ok;
    if (!reply.ok) {
        query->error = reply.error.isEmpty() ? Tr("The camera refused the request.") : reply.error;
        Complete(query);
        return;
    }
    site_store::CSiteStore *store = Store();
    switch (query->kind) {
    case Query::Presets:
    case Query::SyncPresets: {
        QVector<PresetInfo> list;
        const auto device = reply.result.value<QVector<ptz_devices::DevicePreset>>();
        for (const ptz_devices::DevicePreset &p : device)
            list.append(detail::ToPresetInfo(p));
        std::sort(list.begin(), list.end(),
                  [](const PresetInfo &a, const PresetInfo &b) { return a.preset_index < b.preset_index; });
        list += ClientPresets(query->camera);
        detail::CPTZDataCache::Instance()->SetPresets(query->camera, list);
        break;
    }
    case Query::AllPatrols:
    case Query::PatrolTypeOpen:
    case Query::PatrolTypeDelete: {
        const auto device = reply.result.value<QVector<ptz_devices::DevicePatrol>>();
        if (query->kind == Query::AllPatrols) {
            // Stored as the client's list: device patrols in slots the client does not keep.
            QMap<int, CruiseInfo> by_slot;
            for (const ptz_devices::DevicePatrol &p : device) {
                if (p.points.isEmpty())
                    continue;
                CruiseInfo info;
                info.cruise_index = p.number;
                info.cruise_name = p.name.toStdString();
                info.cruise_type = CRUISE_TYPE_DEVICE;
                for (const auto &point : p.points)
                    info.points.push_back(detail::ToCruisePoint(point));
                by_slot.insert(p.number, info);
            }
            query->patrols = by_slot.values().toVector();
        } else {
            const bool found = std::any_of(device.begin(), device.end(), [&](const ptz_devices::DevicePatrol &p) {
                return p.number == query->cruise_index && !p.points.isEmpty();
            });
            query->type = found ? CRUISE_TYPE_DEVICE : CRUISE_TYPE_NONE;
        }
        break;
    }
    case Query::SinglePatrol:
    case Query::ExecPatrol: {
        const auto patrol = reply.result.value<ptz_devices::DevicePatrol>();
        GetCruiseRouteResponse route;
        route.camera_index_code = query->camera.toStdString();
        route.cruise_index = query->cruise_index;
        route.cruise_name = patrol.name.toStdString();
        route.cruise_type = patrol.points.isEmpty() ? CRUISE_TYPE_NONE : CRUISE_TYPE_DEVICE;
        for (const auto &point : patrol.points)
            route.points.push_back(detail::ToCruisePoint(point));
        if (store) {
            if (const auto record = store->patrol(query->camera, query->cruise_index)) {
                route.cruise_type = record->type;
                if (!record->name.isEmpty())
                    route.cruise_name = record->name.toStdString();
            }
        }
        query->type = route.cruise_type;
        query->points = route.points;
        if (query->kind == Query::SinglePatrol)
            detail::CPTZDataCache::Instance()->SetEditPatrol(query->camera, route);
        break;
    }
    case Query::Patterns:
        query->patterns = reply.result.value<QVector<int>>();
        std::sort(query->patterns.begin(), query->patterns.end());
        break;
    default:
        break;
    }
    Complete(query);
}

void CPTZGetController::Complete(const std::shared_ptr<Query> &query)
{
    if (query->generation != d->generation)
        return;
    const QString &camera = query->camera;
    if (!query->ok) {
        ZEPH_LOG_WARN("query for %s failed: %s", qUtf8Printable(camera), qUtf8Printable(query->error));
        d->last_error.insert(camera, query->error);
    }
    switch (query->kind) {
    case Query::Presets:
        if (query->ok)
            emit SignalGetPresetsSuc(camera);
        else
            emit SignalGetPresetsFailed(camera, query->error);
        break;
    case Query::SyncPresets:
        if (query->ok)
            emit SignalSyncPresetsSuc(camera);
        else
            emit SignalSyncPresetsFailed(camera);
        break;
    case Query::AllPatrols: {
        if (!query->ok) {
            emit SignalGetAllPatrolsFailed(camera);
            break;
        }
        QMap<int, CruiseInfo> by_slot;
        for (const CruiseInfo &info : qAsConst(query->patrols))
            by_slot.insert(info.cruise_index, info);
        if (Store()) {
            const auto records = Store()->patrols(camera);
            for (const site_store::PatrolRecord &r : records) {
                if (r.type == CRUISE_TYPE_DEVICE && !by_slot.contains(r.number))
                    continue; // bookkeeping of a device patrol the camera no longer has
                CruiseInfo info;
                info.cruise_index = r.number;
                info.cruise_name = r.name.toStdString();
                info.cruise_type = r.type;
                info.cruise_id = QString::number(r.number).toStdString();
                info.points = r.type == CRUISE_TYPE_DEVICE ? by_slot.value(r.number).points : PointsOf(r);
                by_slot.insert(r.number, info);
            }
        }
        emit SignalGetAllPatrolsSuc(camera, by_slot.values().toVector());
        break;
    }
    case Query::SinglePatrol:
        if (query->ok)
            emit SignalGetSinglePatrolSuc(camera, query->cruise_index);
        else
            emit SignalGetPatrolFailed(camera, query->cruise_index, query->error);
        break;
    case Query::PatrolTypeOpen:
        if (query->ok)
            emit SignalGetPatrolTypeBeforeOpen(query->cruise_index, CruiseType(query->type), query->cruise_id,
                                               query->min_dwell, query->max_dwell);
        else
            emit SignalGetPatrolFailed(camera, query->cruise_index, query->error);
        break;
    case Query::PatrolTypeDelete:
        if (query->ok)
            emit SignalGetPatrolTypeBeforeDelete(query->cruise_index, CruiseType(query->type), query->cruise_id);
        else
            emit SignalGetPatrolFailed(camera, query->cruise_index, query->error);
        break;
    case Query::ExecPatrol:
        if (query->ok)
            emit SignalGetPatrolTypeSuc(query->cruise_index, query->stop, CruiseType(query->type),
                                        std::list<CruisePoint>(query->points.begin(), query->points.end()));
        else
            emit SignalGetPatrolFailed(camera, query->cruise_index, query->error);
        break;
    case Query::SetPatrol:
        if (!query->ok)
            emit SignalSetPatrolFailed(camera, query->error);
        else if (query->type == CRUISE_TYPE_DEVICE)
            emit SignalSetHardwarePatrolFinished(camera);
        else
            emit SignalSetSoftwarePatrolFinished(camera);
        break;
    case Query::Patterns:
        if (query->ok)
            emit SignalGetAllPatternsSuc(camera, query->patterns);
        else
            emit SignalGetAllPatternsFailed(camera);
        break;
    case Query::LockStatus:
        if (query->ok)
            emit SignalGetPTZLockStatusSuc(camera);
        else
            emit SignalGetPTZLockStatusFailed(camera, query->error);
        break;
    }
}

#define ZEPH_NEW_QUERY(KIND, CAMERA)                 \
    auto query = std::make_shared<Query>();          \
    query->kind = Query::KIND;                       \
    query->camera = CAMERA

void CPTZGetController::StartGetPresets(const QString &camera_index_code)
{
    ZEPH_NEW_QUERY(Presets, camera_index_code);
    Send(query);
}

void CPTZGetController::SyncPresetsFromDevice(const QString &camera_index_code)
{
    ZEPH_NEW_QUERY(SyncPresets, camera_index_code);
    Send(query);
}

void CPTZGetController::StartGetAllPatrols(const QString &camera_index_code)
{
    ZEPH_NEW_QUERY(AllPatrols, camera_index_code);
    Send(query);
}

void CPTZGetController::StartGetPatrol(const QString &camera_index_code, int cruise_index)
{
    ZEPH_NEW_QUERY(SinglePatrol, camera_index_code);
    query->cruise_index = cruise_index;
    Send(query);
}

void CPTZGetController::StartGetPatrolType(const QString &camera_index_code, int cruise_index)
{
    ZEPH_NEW_QUERY(PatrolTypeOpen, camera_index_code);
    query->cruise_index = cruise_index;
    Send(query);
}

void CPTZGetController::DeleteGetPatrolType(const QString &camera_index_code, int cruise_index)
{
    ZEPH_NEW_QUERY(PatrolTypeDelete, camera_index_code);
    query->cruise_index = cruise_index;
    Send(query);
}

void CPTZGetController::StartExecPTZPatrolCommand(const QString &camera_index_code, int cruise_index, bool stop)
{
    ZEPH_NEW_QUERY(ExecPatrol, camera_index_code);
    query->cruise_index = cruise_index;
    query->stop = stop;
    Send(query);
}

void CPTZGetController::StartSetPatrol(const QString &camera_index_code, int cruise_index, CruiseType type,
                                       const std::vector<CruisePoint> &points)
{
    ZEPH_NEW_QUERY(SetPatrol, camera_index_code);
    query->cruise_index = cruise_index;
    query->type = type;
    query->points = points;
    Send(query);
}

void CPTZGetController::StartGetPatterns(const QString &camera_index_code)
{
    ZEPH_NEW_QUERY(Patterns, camera_index_code);
    Send(query);
}

void CPTZGetController::StartGetPTZLockStatus(const QString &camera_index_code)
{
    ZEPH_NEW_QUERY(LockStatus, camera_index_code);
    Send(query);
}

#undef ZEPH_NEW_QUERY

bool CPTZGetController::GetAllPresets(const QString &camera_index_code, QVector<PresetInfo> &presets)
{
    auto *cache = detail::CPTZDataCache::Instance();
    presets = cache->Presets(camera_index_code);
    return cache->HasPresets(camera_index_code);
}

bool CPTZGetController::GetPresetByIndexSync(const QString &camera_index_code, PresetInfo &preset, int preset_index)
{
    const QVector<PresetInfo> list = detail::CPTZDataCache::Instance()->Presets(camera_index_code);
    const bool typed = preset.preset_type == PRESET_TYPE_DEVICE || preset.preset_type == PRESET_TYPE_FISHEYE ||
                       preset.preset_type == PRESET_TYPE_VIRTUAL;
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
        error_text = Tr("The preset number %1 is outside 1 to %2.").arg(preset.preset_index).arg(detail::kMaxPresetIndex);
        return false;
    }
    if (preset.preset_type != PRESET_TYPE_FISHEYE && preset.preset_type != PRESET_TYPE_VIRTUAL) {
        error_text = Tr("Only fish-eye and virtual presets are kept by the client.");
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

bool CPTZGetController::GetEditPatrol(const QString &camera_index_code, GetCruiseRouteResponse &route)
{
    auto *cache = detail::CPTZDataCache::Instance();
    if (!cache->HasEditPatrol(camera_index_code))
        return false;
    route = cache->EditPatrol(camera_index_code);
    return true;
}

bool CPTZGetController::GetPTZLockStatus(const QString &camera_index_code, PTZLockStatusResponse &status)
{
    auto *cache = detail::CPTZDataCache::Instance();
    if (!cache->HasLockStatus(camera_index_code))
        return false;
    status = cache->LockStatus(camera_index_code);
    return true;
}

} // namespace zeph_ptz_controller
