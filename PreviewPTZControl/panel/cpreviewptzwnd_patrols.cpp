#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelright.h"

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

namespace PreviewPTZControl {

using namespace PanelPrivate;

// The patrol list and editor arrive with the patrol subsystem; these entry points keep the
// running state and the stop command right in the meantime.

void CPreviewPTZWnd::InitPatrolTab()
{
    ui_right_->pPatrolModifyFrame->hide();
    ui_right_->m_pTreeViewPatrol->show();
}

void CPreviewPTZWnd::UpdatePatrolPageState(bool, int) {}

void CPreviewPTZWnd::SetPatrolUiStateWithPresetType(PTZPresetType type)
{
    ui_right_->btn_virtual_preset->setChecked(type == ptz_plugin_protocol::PRESET_TYPE_VIRTUAL);
    ui_right_->btn_device_preset->setChecked(type != ptz_plugin_protocol::PRESET_TYPE_VIRTUAL);
}

void CPreviewPTZWnd::StopCruisePlaying(const QString &owner_index_code, const QString &camera_index_code,
                                       bool b_resume, int, bool b_send)
{
    auto *storage = StateStorage();
    const int cruise = storage->GetRunningCruise(camera_index_code);
    if (cruise <= 0)
        return;
    if (camera_index_code == camera_index_code_)
        UpdatePatrolPageState(false, cruise - 1);
    if (b_resume) {
        storage->SetInterruptCruise(camera_index_code, cruise);
        InterruptPatrolLocked(true);
    } else {
        storage->SetCruising(camera_index_code, false, cruise);
    }
    if (b_send)
        ExecutePTZControl(PTZControlParam(owner_index_code, camera_index_code, ptz_plugin_protocol::PTZ_CMD_STOP_RUNNING,
                                          ptz_plugin_protocol::PTZ_ACTION_STOP, b_command_extra_));
}

void CPreviewPTZWnd::OnCruiseControlFinish(const ptz_plugin_protocol::CruiseControlRequest &request,
                                           const QString &error)
{
    if (QString::fromStdString(request.camera_index_code) != camera_index_code_ || !error.isEmpty())
        return;
    if (request.operation == "CruiseRouteControl")
        UpdatePatrolPageState(request.action == 0, request.cruise_index - 1);
}

void CPreviewPTZWnd::OnVirtualCruiseStateChanged(const QString &camera_index_code, int cruise_no, bool running)
{
    if (camera_index_code == camera_index_code_)
        UpdatePatrolPageState(running, cruise_no - 1);
}

void CPreviewPTZWnd::OnGetAllPatrolsSuc(const QString &, const QVector<ptz_plugin_protocol::CruiseInfo> &) {}

void CPreviewPTZWnd::OnGetAllPatrolsFailed(const QString &) {}

} // namespace PreviewPTZControl
