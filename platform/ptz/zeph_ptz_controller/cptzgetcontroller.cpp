#include "zeph_ptz_controller/cptzgetcontroller.h"

#include "zeph_ptz_controller/cptzgetcontroller_p.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_devices/iptzdriver.h"
#include "site_store/csitestore.h"
#include "tarn/base/logging.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QHash>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QTimer>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Tr;
using ptz_devices::IPtzDriver;

struct CPTZGetController::Private
{
    using Key = QPair<const QObject *, quint64>;
    QString camera;
    QMap<Key, std::shared_ptr<Query>> pending;
    QSet<const QObject *> connected;
    quint64 generation = 1;
    int later = 0;
    QHash<QString, QString> last_error;
};

CPTZGetController::CPTZGetController(QObject *parent)
    : QObject(parent)
    , d(new Private)
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

void CPTZGetController::WatchDriver(QObject *driver)
{
    if (d->connected.contains(driver))
        return;
    d->connected.insert(driver);
    connect(static_cast<IPtzDriver *>(driver), &IPtzDriver::replied, this, &CPTZGetController::OnDriverReplied);
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

void CPTZGetController::Send(const std::shared_ptr<Query> &query)
{
    query->generation = d->generation;
    detail::GetQueryContext context;
    bool unknown = false;
    context.driver = detail::DriverForCamera(query->camera, &context.driver_error, &unknown);
    if (unknown) {
        query->error = context.driver_error;
        Later(query);
        return;
    }
    if (context.driver)
        WatchDriver(context.driver);
    // The driver's own presets, patrols and patterns are only asked of cameras that move.
    context.device = context.driver && !context.driver->capabilities().fishEye;
    if (query->cruise_index > 0 && site_store::CSiteStore::Current()) {
        context.stored = Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->StoredCruise(
            query->camera, query->cruise_index);
    }
    const detail::GetQueryStart start = detail::StarterFor(query->kind)(*query, context);
    if (start.sent)
        d->pending.insert(qMakePair(static_cast<const QObject *>(context.driver), start.request_id), query);
    else
        Later(query);
}

void CPTZGetController::OnDriverReplied(const ptz_devices::DriverReply &reply)
{
    const auto query = d->pending.take(qMakePair(static_cast<const QObject *>(sender()), reply.requestId));
    if (!query)
        return;
    query->ok = reply.ok;
    if (reply.ok)
        detail::ReplyHandlerFor(query->kind)(*query, reply);
    else
        query->error = reply.error.isEmpty() ? Tr("The camera refused the request.") : reply.error;
    Complete(query);
}

void CPTZGetController::Complete(const std::shared_ptr<Query> &query)
{
    if (query->generation != d->generation)
        return;
    const QString &camera = query->camera;
    const bool ok = query->ok;
    if (!ok) {
        ZEPH_LOG_WARN("query for %s failed: %s", qUtf8Printable(camera), qUtf8Printable(query->error));
        d->last_error.insert(camera, query->error);
    }
    const int number = query->cruise_index;
    const auto type = CruiseType(query->type);
    switch (query->kind) {
    case Query::Presets:
        ok ? emit SignalGetPresetsSuc(camera) : emit SignalGetPresetsFailed(camera, query->error);
        break;
    case Query::SyncPresets:
        ok ? emit SignalSyncPresetsSuc(camera) : emit SignalSyncPresetsFailed(camera);
        break;
    case Query::AllPatrols:
        ok ? emit SignalGetAllPatrolsSuc(camera, detail::MergeStoredPatrols(camera, query->patrols))
           : emit SignalGetAllPatrolsFailed(camera);
        break;
    case Query::SinglePatrol:
        ok ? emit SignalGetSinglePatrolSuc(camera, number) : emit SignalGetPatrolFailed(camera, number, query->error);
        break;
    case Query::PatrolTypeOpen:
        ok ? emit SignalGetPatrolTypeBeforeOpen(number, type, query->cruise_id, query->min_dwell, query->max_dwell)
           : emit SignalGetPatrolFailed(camera, number, query->error);
        break;
    case Query::PatrolTypeDelete:
        ok ? emit SignalGetPatrolTypeBeforeDelete(number, type, query->cruise_id)
           : emit SignalGetPatrolFailed(camera, number, query->error);
        break;
    case Query::ExecPatrol:
        ok ? emit SignalGetPatrolTypeSuc(number, query->stop, type,
                                         std::list<CruisePoint>(query->points.begin(), query->points.end()))
           : emit SignalGetPatrolFailed(camera, number, query->error);
        break;
    case Query::SetPatrol:
        if (!ok)
            emit SignalSetPatrolFailed(camera, query->error);
        else if (query->type == CRUISE_TYPE_DEVICE)
            emit SignalSetHardwarePatrolFinished(camera);
        else
            emit SignalSetSoftwarePatrolFinished(camera);
        break;
    case Query::Patterns:
        ok ? emit SignalGetAllPatternsSuc(camera, query->patterns) : emit SignalGetAllPatternsFailed(camera);
        break;
    case Query::LockStatus:
        ok ? emit SignalGetPTZLockStatusSuc(camera) : emit SignalGetPTZLockStatusFailed(camera, query->error);
        break;
    case Query::KindCount:
        break;
    }
}

void CPTZGetController::Start(int kind, const QString &camera_index_code, int cruise_index)
{
    auto query = std::make_shared<Query>();
    query->kind = Query::Kind(kind);
    query->camera = camera_index_code;
    query->cruise_index = cruise_index;
    Send(query);
}

void CPTZGetController::StartGetPresets(const QString &camera_index_code)
{
    Start(Query::Presets, camera_index_code);
}

void CPTZGetController::SyncPresetsFromDevice(const QString &camera_index_code)
{
    Start(Query::SyncPresets, camera_index_code);
}

void CPTZGetController::StartGetAllPatrols(const QString &camera_index_code)
{
    Start(Query::AllPatrols, camera_index_code);
}

void CPTZGetController::StartGetPatrol(const QString &camera_index_code, int cruise_index)
{
    Start(Query::SinglePatrol, camera_index_code, cruise_index);
}

void CPTZGetController::StartGetPatrolType(const QString &camera_index_code, int cruise_index)
{
    Start(Query::PatrolTypeOpen, camera_index_code, cruise_index);
}

void CPTZGetController::DeleteGetPatrolType(const QString &camera_index_code, int cruise_index)
{
    Start(Query::PatrolTypeDelete, camera_index_code, cruise_index);
}

void CPTZGetController::StartExecPTZPatrolCommand(const QString &camera_index_code, int cruise_index, bool stop)
{
    auto query = std::make_shared<Query>();
    query->kind = Query::ExecPatrol;
    query->camera = camera_index_code;
    query->cruise_index = cruise_index;
    query->stop = stop;
    Send(query);
}

void CPTZGetController::StartSetPatrol(const QString &camera_index_code, int cruise_index, CruiseType type,
                                       const std::vector<CruisePoint> &points)
{
    auto query = std::make_shared<Query>();
    query->kind = Query::SetPatrol;
    query->camera = camera_index_code;
    query->cruise_index = cruise_index;
    query->type = type;
    query->points = points;
    Send(query);
}

void CPTZGetController::StartGetPatterns(const QString &camera_index_code)
{
    Start(Query::Patterns, camera_index_code);
}

void CPTZGetController::StartGetPTZLockStatus(const QString &camera_index_code)
{
    Start(Query::LockStatus, camera_index_code);
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
