#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

#include <memory>

class QTimer;

class QRectF;

namespace ptz_devices {
class IPtzDriver;
struct DeviceStatus;
struct DriverReply;
} // namespace ptz_devices

namespace zeph_ptz_controller {

namespace detail {
struct Pending;
struct UniversalHandlers;
} // namespace detail

// Device commands of every panel, mapped onto the camera drivers that the
// host's camera manager owns. One instance may serve any number of panels and
// cameras.
//
// Every request is answered exactly once and never inside the call:
// - Control: SignalExecutionSucceeded(camera, owner, command) with the record
//   echoed (param filled with the pattern number or lock seconds), or
//   SignalExecutionFailed(camera, owner, error code, command code) together
//   with SignalMessageTipNeeded(error text, 0).
// - Preset / Cruise: signalPresetFinished / signalCruiseFinished with the
//   request and an error text (empty on success); failures also raise a tip.
// - SetParkAction / SetCruiseRecover: a tip (3 on success, 0 on failure) and
//   SignalParkActionFinished / SignalCruiseRecoverFinished.
// - SetAutoTrack / GetAutoTrack: SignalPTZAutoTrackState(owner, camera, on), or a tip.
// The owner text of the signals is the request's owner identifier, or the
// camera identifier when the request carries none.
//
// Running state (light, wiper, auto-scan, patrol, pattern) is written to
// CPTZStateStorageManager before the success signal goes out.
//
// Command codes (PTZControlCommand::command; action 0 start, 1 stop):
// 2 light, 3 wiper, 11/12 zoom in/out, 13/14 focus near/far, 15/16 iris
// open/close, 21-28 moves (speed within the camera's range), 29 auto-scan,
// 34/35 pattern record start/stop, 36 pattern play, 44 stop the playing
// pattern or running patrol, 45 pattern delete (pattern number in `param`;
// 35 and 44 take the current one when `param` is 0), 200 lock (`param`
// seconds 1..3600, 0 means 300), 201 unlock, 206 one-key focus, 207 lens
// initialisation.
//
// Who may move a camera: every request acts for the host's signed-in user;
// the owner identifier is only a tag echoed in the answers. A request that
// moves the camera or changes its settings needs the user's PTZ control
// permission (15; park action: 796) and a camera that is free, locked by the
// same user, or locked by a user of a lower level. Refusals answer with
// kErrorNoPermission or kErrorLockedByOther and a readable text; a lock
// refusal also emits SignalSeizedByOtherUser(camera). Releases of continuous
// moves (11-16, 21-28 with action 1) always pass, and so do stops of an
// activity (auto-scan, patrol, pattern, pattern record) the same user
// started. A user who outranks the holder keeps control and takes the lock
// over with command 200; the former holder's panels learn it through
// SignalSeizedByOtherUser.
//
// An answer that arrives after the request timed out (and was failed) is
// still written into CPTZStateStorageManager, whose SignalStateChanged tells
// the panels to show what the camera really does.
//
// A manual move or zoom (11, 12, 21-28 started) on a camera that runs
// auto-scan, a patrol or a pattern emits SignalPTZPanelInterrupt(owner,
// camera, false, patrol number or -1) before the move is sent. When
// CPTZConfigManager::ResumeCruiseAfterInterrupt is on, the patrol or pattern
// is recorded as interrupted and resumed by this controller when the state
// storage's waiting time ends. Starting a pattern (34, 36) while auto-scan or
// a patrol runs emits SignalPTZPanelInterrupt(owner, camera, true, patrol).
class ZEPH_PTZ_CONTROLLER_EXPORT CUniversalPTZController : public QObject
{
    Q_OBJECT
public:
    enum ErrorCode {
        kErrorNone = 0,
        kErrorUnknownCamera = 1,
        kErrorInvalidArgument = 2,
        kErrorUnsupported = 3,
        kErrorDevice = 4,
        kErrorLockedByOther = 5,
        kErrorNoPermission = 6,
        kErrorNoDevice = 7,
    };
    Q_ENUM(ErrorCode)

    explicit CUniversalPTZController(QObject *parent = nullptr);
    ~CUniversalPTZController() override;

    void Control(const ptz_plugin_protocol::PTZControlCommand &command);
    // "SetPreset" (number and name), "GotoPreset", "DelPreset"; numbers 1..256.
    // "SetPreset" of a number the camera already has renames that preset and
    // keeps its stored position (new presets only ever get free numbers).
    void Preset(const ptz_plugin_protocol::PresetControlRequest &request);
    // "CruiseRouteControl" (action 0 start, 1 stop), "DelCruiseRoute" and
    // "ModifyCruiseRoute" (action = CruiseType; device patrols go to the
    // camera, the others are kept by the client and only checked here).
    void Cruise(const ptz_plugin_protocol::CruiseControlRequest &request);
    void SetParkAction(const ptz_plugin_protocol::SetParkActionRequest &request);
    void SetCruiseRecover(const ptz_plugin_protocol::SetPatrolRecoverConfigRequest &request);
    void SetAutoTrack(const ptz_plugin_protocol::SetAutoTrackRequest &request);
    void GetAutoTrack(const ptz_plugin_protocol::GetAutoTrackRequest &request);
    // 3D positioning on a box of the picture (normalised, y down; drawn right
    // to left zooms out). Answers SignalPosition3DFinished, with a tip on failure.
    void Position3D(const QString &camera_index_code, const QRectF &area);

    // The camera's last known position and running state, read-only (for a
    // live view); false for an unknown camera or one without a driver.
    bool GetDeviceStatus(const QString &camera_index_code, ptz_devices::DeviceStatus &status) const;

    // Requests sent to drivers and not answered yet.
    int PendingRequestCount() const;
    // A driver that does not answer within this time is treated as failed (default 30 s).
    void SetRequestTimeout(int ms);

Q_SIGNALS:
    void SignalExecutionSucceeded(QString camera_index_code, QString owner_index_code,
                                  ptz_plugin_protocol::PTZControlCommand command);
    void SignalExecutionFailed(QString camera_index_code, QString owner_index_code, int error_code, int command);
    void SignalMessageTipNeeded(QString message_tip, int tip_type);
    void SignalPTZAutoTrackState(QString owner_index_code, QString camera_index_code, bool on);
    void SignalPTZPanelInterrupt(QString owner_index_code, QString camera_index_code, bool is_trail, int cruise_index);
    void SignalSeizedByOtherUser(QString camera_index_code);
    void signalCruiseFinished(ptz_plugin_protocol::CruiseControlRequest request, QString error_text);
    void signalPresetFinished(ptz_plugin_protocol::PresetControlRequest request, QString error_text);
    void SignalParkActionFinished(QString camera_index_code, QString error_text);
    void SignalCruiseRecoverFinished(QString camera_index_code, QString error_text);
    void SignalPosition3DFinished(QString camera_index_code, QString error_text);

private:
    friend struct detail::UniversalHandlers;
    struct Private;
    using PendingPtr = std::shared_ptr<detail::Pending>;

    ptz_devices::IPtzDriver *Driver(const QString &camera, QString *error);
    void EnsureConnected(ptz_devices::IPtzDriver *driver);
    void OnActivityInterrupted(ptz_devices::IPtzDriver *driver, int activity, int number);
    void Track(ptz_devices::IPtzDriver *driver, quint64 request_id, const PendingPtr &pending);
    void OnDriverReplied(const ptz_devices::DriverReply &reply);
    void OnDriverGone(QObject *driver);
    void OnWatchdog();
    void Finish(const PendingPtr &pending, bool ok, const QString &error, int error_code);
    void FailLater(const PendingPtr &pending, int error_code, const QString &error);

    // Access (cuniversalptzcontroller_access.cpp). False after the request
    // was answered with the refusal. `own_stop` names the activity the
    // request stops: stopping one the same user started always passes.
    bool Admit(const PendingPtr &pending, int permission_item, int own_stop = 0);
    bool CheckLock(const QString &camera, QString *error);
    void NoteStarted(const QString &camera, int activity, const QString &user);

    void HandleManualInterrupt(const ptz_plugin_protocol::PTZControlCommand &command, const QString &owner);
    void ResumeInterrupted(const QString &camera, bool is_patrol, int index);

    std::unique_ptr<Private> d;
};

} // namespace zeph_ptz_controller
