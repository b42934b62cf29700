// What each kind of answer does: the shared state it leaves behind (also for
// answers that come after the request timed out) and the signals it sends.
#include "zeph_ptz_controller/cuniversalptzcontroller_p.h"

#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Activity;
using detail::Pending;
using detail::Tr;
using ptz_devices::DriverReply;
using C = CUniversalPTZController;

namespace {

void FoldNothing(C &, Pending &, const DriverReply &) { }

void FoldPreset(C &, Pending &p, const DriverReply &reply)
{
    if (p.preset.operation == "SetPreset") {
        PresetInfo info = reply.result.canConvert<ptz_devices::DevicePreset>()
                              ? detail::ToPresetInfo(reply.result.value<ptz_devices::DevicePreset>())
                              : PresetInfo();
        if (info.preset_index <= 0) {
            info.preset_index = p.preset.preset_index;
            info.preset_type = PRESET_TYPE_DEVICE;
            info.preset_name = p.preset.preset_name;
        }
        detail::CPTZDataCache::Instance()->UpsertPreset(p.camera, info);
    } else if (p.preset.operation == "DelPreset") {
        detail::CPTZDataCache::Instance()->RemovePreset(p.camera, p.preset.preset_index, PRESET_TYPE_DEVICE);
    }
}

void FoldCruise(C &c, Pending &p, const DriverReply &)
{
    CPTZStateStorageManager *storage = detail::Storage();
    const CruiseControlRequest &r = p.cruise;
    if (r.operation == "CruiseRouteControl") {
        storage->ClearInterrupt(p.camera);
        if (r.action == 0) {
            storage->SetAutoScan(p.camera, false, false);
            storage->SetRunningPattern(p.camera, -1);
            storage->SetCruising(p.camera, true, r.cruise_index);
            detail::UniversalHandlers::NoteStarted(c, p.camera, Activity::Patrol, p.user);
        } else {
            storage->SetCruising(p.camera, false, -1);
        }
    } else if (storage->GetRunningCruise(p.camera) == r.cruise_index) {
        storage->SetCruising(p.camera, false, -1);
    }
}

void FoldAutoTrackGet(C &, Pending &p, const DriverReply &reply)
{
    p.on = reply.result.toBool();
}

void FoldParkAction(C &, Pending &p, const DriverReply &)
{
    detail::Business()->SetPTZParkAction(p.park);
}

void FoldCruiseRecover(C &, Pending &p, const DriverReply &)
{
    detail::Business()->SetPatrolRecoverConfig(p.recover);
}

void AnswerPreset(C &c, const Pending &p, bool ok, const QString &error, int)
{
    // The caller raises the error text at the level its action calls for; a tip here would show it twice.
    emit c.signalPresetFinished(p.preset, ok ? QString() : error);
}

void AnswerCruise(C &c, const Pending &p, bool ok, const QString &error, int)
{
    if (!ok)
        emit c.SignalMessageTipNeeded(error, 0);
    emit c.signalCruiseFinished(p.cruise, ok ? QString() : error);
}

void AnswerParkAction(C &c, const Pending &p, bool ok, const QString &error, int)
{
    emit c.SignalMessageTipNeeded(ok ? Tr("The park action was saved.") : error, ok ? 3 : 0);
    emit c.SignalParkActionFinished(p.camera, ok ? QString() : error);
}

void AnswerCruiseRecover(C &c, const Pending &p, bool ok, const QString &error, int)
{
    emit c.SignalMessageTipNeeded(ok ? Tr("The patrol recovery was saved.") : error, ok ? 3 : 0);
    emit c.SignalCruiseRecoverFinished(p.camera, ok ? QString() : error);
}

void AnswerAutoTrack(C &c, const Pending &p, bool ok, const QString &error, int)
{
    if (ok) {
        emit c.SignalPTZAutoTrackState(p.owner, p.camera, p.on);
        return;
    }
    emit c.SignalMessageTipNeeded(error, 0);
    // Puts the caller's button back to what the camera last reported.
    const bool known = p.driver ? p.driver->status().autoTrack : false;
    emit c.SignalPTZAutoTrackState(p.owner, p.camera, known);
}

void AnswerResume(C &c, const Pending &p, bool ok, const QString &error, int)
{
    if (ok)
        return; // the state storage marked it running already
    if (p.resume_patrol)
        detail::Storage()->SetCruising(p.camera, false, -1);
    else
        detail::Storage()->SetRunningPattern(p.camera, -1);
    emit c.SignalMessageTipNeeded(error, 0);
}

void AnswerPosition3D(C &c, const Pending &p, bool ok, const QString &error, int)
{
    if (!ok)
        emit c.SignalMessageTipNeeded(error, 0);
    emit c.SignalPosition3DFinished(p.camera, ok ? QString() : error);
}

} // namespace

const detail::KindHandlers &detail::UniversalHandlers::ForKind(Pending::Kind kind)
{
    // In the order of Pending::Kind.
    static const KindHandlers table[Pending::KindCount] = {
        {FoldControl, AnswerControl},
        {FoldPreset, AnswerPreset},
        {FoldCruise, AnswerCruise},
        {FoldParkAction, AnswerParkAction},
        {FoldCruiseRecover, AnswerCruiseRecover},
        {FoldNothing, AnswerAutoTrack},
        {FoldAutoTrackGet, AnswerAutoTrack},
        {FoldNothing, AnswerResume},
        {FoldNothing, AnswerPosition3D},
    };
    return table[kind];
}

} // namespace zeph_ptz_controller
