#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_plugin_manager/devicepatrolpoints.h"

#include "ptz_plugin_protocol/cruisepath.h"
#include "ptz_plugin_protocol/presetname.h"
#include "ptz_plugin_protocol/ptzlimits.h"
#include "site_store/csitestore.h"

#include "tarn/base/logging.h"

#include <QSysInfo>

#include <algorithm>
#include <set>

namespace ZephPluginManager {

namespace pp = ptz_plugin_protocol;
using site_store::CSiteStore;

namespace {

using pp::kMaxLockSeconds;
constexpr int kMinPreset = pp::kMinPresetIndex;
constexpr int kMaxPreset = pp::kMaxPresetIndex;
constexpr int kMinPatrol = pp::kMinCruiseIndex;
constexpr int kMaxPatrol = pp::kMaxCruiseIndex;

QString q(const std::string &s)
{
    return QString::fromStdString(s);
}

std::string s(const QString &q)
{
    return q.toStdString();
}

pp::CruisePoint toProtocol(const site_store::PatrolPointRecord &p)
{
    pp::CruisePoint out;
    out.preset_index = uint32_t(std::max(0, p.preset));
    out.speed = p.speed;
    out.dwell_time = p.dwell;
    out.preset_name = s(p.presetName);
    return out;
}

site_store::PatrolPointRecord fromProtocol(const pp::CruisePoint &p)
{
    site_store::PatrolPointRecord out;
    out.preset = int(p.preset_index);
    out.speed = p.speed;
    out.dwell = p.dwell_time;
    out.presetName = q(p.preset_name);
    return out;
}

pp::PresetInfo toProtocol(const site_store::VirtualPresetRecord &r)
{
    pp::PresetInfo out;
    out.preset_index = r.number;
    out.preset_type = r.type;
    out.preset_name = s(r.name);
    out.pan = r.pan;
    out.tilt = r.tilt;
    out.zoom = r.zoom;
    return out;
}

pp::CruiseInfo toProtocol(const site_store::PatrolRecord &r)
{
    pp::CruiseInfo out;
    out.cruise_index = r.number;
    out.cruise_name = s(r.name);
    out.cruise_type = r.type;
    out.cruise_id = std::to_string(r.number);
    for (const auto &p : r.points)
        out.points.push_back(toProtocol(p));
    return out;
}

bool isClientPresetType(int type)
{
    return type == pp::PRESET_TYPE_FISHEYE || type == pp::PRESET_TYPE_VIRTUAL;
}

} // namespace

CPTZBusinessInterfaceMgr::CPTZBusinessInterfaceMgr()
    : m_clientName(QSysInfo::machineHostName())
{
}

CPTZBusinessInterfaceMgr::~CPTZBusinessInterfaceMgr() = default;

bool CPTZBusinessInterfaceMgr::Fail(const QString &error, std::string *errorText)
{
    m_lastError = error;
    if (errorText)
        *errorText = s(error);
    ZEPH_LOG_WARN("%s", qUtf8Printable(error));
    return false;
}

QString CPTZBusinessInterfaceMgr::LastError() const
{
    return m_lastError;
}

void CPTZBusinessInterfaceMgr::SetClientName(const QString &name)
{
    m_clientName = name;
}

QString CPTZBusinessInterfaceMgr::ClientName() const
{
    return m_clientName;
}

void CPTZBusinessInterfaceMgr::SetClock(Clock clock)
{
    m_clock = std::move(clock);
}

QDateTime CPTZBusinessInterfaceMgr::Now() const
{
    return m_clock ? m_clock() : QDateTime::currentDateTimeUtc();
}

// Checks shared by the calls below; each returns false after Fail().
#define REQUIRE_CAMERA(id, errorText)                                                                                  \
    if (!CSiteStore::Current()->camera(id))                                                                            \
        return Fail(tr("Unknown camera \"%1\".").arg(id), errorText);

// ---------------------------------------------------------------- users and locks

bool CPTZBusinessInterfaceMgr::GetUserPTZPermission(const pp::GetUserPtzPermRequest &request,
                                                    pp::GetUserPtzPermResponse &response)
{
    CSiteStore *store = CSiteStore::Current();
    const QString name = request.user_id.empty() ? store->currentUserName() : q(request.user_id);
    const auto user = store->user(name);
    if (!user)
        return Fail(tr("Unknown user \"%1\".").arg(name));
    response.ptz_level = user->ptzLevel;
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::IsCameraPermissionValid(const std::string &user, const std::string &cameraId, int item)
{
    CSiteStore *store = CSiteStore::Current();
    const QString name = user.empty() ? store->currentUserName() : q(user);
    const QString camera = q(cameraId);
    if (!store->user(name))
        return Fail(tr("Unknown user \"%1\".").arg(name));
    REQUIRE_CAMERA(camera, nullptr)
    if (!store->hasPermission(name, camera, item))
        return Fail(tr("%1 lacks permission %2 on camera \"%3\".").arg(name).arg(item).arg(camera));
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::GetPTZLockStatus(const pp::PTZLockStatusRequest &request,
                                                pp::PTZLockStatusResponse &response)
{
    const QString camera = q(request.camera_index_code);
    REQUIRE_CAMERA(camera, nullptr)
    CSiteStore *store = CSiteStore::Current();
    const QDateTime now = Now();
    response = pp::PTZLockStatusResponse();
    if (const auto lock = store->lock(camera, now)) {
        response.locked = 1;
        response.remaining_time = std::min(kMaxLockSeconds, lock->remainingSeconds(now));
        response.user_name = s(lock->holder);
        response.user_detail = s(lock->holderDetail);
        response.ptz_level = lock->holderLevel;
        response.locked_by_other_client =
            lock->holder == store->currentUserName() && lock->holderDetail != m_clientName;
    }
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::LockPTZ(const std::string &cameraId, const std::string &user, int seconds)
{
    CSiteStore *store = CSiteStore::Current();
    const QString camera = q(cameraId);
    const QString name = user.empty() ? store->currentUserName() : q(user);
    REQUIRE_CAMERA(camera, nullptr)
    const auto who = store->user(name);
    if (!who)
        return Fail(tr("Unknown user \"%1\".").arg(name));
    if (seconds < 1 || seconds > kMaxLockSeconds)
        return Fail(tr("A lock lasts 1 to %1 seconds, not %2.").arg(kMaxLockSeconds).arg(seconds));
    const QDateTime now = Now();
    const auto current = store->lock(camera, now);
    if (current && current->holder != name && current->holderLevel >= who->ptzLevel)
        return Fail(tr("The PTZ of camera \"%1\" is locked by %2.").arg(camera, current->holder));

    site_store::LockRecord record;
    record.cameraId = camera;
    record.holder = name;
    record.holderLevel = who->ptzLevel;
    record.expiresAt = now.addSecs(seconds);
    record.holderDetail = m_clientName;
    if (!store->setLock(record))
        return Fail(store->lastError());
    m_lastError.clear();
    emit SignalPTZLockChanged(camera, name);
    return true;
}

bool CPTZBusinessInterfaceMgr::UnlockPTZ(const std::string &cameraId, const std::string &user)
{
    CSiteStore *store = CSiteStore::Current();
    const QString camera = q(cameraId);
    const QString name = user.empty() ? store->currentUserName() : q(user);
    REQUIRE_CAMERA(camera, nullptr)
    const auto who = store->user(name);
    if (!who)
        return Fail(tr("Unknown user \"%1\".").arg(name));
    const auto current = store->lock(camera, Now());
    if (!current) {
        m_lastError.clear();
        return true;
    }
    if (current->holder != name && current->holderLevel >= who->ptzLevel)
        return Fail(tr("The PTZ of camera \"%1\" is locked by %2.").arg(camera, current->holder));
    if (!store->clearLock(camera))
        return Fail(store->lastError());
    m_lastError.clear();
    emit SignalPTZLockChanged(camera, QString());
    return true;
}

bool CPTZBusinessInterfaceMgr::IsPTZControlAllowed(const std::string &cameraId, const std::string &user,
                                                   std::string *holder)
{
    CSiteStore *store = CSiteStore::Current();
    const QString camera = q(cameraId);
    const QString name = user.empty() ? store->currentUserName() : q(user);
    REQUIRE_CAMERA(camera, nullptr)
    const auto who = store->user(name);
    if (!who)
        return Fail(tr("Unknown user \"%1\".").arg(name));
    const auto current = store->lock(camera, Now());
    if (!current || current->holder == name || current->holderLevel < who->ptzLevel) {
        m_lastError.clear();
        return true;
    }
    if (holder)
        *holder = s(current->holder);
    return Fail(tr("The PTZ of camera \"%1\" is locked by %2.").arg(camera, current->holder));
}

// ---------------------------------------------------------------- park action, recovery

bool CPTZBusinessInterfaceMgr::GetPTZParkAction(const pp::GetParkActionRequest &request,
                                                pp::GetParkActionResponse &response)
{
    const QString camera = q(request.camera_index_code);
    REQUIRE_CAMERA(camera, nullptr)
    const site_store::ParkActionRecord r = CSiteStore::Current()->parkAction(camera);
    response.camera_index_code = request.camera_index_code;
    response.enabled = r.enabled;
    response.wait_time = r.waitSeconds;
    response.action_type = r.actionType;
    response.target_id = r.targetId;
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::SetPTZParkAction(const pp::SetParkActionRequest &request)
{
    const QString camera = q(request.camera_index_code);
    REQUIRE_CAMERA(camera, nullptr)
    if (request.wait_time < pp::kMinParkWaitSeconds || request.wait_time > pp::kMaxParkWaitSeconds)
        return Fail(tr("The park waiting time is %1 to %2 seconds, not %3.")
                        .arg(pp::kMinParkWaitSeconds)
                        .arg(pp::kMaxParkWaitSeconds)
                        .arg(request.wait_time));
    if (request.action_type != 3 && request.action_type != 5)
        return Fail(tr("Unknown park action type %1.").arg(request.action_type));
    if (request.action_type == 3 && (request.target_id < kMinPatrol || request.target_id > kMaxPatrol))
        return Fail(tr("Patrol number %1 is outside %2 to %3.").arg(request.target_id).arg(kMinPatrol).arg(kMaxPatrol));
    if (request.action_type == 5 && (request.target_id < 0 || request.target_id > kMaxPreset))
        return Fail(tr("Preset number %1 is outside %2 to %3.").arg(request.target_id).arg(kMinPreset).arg(kMaxPreset));
    site_store::ParkActionRecord r;
    r.cameraId = camera;
    r.enabled = request.enabled;
    r.waitSeconds = request.wait_time;
    r.actionType = request.action_type;
    r.targetId = request.target_id;
    CSiteStore *store = CSiteStore::Current();
    if (!store->setParkAction(r))
        return Fail(store->lastError());
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::GetPatrolRecoverConfig(const pp::GetPatrolRecoverConfigRequest &request,
                                                      pp::GetPatrolRecoverConfigResponse &response)
{
    const QString camera = q(request.camera_index_code);
    REQUIRE_CAMERA(camera, nullptr)
    const site_store::RecoveryRecord r = CSiteStore::Current()->recovery(camera);
    response.camera_index_code = request.camera_index_code;
    response.enabled = r.enabled;
    response.wait_time = r.enabled ? r.waitSeconds : 0;
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::SetPatrolRecoverConfig(const pp::SetPatrolRecoverConfigRequest &request)
{
    const QString camera = q(request.camera_index_code);
    REQUIRE_CAMERA(camera, nullptr)
    static const int kAllowed[] = {15, 30, 45, 60, 90, 120};
    if (request.enabled && std::find(std::begin(kAllowed), std::end(kAllowed), request.wait_time) == std::end(kAllowed))
        return Fail(tr("The recovery waiting time %1 s is not one of 15, 30, 45, 60, 90, 120.").arg(request.wait_time));
    site_store::RecoveryRecord r;
    r.cameraId = camera;
    r.enabled = request.enabled;
    r.waitSeconds = request.enabled ? request.wait_time : 0;
    CSiteStore *store = CSiteStore::Current();
    if (!store->setRecovery(r))
        return Fail(store->lastError());
    m_lastError.clear();
    return true;
}

// ---------------------------------------------------------------- presets

bool CPTZBusinessInterfaceMgr::GetPresets(const pp::GetPresetRequest &request, pp::GetPresetResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.presets.clear();
    response.error_text.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    const int type = request.preset_type;
    if (type != pp::PRESET_TYPE_INVALID && type != pp::PRESET_TYPE_DEVICE && !isClientPresetType(type))
        return Fail(tr("Unknown preset type %1.").arg(type), &response.error_text);

    if (type == pp::PRESET_TYPE_INVALID || type == pp::PRESET_TYPE_DEVICE) {
        if (const auto cam = CCameraManager::Instance()->GetCameraByID(camera)) {
            for (const ptz_devices::DevicePreset &p : cam->GetKnownDevicePresets()) {
                pp::PresetInfo info;
                info.preset_index = p.number;
                info.preset_type = pp::PRESET_TYPE_DEVICE;
                info.preset_name = s(p.name);
                info.pan = p.pan;
                info.tilt = p.tilt;
                info.zoom = p.zoom;
                response.presets.push_back(info);
            }
        }
    }
    if (type != pp::PRESET_TYPE_DEVICE) {
        const auto records = CSiteStore::Current()->virtualPresets(camera);
        for (const auto &r : records) {
            if (type == pp::PRESET_TYPE_INVALID || r.type == type)
                response.presets.push_back(toProtocol(r));
        }
    }
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::AddPreset(const pp::AddPresetRequest &request, pp::AddPresetResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.error_text.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    const pp::PresetInfo &preset = request.preset;
    if (!isClientPresetType(preset.preset_type))
        return Fail(tr("Only fish-eye and virtual presets are kept by the client; type %1 belongs to the camera.")
                        .arg(preset.preset_type),
                    &response.error_text);
    CSiteStore *store = CSiteStore::Current();
    int number = preset.preset_index;
    if (number == -1) {
        std::set<int> used;
        for (const auto &r : store->virtualPresets(camera))
            used.insert(r.number);
        number = 0;
        for (int n = kMinPreset; n <= kMaxPreset; ++n) {
            if (!used.count(n)) {
                number = n;
                break;
            }
        }
        if (number == 0)
            return Fail(tr("All %1 presets of camera \"%2\" are in use.").arg(kMaxPreset).arg(camera),
                        &response.error_text);
    } else if (number < kMinPreset || number > kMaxPreset) {
        return Fail(tr("Preset number %1 is outside %2 to %3.").arg(number).arg(kMinPreset).arg(kMaxPreset),
                    &response.error_text);
    } else if (store->virtualPreset(camera, number)) {
        return Fail(tr("Preset %1 already exists.").arg(number), &response.error_text);
    }

    QString name;
    if (!CheckPresetName(camera, number, preset.preset_type, preset.preset_name, &name, &response.error_text))
        return false;
    site_store::VirtualPresetRecord r;
    r.cameraId = camera;
    r.number = number;
    r.name = name;
    r.type = preset.preset_type;
    r.pan = preset.pan;
    r.tilt = preset.tilt;
    r.zoom = preset.zoom;
    if (!store->upsertVirtualPreset(r))
        return Fail(store->lastError(), &response.error_text);
    response.preset_index = number;
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::CheckPresetName(const QString &camera, int number, int type, const std::string &utf8,
                                               QString *name, std::string *errorText)
{
    const QString fault = pp::CheckPresetName(utf8);
    if (!fault.isEmpty())
        return Fail(fault, errorText);
    pp::DecodePresetName(utf8, name);
    for (const auto &other : CSiteStore::Current()->virtualPresets(camera)) {
        if (other.number != number && other.type == type && other.name == *name)
            return Fail(pp::DuplicatePresetNameError(*name), errorText);
    }
    return true;
}

bool CPTZBusinessInterfaceMgr::UpdatePreset(const pp::UpdatePresetRequest &request, pp::UpdatePresetResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.error_text.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    const pp::PresetInfo &preset = request.preset;
    if (preset.preset_index < kMinPreset || preset.preset_index > kMaxPreset)
        return Fail(
            tr("Preset number %1 is outside %2 to %3.").arg(preset.preset_index).arg(kMinPreset).arg(kMaxPreset),
            &response.error_text);
    CSiteStore *store = CSiteStore::Current();
    auto r = store->virtualPreset(camera, preset.preset_index);
    if (!r)
        return Fail(tr("Preset %1 does not exist.").arg(preset.preset_index), &response.error_text);
    if (preset.preset_type != pp::PRESET_TYPE_INVALID && preset.preset_type != r->type)
        return Fail(tr("Preset %1 is not of type %2.").arg(preset.preset_index).arg(preset.preset_type),
                    &response.error_text);
    QString name;
    if (!CheckPresetName(camera, r->number, r->type, preset.preset_name, &name, &response.error_text))
        return false;
    r->name = name;
    r->pan = preset.pan;
    r->tilt = preset.tilt;
    r->zoom = preset.zoom;
    if (!store->upsertVirtualPreset(*r))
        return Fail(store->lastError(), &response.error_text);
    m_lastError.clear();
    return true;
}

bool CPTZBusinessInterfaceMgr::DeletePreset(const pp::DeletePresetRequest &request, pp::DeletePresetResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.error_text.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    if (request.preset_index < kMinPreset || request.preset_index > kMaxPreset)
        return Fail(
            tr("Preset number %1 is outside %2 to %3.").arg(request.preset_index).arg(kMinPreset).arg(kMaxPreset),
            &response.error_text);
    CSiteStore *store = CSiteStore::Current();
    const auto r = store->virtualPreset(camera, request.preset_index);
    if (!r || (request.preset_type != pp::PRESET_TYPE_INVALID && request.preset_type != r->type))
        return Fail(tr("Preset %1 does not exist.").arg(request.preset_index), &response.error_text);
    if (!store->removeVirtualPreset(camera, request.preset_index))
        return Fail(store->lastError(), &response.error_text);
    m_lastError.clear();
    return true;
}

// ---------------------------------------------------------------- patrols

bool CPTZBusinessInterfaceMgr::GetCruises(const pp::GetCruisesRequest &request, pp::GetCruiseResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.cruises.clear();
    response.error_text.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    std::set<int> kept;
    for (pp::CruiseInfo &info : StoredCruises(camera)) {
        kept.insert(info.cruise_index);
        response.cruises.push_back(std::move(info));
    }
    if (const auto cam = CCameraManager::Instance()->GetCameraByID(camera)) {
        for (const ptz_devices::DevicePatrol &p : cam->GetKnownDevicePatrols()) {
            if (kept.count(p.number) || p.points.isEmpty())
                continue;
            pp::CruiseInfo info;
            info.cruise_index = p.number;
            info.cruise_name = p.name.isEmpty() ? "cruise" + std::to_string(p.number) : s(p.name);
            info.cruise_type = pp::CRUISE_TYPE_DEVICE;
            for (const auto &point : p.points)
                info.points.push_back(ToCruisePoint(point));
            response.cruises.push_back(info);
        }
    }
    std::sort(response.cruises.begin(), response.cruises.end(),
              [](const pp::CruiseInfo &a, const pp::CruiseInfo &b) { return a.cruise_index < b.cruise_index; });
    m_lastError.clear();
    return true;
}

namespace {

// Slot number from a cruise id (decimal text) or the index; 0 when neither is usable.
int cruiseNumber(const std::string &cruiseId, int index, bool *idMismatch)
{
    *idMismatch = false;
    if (!cruiseId.empty()) {
        bool ok = false;
        const int fromId = QString::fromStdString(cruiseId).toInt(&ok);
        if (!ok)
            return 0;
        if (index != -1 && index != fromId)
            *idMismatch = true;
        return fromId;
    }
    return index;
}

} // namespace

bool CPTZBusinessInterfaceMgr::ValidateCruise(int number, int type, const std::vector<pp::CruisePoint> &points,
                                              std::string *errorText)
{
    const QString fault = pp::CheckCruisePath(number, type, points);
    return fault.isEmpty() || Fail(fault, errorText);
}

bool CPTZBusinessInterfaceMgr::AddCruise(const pp::AddCruiseRequest &request, pp::AddCruiseResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.error_text.clear();
    response.cruise_id.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    if (!ValidateCruise(request.cruise_index, request.cruise_type, request.points, &response.error_text))
        return false;
    CSiteStore *store = CSiteStore::Current();
    if (store->patrol(camera, request.cruise_index))
        return Fail(tr("Patrol %1 already exists.").arg(request.cruise_index), &response.error_text);
    if (!StorePatrol(camera, request.cruise_index, request.cruise_type, request.cruise_name, request.points,
                     &response.error_text))
        return false;
    response.cruise_id = std::to_string(request.cruise_index);
    return true;
}

bool CPTZBusinessInterfaceMgr::UpdateCruise(const pp::UpdateCruiseRequest &request, pp::UpdateCruiseResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.error_text.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    int number = 0;
    if (!ResolveCruiseNumber(request.cruise_id, request.cruise_index, &number, &response.error_text))
        return false;
    if (!ValidateCruise(number, request.cruise_type, request.points, &response.error_text))
        return false;
    if (!request.cruise_id.empty() && !CSiteStore::Current()->patrol(camera, number))
        return Fail(tr("Patrol %1 does not exist.").arg(number), &response.error_text);
    // A device patrol the client has not recorded yet is taken on here.
    return StorePatrol(camera, number, request.cruise_type, request.cruise_name, request.points, &response.error_text);
}

bool CPTZBusinessInterfaceMgr::ResolveCruiseNumber(const std::string &cruiseId, int index, int *number,
                                                   std::string *errorText)
{
    bool mismatch = false;
    *number = cruiseNumber(cruiseId, index, &mismatch);
    if (mismatch)
        return Fail(tr("Patrol id %1 does not match patrol number %2.").arg(q(cruiseId)).arg(index), errorText);
    return true;
}

bool CPTZBusinessInterfaceMgr::StorePatrol(const QString &camera, int number, int type, const std::string &name,
                                           const std::vector<pp::CruisePoint> &points, std::string *errorText)
{
    if (!ValidateCruise(number, type, points, errorText))
        return false;
    site_store::PatrolRecord r;
    r.cameraId = camera;
    r.number = number;
    r.type = type;
    r.name = q(name);
    for (const auto &p : points)
        r.points.append(fromProtocol(p));
    CSiteStore *store = CSiteStore::Current();
    if (!store->upsertPatrol(r))
        return Fail(store->lastError(), errorText);
    m_lastError.clear();
    return true;
}

std::vector<pp::CruiseInfo> CPTZBusinessInterfaceMgr::StoredCruises(const QString &camera)
{
    std::vector<pp::CruiseInfo> out;
    for (const auto &r : CSiteStore::Current()->patrols(camera))
        out.push_back(toProtocol(r));
    return out;
}

std::optional<pp::CruiseInfo> CPTZBusinessInterfaceMgr::StoredCruise(const QString &camera, int number)
{
    if (const auto r = CSiteStore::Current()->patrol(camera, number))
        return toProtocol(*r);
    return std::nullopt;
}

bool CPTZBusinessInterfaceMgr::DeleteCruise(const pp::DeleteCruiseRequest &request, pp::DeleteCruiseResponse &response)
{
    const QString camera = q(request.camera_index_code);
    response.error_text.clear();
    REQUIRE_CAMERA(camera, &response.error_text)
    int number = 0;
    if (!ResolveCruiseNumber(request.cruise_id, request.cruise_index, &number, &response.error_text))
        return false;
    if (number < kMinPatrol || number > kMaxPatrol)
        return Fail(tr("Patrol number %1 is outside %2 to %3.").arg(number).arg(kMinPatrol).arg(kMaxPatrol),
                    &response.error_text);
    CSiteStore *store = CSiteStore::Current();
    if (store->patrol(camera, number)) {
        if (!store->removePatrol(camera, number))
            return Fail(store->lastError(), &response.error_text);
        m_lastError.clear();
        return true;
    }
    // Device patrols the client never recorded are removed on the camera by
    // the controller; there is nothing to forget here.
    if (const auto cam = CCameraManager::Instance()->GetCameraByID(camera)) {
        const auto known = cam->GetKnownDevicePatrols();
        if (std::any_of(known.begin(), known.end(),
                        [number](const ptz_devices::DevicePatrol &p) { return p.number == number; })) {
            m_lastError.clear();
            return true;
        }
    }
    return Fail(tr("Patrol %1 does not exist.").arg(number), &response.error_text);
}

} // namespace ZephPluginManager
