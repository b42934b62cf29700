#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelright.h"

#include "patrol/ccruiserecoverconfigdlg.h"
#include "patrol/cparkactiondlg.h"

#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

namespace PreviewPTZControl {

using namespace PanelPrivate;

namespace {
ZephPluginManager::CPTZBusinessInterfaceMgr *Host()
{
    return Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance();
}
} // namespace

void CPreviewPTZWnd::OnParkActionBtnClicked()
{
    if (camera_index_code_.isEmpty())
        return;
    if (!park_action_dlg_) {
        park_action_dlg_ = new CParkActionDlg(this);
        connect(park_action_dlg_, &CParkActionDlg::SignalMessageTipNeeded, this,
                &CPreviewPTZWnd::SignalMessageTipNeeded);
    }
    park_action_dlg_->SetController(ptr_ptz_controller_);
    park_action_dlg_->SetCamera(camera_index_code_);
    const std::string camera = camera_index_code_.toStdString();

    ptz_plugin_protocol::GetPresetRequest preset_request;
    preset_request.camera_index_code = camera;
    ptz_plugin_protocol::GetPresetResponse presets;
    Host()->GetPresets(preset_request, presets);
    park_action_dlg_->SetPresets(presets.presets);

    ptz_plugin_protocol::GetCruisesRequest patrol_request;
    patrol_request.camera_index_code = camera;
    ptz_plugin_protocol::GetCruiseResponse patrols;
    Host()->GetCruises(patrol_request, patrols);
    park_action_dlg_->SetPatrols(patrols.cruises);

    ptz_plugin_protocol::GetParkActionRequest park_request;
    park_request.camera_index_code = camera;
    ptz_plugin_protocol::GetParkActionResponse park;
    Host()->GetPTZParkAction(park_request, park);
    park_action_dlg_->SetParkAction(park.enabled, park.action_type, park.wait_time, park.target_id);

    QWidget *button = ui_right_->ptr_park_action_btn_;
    park_action_dlg_->adjustSize();
    park_action_dlg_->move(button->mapToGlobal(QPoint(0, button->height() + 4)));
    park_action_dlg_->show();
}

void CPreviewPTZWnd::OnRecoverConfigBtnClicked()
{
    OnCruiseRecoverConfig();
}

void CPreviewPTZWnd::OnCruiseRecoverConfig()
{
    if (!cruise_recover_dlg_) {
        cruise_recover_dlg_ = new CCruiseRecoverConfigDlg(ptr_ptz_controller_, this);
        connect(cruise_recover_dlg_, &CCruiseRecoverConfigDlg::SignalMessageTipNeeded, this,
                &CPreviewPTZWnd::SignalMessageTipNeeded);
        connect(cruise_recover_dlg_, &CCruiseRecoverConfigDlg::SignalCruiseRecoverConfigHide, this,
                [this] { ptr_recover_config_btn_->setDown(false); });
    }
    cruise_recover_dlg_->SetController(ptr_ptz_controller_);
    ptz_plugin_protocol::GetPatrolRecoverConfigRequest request;
    request.camera_index_code = camera_index_code_.toStdString();
    ptz_plugin_protocol::GetPatrolRecoverConfigResponse response;
    Host()->GetPatrolRecoverConfig(request, response);
    cruise_recover_dlg_->SetConfig(response.enabled, response.wait_time);
    cruise_recover_dlg_->SetCamera(camera_index_code_);

    // Beside the panel's left half, level with the patrol page.
    const int x = ptr_ptz_panel_left_->width() + 16;
    const int y = ptr_ptz_panel_right_->mapTo(this, QPoint(0, 0)).y() + ui_right_->m_pTabWidget->y();
    cruise_recover_dlg_->setFocusPolicy(Qt::StrongFocus);
    cruise_recover_dlg_->move(mapToGlobal(QPoint(x, y)));
    cruise_recover_dlg_->show();
}

} // namespace PreviewPTZControl
