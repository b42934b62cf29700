#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include "zeph_ptz_controller/ccommonfunction.h"
#include "zeph_ptz_controller/cptzconfigmanager.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_devices/iptzdriver.h"
#include "tarn/base/logging.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QElapsedTimer>
#include <QMap>
#include <QPair>
#include <QTimer>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Tr;
using ptz_devices::DriverOperation;
using ptz_devices::IPtzDriver;

namespace {

CPTZStateStorageManager *Storage()
{
    return Tarn::Base::CSingleton<CPTZStateStorageManager>::Instance();
}

ZephPluginManager::CPTZBusinessInterfaceMgr *Business()
{
    return Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance();
}

bool IsMove(uint32_t command)
{
    return command >= PTZ_CMD_TILT_UP && command <= PTZ_CMD_DOWN_RIGHT;
}

bool IsLensAxis(uint32_t command)
{
    return command >= PTZ_CMD_ZOOM_IN && command <= PTZ_CMD_IRIS_CLOSE;
}

// Stops that must reach the camera whatever the lock or permission says.
bool IsSafeStop(const PTZControlCommand &command)
{
    return command.action == PTZ_ACTION_STOP &&
           (IsMove(command.command) || IsLensAxis(command.command) || command.command == PTZ_CMD_AUTO_PAN ||
            command.command == PTZ_CMD_STOP_RUNNING);
}

void MoveDirections(uint32_t command, int &pan, int &tilt)
{
    static const int table[8][2] = {{0, 1}, {0, -1}, {-1, 0}, {1, 0}, {-1, 1}, {1, 1}, {-1, -1}, {1, -1}};
    const int i = int(command) - int(PTZ_CMD_TILT_UP);
    pan = table[i][0];
    tilt = table[i][1];
}

} // namespace

struct CUniversalPTZController::Pending
{
    enum Kind { ControlCommand, PresetRequest, CruiseRequest, ParkAction, CruiseRecover, AutoTrackSet, AutoTrackGet, Resume };

    Kind kind = ControlCommand;
    QString camera;
    QString owner; // as signalled: the request's owner or the camera
    PTZControlCommand command;
    PresetControlRequest preset;
    CruiseControlRequest cruise;
    SetParkActionRequest park;
    SetPatrolRecoverConfigRequest recover;
    bool on = false;
    // What a 44 actually stopped: 1 pattern, 2 patrol.
    int stopped_kind = 0;
    bool resume_patrol = false;
    int resume_index = 0;

    QPointer<IPtzDriver> driver;
    quint64 request_id = 0;
    qint64 deadline = 0;
};

struct CUniversalPTZController::Private
{
    using Key = QPair<const QObject *, quint64>;
    QMap<Key, std::shared_ptr<CUniversalPTZController::Pending>> pending;
    QSet<const QObject *> connected_drivers;
    // Cameras whose interruption notice is on its way; the camera's own
    // report of the same interruption is then not repeated.
    QSet<QString> notices_pending;
    QTimer *watchdog = nullptr;
    QElapsedTimer clock;
    int timeout_ms = 30000;
};

CUniversalPTZController::CUniversalPTZController(QObject *parent) : QObject(parent), d(new Private)
{
    registerMetaTypes();
    d->clock.start();
    d->watchdog = new QTimer(this);
    d->watchdog->setInterval(1000);
    connect(d->watchdog, &QTimer::timeout, this, &CUniversalPTZController::OnWatchdog);
    // Interruptions recorded by panels (a preset call, a pattern) come back to a device controller.
    Storage()->AddResumeHandler(this, [this](bool is_patrol, const QString &camera, int index) {
        ResumeInterrupted(camera, is_patrol, index);
    });
}

CUniversalPTZController::~CUniversalPTZController() = default;

int CUniversalPTZController::PendingRequestCount() const
{
    return d->pending.size();
}

void CUniversalPTZController::SetRequestTimeout(int ms)
{
    d->timeout_ms = qMax(1, ms);
    d->watchdog->setInterval(qBound(10, ms / 4, 1000));
}

IPtzDriver *CUniversalPTZController::Driver(const QString &camera, QString *error)
{
    IPtzDriver *driver = detail::DriverForCamera(camera, error);
    EnsureConnected(driver);
    return driver;
}

void CUniversalPTZController::EnsureConnected(IPtzDriver *driver)
{
    if (driver && !d->connected_drivers.contains(driver)) {
        d->connected_drivers.insert(driver);
        connect(driver, &IPtzDriver::replied, this, &CUniversalPTZController::OnDriverReplied);
        connect(driver, &QObject::destroyed, this, &CUniversalPTZController::OnDriverGone);
        const QPointer<IPtzDriver> guard(driver);
        connect(driver, &IPtzDriver::activityInterrupted, this,
                [this, guard](ptz_devices::DeviceActivity activity, int number) {
                    if (!guard)
                        return;
                    const QString cam = guard->cameraId();
                    if (d->notices_pending.contains(cam))
                        return;
                    // A pattern being started reports the patrol it ends once it is answered.
                    for (const auto &pending : qAsConst(d->pending)) {
                        if (pending->driver == guard && pending->kind == Pending::ControlCommand &&
                            (pending->command.command == PTZ_CMD_PATTERN_RUN ||
                             pending->command.command == PTZ_CMD_PATTERN_RECORD_START))
                            return;
                    }
                    CPTZStateStorageManager *storage = Storage();
                    // Interruptions this controller did not cause itself (a preset call,
                    // another client) still reach the panels.
                    bool running = false;
                    switch (activity) {
                    case ptz_devices::DeviceActivity::AutoScan:
                        running = storage->IsAutoScan(cam, false);
                        break;
                    case ptz_devices::DeviceActivity::Patrol:
                        running = storage->IsCruising(cam);
                        break;
                    case ptz_devices::DeviceActivity::Pattern:
                        running = storage->IsRunningPattern(cam);
                        break;
                    default:
                        break;
                    }
                    if (!running)
                        return;
                    emit SignalPTZPanelInterrupt(cam, cam, false,
                                                 activity == ptz_devices::DeviceActivity::Patrol ? number : -1);
                    if (activity == ptz_devices::DeviceActivity::AutoScan)
                        storage->SetAutoScan(cam, false, false);
                    else if (activity == ptz_devices::DeviceActivity::Patrol)
                        storage->SetCruising(cam, false, -1);
                    else
                        storage->SetRunningPattern(cam, -1);
                });
        connect(driver, &IPtzDriver::activityResumed, this,
                [guard](ptz_devices::DeviceActivity activity, int number) {
                    if (!guard)
                        return;
                    const QString cam = guard->cameraId();
                    CPTZStateStorageManager *storage = Storage();
                    int pending_index = 0;
                    if (activity == ptz_devices::DeviceActivity::Patrol) {
                        if (storage->IsInterruptCruise(cam, pending_index))
                            storage->ClearInterrupt(cam);
                        storage->SetCruising(cam, true, number);
                    } else if (activity == ptz_devices::DeviceActivity::Pattern) {
                        if (storage->IsInterruptPattern(cam, pending_index))
                            storage->ClearInterrupt(cam);
                        storage->SetRunningPattern(cam, number);
                    }
                });
    }
}

void CUniversalPTZController::Track(IPtzDriver *driver, quint64 request_id, const std::shared_ptr<Pending> &pending)
{
    EnsureConnected(driver);
    pending->driver = driver;
    pending->request_id = request_id;
    pending->deadline = d->clock.elapsed() + d->timeout_ms;
    d->pending.insert(qMakePair(static_cast<const QObject *>(driver), request_id), pending);
    if (!d->watchdog->isActive())
        d->watchdog->start();
}

void CUniversalPTZController::FailLater(const std::shared_ptr<Pending> &pending, int error_code, const QString &error)
{
    QTimer::singleShot(0, this, [this, pending, error_code, error] { Finish(pending, false, error, error_code); });
}

void CUniversalPTZController::OnDriverGone(QObject *driver)
{
    d->connected_drivers.remove(driver);
    const auto keys = d->pending.keys();
    for (const auto &key : keys) {
        if (key.first != driver)
            continue;
        const auto pending = d->pending.take(key);
        Finish(pending, false, Tr("The camera was removed before it answered."), kErrorNoDevice);
    }
}

void CUniversalPTZController::OnWatchdog()
{
    const qint64 now = d->clock.elapsed();
    const auto keys = d->pending.keys();
    for (const auto &key : keys) {
        const auto it = d->pending.find(key);
        if (it == d->pending.end() || (*it)->deadline > now)
            continue;
        const auto pending = d->pending.take(key);
        Finish(pending, false, Tr("The camera did not answer in time."), kErrorDevice);
    }
    if (d->pending.isEmpty())
        d->watchdog->stop();
}

void CUniversalPTZController::OnDriverReplied(const ptz_devices::DriverReply &reply)
{
    const auto pending = d->pending.take(qMakePair(static_cast<const QObject *>(sender()), reply.requestId));
    if (!pending)
        return;
    if (d->pending.isEmpty())
        d->watchdog->stop();
    if (!reply.ok) {
        Finish(pending, false, reply.error.isEmpty() ? Tr("The camera refused the request.") : reply.error,
               kErrorDevice);
        return;
    }
    CPTZStateStorageManager *storage = Storage();
    switch (pending->kind) {
    case Pending::AutoTrackGet:
        pending->on = reply.result.toBool();
        break;
    case Pending::PresetRequest:
        if (pending->preset.operation == "SetPreset") {
            PresetInfo info = reply.result.canConvert<ptz_devices::DevicePreset>()
                                  ? detail::ToPresetInfo(reply.result.value<ptz_devices::DevicePreset>())
                                  : PresetInfo();
            if (info.preset_index <= 0) {
                info.preset_index = pending->preset.preset_index;
                info.preset_type = PRESET_TYPE_DEVICE;
                info.preset_name = pending->preset.preset_name;
            }
            detail::CPTZDataCache::Instance()->UpsertPreset(pending->camera, info);
        } else if (pending->preset.operation == "DelPreset") {
            detail::CPTZDataCache::Instance()->RemovePreset(pending->camera, pending->preset.preset_index,
                                                            PRESET_TYPE_DEVICE);
        }
        break;
    case Pending::CruiseRequest: {
        const CruiseControlRequest &r = pending->cruise;
        if (r.operation == "CruiseRouteControl") {
            storage->ClearInterrupt(pending->camera);
            if (r.action == 0) {
                storage->SetAutoScan(pending->camera, false, false);
                storage->SetRunningPattern(pending->camera, -1);
                storage->SetCruising(pending->camera, true, r.cruise_index);
            } else {
                storage->SetCruising(pending->camera, false, -1);
            }
        } else if (r.operation == "DelCruiseRoute" || r.operation == "ModifyCruiseRoute") {
            if (storage->GetRunningCruise(pending->camera) == r.cruise_index)
                storage->SetCruising(pending->camera, false, -1);
        }
        break;
    }
    case Pending::Resume:
        // The state storage marked it running already.
        return;
    default:
        break;
    }
    Finish(pending, true, QString(), kErrorNone);
}

void CUniversalPTZController::Finish(const std::shared_ptr<Pending> &pending, bool ok, const QString &error,
                                     int error_code)
{
    if (!ok)
        ZEPH_LOG_WARN("PTZ request for %s failed: %s", qUtf8Printable(pending->camera), qUtf8Printable(error));
    switch (pending->kind) {
    case Pending::ControlCommand:
        if (ok) {
            ControlSucceeded(pending->command, pending->owner);
        } else {
            emit SignalExecutionFailed(pending->camera, pending->owner, error_code, int(pending->command.command));
            emit SignalMessageTipNeeded(error, 0);
        }
        break;
    case Pending::PresetRequest:
        // The caller raises the error text at the level its action calls for; a tip here would show it twice.
        emit signalPresetFinished(pending->preset, ok ? QString() : error);
        break;
    case Pending::CruiseRequest:
        if (!ok)
            emit SignalMessageTipNeeded(error, 0);
        emit signalCruiseFinished(pending->cruise, ok ? QString() : error);
        break;
    case Pending::ParkAction:
        if (ok) {
            Business()->SetPTZParkAction(pending->park);
            emit SignalMessageTipNeeded(Tr("The park action was saved."), 3);
        } else {
            emit SignalMessageTipNeeded(error, 0);
        }
        emit SignalParkActionFinished(pending->camera, ok ? QString() : error);
        break;
    case Pending::CruiseRecover:
        if (ok) {
            Business()->SetPatrolRecoverConfig(pending->recover);
            emit SignalMessageTipNeeded(Tr("The patrol recovery was saved."), 3);
        } else {
            emit SignalMessageTipNeeded(error, 0);
        }
        emit SignalCruiseRecoverFinished(pending->camera, ok ? QString() : error);
        break;
    case Pending::AutoTrackSet:
    case Pending::AutoTrackGet:
        if (ok) {
            emit SignalPTZAutoTrackState(pending->owner, pending->camera, pending->on);
        } else {
            emit SignalMessageTipNeeded(error, 0);
            // Puts the caller's button back to what the camera last reported.
            const bool known = pending->driver ? pending->driver->status().autoTrack : false;
            emit SignalPTZAutoTrackState(pending->owner, pending->camera, known);
        }
        break;
    case Pending::Resume:
        if (!ok) {
            if (pending->resume_patrol)
                Storage()->SetCruising(pending->camera, false, -1);
            else
                Storage()->SetRunningPattern(pending->camera, -1);
            emit SignalMessageTipNeeded(error, 0);
        }
        break;
    }
}

bool CUniversalPTZController::CheckLock(const QString &camera, const QString &owner, QString *error)
{
    const std::string user = CCommonFunction::ResolveUser(owner).toStdString();
    std::string holder;
    if (Business()->IsPTZControlAllowed(camera.toStdString(), user, &holder))
        return true;
    *error = Tr("The PTZ of this camera is locked by %1.").arg(QString::fromStdString(holder));
    return false;
}

void CUniversalPTZController::Control(const PTZControlCommand &command)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::ControlCommand;
    pending->command = command;
    pending->camera = QString::fromStdString(command.camera_index_code);
    pending->owner = command.owner_index_code.empty() ? pending->camera
                                                      : QString::fromStdString(command.owner_index_code);
    const QString &camera = pending->camera;
    const uint32_t code = command.command;

    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(camera, &error, &unknown);
    if (unknown) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    if (command.action > PTZ_ACTION_STOP) {
        FailLater(pending, kErrorInvalidArgument, Tr("The action %1 is neither start (0) nor stop (1).").arg(command.action));
        return;
    }

    static const QSet<uint32_t> known_codes = {
        PTZ_CMD_LIGHT, PTZ_CMD_WIPER, PTZ_CMD_AUTO_PAN, PTZ_CMD_PATTERN_RECORD_START, PTZ_CMD_PATTERN_RECORD_STOP,
        PTZ_CMD_PATTERN_RUN, PTZ_CMD_STOP_RUNNING, PTZ_CMD_PATTERN_DELETE, PTZ_CMD_LOCK, PTZ_CMD_UNLOCK,
        PTZ_CMD_ONE_KEY_FOCUS, PTZ_CMD_LENS_INIT};
    if (!IsMove(code) && !IsLensAxis(code) && !known_codes.contains(code)) {
        FailLater(pending, kErrorUnsupported, Tr("The PTZ command %1 is not supported.").arg(code));
        return;
    }

    if (code == PTZ_CMD_LOCK || code == PTZ_CMD_UNLOCK) {
        // Locks are the site's bookkeeping, not the camera's.
        const std::string user = CCommonFunction::ResolveUser(pending->owner).toStdString();
        const std::string cam = command.camera_index_code;
        if (!CCommonFunction::IsCameraPermissionValid(pending->owner, camera, ResourceData::PERMISSION_PTZ_CONTROL)) {
            FailLater(pending, kErrorNoPermission, Tr("You have no PTZ control permission for this camera."));
            return;
        }
        if (code == PTZ_CMD_LOCK) {
            const int seconds = command.param == 0 ? detail::kDefaultLockSeconds : command.param;
            if (seconds < 1 || seconds > detail::kMaxLockSeconds) {
                FailLater(pending, kErrorInvalidArgument,
                          Tr("The lock time must lie between 1 and %1 seconds.").arg(detail::kMaxLockSeconds));
                return;
            }
            pending->command.param = seconds;
        }
        QTimer::singleShot(0, this, [this, pending, user, cam, code] {
            PTZLockStatusRequest request;
            request.camera_index_code = cam;
            PTZLockStatusResponse before;
            const bool had_lock = Business()->GetPTZLockStatus(request, before) && before.locked == 1;
            const bool ok = code == PTZ_CMD_LOCK ? Business()->LockPTZ(cam, user, pending->command.param)
                                                 : Business()->UnlockPTZ(cam, user);
            if (!ok) {
                Finish(pending, false, Business()->LastError(), kErrorLockedByOther);
                emit SignalSeizedByOtherUser(pending->camera);
                return;
            }
            Finish(pending, true, QString(), kErrorNone);
            if (code == PTZ_CMD_LOCK && had_lock) {
                PTZLockStatusResponse after;
                if (Business()->GetPTZLockStatus(request, after) && after.user_name != before.user_name)
                    emit SignalSeizedByOtherUser(pending->camera);
            }
        });
        return;
    }

    if (!driver) {
        FailLater(pending, kErrorNoDevice, error);
        return;
    }
    const bool safe_stop = IsSafeStop(command);
    if (!safe_stop) {
        if (!CCommonFunction::IsCameraPermissionValid(pending->owner, camera, ResourceData::PERMISSION_PTZ_CONTROL)) {
            FailLater(pending, kErrorNoPermission, Tr("You have no PTZ control permission for this camera."));
            return;
        }
        if (!CheckLock(camera, pending->owner, &error)) {
            FailLater(pending, kErrorLockedByOther, error);
            QTimer::singleShot(0, this, [this, camera] { emit SignalSeizedByOtherUser(camera); });
            return;
        }
    }

    const ptz_devices::DriverCapabilities caps = driver->capabilities();
    const bool start = command.action == PTZ_ACTION_START;
    const bool needs_speed = start && (IsMove(code) || IsLensAxis(code) || code == PTZ_CMD_AUTO_PAN);
    if (needs_speed && (command.speed < caps.minSpeed || command.speed > caps.maxSpeed)) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The speed %1 is outside %2 to %3.").arg(command.speed).arg(caps.minSpeed).arg(caps.maxSpeed));
        return;
    }

    CPTZStateStorageManager *storage = Storage();
    // Pattern commands carry the pattern number in `param`.
    int pattern = command.param;
    if (pattern <= 0 && code == PTZ_CMD_PATTERN_RECORD_STOP)
        pattern = storage->GetRecordPattern(camera);
    const bool pattern_code = code == PTZ_CMD_PATTERN_RECORD_START || code == PTZ_CMD_PATTERN_RECORD_STOP ||
                              code == PTZ_CMD_PATTERN_RUN || code == PTZ_CMD_PATTERN_DELETE;
    if (pattern_code) {
        if (caps.patternSlots <= 0) {
            FailLater(pending, kErrorUnsupported, Tr("This camera has no patterns."));
            return;
        }
        if (pattern < 1 || pattern > caps.patternSlots) {
            FailLater(pending, kErrorInvalidArgument,
                      Tr("The pattern number %1 is outside 1 to %2.").arg(command.param).arg(caps.patternSlots));
            return;
        }
        pending->command.param = pattern;
    }

    if (start && (IsMove(code) || code == PTZ_CMD_ZOOM_IN || code == PTZ_CMD_ZOOM_OUT))
        HandleManualInterrupt(command, pending->owner, driver);

    quint64 id = 0;
    if (IsMove(code)) {
        int pan = 0;
        int tilt = 0;
        MoveDirections(code, pan, tilt);
        id = start ? driver->movePanTilt(pan, tilt, command.speed) : driver->stopPanTilt();
    } else if (IsLensAxis(code)) {
        const int direction = start ? ((code - PTZ_CMD_ZOOM_IN) % 2 == 0 ? 1 : -1) : 0;
        const int speed = start ? command.speed : 0;
        if (code <= PTZ_CMD_ZOOM_OUT)
            id = driver->zoom(direction, speed);
        else if (code <= PTZ_CMD_FOCUS_FAR)
            id = driver->focus(-direction, speed); // 13 brings the focus near, 14 far
        else
            id = driver->iris(direction, speed);
    } else {
        switch (code) {
        case PTZ_CMD_LIGHT:
            id = driver->setLight(start);
            break;
        case PTZ_CMD_WIPER:
            id = driver->setWiper(start);
            break;
        case PTZ_CMD_AUTO_PAN:
            id = driver->setAutoScan(start, start ? command.speed : 0);
            break;
        case PTZ_CMD_PATTERN_RECORD_START:
            id = driver->startPatternRecord(pattern);
            break;
        case PTZ_CMD_PATTERN_RECORD_STOP:
            id = driver->stopPatternRecord(pattern);
            break;
        case PTZ_CMD_PATTERN_RUN:
            id = driver->playPattern(pattern);
            break;
        case PTZ_CMD_PATTERN_DELETE:
            id = driver->removePattern(pattern);
            break;
        case PTZ_CMD_STOP_RUNNING: {
            const ptz_devices::DeviceStatus status = driver->status();
            int playing = command.param > 0 ? command.param : storage->GetRunningPattern(camera);
            if (playing <= 0)
                playing = status.runningPattern;
            if (playing > 0) {
                pending->stopped_kind = 1;
                pending->command.param = playing;
                id = driver->stopPattern(playing);
            } else {
                pending->stopped_kind = 2;
                id = driver->stopPatrol(0);
            }
            break;
        }
        case PTZ_CMD_ONE_KEY_FOCUS:
        case PTZ_CMD_LENS_INIT:
            if (!start) {
                // There is nothing to stop; answer like the camera would.
                QTimer::singleShot(0, this, [this, pending] { Finish(pending, true, QString(), kErrorNone); });
                return;
            }
            id = code == PTZ_CMD_ONE_KEY_FOCUS ? driver->oneKeyFocus() : driver->initLens();
            break;
        default:
            break;
        }
    }
    Track(driver, id, pending);
}

void CUniversalPTZController::HandleManualInterrupt(const PTZControlCommand &command, const QString &owner,
                                                    IPtzDriver *driver)
{
    Q_UNUSED(driver)
    const QString camera = QString::fromStdString(command.camera_index_code);
    CPTZStateStorageManager *storage = Storage();
    storage->RestartInterruptWait(camera);
    const bool auto_scan = storage->IsAutoScan(camera, false);
    const int cruise = storage->GetRunningCruise(camera);
    const int pattern = storage->GetRunningPattern(camera);
    if (!auto_scan && cruise <= 0 && pattern <= 0)
        return;
    if (CPTZConfigManager::Instance()->ResumeCruiseAfterInterrupt()) {
        if (cruise > 0) {
            storage->SetInterruptCruise(camera, cruise, storage->GetInterruptWaitTime(), this,
                                        [this, camera, cruise] { ResumeInterrupted(camera, true, cruise); });
        } else if (pattern > 0) {
            storage->SetInterruptPattern(camera, pattern, storage->GetInterruptWaitTime(), this,
                                         [this, camera, pattern] { ResumeInterrupted(camera, false, pattern); });
        }
    }
    ZEPH_LOG_INFO("manual control of %s interrupts auto-scan %d, patrol %d, pattern %d", qUtf8Printable(camera),
                  int(auto_scan), cruise, pattern);
    // The notice goes out from the event loop, ahead of the move's answer,
    // while the state storage still shows what ran.
    d->notices_pending.insert(camera);
    QTimer::singleShot(0, this, [this, owner, camera, cruise] {
        d->notices_pending.remove(camera);
        emit SignalPTZPanelInterrupt(owner, camera, false, cruise > 0 ? cruise : -1);
        // Panels may have cleared these already; the camera stops them in any case.
        CPTZStateStorageManager *storage = Storage();
        storage->SetAutoScan(camera, false, false);
        storage->SetCruising(camera, false, -1);
        storage->SetRunningPattern(camera, -1);
    });
}

void CUniversalPTZController::ResumeInterrupted(const QString &camera, bool is_patrol, int index)
{
    QString error;
    IPtzDriver *driver = Driver(camera, &error);
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::Resume;
    pending->camera = camera;
    pending->owner = camera;
    pending->resume_patrol = is_patrol;
    pending->resume_index = index;
    if (!driver) {
        FailLater(pending, kErrorNoDevice, error);
        return;
    }
    const ptz_devices::DeviceStatus status = driver->status();
    if (is_patrol && status.runningPatrol == index)
        return;
    if (!is_patrol && status.runningPattern == index)
        return;
    ZEPH_LOG_INFO("resuming %s %d of %s", is_patrol ? "patrol" : "pattern", index, qUtf8Printable(camera));
    Track(driver, is_patrol ? driver->startPatrol(index) : driver->playPattern(index), pending);
}

void CUniversalPTZController::ControlSucceeded(const PTZControlCommand &command, const QString &owner)
{
    const QString camera = QString::fromStdString(command.camera_index_code);
    CPTZStateStorageManager *storage = Storage();
    const bool start = command.action == PTZ_ACTION_START;
    switch (command.command) {
    case PTZ_CMD_LIGHT:
        storage->SetLight(camera, start);
        break;
    case PTZ_CMD_WIPER:
        storage->SetWiper(camera, start);
        break;
    case PTZ_CMD_AUTO_PAN:
        storage->SetAutoScan(camera, start, false);
        break;
    case PTZ_CMD_PATTERN_RECORD_START:
    case PTZ_CMD_PATTERN_RUN: {
        const int cruise = storage->GetRunningCruise(camera);
        if (storage->IsAutoScan(camera, false) || cruise > 0) {
            emit SignalPTZPanelInterrupt(owner, camera, true, cruise);
            storage->SetAutoScan(camera, false, false);
            storage->SetCruising(camera, false, -1);
        }
        storage->ClearInterrupt(camera);
        if (command.command == PTZ_CMD_PATTERN_RUN)
            storage->SetRunningPattern(camera, command.param);
        else
            storage->SetRecordPattern(camera, command.param);
        break;
    }
    case PTZ_CMD_PATTERN_RECORD_STOP:
        storage->SetRecordPattern(camera, 0);
        break;
    case PTZ_CMD_PATTERN_DELETE:
        if (storage->GetRecordPattern(camera) == command.param)
            storage->SetRecordPattern(camera, 0);
        if (storage->GetRunningPattern(camera) == command.param)
            storage->SetRunningPattern(camera, -1);
        break;
    case PTZ_CMD_STOP_RUNNING:
        storage->ClearInterrupt(camera);
        storage->SetRunningPattern(camera, -1);
        storage->SetCruising(camera, false, -1);
        break;
    default:
        break;
    }
    emit SignalExecutionSucceeded(camera, owner, command);
}

void CUniversalPTZController::Preset(const PresetControlRequest &request)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::PresetRequest;
    pending->preset = request;
    pending->camera = QString::fromStdString(request.camera_index_code);
    pending->owner = request.owner_index_code.empty() ? pending->camera
                                                      : QString::fromStdString(request.owner_index_code);
    const std::string &op = request.operation;
    if (op != "SetPreset" && op != "GotoPreset" && op != "DelPreset") {
        FailLater(pending, kErrorUnsupported,
                  Tr("The preset operation \"%1\" is not supported.").arg(QString::fromStdString(op)));
        return;
    }
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (!driver) {
        FailLater(pending, unknown ? kErrorUnknownCamera : kErrorNoDevice, error);
        return;
    }
    const int slot_count = qMin(detail::kMaxPresetIndex, driver->capabilities().presetSlots);
    if (request.preset_index < 1 || request.preset_index > slot_count) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The preset number %1 is outside 1 to %2.").arg(request.preset_index).arg(slot_count));
        return;
    }
    if (!CCommonFunction::IsCameraPermissionValid(pending->owner, pending->camera,
                                                  ResourceData::PERMISSION_PTZ_CONTROL)) {
        FailLater(pending, kErrorNoPermission, Tr("You have no PTZ control permission for this camera."));
        return;
    }
    if (op == "GotoPreset" && !CheckLock(pending->camera, pending->owner, &error)) {
        FailLater(pending, kErrorLockedByOther, error);
        const QString camera = pending->camera;
        QTimer::singleShot(0, this, [this, camera] { emit SignalSeizedByOtherUser(camera); });
        return;
    }
    if (op == "SetPreset" && !request.preset_name.empty()) {
        const QString fault =
            detail::PresetNameFault(pending->camera, request.preset_index, PRESET_TYPE_DEVICE, request.preset_name);
        if (!fault.isEmpty()) {
            FailLater(pending, kErrorInvalidArgument, fault);
            return;
        }
    }
    quint64 id = 0;
    if (op == "SetPreset") {
        QString name = QString::fromStdString(request.preset_name);
        if (name.isEmpty())
            name = Tr("Preset%1").arg(request.preset_index);
        id = driver->setPreset(request.preset_index, name);
    } else if (op == "GotoPreset") {
        id = driver->gotoPreset(request.preset_index);
    } else {
        id = driver->removePreset(request.preset_index);
    }
    Track(driver, id, pending);
}

void CUniversalPTZController::Cruise(const CruiseControlRequest &request)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::CruiseRequest;
    pending->cruise = request;
    pending->camera = QString::fromStdString(request.camera_index_code);
    pending->owner = pending->camera;
    const std::string &op = request.operation;
    if (op != "CruiseRouteControl" && op != "DelCruiseRoute" && op != "ModifyCruiseRoute") {
        FailLater(pending, kErrorUnsupported,
                  Tr("The patrol operation \"%1\" is not supported.").arg(QString::fromStdString(op)));
        return;
    }
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (unknown) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    if (request.cruise_index < 1 || request.cruise_index > detail::kMaxCruiseIndex) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The patrol number %1 is outside 1 to %2.").arg(request.cruise_index).arg(detail::kMaxCruiseIndex));
        return;
    }
    // Delete and modify carry the patrol kind; only device patrols live on the camera.
    const bool device_patrol = op == "CruiseRouteControl" || request.action == CRUISE_TYPE_DEVICE ||
                               (op == "ModifyCruiseRoute" && request.action == CRUISE_TYPE_NONE);
    if (op == "ModifyCruiseRoute") {
        const QString invalid =
            detail::CheckCruisePoints(request.points, device_patrol ? CRUISE_TYPE_DEVICE : request.action, driver);
        if (!invalid.isEmpty()) {
            FailLater(pending, kErrorInvalidArgument, invalid);
            return;
        }
    }
    if (op == "CruiseRouteControl" && request.action != 0 && request.action != 1) {
        FailLater(pending, kErrorInvalidArgument, Tr("The action %1 is neither start (0) nor stop (1).").arg(request.action));
        return;
    }
    if (!device_patrol) {
        // Client patrols are stored by the host; nothing to tell the camera.
        QTimer::singleShot(0, this, [this, pending] { Finish(pending, true, QString(), kErrorNone); });
        return;
    }
    if (!driver) {
        FailLater(pending, kErrorNoDevice, error);
        return;
    }
    const bool stop = op == "CruiseRouteControl" && request.action == 1;
    if (!stop) {
        if (!CCommonFunction::IsCameraPermissionValid(QString(), pending->camera, ResourceData::PERMISSION_PTZ_CONTROL)) {
            FailLater(pending, kErrorNoPermission, Tr("You have no PTZ control permission for this camera."));
            return;
        }
        if (op == "CruiseRouteControl" && !CheckLock(pending->camera, QString(), &error)) {
            FailLater(pending, kErrorLockedByOther, error);
            const QString camera = pending->camera;
            QTimer::singleShot(0, this, [this, camera] { emit SignalSeizedByOtherUser(camera); });
            return;
        }
    }
    const int slot_count = driver->capabilities().patrolSlots;
    if (request.cruise_index > slot_count) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The patrol number %1 is outside 1 to %2.").arg(request.cruise_index).arg(slot_count));
        return;
    }
    quint64 id = 0;
    if (op == "CruiseRouteControl") {
        id = stop ? driver->stopPatrol(request.cruise_index) : driver->startPatrol(request.cruise_index);
    } else if (op == "DelCruiseRoute" || request.points.empty()) {
        id = driver->removePatrol(request.cruise_index);
    } else {
        QVector<ptz_devices::DevicePatrolPoint> points;
        points.reserve(int(request.points.size()));
        for (const CruisePoint &p : request.points)
            points.append(detail::ToDevicePoint(p));
        id = driver->writePatrol(request.cruise_index, points);
    }
    Track(driver, id, pending);
}

void CUniversalPTZController::SetParkAction(const SetParkActionRequest &request)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::ParkAction;
    pending->park = request;
    pending->camera = QString::fromStdString(request.camera_index_code);
    pending->owner = pending->camera;
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (!driver) {
        FailLater(pending, unknown ? kErrorUnknownCamera : kErrorNoDevice, error);
        return;
    }
    if (request.wait_time < 5 || request.wait_time > 720) {
        FailLater(pending, kErrorInvalidArgument, Tr("The waiting time must lie between 5 and 720 seconds."));
        return;
    }
    ptz_devices::ParkAction action;
    action.enabled = request.enabled;
    action.waitingSeconds = request.wait_time;
    action.target = request.target_id;
    if (request.action_type == int(ptz_devices::ParkActionType::Preset)) {
        action.type = ptz_devices::ParkActionType::Preset;
        if (request.target_id < 0 || request.target_id > detail::kMaxPresetIndex) {
            FailLater(pending, kErrorInvalidArgument,
                      Tr("The preset number %1 is outside 1 to %2.").arg(request.target_id).arg(detail::kMaxPresetIndex));
            return;
        }
    } else if (request.action_type == int(ptz_devices::ParkActionType::Patrol)) {
        action.type = ptz_devices::ParkActionType::Patrol;
        if (request.target_id < 1 || request.target_id > detail::kMaxCruiseIndex) {
            FailLater(pending, kErrorInvalidArgument,
                      Tr("The patrol number %1 is outside 1 to %2.").arg(request.target_id).arg(detail::kMaxCruiseIndex));
            return;
        }
    } else {
        FailLater(pending, kErrorInvalidArgument, Tr("The park action type %1 is unknown.").arg(request.action_type));
        return;
    }
    Track(driver, driver->setParkAction(action), pending);
}

void CUniversalPTZController::SetCruiseRecover(const SetPatrolRecoverConfigRequest &request)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::CruiseRecover;
    pending->recover = request;
    pending->camera = QString::fromStdString(request.camera_index_code);
    pending->owner = pending->camera;
    if (!request.enabled)
        pending->recover.wait_time = 0;
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (!driver) {
        FailLater(pending, unknown ? kErrorUnknownCamera : kErrorNoDevice, error);
        return;
    }
    static const QSet<int> choices = {15, 30, 45, 60, 90, 120};
    if (request.enabled && !choices.contains(request.wait_time)) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The waiting time %1 s is not one of 15, 30, 45, 60, 90 or 120 s.").arg(request.wait_time));
        return;
    }
    ptz_devices::PatrolRecovery recovery;
    recovery.enabled = request.enabled;
    recovery.waitingSeconds = pending->recover.wait_time;
    Track(driver, driver->setPatrolRecovery(recovery), pending);
}

void CUniversalPTZController::SetAutoTrack(const SetAutoTrackRequest &request)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::AutoTrackSet;
    pending->camera = QString::fromStdString(request.camera_index_code);
    pending->owner = pending->camera;
    pending->on = request.enable != 0;
    QString error;
    IPtzDriver *driver = Driver(pending->camera, &error);
    if (!driver) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    Track(driver, driver->setAutoTrack(pending->on), pending);
}

void CUniversalPTZController::GetAutoTrack(const GetAutoTrackRequest &request)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::AutoTrackGet;
    pending->camera = QString::fromStdString(request.camera_index_code);
    pending->owner = pending->camera;
    QString error;
    IPtzDriver *driver = Driver(pending->camera, &error);
    if (!driver) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    Track(driver, driver->getAutoTrack(), pending);
}

} // namespace zeph_ptz_controller
