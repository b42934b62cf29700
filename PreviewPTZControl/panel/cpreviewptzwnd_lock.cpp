#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelleft.h"

#include "panel/clockstripframe.h"

#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"

#include <QTimer>

namespace PreviewPTZControl {

using namespace PanelPrivate;

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
        lockedByCamera[camera_index_code] = status.locked == 1;
        ui_left_->pLockFrame->ShowPage(status.locked == 1 ? 1 : 0);
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

void CPreviewPTZWnd::OnSeizedByOtherUser(const QString &camera_index_code)
{
    if (camera_index_code == camera_index_code_ && !lockStatusTimer->isActive())
        OnCheckPTZLockStatus();
}

void CPreviewPTZWnd::SetPTZLockFrameMode()
{
    ui_left_->pLockFrame->ShowPage(1);
}

void CPreviewPTZWnd::InterruptPatrolLocked(bool interrupted)
{
    int index = 0;
    auto *storage = StateStorage();
    if (!storage->IsInterruptCruise(camera_index_code_, index) && !storage->IsInterruptPattern(camera_index_code_, index))
        return;
    ui_left_->pLockFrame->ShowPage(interrupted ? 1 : 0);
}

void CPreviewPTZWnd::OnInterruptPatrolTimeOut(bool, const QString &camera_index_code, int)
{
    if (camera_index_code == camera_index_code_)
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
    const int seconds = status.remaining_time;
    const QString remaining = QString::asprintf("%02d:%02d:%02d", seconds / 3600, seconds % 3600 / 60, seconds % 60);
    const QString holder = QString::fromStdString(status.user_name);
    if (own_level <= status.ptz_level)
        return tr("Corvo-ControlClient.318e6af47a1443d4a0fa524f2e0e4003.msg")
            .arg(camera_name, QString::number(status.ptz_level), holder, remaining);
    return tr("Corvo-ControlClient.83f5f3553ca74918b81fa92d748d93ea.msg")
        .arg(camera_name, QString::number(status.ptz_level), holder);
}

} // namespace PreviewPTZControl
