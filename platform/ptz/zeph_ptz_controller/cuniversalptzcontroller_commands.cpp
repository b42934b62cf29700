// Control: one table row per command kind, with how it is admitted, sent to
// the driver and what its success means for the shared state.
#include "zeph_ptz_controller/cuniversalptzcontroller_p.h"

#include "zeph_ptz_controller/ccommonfunction.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QTimer>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Activity;
using detail::Pending;
using detail::PendingPtr;
using detail::Tr;
using detail::UniversalHandlers;
using ptz_devices::IPtzDriver;

namespace {

struct SendContext
{
    CUniversalPTZController &controller;
    const PendingPtr &pending;
    IPtzDriver *driver;
    bool start;
};

enum Flag {
    kNeedsSpeed = 1,    // a start carries a speed within the camera's range
    kContinuous = 2,    // held move: its release (action 1) always passes
    kPatternNumber = 4, // `param` names a pattern slot
    kInterrupts = 8,    // a start interrupts auto-scan, patrol and pattern
    kSiteOnly = 16,     // the site's bookkeeping: needs no driver, the lock decides itself
};

struct CommandKind
{
    uint32_t first;
    uint32_t last;
    int flags;
    // The driver request; 0 when the request was answered without one.
    quint64 (*send)(SendContext &ctx);
    // The shared state after a success (may be null).
    void (*fold)(CUniversalPTZController &c, Pending &p, const QString &camera, bool start);
    // What a stop (action 1) ends, so that its starter may always stop it.
    Activity (*stops)(const Pending &p);
};

quint64 SendMove(SendContext &ctx)
{
    static const int table[8][2] = {{0, 1}, {0, -1}, {-1, 0}, {1, 0}, {-1, 1}, {1, 1}, {-1, -1}, {1, -1}};
    const PTZControlCommand &command = ctx.pending->command;
    if (!ctx.start)
        return ctx.driver->stopPanTilt();
    const int i = int(command.command) - int(PTZ_CMD_TILT_UP);
    return ctx.driver->movePanTilt(table[i][0], table[i][1], command.speed);
}

quint64 SendLens(SendContext &ctx)
{
    const uint32_t code = ctx.pending->command.command;
    const int direction = ctx.start ? ((code - PTZ_CMD_ZOOM_IN) % 2 == 0 ? 1 : -1) : 0;
    const int speed = ctx.start ? ctx.pending->command.speed : 0;
    if (code <= PTZ_CMD_ZOOM_OUT)
        return ctx.driver->zoom(direction, speed);
    if (code <= PTZ_CMD_FOCUS_FAR)
        return ctx.driver->focus(-direction, speed); // 13 brings the focus near, 14 far
    return ctx.driver->iris(direction, speed);
}

quint64 SendLight(SendContext &ctx)
{
    return ctx.driver->setLight(ctx.start);
}

quint64 SendWiper(SendContext &ctx)
{
    return ctx.driver->setWiper(ctx.start);
}

quint64 SendAutoScan(SendContext &ctx)
{
    return ctx.driver->setAutoScan(ctx.start, ctx.start ? ctx.pending->command.speed : 0);
}

quint64 SendPattern(SendContext &ctx)
{
    const int pattern = ctx.pending->command.param;
    switch (ctx.pending->command.command) {
    case PTZ_CMD_PATTERN_RECORD_START:
        return ctx.driver->startPatternRecord(pattern);
    case PTZ_CMD_PATTERN_RECORD_STOP:
        return ctx.driver->stopPatternRecord(pattern);
    case PTZ_CMD_PATTERN_RUN:
        return ctx.driver->playPattern(pattern);
    default:
        return ctx.driver->removePattern(pattern);
    }
}

// The pattern a 44 ends: the one named, the one the panels know, or the camera's.
int PlayingPattern(const Pending &p, IPtzDriver *driver)
{
    int playing = p.command.param > 0 ? p.command.param : detail::Storage()->GetRunningPattern(p.camera);
    if (playing <= 0 && driver)
        playing = driver->status().runningPattern;
    return playing;
}

quint64 SendStopRunning(SendContext &ctx)
{
    Pending &p = *ctx.pending;
    const int playing = PlayingPattern(p, ctx.driver);
    if (playing > 0) {
        p.stopped_kind = 1;
        p.command.param = playing;
        return ctx.driver->stopPattern(playing);
    }
    p.stopped_kind = 2;
    return ctx.driver->stopPatrol(0);
}

quint64 SendLensAction(SendContext &ctx)
{
    if (!ctx.start) {
        // There is nothing to stop; answer like the camera would.
        UniversalHandlers::SucceedLater(ctx.controller, ctx.pending);
        return 0;
    }
    return ctx.pending->command.command == PTZ_CMD_ONE_KEY_FOCUS ? ctx.driver->oneKeyFocus() : ctx.driver->initLens();
}

quint64 SendLock(SendContext &ctx)
{
    CUniversalPTZController &c = ctx.controller;
    const PendingPtr pending = ctx.pending;
    QTimer::singleShot(0, &c, [&c, pending] {
        const std::string cam = pending->command.camera_index_code;
        const bool lock = pending->command.command == PTZ_CMD_LOCK;
        PTZLockStatusRequest request;
        request.camera_index_code = cam;
        PTZLockStatusResponse before;
        const bool had_lock = detail::Business()->GetPTZLockStatus(request, before) && before.locked == 1;
        // The signed-in user locks and unlocks, whoever the request names.
        const bool ok = lock ? detail::Business()->LockPTZ(cam, std::string(), pending->command.param)
                             : detail::Business()->UnlockPTZ(cam, std::string());
        if (!ok) {
            UniversalHandlers::Finish(c, pending, false, detail::Business()->LastError(),
                                      CUniversalPTZController::kErrorLockedByOther);
            emit c.SignalSeizedByOtherUser(pending->camera);
            return;
        }
        UniversalHandlers::Finish(c, pending, true, QString(), CUniversalPTZController::kErrorNone);
        PTZLockStatusResponse after;
        if (lock && had_lock && detail::Business()->GetPTZLockStatus(request, after)
            && after.user_name != before.user_name)
            emit c.SignalSeizedByOtherUser(pending->camera);
    });
    return 0;
}

void FoldLight(CUniversalPTZController &, Pending &, const QString &camera, bool start)
{
    detail::Storage()->SetLight(camera, start);
}

void FoldWiper(CUniversalPTZController &, Pending &, const QString &camera, bool start)
{
    detail::Storage()->SetWiper(camera, start);
}

void FoldAutoScan(CUniversalPTZController &c, Pending &p, const QString &camera, bool start)
{
    detail::Storage()->SetAutoScan(camera, start, false);
    if (start)
        UniversalHandlers::NoteStarted(c, camera, Activity::AutoScan, p.user);
}

void FoldPattern(CUniversalPTZController &c, Pending &p, const QString &camera, bool)
{
    CPTZStateStorageManager *storage = detail::Storage();
    const uint32_t code = p.command.command;
    const int pattern = p.command.param;
    if (code == PTZ_CMD_PATTERN_RECORD_START || code == PTZ_CMD_PATTERN_RUN) {
        const int cruise = storage->GetRunningCruise(camera);
        if (storage->IsAutoScan(camera, false) || cruise > 0) {
            emit c.SignalPTZPanelInterrupt(p.owner, camera, true, cruise);
            storage->SetAutoScan(camera, false, false);
            storage->SetCruising(camera, false, -1);
        }
        storage->ClearInterrupt(camera);
        const bool run = code == PTZ_CMD_PATTERN_RUN;
        if (run)
            storage->SetRunningPattern(camera, pattern);
        else
            storage->SetRecordPattern(camera, pattern);
        UniversalHandlers::NoteStarted(c, camera, run ? Activity::Pattern : Activity::PatternRecord, p.user);
    } else if (code == PTZ_CMD_PATTERN_RECORD_STOP) {
        storage->SetRecordPattern(camera, 0);
    } else {
        if (storage->GetRecordPattern(camera) == pattern)
            storage->SetRecordPattern(camera, 0);
        if (storage->GetRunningPattern(camera) == pattern)
            storage->SetRunningPattern(camera, -1);
    }
}

void FoldStopRunning(CUniversalPTZController &, Pending &, const QString &camera, bool)
{
    CPTZStateStorageManager *storage = detail::Storage();
    storage->ClearInterrupt(camera);
    storage->SetRunningPattern(camera, -1);
    storage->SetCruising(camera, false, -1);
}

Activity StopsAutoScan(const Pending &)
{
    return Activity::AutoScan;
}

Activity StopsRecording(const Pending &)
{
    return Activity::PatternRecord;
}

Activity StopsRunning(const Pending &p)
{
    return PlayingPattern(p, detail::DriverForCamera(p.camera, nullptr)) > 0 ? Activity::Pattern : Activity::Patrol;
}

const CommandKind kCommandKinds[] = {
    {PTZ_CMD_LIGHT, PTZ_CMD_LIGHT, 0, SendLight, FoldLight, nullptr},
    {PTZ_CMD_WIPER, PTZ_CMD_WIPER, 0, SendWiper, FoldWiper, nullptr},
    {PTZ_CMD_ZOOM_IN, PTZ_CMD_ZOOM_OUT, kNeedsSpeed | kContinuous | kInterrupts, SendLens, nullptr, nullptr},
    {PTZ_CMD_FOCUS_NEAR, PTZ_CMD_IRIS_CLOSE, kNeedsSpeed | kContinuous, SendLens, nullptr, nullptr},
    {PTZ_CMD_TILT_UP, PTZ_CMD_DOWN_RIGHT, kNeedsSpeed | kContinuous | kInterrupts, SendMove, nullptr, nullptr},
    {PTZ_CMD_AUTO_PAN, PTZ_CMD_AUTO_PAN, kNeedsSpeed, SendAutoScan, FoldAutoScan, StopsAutoScan},
    {PTZ_CMD_PATTERN_RECORD_START, PTZ_CMD_PATTERN_RECORD_START, kPatternNumber, SendPattern, FoldPattern, nullptr},
    {PTZ_CMD_PATTERN_RECORD_STOP, PTZ_CMD_PATTERN_RECORD_STOP, kPatternNumber, SendPattern, FoldPattern,
     StopsRecording},
    {PTZ_CMD_PATTERN_RUN, PTZ_CMD_PATTERN_RUN, kPatternNumber, SendPattern, FoldPattern, nullptr},
    {PTZ_CMD_PATTERN_DELETE, PTZ_CMD_PATTERN_DELETE, kPatternNumber, SendPattern, FoldPattern, nullptr},
    {PTZ_CMD_STOP_RUNNING, PTZ_CMD_STOP_RUNNING, 0, SendStopRunning, FoldStopRunning, StopsRunning},
    {PTZ_CMD_LOCK, PTZ_CMD_UNLOCK, kSiteOnly, SendLock, nullptr, nullptr},
    {PTZ_CMD_ONE_KEY_FOCUS, PTZ_CMD_LENS_INIT, 0, SendLensAction, nullptr, nullptr},
};

const CommandKind *KindOf(uint32_t code)
{
    for (const CommandKind &kind : kCommandKinds) {
        if (code >= kind.first && code <= kind.last)
            return &kind;
    }
    return nullptr;
}

// Checks of the request's own values; empty text when it may be sent.
QString CheckArguments(const CommandKind &kind, Pending &p, IPtzDriver *driver, int *error_code)
{
    const PTZControlCommand &command = p.command;
    const bool start = command.action == PTZ_ACTION_START;
    *error_code = CUniversalPTZController::kErrorInvalidArgument;
    if (command.command == PTZ_CMD_LOCK) {
        const int seconds = command.param == 0 ? detail::kDefaultLockSeconds : command.param;
        if (seconds < 1 || seconds > detail::kMaxLockSeconds)
            return Tr("The lock time must lie between 1 and %1 seconds.").arg(detail::kMaxLockSeconds);
        p.command.param = seconds;
    }
    if (!driver)
        return QString();
    const ptz_devices::DriverCapabilities caps = driver->capabilities();
    if ((kind.flags & kNeedsSpeed) && start && (command.speed < caps.minSpeed || command.speed > caps.maxSpeed))
        return Tr("The speed %1 is outside %2 to %3.").arg(command.speed).arg(caps.minSpeed).arg(caps.maxSpeed);
    if (kind.flags & kPatternNumber) {
        int pattern = command.param;
        if (pattern <= 0 && command.command == PTZ_CMD_PATTERN_RECORD_STOP)
            pattern = detail::Storage()->GetRecordPattern(p.camera);
        if (caps.patternSlots <= 0) {
            *error_code = CUniversalPTZController::kErrorUnsupported;
            return Tr("This camera has no patterns.");
        }
        if (pattern < 1 || pattern > caps.patternSlots)
            return Tr("The pattern number %1 is outside 1 to %2.").arg(command.param).arg(caps.patternSlots);
        p.command.param = pattern;
    }
    return QString();
}

} // namespace

void CUniversalPTZController::Control(const PTZControlCommand &command)
{
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::ControlCommand;
    pending->command = command;
    pending->camera = QString::fromStdString(command.camera_index_code);
    pending->owner =
        command.owner_index_code.empty() ? pending->camera : QString::fromStdString(command.owner_index_code);
    const uint32_t code = command.command;
    const bool start = command.action == PTZ_ACTION_START;

    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (unknown) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    if (command.action > PTZ_ACTION_STOP) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The action %1 is neither start (0) nor stop (1).").arg(command.action));
        return;
    }
    const CommandKind *kind = KindOf(code);
    if (!kind) {
        FailLater(pending, kErrorUnsupported, Tr("The PTZ command %1 is not supported.").arg(code));
        return;
    }
    const bool site_only = kind->flags & kSiteOnly;
    if (!driver && !site_only) {
        FailLater(pending, kErrorNoDevice, error);
        return;
    }
    // Releasing a held move never hurts, so it is never refused.
    const bool release = !start && (kind->flags & kContinuous);
    if (!release) {
        const Activity stops = !start && kind->stops ? kind->stops(*pending) : Activity::None;
        if (site_only) {
            // The lock and unlock rules are the site's own (a higher level takes over).
            pending->user = detail::ActingUser();
            if (!CCommonFunction::IsCameraPermissionValid(QString(), pending->camera,
                                                          ResourceData::PERMISSION_PTZ_CONTROL)) {
                FailLater(pending, kErrorNoPermission, Tr("You have no PTZ control permission for this camera."));
                return;
            }
        } else if (!Admit(pending, ResourceData::PERMISSION_PTZ_CONTROL, int(stops))) {
            return;
        }
    }
    int error_code = kErrorNone;
    const QString invalid = CheckArguments(*kind, *pending, driver, &error_code);
    if (!invalid.isEmpty()) {
        FailLater(pending, error_code, invalid);
        return;
    }
    if (start && (kind->flags & kInterrupts))
        HandleManualInterrupt(command, pending->owner);
    SendContext ctx{*this, pending, driver, start};
    const quint64 id = kind->send(ctx);
    if (id != 0)
        Track(driver, id, pending);
}

void detail::UniversalHandlers::FoldControl(CUniversalPTZController &c, Pending &p, const ptz_devices::DriverReply &)
{
    const CommandKind *kind = KindOf(p.command.command);
    if (kind && kind->fold)
        kind->fold(c, p, QString::fromStdString(p.command.camera_index_code), p.command.action == PTZ_ACTION_START);
}

void detail::UniversalHandlers::AnswerControl(CUniversalPTZController &c, const Pending &p, bool ok,
                                              const QString &error, int error_code)
{
    if (ok) {
        emit c.SignalExecutionSucceeded(QString::fromStdString(p.command.camera_index_code), p.owner, p.command);
    } else {
        emit c.SignalExecutionFailed(p.camera, p.owner, error_code, int(p.command.command));
        emit c.SignalMessageTipNeeded(error, 0);
    }
}

} // namespace zeph_ptz_controller
