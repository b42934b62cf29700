#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelleft.h"

#include "lock/clockmgrframe.h"
#include "lock/lockframes_p.h"

#include "vs_ui_data_controller/cinformationmgr.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QTimer>

namespace PreviewPTZControl {

using namespace PanelPrivate;

namespace {
// While a patrol or pattern waits to resume after manual control, the strip shows this lock.
constexpr int kInterruptLockSeconds = 15;
// A lock command without a duration locks for five minutes.
constexpr int kDefaultLockSeconds = 300;
} // namespace

void CPreviewPTZWnd::ConnectLockStrip()
{
    CLockMgrFrame *strip = ui_left_->pLockFrame;
    connect(strip, &CLockMgrFrame::SignalAboutLockBtnClicked, this, &CPreviewPTZWnd::OnAboutLockBtnClicked);
    connect(strip, &CLockMgrFrame::SignalAboutCancelBtnClicked, this, &CPreviewPTZWnd::OnAboutCancelBtnClicked);
    connect(strip, &CLockMgrFrame::SignalUnLockBtnClicked, this, &CPreviewPTZWnd::OnUnLockBtnClicked);
    connect(strip, &CLockMgrFrame::SignalRequestLockState, this, &CPreviewPTZWnd::OnCheckPTZLockStatus);
    connect(strip, &CLockMgrFrame::SignalLockedDetailClicked, this, &CPreviewPTZWnd::OnLockedDetailClicked);
    // The strip's height depends on its page; the panel re-lays itself out when it changes.
    strip->SetPageChangedCallback([this](bool) { ptr_ptz_panel_left_->updateGeometry(); });
}

void CPreviewPTZWnd::InitPtzLockState()
{
    lockStatusTimer->stop();
    lock_hold_timer_->stop();
}

void CPreviewPTZWnd::OnCheckPTZLockStatus()
{
    if (ptr_ptz_get_controller_ && !camera_index_code_.isEmpty())
        ptr_ptz_get_controller_->StartGetPTZLockStatus(camera_index_code_);
}

void CPreviewPTZWnd::OnGetLockStatus()
{
    if (!lockStatusTimer->isActive())
        OnCheckPTZLockStatus();
}

void CPreviewPTZWnd::OnGetPTZLockStatusSuc(const QString &camera_index_code)
{
    if (camera_index_code != camera_index_code_ || !ptr_ptz_get_controller_)
        return;
    ptz_plugin_protocol::PTZLockStatusResponse status;
    ptr_ptz_get_controller_->GetPTZLockStatus(camera_index_code, status);
    if (!lock_hold_timer_->isActive()) {
        ui_left_->pLockFrame->SetLockStatus(status);
        lockedByCamera[camera_index_code] = ui_left_->pLockFrame->CurrentPage() == CLockMgrFrame::PageLocked;
    }
    if (status.locked == 1) {
        if (!lockStatusTimer->isActive())
            lockStatusTimer->start(3000);
    } else if (lockStatusTimer->isActive()) {
        lockStatusTimer->stop();
    }
}

void CPreviewPTZWnd::OnGetPTZLockStatusFailed(const QString &, const QString &)
{
    if (lockStatusTimer->isActive())
        lockStatusTimer->stop();
}

void CPreviewPTZWnd::OnAboutLockBtnClicked(int lock_time)
{
    if (!ptr_ptz_controller_)
        return;
    PTZControlParam param(owner_index_code_, camera_index_code_, ptz_plugin_protocol::PTZ_CMD_LOCK,
                          ptz_plugin_protocol::PTZ_ACTION_STOP, b_command_extra_);
    param.parameter = lock_time;
    ExecutePTZControl(param);
}

void CPreviewPTZWnd::OnUnLockBtnClicked()
{
    if (!ptr_ptz_controller_)
        return;
    ExecutePTZControl(PTZControlParam(owner_index_code_, camera_index_code_, ptz_plugin_protocol::PTZ_CMD_UNLOCK,
                                      ptz_plugin_protocol::PTZ_ACTION_STOP, b_command_extra_));
}

void CPreviewPTZWnd::OnAboutCancelBtnClicked()
{
    ui_left_->pLockFrame->ShowPage(lockedByCamera.value(camera_index_code_, false) ? CLockMgrFrame::PageLocked
                                                                                   : CLockMgrFrame::PageUnlocked);
}

void CPreviewPTZWnd::OnLockedDetailClicked()
{
    Tarn::Base::CSingleton<vs_ui_data_controller::CInformationMgr>::Instance()->ShowInformationAtScreenRightBottom_V3(
        GetPTZLockedDetails(camera_index_code_), window());
}

void CPreviewPTZWnd::OnLockCommandSucceeded(const ptz_plugin_protocol::PTZControlCommand &command)
{
    CLockMgrFrame *strip = ui_left_->pLockFrame;
    if (command.command == ptz_plugin_protocol::PTZ_CMD_LOCK) {
        strip->ShowPage(CLockMgrFrame::PageLocked);
        strip->SetRemainTime(command.param > 0 ? command.param : kDefaultLockSeconds, true);
        SetPTZLockFrameMode();
    } else {
        strip->ShowPage(CLockMgrFrame::PageUnlocked);
    }
    OnCheckPTZLockStatus();
}

void CPreviewPTZWnd::OnSeizedByOtherUser(const QString &camera_index_code)
{
    if (camera_index_code == camera_index_code_ && !lockStatusTimer->isActive())
        OnCheckPTZLockStatus();
}

void CPreviewPTZWnd::SetPTZLockFrameMode()
{
    ui_left_->pLockFrame->SetLockedMode(3);
}

void CPreviewPTZWnd::InterruptPatrolLocked(bool interrupted)
{
    int index = 0;
    auto *storage = StateStorage();
    if (!storage->IsInterruptCruise(camera_index_code_, index)
        && !storage->IsInterruptPattern(camera_index_code_, index))
        return;
    CLockMgrFrame *strip = ui_left_->pLockFrame;
    strip->SetShowRemainTime(kInterruptLockSeconds);
    if (interrupted) {
        strip->ShowPage(CLockMgrFrame::PageLocked);
        strip->SetLockedMode(4);
        strip->SetRemainTime(kInterruptLockSeconds, true);
    } else {
        strip->SetRemainTime(0, false);
        strip->ShowPage(CLockMgrFrame::PageUnlocked);
    }
}

void CPreviewPTZWnd::OnInterruptPatrolTimeOut(bool is_patrol, const QString &camera_index_code, int index)
{
    if (camera_index_code != camera_index_code_)
        return;
    if (ptr_virtual_controller_ && ptr_virtual_controller_->GetDigitalZoomStyle() != 0)
        ptr_virtual_controller_->SetDigitalZoomStyle(0, -1.0, -1.0, -1.0, -1.0);
    if (is_patrol) {
        UpdatePatrolPageState(true, index - 1);
    } else {
        StateStorage()->SetRunningPattern(camera_index_code, index);
        UpdatePattenPageState();
    }
    OnCheckPTZLockStatus();
}

QString CPreviewPTZWnd::GetPTZLockedDetails(const QString &camera_index_code)
{
    const auto camera = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->GetCameraByID(
        camera_index_code.toStdString());
    const QString camera_name = camera ? camera->GetName() : QString();
    const int own_level = GetUserPTZPerm("");
    ptz_plugin_protocol::PTZLockStatusRequest request;
    request.camera_index_code = camera_index_code.toStdString();
    ptz_plugin_protocol::PTZLockStatusResponse status;
    Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->GetPTZLockStatus(request, status);
    const QString holder = QString::fromStdString(status.user_name);
    if (own_level <= status.ptz_level)
        return tr("Corvo-ControlClient.318e6af47a1443d4a0fa524f2e0e4003.msg")
            .arg(camera_name, QString::number(status.ptz_level), holder,
                 LockFramesPrivate::FormatClock(status.remaining_time));
    return tr("Corvo-ControlClient.83f5f3553ca74918b81fa92d748d93ea.msg")
        .arg(camera_name, QString::number(status.ptz_level), holder);
}

} // namespace PreviewPTZControl
