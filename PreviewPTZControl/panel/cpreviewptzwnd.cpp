#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelleft.h"
#include "ui_cptzpanelright.h"

#include "direction/cptzcloud.h"
#include "lock/clockmgrframe.h"
#include "panel/cmousereleasewatcher.h"

#include "ptz_plugin_protocol/ptzlimits.h"
#include "quillon/cguitoolkit.h"
#include "tarn/base/logging.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"
#include "zeph_plugin_manager/czephpluginconfigmgr.h"
#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"
#include "zeph_ptz_controller/iptzfisheyecontroller.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace PreviewPTZControl {

using namespace PanelPrivate;
using zeph_ptz_controller::CPTZGetController;
using zeph_ptz_controller::CUniversalPTZController;
using zeph_ptz_controller::CVirtualPtzControllor;

int CPreviewPTZWnd::current_user_ptz_perm_ = -1;

CPreviewPTZWnd::CPreviewPTZWnd(unsigned int screen_index, bool b_software_ptz, bool b_playback, QWidget *parent)
    : CBasicPTZWnd(parent)
    , screen_index_(screen_index)
    , panel_kind_(b_playback ? 2u : 1u)
{
    setObjectName(QStringLiteral("CPreviewPTZWnd"));
    ptr_ptz_get_controller_ = new CPTZGetController(this);
    if (b_software_ptz)
        ptr_software_controller_ = std::make_shared<zeph_ptz_controller::CBaseSoftwarePtzControllor>();

    ptr_ptz_panel_left_ = new QWidget(this);
    ptr_ptz_panel_left_->setObjectName(QStringLiteral("PreviewPtzControl_ptr_ptz_panel_left_"));
    ui_left_ = new Ui::CPTZPanelLeft;
    ui_left_->setupUi(ptr_ptz_panel_left_);
    // The form's numbers are only a preview; the boundary's speed range decides.
    ui_left_->ptr_speed_slider_->setRange(ptz_plugin_protocol::kMinSpeed, ptz_plugin_protocol::kMaxSpeed);
    ui_left_->ptr_speed_slider_->setValue(ptz_plugin_protocol::kDefaultSpeed);

    ptr_ptz_panel_right_ = new QWidget(this);
    ptr_ptz_panel_right_->setObjectName(QStringLiteral("PreviewPtzControl_ptr_ptz_panel_right_"));
    ui_right_ = new Ui::CPTZPanelRight;
    ui_right_->setupUi(ptr_ptz_panel_right_);

    BuildUpdateWidget();
    InitFunctionButtons();
    UpdateFocusBtnState();

    ui_right_->m_pBtnLight->setChecked(false);
    ui_right_->m_pBtnWiper->setChecked(false);

    light_status_timer_ = new QTimer(this);
    wiper_status_timer_ = new QTimer(this);
    lockStatusTimer = new QTimer(this);
    lock_hold_timer_ = new QTimer(this);
    lock_hold_timer_->setSingleShot(true);
    connect(light_status_timer_, &QTimer::timeout, this, &CPreviewPTZWnd::OnUpdateLightOnStatus);
    connect(wiper_status_timer_, &QTimer::timeout, this, &CPreviewPTZWnd::OnUpdateWiperOnStatus);
    connect(lockStatusTimer, &QTimer::timeout, this, &CPreviewPTZWnd::OnCheckPTZLockStatus);

    ptr_release_watcher_ = new CMouseReleaseWatcher(this);
    connect(ptr_release_watcher_, &CMouseReleaseWatcher::SignalReleased, this, &CPreviewPTZWnd::OnHeldButtonReleased);

    ConnectSignalAndSlot();

    auto *config = Config();
    if (!config->IsSupportUpdatePTZInfo())
        ptr_update_ptz_btn_->hide();
    if (!config->ShowExtraButton()) {
        ui_right_->ptr_manual_track_btn_->hide();
        ui_right_->label_2->hide();
        ui_right_->ptr_face_capture_btn_->hide();
        ui_right_->label_7->hide();
    }
    if (!config->ShowPreSetTabWidget() && IsCompactProduct())
        ui_right_->widget->hide();

    ConnectLockStrip();

    AssemblyLayout();
    InitPtzState(PTZWndNone);

    ZEPH_LOG_INFO("DPR is %f", Quillon::CGUIToolkit::GetDevicePixelRatio(this));
}

// The refresh and patrol-recovery buttons close the function strip.
void CPreviewPTZWnd::BuildUpdateWidget()
{
    ptr_update_widget = new QWidget(ui_right_->m_pFrameAppendFun);
    ptr_update_widget->setObjectName(QStringLiteral("ptr_update_widget"));
    auto *update_layout = new QHBoxLayout(ptr_update_widget);
    update_layout->setContentsMargins(0, 0, 0, 0);
    update_layout->setSpacing(4);
    const auto add_button = [this, update_layout](const QString &name, const QString &tip) {
        auto *button = new QPushButton(ptr_update_widget);
        button->setObjectName(name);
        button->setFocusPolicy(Qt::NoFocus);
        button->setFixedSize(32, 32);
        button->setToolTip(tip);
        update_layout->addWidget(button);
        return button;
    };
    ptr_update_ptz_btn_ = add_button(QStringLiteral("ptr_update_ptz_btn_"), tr("UpdatePTZ"));
    ptr_recover_config_btn_ = add_button(QStringLiteral("ptr_recover_config_btn_"), tr("PatrolRecovery"));
    ui_right_->hl_append_fun->addWidget(ptr_update_widget, 2, 4);
}

// Tool tips, one-shot buttons and captions of the function strip; the speed labels.
void CPreviewPTZWnd::InitFunctionButtons()
{
    ui_right_->m_pBtnKeyFocus->setToolTip(tr("AuxiliaryFocus"));
    ui_right_->m_pBtnLight->setToolTip(tr("Light"));
    ui_right_->m_pBtnWiper->setToolTip(tr("Wiper"));
    ui_right_->m_pBtnResetPos->setToolTip(tr("LensInitialization"));
    ui_right_->ptr_manual_track_btn_->setToolTip(tr("ManualTracking"));
    ui_right_->ptr_face_capture_btn_->setToolTip(tr("ManualFaceCapture"));
    ui_right_->m_pBtn3D->setToolTip(tr("3DPositioning"));
    ui_right_->ptr_auto_track_btn_->setToolTip(tr("AutoTracking"));
    ui_right_->ptr_park_action_btn_->setToolTip(tr("ParkAction"));
    // One-shot buttons; the others keep their checked state.
    ui_right_->m_pBtnKeyFocus->setCheckable(false);
    ui_right_->m_pBtnResetPos->setCheckable(false);
    ui_right_->ptr_park_action_btn_->setCheckable(false);
    // The function strip shows icons only; the tool tips name the buttons, so the captions stay
    // empty and take no room.
    for (QLabel *caption : {ui_right_->label_2, ui_right_->label_3, ui_right_->label_4, ui_right_->label_5,
                            ui_right_->label_6, ui_right_->label_7, ui_right_->label_8}) {
        caption->clear();
        caption->hide();
    }
    ui_right_->add_preset_label->setText(tr("AddPreset"));
    ui_left_->ptr_label_slow_->setText(tr("Slow"));
    ui_left_->ptr_label_fast_->setText(tr("Fast"));
}

CPreviewPTZWnd::~CPreviewPTZWnd()
{
    ReleaseHeldMotion();
    if (ptr_ptz_controller_)
        ConnectPTZControllerSingal(false);
    delete ui_left_;
    delete ui_right_;
}

void CPreviewPTZWnd::ConnectSignalAndSlot()
{
    auto *cloud = ui_left_->ptr_cloud_;
    connect(cloud, &CPTZCloud::signalPressSection, this, &CPreviewPTZWnd::OnPressSection);
    connect(cloud, &CPTZCloud::signalReleaseSection, this, &CPreviewPTZWnd::OnReleaseSection);
    // The pad's overlay view holds the mouse while an arrow is pressed, so watch it as well.
    cloud->installEventFilter(this);
    const auto pad_children = cloud->findChildren<QWidget *>();
    for (QWidget *child : pad_children)
        child->installEventFilter(this);

    for (QPushButton *button : {ui_left_->pZoomInBtn, ui_left_->pZoomOutBtn, ui_left_->pFocusInBtn,
                                ui_left_->pFocusOutBtn, ui_left_->pIRISInBtn, ui_left_->pIRISOutBtn})
        button->installEventFilter(this);

    connect(ui_right_->m_pBtnLight, &QPushButton::clicked, this, &CPreviewPTZWnd::OnLight);
    connect(ui_right_->m_pBtnWiper, &QPushButton::clicked, this, &CPreviewPTZWnd::OnWiper);
    connect(ui_right_->m_pBtnKeyFocus, &QPushButton::clicked, this, &CPreviewPTZWnd::OnOneKeyFocusBtnClicked);
    connect(ui_right_->m_pBtnResetPos, &QPushButton::clicked, this, &CPreviewPTZWnd::OnResetLensBtnClicked);
    connect(ui_right_->m_pBtn3D, &QPushButton::clicked, this, &CPreviewPTZWnd::OnThreeD);
    connect(ui_right_->ptr_manual_track_btn_, &QPushButton::clicked, this, &CPreviewPTZWnd::OnManualTrackingBtnClicked);
    connect(ui_right_->ptr_face_capture_btn_, &QPushButton::clicked, this, &CPreviewPTZWnd::OnFaceCaptureBtnClicked);
    connect(ui_right_->ptr_auto_track_btn_, &QPushButton::clicked, this, &CPreviewPTZWnd::OnAutoTrackBtnClicked);
    connect(ui_right_->ptr_park_action_btn_, &QPushButton::clicked, this, &CPreviewPTZWnd::OnParkActionBtnClicked);
    connect(ptr_update_ptz_btn_, &QPushButton::clicked, this, &CPreviewPTZWnd::OnUpdatePtzBtnClicked);
    connect(ptr_recover_config_btn_, &QPushButton::clicked, this, &CPreviewPTZWnd::OnRecoverConfigBtnClicked);
    connect(ui_right_->m_pTabWidget, &QTabWidget::currentChanged, this, &CPreviewPTZWnd::OnTabIndexChanged);

    auto *getter = ptr_ptz_get_controller_;
    connect(getter, &CPTZGetController::SignalGetPresetsSuc, this, &CPreviewPTZWnd::OnGetPresetSuc);
    connect(getter, &CPTZGetController::SignalGetPresetsFailed, this, &CPreviewPTZWnd::OnGetPresetFailed);
    connect(getter, &CPTZGetController::SignalSyncPresetsSuc, this, &CPreviewPTZWnd::OnSyncPresetsSuc);
    connect(getter, &CPTZGetController::SignalSyncPresetsFailed, this, &CPreviewPTZWnd::OnSyncPresetsFailed);
    connect(getter, &CPTZGetController::SignalGetAllPatrolsSuc, this, &CPreviewPTZWnd::OnGetAllPatrolsSuc);
    connect(getter, &CPTZGetController::SignalGetAllPatrolsFailed, this, &CPreviewPTZWnd::OnGetAllPatrolsFailed);
    connect(getter, &CPTZGetController::SignalGetSinglePatrolSuc, this, &CPreviewPTZWnd::OnGetSinglePatrolSuc);
    connect(getter, &CPTZGetController::SignalGetPatrolFailed, this, &CPreviewPTZWnd::OnGetPatrolFailed);
    connect(getter, &CPTZGetController::SignalGetPatrolTypeSuc, this, &CPreviewPTZWnd::OnGetPatrolTypeSuc);
    connect(getter, &CPTZGetController::SignalGetPatrolTypeBeforeDelete, this,
            &CPreviewPTZWnd::OnGetPatrolTypeSucBeforeDelete);
    connect(getter, &CPTZGetController::SignalGetPatrolTypeBeforeOpen, this,
            &CPreviewPTZWnd::OnGetPatrolTypeSucBeforeOpen);
    connect(getter, &CPTZGetController::SignalSetPatrolFailed, this, &CPreviewPTZWnd::OnSetPatrolFailed);
    connect(getter, &CPTZGetController::SignalSetHardwarePatrolFinished, this,
            &CPreviewPTZWnd::OnSetHardwarePatrolFinish);
    connect(getter, &CPTZGetController::SignalSetSoftwarePatrolFinished, this,
            &CPreviewPTZWnd::OnSetSoftwarePatrolFinish);
    connect(getter, &CPTZGetController::SignalGetAllPatternsSuc, this, &CPreviewPTZWnd::OnGetAllPatternsSuc);
    connect(getter, &CPTZGetController::SignalGetAllPatternsFailed, this, &CPreviewPTZWnd::OnGetAllPatternsFailed);
    connect(getter, &CPTZGetController::SignalGetPTZLockStatusSuc, this, &CPreviewPTZWnd::OnGetPTZLockStatusSuc);
    connect(getter, &CPTZGetController::SignalGetPTZLockStatusFailed, this, &CPreviewPTZWnd::OnGetPTZLockStatusFailed);

    if (ptr_software_controller_) {
        connect(ptr_software_controller_.get(),
                &zeph_ptz_controller::CBaseSoftwarePtzControllor::SignalAutoPanRunningState, this,
                &CPreviewPTZWnd::OnSoftwareAutoPanRunningState);
        connect(ptr_software_controller_.get(),
                &zeph_ptz_controller::CBaseSoftwarePtzControllor::SignalPatrolRunningState, this,
                &CPreviewPTZWnd::OnSoftwarePatrolRunningState);
    }

    connect(StateStorage(), &zeph_ptz_controller::CPTZStateStorageManager::SignalInterruptTimeout, this,
            &CPreviewPTZWnd::OnInterruptPatrolTimeOut);
}

void CPreviewPTZWnd::ConnectPTZControllerSingal(bool b_connect)
{
    CUniversalPTZController *controller = ptr_ptz_controller_.get();
    if (!controller)
        return;
    if (!b_connect) {
        disconnect(controller, nullptr, this, nullptr);
        return;
    }
    // The controller names the camera first; the panel's handlers take the owner first.
    connect(controller, &CUniversalPTZController::SignalExecutionSucceeded, this,
            [this](const QString &camera_index_code, const QString &owner_index_code,
                   const ptz_plugin_protocol::PTZControlCommand &command) {
                OnPTZControlSuccess(owner_index_code, camera_index_code, command);
            });
    connect(controller, &CUniversalPTZController::SignalExecutionFailed, this,
            [this](const QString &camera_index_code, const QString &owner_index_code, int error_code, int command) {
                OnPTZControlFailed(owner_index_code, camera_index_code, error_code, command);
            });
    connect(controller, &CUniversalPTZController::SignalMessageTipNeeded, this,
            &CPreviewPTZWnd::SignalMessageTipNeeded);
    connect(controller, &CUniversalPTZController::SignalPTZAutoTrackState, this,
            &CPreviewPTZWnd::OnAutoTrackStateChanged);
    connect(controller, &CUniversalPTZController::SignalPTZPanelInterrupt, this,
            &CPreviewPTZWnd::OnStopAutoScanCruiseTrail);
    connect(controller, &CUniversalPTZController::SignalSeizedByOtherUser, this, &CPreviewPTZWnd::OnSeizedByOtherUser);
    connect(controller, &CUniversalPTZController::signalCruiseFinished, this, &CPreviewPTZWnd::OnCruiseControlFinish);
    connect(controller, &CUniversalPTZController::signalPresetFinished, this, &CPreviewPTZWnd::OnPresetControlFinish);
}

void CPreviewPTZWnd::SetPTZController(std::shared_ptr<CUniversalPTZController> ptz_controller,
                                      CVirtualPtzControllor *virtual_controller)
{
    ConnectPTZControllerSingal(false);
    ptr_ptz_controller_ = std::move(ptz_controller);
    ConnectPTZControllerSingal(true);

    if (ptr_virtual_controller_)
        disconnect(ptr_virtual_controller_.data(), &CVirtualPtzControllor::SignalCruiseStateChanged, this,
                   &CPreviewPTZWnd::OnVirtualCruiseStateChanged);
    ptr_virtual_controller_ = virtual_controller;
    if (ptr_virtual_controller_)
        connect(ptr_virtual_controller_.data(), &CVirtualPtzControllor::SignalCruiseStateChanged, this,
                &CPreviewPTZWnd::OnVirtualCruiseStateChanged);
}

void CPreviewPTZWnd::SetSoftwarePTZController(
    std::shared_ptr<zeph_ptz_controller::CBaseSoftwarePtzControllor> controller)
{
    if (ptr_software_controller_)
        disconnect(ptr_software_controller_.get(), nullptr, this, nullptr);
    ptr_software_controller_ = std::move(controller);
    if (!ptr_software_controller_)
        return;
    connect(ptr_software_controller_.get(), &zeph_ptz_controller::CBaseSoftwarePtzControllor::SignalAutoPanRunningState,
            this, &CPreviewPTZWnd::OnSoftwareAutoPanRunningState);
    connect(ptr_software_controller_.get(), &zeph_ptz_controller::CBaseSoftwarePtzControllor::SignalPatrolRunningState,
            this, &CPreviewPTZWnd::OnSoftwarePatrolRunningState);
}

bool CPreviewPTZWnd::HasAbility(int ability) const
{
    return CheckAbility(camera_index_code_, static_cast<ResourceData::CameraAbilityType>(ability));
}

void CPreviewPTZWnd::SetLockFrameIdle()
{
    ui_left_->pLockFrame->ShowPage(0);
}

void CPreviewPTZWnd::SetCamera(const QString &owner_index_code, const QString &camera_index_code, bool, bool)
{
    if (owner_index_code == owner_index_code_ && camera_index_code == camera_index_code_)
        return;

    // Whatever is held or awaited belongs to the previous binding: settle it before the camera changes.
    ReleaseHeldMotion();
    FinishUpdatePtz();

    if (camera_index_code.isEmpty()) {
        ClearCamera();
        return;
    }

    const auto camera = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->GetCameraByID(
        camera_index_code.toStdString());
    b_cascade_ = camera ? camera->IsCascade() : false;

    if (!zeph_ptz_controller::CCommonFunction::IsCameraPermissionValid(owner_index_code, camera_index_code,
                                                                       ResourceData::PERMISSION_PTZ_CONTROL)
        || (!CheckAbility(camera_index_code, ResourceData::ABILITY_PTZ) && !b_cascade_)) {
        RefuseCamera();
        return;
    }
    ApplyCascadeState();

    owner_index_code_ = owner_index_code;
    camera_index_code_ = camera_index_code;
    if (ptr_software_controller_ && ptr_software_controller_->GetSoftwareControllor())
        b_software_ptz_ = ptr_software_controller_->GetSoftwareControllor()->IsFishEyeWndOpen();

    b_park_action_perm_ = zeph_ptz_controller::CCommonFunction::IsCameraPermissionValid(
        owner_index_code, camera_index_code, ResourceData::PERMISSION_PARK_ACTION_CONFIG);
    StateStorage()->AddCamera(camera_index_code);

    ui_right_->ptr_face_capture_btn_->setEnabled(HasAbility(ResourceData::ABILITY_FACE_CAPTURE));
    ui_right_->ptr_manual_track_btn_->setEnabled(HasAbility(ResourceData::ABILITY_MANUAL_TRACK));
    ui_right_->ptr_auto_track_btn_->setEnabled(HasAbility(ResourceData::ABILITY_AUTO_TRACK));
    ui_right_->ptr_auto_track_btn_->setChecked(false);
    ui_right_->ptr_park_action_btn_->setEnabled(HasAbility(ResourceData::ABILITY_PARK_ACTION) && b_park_action_perm_);

    if (b_software_ptz_) {
        if (ptr_software_controller_)
            ptr_software_controller_->SetCamera(camera_index_code);
        InitPtzState(PTZWndSoftware);
    } else {
        InitPtzState(PTZWndDevice);
    }
    if (panel_kind_ == 1)
        StartLockWatch();

    ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center,
                                            StateStorage()->IsAutoScan(camera_index_code_, b_software_ptz_));
    ResortPresetList();
    ApplyAbilityButtons();
    OnTabIndexChanged(-1);
    UpdatePTZWorkState();
}

void CPreviewPTZWnd::ClearCamera()
{
    if (Config()->IsSupportPTZLock())
        SetLockFrameIdle();
    else
        ui_left_->pLockFrame->hide();
    camera_index_code_.clear();
    owner_index_code_.clear();
    InitPtzState(PTZWndNone);
    if (ptr_software_controller_ && ptr_software_controller_->GetSoftwareControllor())
        ptr_software_controller_->GetSoftwareControllor()->SetFishEyeWndOpen(false);
}

// No permission to steer, or nothing to steer: the panel stays idle.
void CPreviewPTZWnd::RefuseCamera()
{
    camera_index_code_.clear();
    InitPtzState(PTZWndNone);
    SetLockFrameIdle();
}

// A cascaded camera is reached through another site, which passes on moves only.
void CPreviewPTZWnd::ApplyCascadeState()
{
    const QString cascade_tip = b_cascade_ ? tr("Corvo-ControlClient.076b8e1c619744ee8a8f04026e32bea4.msg") : QString();
    for (QWidget *widget :
         {static_cast<QWidget *>(ui_right_->m_pBtnKeyFocus), static_cast<QWidget *>(ui_right_->m_pBtnLight),
          static_cast<QWidget *>(ui_right_->m_pBtnWiper), static_cast<QWidget *>(ui_right_->m_pBtnResetPos),
          static_cast<QWidget *>(ui_right_->m_pTabCruise), static_cast<QWidget *>(ui_right_->m_pTabPatten),
          static_cast<QWidget *>(ui_right_->ptr_park_action_btn_)})
        widget->setEnabled(!b_cascade_);
    QTabWidget *tabs = ui_right_->m_pTabWidget;
    tabs->setTabToolTip(tabs->indexOf(ui_right_->m_pTabCruise), cascade_tip);
    tabs->setTabToolTip(tabs->indexOf(ui_right_->m_pTabPatten), cascade_tip);
    ui_right_->m_pTabCruise->setToolTip(cascade_tip);
    ui_right_->m_pTabPatten->setToolTip(cascade_tip);
}

// Pad sections and zoom buttons follow the camera's pan, tilt and zoom abilities.
void CPreviewPTZWnd::ApplyAbilityButtons()
{
    if (!HasAbility(ResourceData::ABILITY_PTZ) || b_cascade_)
        return;
    if (!HasAbility(ResourceData::ABILITY_PAN))
        ui_left_->ptr_cloud_->SetSectionsEnabled({1, 3, 4, 6, 7, 9}, false);
    if (!HasAbility(ResourceData::ABILITY_TILT))
        ui_left_->ptr_cloud_->SetSectionsEnabled({1, 2, 3, 7, 8, 9}, false);
    const bool zoom = HasAbility(ResourceData::ABILITY_ZOOM);
    ui_left_->pZoomInBtn->setEnabled(zoom);
    ui_left_->pZoomOutBtn->setEnabled(zoom);
}

void CPreviewPTZWnd::StartLockWatch()
{
    const bool lockable = Config()->IsSupportPTZLock();
    ui_left_->pLockFrame->setVisible(lockable);
    if (!lockStatusTimer->isActive())
        lockStatusTimer->start(3000);
    lockedByCamera[camera_index_code_] = false;
    if (lockable) {
        // The strip shows the operator's own level beside the lock button.
        SetUserPTZPerm();
        OnCheckPTZLockStatus();
    }
}

void CPreviewPTZWnd::StopWork()
{
    SetCamera(QString(), QString(), false, false);
    SetLockFrameIdle();
    if (lockStatusTimer->isActive())
        lockStatusTimer->stop();
    if (ptr_ptz_get_controller_)
        ptr_ptz_get_controller_->StopGettingData();
    FinishUpdatePtz();
}

bool CPreviewPTZWnd::IsWorking() const
{
    return !camera_index_code_.isEmpty();
}

int CPreviewPTZWnd::GetUserPTZPerm(const std::string &user_id)
{
    ptz_plugin_protocol::GetUserPtzPermRequest request;
    request.user_id = user_id;
    ptz_plugin_protocol::GetUserPtzPermResponse response;
    if (!Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->GetUserPTZPermission(
            request, response))
        return -1;
    current_user_ptz_perm_ = response.ptz_level;
    return current_user_ptz_perm_;
}

void CPreviewPTZWnd::SetUserPTZPerm()
{
    ui_left_->pLockFrame->SetUserLevel(GetUserPTZPerm(""));
}

void CPreviewPTZWnd::PTZConfigPermission(bool enabled)
{
    ui_right_->ptr_park_action_btn_->setEnabled(enabled);
}

void CPreviewPTZWnd::SetUIEnabled(bool, bool) { }

void CPreviewPTZWnd::SetDelegateStateCallback(std::function<bool(PreviewPTZStruct::PreviewWndOperate &)> callback)
{
    delegate_state_callback_ = std::move(callback);
}

void CPreviewPTZWnd::SetPresetInfoCallback(std::function<void(ptz_plugin_protocol::PresetInfo &)> callback)
{
    preset_info_callback_ = std::move(callback);
}

void CPreviewPTZWnd::SetPtzTabNameCallback(std::function<void(bool)> callback)
{
    ptz_tab_name_callback_ = std::move(callback);
}

} // namespace PreviewPTZControl
