#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelleft.h"
#include "ui_cptzpanelright.h"

#include "direction/cptzcloud.h"
#include "panel/cmousereleasewatcher.h"

#include "quillon/cguitoolkit.h"
#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>

namespace PreviewPTZControl {

using namespace PanelPrivate;
using namespace ptz_plugin_protocol;

namespace {
constexpr int kFirstLensCommand = PTZ_CMD_ZOOM_IN;
constexpr int kLastLensCommand = PTZ_CMD_IRIS_CLOSE;
constexpr int kFirstMoveCommand = PTZ_CMD_TILT_UP;
constexpr int kLastMoveCommand = PTZ_CMD_DOWN_RIGHT;

bool IsLensCommand(int command)
{
    return command >= kFirstLensCommand && command <= kLastLensCommand;
}

bool IsMoveCommand(int command)
{
    return command >= kFirstMoveCommand && command <= kLastMoveCommand;
}

bool IsHeldCommand(int command)
{
    return IsLensCommand(command) || IsMoveCommand(command);
}
} // namespace

void CPreviewPTZWnd::ExecutePTZControl(const PTZControlParam &param)
{
    if (param.skip || !ptr_ptz_controller_)
        return;
    PTZControlCommand command;
    command.camera_index_code = param.camera_index_code.toStdString();
    command.owner_index_code = param.owner_index_code.toStdString();
    command.command = param.command;
    command.action = param.action;
    command.speed = ui_left_->ptr_speed_slider_->value();
    command.param = param.parameter;
    command.channel = 1;
    command.extra = static_cast<int32_t>(param.extra);
    ptr_ptz_controller_->Control(command);
}

int CPreviewPTZWnd::GetPTZCommandBySection(int section) const
{
    switch (section) {
    case CPTZCloud::TopLeft:
        return PTZ_CMD_UP_LEFT;
    case CPTZCloud::TopMiddle:
        return PTZ_CMD_TILT_UP;
    case CPTZCloud::TopRight:
        return PTZ_CMD_UP_RIGHT;
    case CPTZCloud::MiddleLeft:
        return PTZ_CMD_PAN_LEFT;
    case CPTZCloud::Center:
        return PTZ_CMD_AUTO_PAN;
    case CPTZCloud::MiddleRight:
        return PTZ_CMD_PAN_RIGHT;
    case CPTZCloud::BottomLeft:
        return PTZ_CMD_DOWN_LEFT;
    case CPTZCloud::BottomMiddle:
        return PTZ_CMD_TILT_DOWN;
    case CPTZCloud::BottomRight:
        return PTZ_CMD_DOWN_RIGHT;
    default:
        return -1;
    }
}

int CPreviewPTZWnd::GetCommandByObject(QObject *object) const
{
    if (object == ui_left_->pZoomInBtn)
        return ui_left_->pZoomInBtn->isEnabled() ? static_cast<int>(PTZ_CMD_ZOOM_IN) : -1;
    if (object == ui_left_->pZoomOutBtn)
        return ui_left_->pZoomOutBtn->isEnabled() ? static_cast<int>(PTZ_CMD_ZOOM_OUT) : -1;
    if (object == ui_left_->pFocusInBtn)
        return PTZ_CMD_FOCUS_NEAR;
    if (object == ui_left_->pFocusOutBtn)
        return PTZ_CMD_FOCUS_FAR;
    if (object == ui_left_->pIRISInBtn)
        return PTZ_CMD_IRIS_OPEN;
    if (object == ui_left_->pIRISOutBtn)
        return PTZ_CMD_IRIS_CLOSE;
    return -1;
}

// A press starts and a release stops; the panel remembers what it started so that the stop
// reaches the camera exactly once, whether the release lands on the pressed control, on
// another one, off the panel, or never comes (hidden, rebound, stopped, deactivated).
void CPreviewPTZWnd::SendMotion(int command, bool b_stop, Qt::MouseButton button)
{
    if (command < 0)
        return;
    if (b_stop) {
        const int held = held_motion_.command;
        if (held < 0 || IsMoveCommand(command) != IsMoveCommand(held))
            return;
        // Every direction of the pad shares the pan/tilt axes, so the release may name the
        // section under the cursor; zoom, focus and iris are separate axes and stop as held.
        StopHeldMotion(IsMoveCommand(command) ? command : held);
        return;
    }

    if (held_motion_.command >= 0 && held_motion_.command != command)
        ReleaseHeldMotion();
    if (b_software_ptz_) {
        if (!ptr_software_controller_)
            return;
        ptr_software_controller_->Control(static_cast<unsigned>(command), false, ui_left_->ptr_speed_slider_->value());
    } else {
        if (camera_index_code_.isEmpty())
            return;
        ExecutePTZControl(
            PTZControlParam(camera_index_code_, static_cast<quint32>(command), PTZ_ACTION_START, b_command_extra_));
    }
    if (!IsHeldCommand(command))
        return;
    held_motion_ = HeldMotion{command, b_software_ptz_, owner_index_code_, camera_index_code_, button, ++held_serial_};
    ptr_release_watcher_->Watch(button);
}

void CPreviewPTZWnd::StopHeldMotion(int stop_command)
{
    const HeldMotion held = held_motion_;
    held_motion_ = HeldMotion();
    ptr_release_watcher_->Stop();
    if (held.software) {
        if (ptr_software_controller_)
            ptr_software_controller_->Control(static_cast<unsigned>(stop_command), true,
                                              ui_left_->ptr_speed_slider_->value());
        return;
    }
    ExecutePTZControl(
        PTZControlParam(held.camera_index_code, static_cast<quint32>(stop_command), PTZ_ACTION_STOP, b_command_extra_));
}

void CPreviewPTZWnd::ReleaseHeldMotion()
{
    if (held_motion_.command >= 0)
        StopHeldMotion(held_motion_.command);
}

// The button went up somewhere. The pad reports a release over an arrow or off the pad, but
// none over its centre, and a release may reach another widget altogether: once this event has
// been handled everywhere, a motion still held from the same press is stopped here.
void CPreviewPTZWnd::OnHeldButtonReleased()
{
    if (held_motion_.command < 0)
        return;
    const quint64 serial = held_motion_.serial;
    QTimer::singleShot(0, this, [this, serial] {
        if (held_motion_.command >= 0 && held_motion_.serial == serial)
            ReleaseHeldMotion();
    });
}

void CPreviewPTZWnd::OnPressSection(QMouseEvent *event, int section)
{
    if (section == CPTZCloud::Center) {
        OnAutoScanToggled(camera_index_code_, true, true);
        return;
    }
    SendMotion(GetPTZCommandBySection(section), false, event ? event->button() : Qt::LeftButton);
}

void CPreviewPTZWnd::OnReleaseSection(QMouseEvent *, int section)
{
    if (section == CPTZCloud::Center) {
        OnAutoScanToggled(camera_index_code_, false, true);
        return;
    }
    SendMotion(GetPTZCommandBySection(section), true);
}

bool CPreviewPTZWnd::eventFilter(QObject *watched, QEvent *event)
{
    CPTZCloud *cloud = ui_left_->ptr_cloud_;
    if (watched == cloud || (watched->isWidgetType() && cloud->isAncestorOf(static_cast<QWidget *>(watched)))) {
        // The pad loses its mouse without a release when it is hidden, disabled or loses its grab.
        switch (event->type()) {
        case QEvent::Hide:
        case QEvent::UngrabMouse:
        case QEvent::EnabledChange:
            if (!cloud->isEnabled() || !cloud->isVisible() || event->type() == QEvent::UngrabMouse) {
                if (IsMoveCommand(held_motion_.command))
                    ReleaseHeldMotion();
            }
            break;
        default:
            break;
        }
        return CBasicPTZWnd::eventFilter(watched, event);
    }

    const bool lens_button = watched == ui_left_->pZoomInBtn || watched == ui_left_->pZoomOutBtn
                             || watched == ui_left_->pFocusInBtn || watched == ui_left_->pFocusOutBtn
                             || watched == ui_left_->pIRISInBtn || watched == ui_left_->pIRISOutBtn;
    if (lens_button && panel_kind_ != 0) {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            SendMotion(GetCommandByObject(watched), false, static_cast<QMouseEvent *>(event)->button());
            break;
        case QEvent::MouseButtonRelease: {
            // A zoom button disabled while held still owes its stop.
            if (IsLensCommand(held_motion_.command))
                SendMotion(held_motion_.command, true);
            break;
        }
        case QEvent::Hide:
        case QEvent::UngrabMouse:
        case QEvent::EnabledChange: {
            auto *button = static_cast<QWidget *>(watched);
            if (event->type() == QEvent::UngrabMouse || !button->isEnabled() || !button->isVisible()) {
                if (IsLensCommand(held_motion_.command))
                    ReleaseHeldMotion();
            }
            break;
        }
        default:
            break;
        }
    }
    return CBasicPTZWnd::eventFilter(watched, event);
}

bool CPreviewPTZWnd::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Wheel:
        return true;
    case QEvent::Show:
        ModifyTabWidth(ui_right_->m_pTabWidget->isTabVisible(2));
        break;
    case QEvent::WindowDeactivate:
        ReleaseHeldMotion();
        break;
    default:
        break;
    }
    return CBasicPTZWnd::event(event);
}

void CPreviewPTZWnd::hideEvent(QHideEvent *event)
{
    ReleaseHeldMotion();
    CBasicPTZWnd::hideEvent(event);
}

void CPreviewPTZWnd::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        ReleaseHeldMotion();
    CBasicPTZWnd::changeEvent(event);
}

void CPreviewPTZWnd::OnLight(bool checked)
{
    if (!checked)
        UpdateLightState(false); // stops the blinking too
    ExecutePTZControl(PTZControlParam(camera_index_code_, PTZ_CMD_LIGHT, checked ? PTZ_ACTION_START : PTZ_ACTION_STOP,
                                      b_command_extra_));
}

void CPreviewPTZWnd::OnWiper(bool checked)
{
    StateStorage()->SetWiper(camera_index_code_, checked);
    if (!checked)
        UpdateWiperState(false);
    ExecutePTZControl(PTZControlParam(camera_index_code_, PTZ_CMD_WIPER, checked ? PTZ_ACTION_START : PTZ_ACTION_STOP,
                                      b_command_extra_));
}

void CPreviewPTZWnd::OnOneKeyFocusBtnClicked()
{
    ExecutePTZControl(PTZControlParam(camera_index_code_, PTZ_CMD_ONE_KEY_FOCUS, PTZ_ACTION_START, b_command_extra_));
}

void CPreviewPTZWnd::OnResetLensBtnClicked()
{
    ExecutePTZControl(PTZControlParam(camera_index_code_, PTZ_CMD_LENS_INIT, PTZ_ACTION_START, b_command_extra_));
}

void CPreviewPTZWnd::OnThreeD(bool checked)
{
    emit SignalFunctionEnabled(1, checked);
}

void CPreviewPTZWnd::OnManualTrackingBtnClicked(bool checked)
{
    emit SignalFunctionEnabled(4, checked);
}

void CPreviewPTZWnd::OnFaceCaptureBtnClicked(bool checked)
{
    emit SignalFunctionEnabled(5, checked);
}

void CPreviewPTZWnd::OnWndPtzActionStateChanged(int function_id, bool on)
{
    switch (function_id) {
    case 0:
        ui_right_->ptr_manual_track_btn_->setChecked(false);
        ui_right_->ptr_face_capture_btn_->setChecked(false);
        ui_right_->m_pBtn3D->setChecked(false);
        break;
    case 1:
        ui_right_->m_pBtn3D->setChecked(on);
        break;
    case 3:
        if (on) {
            ui_right_->ptr_manual_track_btn_->setChecked(false);
            ui_right_->ptr_face_capture_btn_->setChecked(false);
            ui_right_->m_pBtn3D->setChecked(false);
        }
        break;
    case 4:
        ui_right_->ptr_manual_track_btn_->setChecked(on);
        break;
    case 5:
        ui_right_->ptr_face_capture_btn_->setChecked(on);
        break;
    default:
        break;
    }
}

void CPreviewPTZWnd::OnAutoTrackBtnClicked(bool checked)
{
    if (!ptr_ptz_controller_)
        return;
    SetAutoTrackRequest request;
    request.camera_index_code = camera_index_code_.toStdString();
    request.enable = checked ? 1 : 0;
    ptr_ptz_controller_->SetAutoTrack(request);
}

void CPreviewPTZWnd::OnAutoTrackStateChanged(const QString &, const QString &camera_index_code, bool on)
{
    if (camera_index_code == camera_index_code_)
        ui_right_->ptr_auto_track_btn_->setChecked(on);
}

void CPreviewPTZWnd::OnAutoScanToggled(const QString &camera_index_code, bool on, bool)
{
    if (b_software_ptz_) {
        if (ptr_software_controller_)
            ptr_software_controller_->Control(PTZ_CMD_AUTO_PAN, !on, ui_left_->ptr_speed_slider_->value());
        return;
    }
    if (on && StateStorage()->IsRecordPattern(camera_index_code)) {
        ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center, false);
        emit SignalFunctionEnabled(2, false);
        emit SignalMessageTipNeeded(tr("TrackOperationInProgkdawnXPU"), 2);
        return;
    }
    ExecutePTZControl(PTZControlParam(camera_index_code, PTZ_CMD_AUTO_PAN, on ? PTZ_ACTION_START : PTZ_ACTION_STOP,
                                      b_command_extra_));
}

void CPreviewPTZWnd::StopAutoScan(const QString &owner_index_code, const QString &camera_index_code, bool b_send)
{
    auto *storage = StateStorage();
    if (storage->IsAutoScan(camera_index_code, b_software_ptz_))
        storage->SetAutoScan(camera_index_code, false, b_software_ptz_);
    if (camera_index_code == camera_index_code_)
        ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center, false);
    // A stop only recorded here takes the same path and is skipped there.
    ExecutePTZControl(PTZControlParam(owner_index_code, camera_index_code, PTZ_CMD_AUTO_PAN, PTZ_ACTION_STOP,
                                      !b_send || b_command_extra_));
}

void CPreviewPTZWnd::OnPTZControlSuccess(const QString &, const QString &camera_index_code,
                                         const PTZControlCommand &command)
{
    if (camera_index_code != camera_index_code_)
        return;
    auto *storage = StateStorage();
    auto *config = Config();
    const int pattern = command.param;
    switch (command.command) {
    case PTZ_CMD_LIGHT:
        UpdateLightState(storage->IsLight(camera_index_code_));
        break;
    case PTZ_CMD_WIPER:
        UpdateWiperState(storage->IsWiper(camera_index_code_));
        break;
    case PTZ_CMD_AUTO_PAN: {
        // The camera already gave up the pattern or patrol for the scan; a stop sent now would end
        // the scan as well, so only the shared state follows.
        const bool auto_scan_off = !storage->IsAutoScan(camera_index_code_, false);
        StopPatternPlaying(owner_index_code_, camera_index_code_, config->ResumeCruiseAfterInterrupt(), auto_scan_off,
                           false);
        StopCruisePlaying(owner_index_code_, camera_index_code_, config->ResumeCruiseAfterInterrupt(), auto_scan_off,
                          false);
        break;
    }
    case PTZ_CMD_PATTERN_RECORD_START:
        storage->SetRecordPattern(camera_index_code_, pattern);
        StopAutoScan(owner_index_code_, camera_index_code_, false);
        StopCruisePlaying(owner_index_code_, camera_index_code_, false, 0, false);
        break;
    case PTZ_CMD_PATTERN_RECORD_STOP:
        storage->SetRecordPattern(camera_index_code_, 0);
        break;
    case PTZ_CMD_PATTERN_RUN:
        InterruptPatrolLocked(false);
        storage->SetRunningPattern(camera_index_code_, pattern);
        break;
    case PTZ_CMD_STOP_RUNNING:
        storage->SetRunningPattern(camera_index_code_, -1);
        break;
    case PTZ_CMD_PATTERN_DELETE:
        emit SignalMessageTipNeeded(tr("TrajectoryDeletionSusDBpbcFY"), 3);
        break;
    case PTZ_CMD_LOCK:
    case PTZ_CMD_UNLOCK:
        OnLockCommandSucceeded(command);
        break;
    default:
        break;
    }
    OnPatternControlSuccess(static_cast<int>(command.command));
}

// The controller raises the camera's error text itself (forwarded once by the panel); here the
// buttons only go back to what the camera has.
void CPreviewPTZWnd::OnPTZControlFailed(const QString &, const QString &camera_index_code, int, int command)
{
    auto *storage = StateStorage();
    switch (command) {
    case PTZ_CMD_WIPER:
    case PTZ_CMD_LIGHT:
        ReadBackAuxiliaryState(camera_index_code, command);
        if (camera_index_code != camera_index_code_)
            break;
        if (command == PTZ_CMD_LIGHT)
            UpdateLightState(storage->IsLight(camera_index_code));
        else
            UpdateWiperState(storage->IsWiper(camera_index_code));
        break;
    case PTZ_CMD_AUTO_PAN:
        if (camera_index_code == camera_index_code_)
            ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center,
                                                    storage->IsAutoScan(camera_index_code, b_software_ptz_));
        break;
    default:
        break;
    }
}

void CPreviewPTZWnd::OnStopAutoScanCruiseTrail(const QString &owner_index_code, const QString &camera_index_code,
                                               bool is_trail, int patrol_no)
{
    if (camera_index_code != camera_index_code_)
        return;
    if (is_trail) {
        StopAutoScan(owner_index_code, camera_index_code, false);
        StopCruisePlaying(owner_index_code, camera_index_code, false, patrol_no, false);
        return;
    }
    const bool virtual_patrol = ptr_virtual_controller_ && ptr_virtual_controller_->IsRunningPatrol();
    const bool resume = Config()->ResumeCruiseAfterInterrupt();
    StopAutoScan(owner_index_code, camera_index_code, false);
    StopPatternPlaying(owner_index_code, camera_index_code, resume, 0, false);
    StopCruisePlaying(owner_index_code, camera_index_code, resume && !virtual_patrol, 0, false);
}

void CPreviewPTZWnd::SetBlinkName(QPushButton *button, const QString &off_name, const QString &on_name, bool on)
{
    RenameAndPolish(button, ThemedName(on ? on_name : off_name));
}

void CPreviewPTZWnd::UpdateLightState(bool on)
{
    b_light_on_ = on;
    b_light_blink_ = on;
    if (on)
        light_status_timer_->start(500);
    else
        light_status_timer_->stop();
    ui_right_->m_pBtnLight->setChecked(on);
    SetBlinkName(ui_right_->m_pBtnLight, QStringLiteral("m_pBtnLight"), QStringLiteral("m_pBtnLight_open"), on);
}

void CPreviewPTZWnd::UpdateWiperState(bool on)
{
    b_wiper_on_ = on;
    b_wiper_blink_ = on;
    if (on)
        wiper_status_timer_->start(500);
    else
        wiper_status_timer_->stop();
    ui_right_->m_pBtnWiper->setChecked(on);
    SetBlinkName(ui_right_->m_pBtnWiper, QStringLiteral("m_pBtnWiper"), QStringLiteral("m_pBtnWiper_right"), on);
}

void CPreviewPTZWnd::OnUpdateLightOnStatus()
{
    if (!b_light_on_)
        return;
    b_light_blink_ = !b_light_blink_;
    SetBlinkName(ui_right_->m_pBtnLight, QStringLiteral("m_pBtnLight"), QStringLiteral("m_pBtnLight_open"),
                 b_light_blink_);
}

void CPreviewPTZWnd::OnUpdateWiperOnStatus()
{
    if (!b_wiper_on_)
        return;
    b_wiper_blink_ = !b_wiper_blink_;
    SetBlinkName(ui_right_->m_pBtnWiper, QStringLiteral("m_pBtnWiper"), QStringLiteral("m_pBtnWiper_right"),
                 b_wiper_blink_);
}

void CPreviewPTZWnd::UpdateZoomPannelState(bool large)
{
    QWidget *zoom = ui_left_->pZoom;
    RenameAndPolish(zoom, ThemedName(large ? QStringLiteral("pZoomLarge") : QStringLiteral("pZoom")));
    const int base_height = large ? 40 : 32;
    zoom->setMinimumHeight(Quillon::CGUIToolkit::ScaleByGifScale(base_height, this));
}

void CPreviewPTZWnd::UpdateFocusBtnState()
{
    ui_left_->pFocusInBtn->setToolTip(tr("Focus+"));
    ui_left_->pFocusOutBtn->setToolTip(tr("AfterTheFocusAdjustment(-)"));
}

void CPreviewPTZWnd::UpdateAutoPanWorkState(bool running)
{
    ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center, running);
}

// A failed switch says nothing certain about the camera: it may have switched or not. The
// shared state takes what the camera last reported, for every panel of the camera; without a
// report the failed one falls back to off.
void CPreviewPTZWnd::ReadBackAuxiliaryState(const QString &camera_index_code, int command)
{
    if (zeph_ptz_controller::CPTZGetController::ReadAuxiliaryState(camera_index_code))
        return;
    if (command == PTZ_CMD_LIGHT)
        StateStorage()->SetLight(camera_index_code, false);
    else
        StateStorage()->SetWiper(camera_index_code, false);
}

void CPreviewPTZWnd::OnUpdatePtzBtnClicked()
{
    if (camera_index_code_.isEmpty() || !ptr_ptz_get_controller_)
        return;
    // Fetch the camera's presets again; the button stays off until the answer arrives.
    b_update_ptz_pending_ = true;
    ptr_update_ptz_btn_->setEnabled(false);
    emit SignalUpdatePtzInfoEnabled(false);
    ptr_ptz_get_controller_->SyncPresetsFromDevice(camera_index_code_);
}

// The host's update button follows ours: whatever ends the wait (answer, rebinding, stop) gives it back once.
void CPreviewPTZWnd::FinishUpdatePtz()
{
    if (!b_update_ptz_pending_)
        return;
    b_update_ptz_pending_ = false;
    ptr_update_ptz_btn_->setEnabled(IsWorking());
    emit SignalUpdatePtzInfoEnabled(true);
}

} // namespace PreviewPTZControl
