#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelleft.h"
#include "ui_cptzpanelright.h"

#include "direction/cptzcloud.h"
#include "lock/clockmgrframe.h"

#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QPushButton>
#include <QTimer>

// The panel's state for its camera: what is enabled for which panel type, the running state
// read back from the shared storage, and the queries for the tab in front.

namespace PreviewPTZControl {

using namespace PanelPrivate;

void CPreviewPTZWnd::InitPtzState(int type)
{
    wnd_type_ = static_cast<PTZWndType>(type);
    InitPTZCloudState(type);
    InitPresetTab();
    InitPatrolTab();
    InitPattenTab();
    InitLightBtnState();
    InitWiperBtnState();
    InitPtzLockState();
    InitOtherPtzState(type);
    UpdateCurrentPtzPageState(false);
    SetPresetType(type == PTZWndSoftware ? ptz_plugin_protocol::PRESET_TYPE_FISHEYE
                                         : ptz_plugin_protocol::PRESET_TYPE_DEVICE);
    if (type == PTZWndNone) {
        Init3DPositionBtnState(false);
        InitManualTrack(false);
        InitFaceCapture(false);
        ui_right_->ptr_auto_track_btn_->setChecked(false);
    }

    const auto camera = camera_index_code_.isEmpty()
                            ? nullptr
                            : Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->GetCameraByID(
                                camera_index_code_.toStdString());
    if (camera && camera->GetAccessProtocol() == ResourceData::ACCESS_PROTOCOL_NO_PTZ_REFRESH)
        ptr_update_ptz_btn_->setEnabled(false);
    else
        ptr_update_ptz_btn_->setEnabled(type != PTZWndNone);

    InitPtzGetterControllor();
    InitPtzSetterControllor();
}

void CPreviewPTZWnd::InitPTZCloudState(int type)
{
    UpdateAutoPanWorkState(false);
    ui_left_->ptr_cloud_->SetSectionsEnabled({1, 2, 3, 4, 5, 6, 7, 8, 9}, type != PTZWndNone);
}

void CPreviewPTZWnd::InitLightBtnState()
{
    light_status_timer_->stop();
    b_light_on_ = false;
    b_light_blink_ = false;
    ui_right_->m_pBtnLight->setChecked(false);
    RenameAndPolish(ui_right_->m_pBtnLight, ThemedName(QStringLiteral("m_pBtnLight")));
}

void CPreviewPTZWnd::InitWiperBtnState()
{
    wiper_status_timer_->stop();
    b_wiper_on_ = false;
    b_wiper_blink_ = false;
    ui_right_->m_pBtnWiper->setChecked(false);
    RenameAndPolish(ui_right_->m_pBtnWiper, ThemedName(QStringLiteral("m_pBtnWiper")));
}

void CPreviewPTZWnd::InitManualTrack(bool checked)
{
    ui_right_->ptr_manual_track_btn_->setChecked(checked);
}

void CPreviewPTZWnd::InitFaceCapture(bool checked)
{
    ui_right_->ptr_face_capture_btn_->setChecked(checked);
}

void CPreviewPTZWnd::Init3DPositionBtnState(bool) { }

void CPreviewPTZWnd::InitOtherPtzState(int type)
{
    auto *config = Config();
    QTabWidget *tabs = ui_right_->m_pTabWidget;
    switch (type) {
    case PTZWndDevice: {
        ui_right_->m_pAppendFunFrame->setEnabled(true);
        ui_left_->pLockFrame->setVisible(config->IsSupportPTZLock());
        UpdateZoomPannelState(false);
        const bool patterns = HasAbility(ResourceData::ABILITY_PATTERN);
        tabs->setTabVisible(tabs->indexOf(ui_right_->m_pTabPatten), patterns);
        tabs->setProperty("tabstyle", patterns ? QStringLiteral("Three_tab") : QStringLiteral("Two_tab"));
        ModifyTabWidth(patterns);
        tabs->setEnabled(true);
        break;
    }
    case PTZWndSoftware:
        ui_right_->m_pAppendFunFrame->setEnabled(true);
        UpdateZoomPannelState(true);
        tabs->setTabVisible(tabs->indexOf(ui_right_->m_pTabPatten), false);
        tabs->setProperty("tabstyle", QStringLiteral("Two_tab"));
        ModifyTabWidth(false);
        tabs->setEnabled(true);
        break;
    default: {
        ui_right_->m_pAppendFunFrame->setEnabled(false);
        ui_left_->pLockFrame->setVisible(config->IsSupportPTZLock());
        UpdateZoomPannelState(false);
        const bool third = tabs->isTabVisible(tabs->indexOf(ui_right_->m_pTabPatten));
        tabs->setProperty("tabstyle", third ? QStringLiteral("Three_tab") : QStringLiteral("Two_tab"));
        break;
    }
    }
    Repolish(tabs);
}

void CPreviewPTZWnd::InitPtzGetterControllor()
{
    if (ptr_ptz_get_controller_)
        ptr_ptz_get_controller_->SetCamera(camera_index_code_);
}

void CPreviewPTZWnd::InitPtzSetterControllor() { }

void CPreviewPTZWnd::UpdatePTZWorkState()
{
    if (camera_index_code_.isEmpty() || !ptr_ptz_controller_ || b_software_ptz_)
        return;
    auto *storage = StateStorage();
    UpdateLightState(storage->IsLight(camera_index_code_));
    UpdateWiperState(storage->IsWiper(camera_index_code_));
    UpdateAutoPanWorkState(storage->IsAutoScan(camera_index_code_, false));
    UpdatePattenPageState();
    const int cruise = storage->GetRunningCruise(camera_index_code_);
    if (cruise > 0) {
        UpdatePatrolPageState(true, cruise - 1);
    } else if (ptr_virtual_controller_) {
        unsigned running_cruise = 0;
        const bool running = ptr_virtual_controller_->GetRunningState(running_cruise);
        UpdatePatrolPageState(running, static_cast<int>(running_cruise) - 1);
    }
    if (HasAbility(ResourceData::ABILITY_AUTO_TRACK)) {
        ptz_plugin_protocol::GetAutoTrackRequest request;
        request.camera_index_code = camera_index_code_.toStdString();
        ptr_ptz_controller_->GetAutoTrack(request);
    }
}

void CPreviewPTZWnd::UpdateCurrentPtzPageState(bool b_ready)
{
    // Adding needs the camera's current list (free numbers, count): off while a request runs.
    UpdateAddPresetState(b_ready && wnd_type_ != PTZWndNone);
}

void CPreviewPTZWnd::OnTabIndexChanged(int)
{
    if (!ptr_ptz_get_controller_)
        return;
    QWidget *page = ui_right_->m_pTabWidget->currentWidget();
    if (page == ui_right_->m_pTabPreset) {
        InitPresetTab();
        ui_right_->ptr_line_edit_->clear();
        InitPatrolTab();
        if (!camera_index_code_.isEmpty()) {
            ptr_ptz_get_controller_->StartGetPresets(camera_index_code_);
            ui_right_->m_pTabPreset->setEnabled(false);
        }
    } else if (page == ui_right_->m_pTabCruise) {
        ShowPatrolListPage();
        SetPatrolEditLabel(remembered_patrol_no_);
        if (!b_cascade_ && !camera_index_code_.isEmpty()) {
            ptr_ptz_get_controller_->StartGetPresets(camera_index_code_);
            ptr_ptz_get_controller_->StartGetAllPatrols(camera_index_code_);
        }
        UpdateCurrentPtzPageState(false);
        if (wnd_type_ == PTZWndSoftware)
            OnFishEyePlayDisplayWndPress();
        ui_right_->m_pTabCruise->hide();
        ui_right_->m_pTabCruise->show();
    } else if (page == ui_right_->m_pTabPatten) {
        if (!camera_index_code_.isEmpty())
            ptr_ptz_get_controller_->StartGetPatterns(camera_index_code_);
    }
}

} // namespace PreviewPTZControl
