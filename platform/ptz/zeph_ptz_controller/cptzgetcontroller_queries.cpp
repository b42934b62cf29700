// One starter and one reply handler per query kind of CPTZGetController.
#include "zeph_ptz_controller/cptzgetcontroller_p.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_devices/iptzdriver.h"
#include "site_store/csitestore.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QMap>

#include <algorithm>

namespace zeph_ptz_controller {
namespace detail {

using namespace ptz_plugin_protocol;

namespace {

site_store::CSiteStore *Store()
{
    return site_store::CSiteStore::Current();
}

ZephPluginManager::CPTZBusinessInterfaceMgr *Business()
{
    return Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance();
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

GetQueryStart Answered(GetQuery &query, bool ok, const QString &error = QString())
{
    query.ok = ok;
    query.error = error;
    return {};
}

GetQueryStart Sent(quint64 request_id)
{
    return {true, request_id};
}

bool SlotOutOfRange(GetQuery &query)
{
    if (query.cruise_index >= kMinCruiseIndex && query.cruise_index <= kMaxCruiseIndex)
        return false;
    query.error = Tr("The patrol number %1 is outside %2 to %3.")
                      .arg(query.cruise_index)
                      .arg(kMinCruiseIndex)
                      .arg(kMaxCruiseIndex);
    return true;
}

// ---------------------------------------------------------------- starters

GetQueryStart StartPresets(GetQuery &query, const GetQueryContext &context)
{
    if (context.device)
        return Sent(context.driver->listPresets());
    // A camera that moves but cannot be reached has no usable list.
    if (!context.driver && !context.driver_error.isEmpty() && !CameraName(query.camera).isEmpty())
        return Answered(query, false, context.driver_error);
    CPTZDataCache::Instance()->SetPresets(query.camera, ClientPresets(query.camera));
    return Answered(query, true);
}

GetQueryStart StartAllPatrols(GetQuery &query, const GetQueryContext &context)
{
    if (context.device)
        return Sent(context.driver->listPatrols());
    return Answered(query, true);
}

GetQueryStart StartReadPatrol(GetQuery &query, const GetQueryContext &context)
{
    if (SlotOutOfRange(query))
        return {};
    const bool client_slot = context.stored && context.stored->cruise_type != CRUISE_TYPE_DEVICE;
    if (!client_slot && context.device)
        return Sent(context.driver->readPatrol(query.cruise_index));
    GetCruiseRouteResponse route;
    route.camera_index_code = query.camera.toStdString();
    route.cruise_index = query.cruise_index;
    if (context.stored) {
        route.cruise_name = context.stored->cruise_name;
        route.cruise_type = context.stored->cruise_type;
        route.points = context.stored->points;
    }
    query.type = route.cruise_type;
    query.points = route.points;
    if (query.kind == GetQuery::SinglePatrol)
        CPTZDataCache::Instance()->SetEditPatrol(query.camera, route);
    return Answered(query, true);
}

GetQueryStart StartPatrolType(GetQuery &query, const GetQueryContext &context)
{
    if (SlotOutOfRange(query))
        return {};
    if (context.device) {
        query.min_dwell = context.driver->capabilities().minDwellSeconds;
        query.max_dwell = context.driver->capabilities().maxDwellSeconds;
    }
    if (const auto &stored = context.stored) {
        query.type = stored->cruise_type;
        query.cruise_id = QString::fromStdString(stored->cruise_id);
        if (stored->cruise_type == CRUISE_TYPE_SOFTWARE || stored->cruise_type == CRUISE_TYPE_VIRTUAL) {
            const CruisePathLimits limits = DefaultCruisePathLimits(stored->cruise_type);
            query.min_dwell = limits.min_dwell;
            query.max_dwell = limits.max_dwell;
        }
        return Answered(query, true);
    }
    if (context.device)
        return Sent(context.driver->listPatrols());
    return Answered(query, true);
}

GetQueryStart StartSetPatrol(GetQuery &query, const GetQueryContext &context)
{
    const QString invalid =
        CheckCruisePath(query.cruise_index, query.type, query.points, CruiseLimitsFor(query.type, context.driver));
    if (!invalid.isEmpty())
        return Answered(query, false, invalid);
    if (query.type == CRUISE_TYPE_DEVICE) {
        if (!context.device)
            return Answered(query, false,
                            context.driver_error.isEmpty() ? Tr("This camera keeps no patrols of its own.")
                                                           : context.driver_error);
        QVector<ptz_devices::DevicePatrolPoint> points;
        for (const CruisePoint &p : query.points)
            points.append(ToDevicePoint(p));
        return Sent(query.points.empty() ? context.driver->removePatrol(query.cruise_index)
                                         : context.driver->writePatrol(query.cruise_index, points));
    }
    if (!Store())
        return Answered(query, false, Tr("The site store is not available."));
    const std::string name =
        context.stored ? context.stored->cruise_name : QStringLiteral("cruise%1").arg(query.cruise_index).toStdString();
    std::string error_text;
    const bool ok =
        Business()->StorePatrol(query.camera, query.cruise_index, query.type, name, query.points, &error_text);
    return Answered(query, ok, QString::fromStdString(error_text));
}

GetQueryStart StartPatterns(GetQuery &query, const GetQueryContext &context)
{
    if (context.device && context.driver->capabilities().patternSlots > 0)
        return Sent(context.driver->listPatterns());
    return Answered(query, false, context.driver ? Tr("This camera has no patterns.") : context.driver_error);
}

GetQueryStart StartLockStatus(GetQuery &query, const GetQueryContext &)
{
    PTZLockStatusRequest request;
    request.camera_index_code = query.camera.toStdString();
    PTZLockStatusResponse response;
    if (!Business()->GetPTZLockStatus(request, response))
        return Answered(query, false, Business()->LastError());
    CPTZDataCache::Instance()->SetLockStatus(query.camera, response);
    return Answered(query, true);
}

// ---------------------------------------------------------------- replies

void PresetsReplied(GetQuery &query, const ptz_devices::DriverReply &reply)
{
    QVector<PresetInfo> list;
    const auto device = reply.result.value<QVector<ptz_devices::DevicePreset>>();
    for (const ptz_devices::DevicePreset &p : device)
        list.append(ToPresetInfo(p));
    std::sort(list.begin(), list.end(),
              [](const PresetInfo &a, const PresetInfo &b) { return a.preset_index < b.preset_index; });
    list += ClientPresets(query.camera);
    CPTZDataCache::Instance()->SetPresets(query.camera, list);
}

void PatrolListReplied(GetQuery &query, const ptz_devices::DriverReply &reply)
{
    const auto device = reply.result.value<QVector<ptz_devices::DevicePatrol>>();
    if (query.kind != GetQuery::AllPatrols) {
        const bool found = std::any_of(device.begin(), device.end(), [&](const ptz_devices::DevicePatrol &p) {
            return p.number == query.cruise_index && !p.points.isEmpty();
        });
        query.type = found ? CRUISE_TYPE_DEVICE : CRUISE_TYPE_NONE;
        return;
    }
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
            info.points.push_back(ToCruisePoint(point));
        by_slot.insert(p.number, info);
    }
    query.patrols = by_slot.values().toVector();
}

void PatrolReplied(GetQuery &query, const ptz_devices::DriverReply &reply)
{
    const auto patrol = reply.result.value<ptz_devices::DevicePatrol>();
    GetCruiseRouteResponse route;
    route.camera_index_code = query.camera.toStdString();
    route.cruise_index = query.cruise_index;
    route.cruise_name = patrol.name.toStdString();
    route.cruise_type = patrol.points.isEmpty() ? CRUISE_TYPE_NONE : CRUISE_TYPE_DEVICE;
    for (const auto &point : patrol.points)
        route.points.push_back(ToCruisePoint(point));
    if (Store()) {
        if (const auto stored = Business()->StoredCruise(query.camera, query.cruise_index)) {
            route.cruise_type = stored->cruise_type;
            if (!stored->cruise_name.empty())
                route.cruise_name = stored->cruise_name;
        }
    }
    query.type = route.cruise_type;
    query.points = route.points;
    if (query.kind == GetQuery::SinglePatrol)
        CPTZDataCache::Instance()->SetEditPatrol(query.camera, route);
}

void PatternsReplied(GetQuery &query, const ptz_devices::DriverReply &reply)
{
    query.patterns = reply.result.value<QVector<int>>();
    std::sort(query.patterns.begin(), query.patterns.end());
}

void NothingToRead(GetQuery &, const ptz_devices::DriverReply &) { }

struct KindHandlers
{
    GetQuery::Kind kind;
    GetQueryStarter start;
    GetQueryReplyHandler replied;
};

constexpr KindHandlers kHandlers[] = {
    {GetQuery::Presets, StartPresets, PresetsReplied},
    {GetQuery::SyncPresets, StartPresets, PresetsReplied},
    {GetQuery::AllPatrols, StartAllPatrols, PatrolListReplied},
    {GetQuery::SinglePatrol, StartReadPatrol, PatrolReplied},
    {GetQuery::PatrolTypeOpen, StartPatrolType, PatrolListReplied},
    {GetQuery::PatrolTypeDelete, StartPatrolType, PatrolListReplied},
    {GetQuery::ExecPatrol, StartReadPatrol, PatrolReplied},
    {GetQuery::SetPatrol, StartSetPatrol, NothingToRead},
    {GetQuery::Patterns, StartPatterns, PatternsReplied},
    {GetQuery::LockStatus, StartLockStatus, NothingToRead},
};

constexpr bool TableInKindOrder()
{
    for (int i = 0; i < int(std::size(kHandlers)); ++i) {
        if (kHandlers[i].kind != i)
            return false;
    }
    return int(std::size(kHandlers)) == GetQuery::KindCount;
}
static_assert(TableInKindOrder(), "one handler row per query kind, in kind order");

} // namespace

GetQueryStarter StarterFor(GetQuery::Kind kind)
{
    return kHandlers[kind].start;
}

GetQueryReplyHandler ReplyHandlerFor(GetQuery::Kind kind)
{
    return kHandlers[kind].replied;
}

QVector<CruiseInfo> MergeStoredPatrols(const QString &camera, const QVector<CruiseInfo> &device)
{
    QMap<int, CruiseInfo> by_slot;
    for (const CruiseInfo &info : device)
        by_slot.insert(info.cruise_index, info);
    if (Store()) {
        for (CruiseInfo &info : Business()->StoredCruises(camera)) {
            if (info.cruise_type == CRUISE_TYPE_DEVICE) {
                if (!by_slot.contains(info.cruise_index))
                    continue; // bookkeeping of a device patrol the camera no longer has
                info.points = by_slot.value(info.cruise_index).points;
            }
            by_slot.insert(info.cruise_index, info);
        }
    }
    return by_slot.values().toVector();
}

} // namespace detail
} // namespace zeph_ptz_controller
