#pragma once

#include "previewptzcontrol_export.h"

#include "boundary/previewptzstruct.h"
#include "boundary/ptzcontrolparam.h"
#include "boundary/ptzcontroltypes.h"
#include "panel/cbasicptzwnd.h"
#include "patrol/ccruisetableeditview.h"

#include <QMap>
#include <QModelIndex>
#include <QMouseEvent>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <string>

class QTimer;
class QPushButton;

namespace zeph_ptz_controller {
class CUniversalPTZController;
class CPTZGetController;
class CVirtualPtzControllor;
class CBaseSoftwarePtzControllor;
class IPTZFishEyeController;
} // namespace zeph_ptz_controller

namespace Quillon {
class CDataObjectMapper;
class CScrollArea;
} // namespace Quillon

namespace PreviewPTZControl {

class CMouseReleaseWatcher;

// presets
class CPresetTableModel;
class CParkActionDlg;
class CCruiseRecoverConfigDlg;
class CSortPresetFilterModel;
// patterns
class CPatternTableModel;
// patrols
class CCruiseTableModel;

namespace Ui {
class CPTZPanelLeft;
class CPTZPanelRight;
} // namespace Ui

// The PTZ panel beside one live-view screen. It binds one camera at a time, decides which
// PTZ functions the camera, the user and the lock allow, turns presses into commands for the
// controllers and keeps its buttons in step with what the controllers report.
class PREVIEWPTZCONTROL_EXPORT CPreviewPTZWnd : public CBasicPTZWnd
{
    Q_OBJECT

public:
    // b_software_ptz: the screen can show fish-eye pictures, so the panel keeps a software
    // controller for them. b_playback: a panel of a playback screen, which runs no PTZ lock.
    CPreviewPTZWnd(unsigned int screen_index, bool b_software_ptz, bool b_playback, QWidget *parent = nullptr);
    ~CPreviewPTZWnd() override;

    void SetPTZController(std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> ptz_controller,
                          zeph_ptz_controller::CVirtualPtzControllor *virtual_controller);
    void SetFishEyeController(zeph_ptz_controller::IPTZFishEyeController *fish_eye_controller);
    // Replaces the software controller used for fish-eye pictures (may be null).
    void SetSoftwarePTZController(std::shared_ptr<zeph_ptz_controller::CBaseSoftwarePtzControllor> controller);

    // The two flags are reserved for the host and have no effect on the binding.
    void SetCamera(const QString &owner_index_code, const QString &camera_index_code, bool b_reserved1,
                   bool b_reserved2);
    void StopWork();
    bool IsWorking() const;

    static int GetUserPTZPerm(const std::string &user_id);
    void SetUserPTZPerm();
    void PTZConfigPermission(bool enabled);
    void SetUIEnabled(bool enabled, bool b_reserved);

    void SetDelegateStateCallback(std::function<bool(PreviewPTZStruct::PreviewWndOperate &)> callback);
    void SetPresetInfoCallback(std::function<void(ptz_plugin_protocol::PresetInfo &)> callback);
    void SetPtzTabNameCallback(std::function<void(bool)> callback);

    void SwitchPTZWndBgColor(bool white);
    void SwitchPTZWndLayout(bool vertical);
    void SetBottomHalfVisible(bool visible);

    void SetPTZLockFrameMode();
    static QString GetPTZLockedDetails(const QString &camera_index_code);

    void StopAutoScan(const QString &owner_index_code, const QString &camera_index_code, bool b_send);
    void SetPtzAuxiliaryLineHide();
    void StopCruisePlaying(const QString &owner_index_code, const QString &camera_index_code, bool b_resume, int mode,
                           bool b_send);
    void StopPatternPlaying(const QString &owner_index_code, const QString &camera_index_code, bool b_resume, int mode,
                            bool b_send);
    void StopPatternRecording(const QString &owner_index_code, const QString &camera_index_code, bool b_send);

    // State the host and tests read back.
    unsigned int ScreenIndex() const { return screen_index_; }
    QString CameraIndexCode() const { return camera_index_code_; }
    QString OwnerIndexCode() const { return owner_index_code_; }
    PTZWndType WndType() const { return wnd_type_; }
    PTZPresetType PresetType() const { return preset_type_; }
    bool IsSoftwarePTZ() const { return b_software_ptz_; }
    bool IsCascade() const { return b_cascade_; }
    bool HasParkActionPermission() const { return b_park_action_perm_; }
    bool IsWhiteTheme() const { return whiteTheme; }
    bool IsStackedLayout() const { return stackedLayout; }
    unsigned int PanelKind() const { return panel_kind_; }
    static int CurrentUserPTZPerm() { return current_user_ptz_perm_; }

public slots:
    void OnWndPtzActionStateChanged(int function_id, bool on);
    void OnUpdatePtzBtnClicked();

    // Direction pad and buttons.
    void OnPressSection(QMouseEvent *event, int section);
    void OnReleaseSection(QMouseEvent *event, int section);
    void OnLight(bool checked);
    void OnWiper(bool checked);
    void OnOneKeyFocusBtnClicked();
    void OnResetLensBtnClicked();
    void OnThreeD(bool checked);
    void OnManualTrackingBtnClicked(bool checked);
    void OnFaceCaptureBtnClicked(bool checked);
    void OnAutoTrackBtnClicked(bool checked);
    void OnAutoScanToggled(const QString &camera_index_code, bool on, bool b_from_pad);
    void OnParkActionBtnClicked();
    void OnRecoverConfigBtnClicked();
    void OnCruiseRecoverConfig();

    // Results of the device controller.
    void OnPTZControlSuccess(const QString &owner_index_code, const QString &camera_index_code,
                             const ptz_plugin_protocol::PTZControlCommand &command);
    void OnPTZControlFailed(const QString &owner_index_code, const QString &camera_index_code, int error_code,
                            int command);
    void OnAutoTrackStateChanged(const QString &owner_index_code, const QString &camera_index_code, bool on);
    void OnStopAutoScanCruiseTrail(const QString &owner_index_code, const QString &camera_index_code, bool is_trail,
                                   int patrol_no);
    void OnSeizedByOtherUser(const QString &camera_index_code);
    void OnCruiseControlFinish(const ptz_plugin_protocol::CruiseControlRequest &request, const QString &error);
    void OnPresetControlFinish(const ptz_plugin_protocol::PresetControlRequest &request, const QString &error);
    void OnVirtualCruiseStateChanged(const QString &camera_index_code, int cruise_no, bool running);
    void OnInterruptPatrolTimeOut(bool is_patrol, const QString &camera_index_code, int index);

    // Blinking of the light and wiper buttons.
    void OnUpdateLightOnStatus();
    void OnUpdateWiperOnStatus();

    void OnTabIndexChanged(int index);
    void OnCheckPTZLockStatus();

    // Lock strip (cpreviewptzwnd_lock.cpp).
    void OnAboutLockBtnClicked(int lock_time);
    void OnAboutCancelBtnClicked();
    void OnUnLockBtnClicked();
    void OnLockedDetailClicked();

    // Fish-eye mode.
    void OnPreviewWndFishEyeOpen(bool open);
    void OnFishEyeSelectedWndChanged();
    void OnFishEyePlayDisplayWndPress();
    void OnSoftwareAutoPanRunningState(bool running);
    void OnSoftwarePatrolRunningState(bool running, int patrol_path);

    // Results of the getter controller.
    void OnGetPresetSuc(const QString &camera_index_code) override;
    void OnGetPresetFailed(const QString &camera_index_code, const QString &str_error_info) override;
    void OnGetAllPatrolsSuc(const QString &camera_index_code,
                            const QVector<ptz_plugin_protocol::CruiseInfo> &vec_patrols_info) override;
    void OnGetAllPatrolsFailed(const QString &camera_index_code) override;
    void OnGetPTZLockStatusSuc(const QString &camera_index_code) override;
    void OnGetPTZLockStatusFailed(const QString &camera_index_code, const QString &error_info) override;
    void OnGetLockStatus() override;
    void OnSyncPresetsSuc(const QString &camera_index_code) override;
    void OnSyncPresetsFailed(const QString &camera_index_code) override;
    void OnGetAllPatternsSuc(const QString &camera_index_code, const QVector<int> &vec_patterns_no) override;
    void OnGetAllPatternsFailed(const QString &camera_index_code) override;

    // presets (cpreviewptzwnd_presets.cpp)
    void OnAddPreset();
    void OnRunPresetBtnClicked(const QModelIndex &index);
    void OnEditPresetBtnClicked(const QModelIndex &index);
    void OnDeletePresetBtnClicked(const QModelIndex &index);
    void OnFilterByPresetName(const QString &text);
    void OnDeviceOrVirtualPresetSwitch();

    // patterns (cpreviewptzwnd_patterns.cpp)
    void OnPatternPlayCtl(const QModelIndex &index, bool play);
    void OnPatternRecordCtl(const QModelIndex &index, bool record);
    void OnPatternDeleteControl(const QModelIndex &index);
    // patrols (cpreviewptzwnd_patrols.cpp, cpreviewptzwnd_patroledit.cpp)
    void OnCruisePlay(const QModelIndex &index, bool b_play);
    void OnCruiseEdit(const QModelIndex &index);
    void OnCruiseDelete(const QModelIndex &index);
    void OnCruiseCtlIconChanged(CCruiseTableEditView::IndexPlace place);
    void OnFinishEditCruisePath();
    void OnCancelEditCruisePath();
    void OnCruiseAddPreset();
    void OnCruiseDelPreset();
    void OnCruiseUpPreset();
    void OnCruiseDownPreset();
    void OnPatrolSaveIconChanged(bool b_empty);
    void OnGetPatrolTypeSucBeforeOpen(int iPatrolPath, PreviewPTZControl::CruiseType enum_cruise_type,
                                      const QString &index_code, int min_time, int max_time) override;
    void OnGetPatrolTypeSucBeforeDelete(int iPatrolPath, PreviewPTZControl::CruiseType enum_cruise_type,
                                        const QString &index_code) override;
    void OnGetSinglePatrolSuc(const QString &camera_index_code, int i_patrol_path) override;
    void OnGetPatrolTypeSuc(int i_patrol_path, bool b_stop_action, PreviewPTZControl::CruiseType cruise_type,
                            const std::list<ptz_plugin_protocol::CruisePoint> &lst_cruise_point) override;
    void OnGetPatrolFailed(const QString &camera_index_code, int i_patrol_path, const QString &error_info) override;
    void OnSetHardwarePatrolFinish(const QString &camera_index_code) override;
    void OnSetSoftwarePatrolFinish(const QString &camera_index_code) override;
    void OnSetPatrolFailed(const QString &camera_index_code, const QString &error_info) override;

signals:
    void SignalFunctionEnabled(int function_id, bool enabled);
    void SignalMessageTipNeeded(QString message_tip, int tip_type);
    void SignalUpdatePtzInfoEnabled(bool b_enable);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    // Construction and binding (cpreviewptzwnd.cpp).
    void ConnectSignalAndSlot();
    void BuildUpdateWidget();
    void InitFunctionButtons();
    void ConnectPTZControllerSingal(bool b_connect);
    void InitPtzState(int type);
    void InitPTZCloudState(int type);
    void InitLightBtnState();
    void InitWiperBtnState();
    void InitManualTrack(bool checked);
    void InitFaceCapture(bool checked);
    void Init3DPositionBtnState(bool checked);
    void InitOtherPtzState(int type);
    void InitPtzGetterControllor();
    void InitPtzSetterControllor();
    void UpdatePTZWorkState();
    void UpdateCurrentPtzPageState(bool b_ready);
    void SetLockFrameIdle();
    bool HasAbility(int ability) const;
    void ClearCamera();
    void RefuseCamera();
    void ApplyCascadeState();
    void ApplyAbilityButtons();
    void StartLockWatch();

    // Commands (cpreviewptzwnd_commands.cpp).
    void ExecutePTZControl(const PTZControlParam &param);
    int GetPTZCommandBySection(int section) const;
    int GetCommandByObject(QObject *object) const;
    void SendMotion(int command, bool b_stop, Qt::MouseButton button = Qt::LeftButton);
    void ReleaseHeldMotion();
    void StopHeldMotion(int stop_command);
    void OnHeldButtonReleased();
    void FinishUpdatePtz();
    void ReadBackAuxiliaryState(const QString &camera_index_code, int command);
    void UpdateLightState(bool on);
    void UpdateWiperState(bool on);
    void UpdateZoomPannelState(bool large);
    void UpdateFocusBtnState();
    void UpdateAutoPanWorkState(bool running);
    void SetBlinkName(QPushButton *button, const QString &off_name, const QString &on_name, bool on);

    // Composition and theme (cpreviewptzwnd_composition.cpp).
    void AssemblyLayout();
    void DoLayoutSwitch(bool vertical);
    void ArrangeLensRows(bool oneRow);
    void ModifyTabWidth(bool b_third_tab_visible);
    void RenameAndPolish(QWidget *widget, const QString &name);
    QString ThemedName(const QString &dark_name) const;

    // Presets (cpreviewptzwnd_presets.cpp).
    void InitPresetTab();
    void SetPresetType(PTZPresetType type);
    void ResortPresetList();
    void UpdateAddPresetState(bool enabled);
    void EnsurePresetList();
    void UpdatePresetPermissions();
    void UpdatePresetCount();
    int CountPresetsOfCurrentType(const QVector<ptz_plugin_protocol::PresetInfo> &presets) const;
    ptz_plugin_protocol::PresetInfo PresetOfRow(const QModelIndex &index) const;
    QVector<ptz_plugin_protocol::PresetInfo> PresetsSharingNumbers() const;
    void ModifyPresetName(const QModelIndex &index);
    void DoPresetOperate(const QModelIndex &index, const std::string &operation);
    bool CheckPresetNameValid(const QString &name, const QModelIndex &index);

    // Patrols (cpreviewptzwnd_patrols.cpp, cpreviewptzwnd_patroledit.cpp).
    void InitPatrolTab();
    void EnsurePatrolList();
    void UpdatePatrolPageState(bool running, int row);
    void SetPatrolUiStateWithPresetType(PTZPresetType type);
    void UpdatePatrolEditPageState(int type);
    void EnterVacantPatrolEditView();
    void ShowPatrolListPage();
    void ShowPatrolEditPage();
    void SetPatrolEditLabel(int patrol_no);
    void SwitchPatrolEditorPresetType();
    void ShowPatrolPath(const ptz_plugin_protocol::GetCruiseRouteResponse &route);
    void SetPatrolEditorDwellRange(int min_time, int max_time);
    bool CheckCruiseNameValid(const QString &name, const QModelIndex &index);
    // Running patrol of the panel's camera as its controllers report it (1-based, 0 none).
    int RunningPatrolNumber() const;
    void SyncPatrolRunningMark();
    // A patrol request is out: the page (or the panel's controls) wait for its answer, and a
    // guard brings them back should none come.
    void SetPatrolPageWaiting(bool waiting);
    void SetPatrolControlsWaiting(bool waiting);
    void UpdatePatrolAnswerGuard();
    void OnPatrolAnswerMissing();
    void OnPatrolQueryFailed(const QString &camera_index_code, int patrol_no, const QString &error_info);
    void StartDevicePatrolCommand(int patrol_no, bool b_stop);
    QString CameraName() const;

    // Patterns (cpreviewptzwnd_patterns.cpp).
    void InitPattenTab();
    void UpdatePattenPageState();
    void EnsurePatternList();
    bool PatternCommandRefused(const QModelIndex &index, bool b_recording_blocks);
    void StopVirtualPatrolForPattern();
    void SendPatternCommand(quint32 command, quint32 action, int pattern);
    void OnPatternControlSuccess(int command);

    // Lock (cpreviewptzwnd_lock.cpp).
    void InitPtzLockState();
    void InterruptPatrolLocked(bool interrupted);
    void ConnectLockStrip();
    void OnLockCommandSucceeded(const ptz_plugin_protocol::PTZControlCommand &command);

    zeph_ptz_controller::CPTZGetController *ptr_ptz_get_controller_ = nullptr; // child of the panel
    std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> ptr_ptz_controller_;
    QPointer<zeph_ptz_controller::CVirtualPtzControllor> ptr_virtual_controller_; // not owned
    std::shared_ptr<zeph_ptz_controller::CBaseSoftwarePtzControllor> ptr_software_controller_;

    Ui::CPTZPanelLeft *ui_left_ = nullptr;
    Ui::CPTZPanelRight *ui_right_ = nullptr;
    QWidget *ptr_ptz_panel_left_ = nullptr;
    QWidget *ptr_ptz_panel_right_ = nullptr;
    Quillon::CScrollArea *ptr_scroll_area_ = nullptr;
    QWidget *ptr_scroll_content = nullptr;
    QWidget *ptr_update_widget = nullptr;
    QPushButton *ptr_update_ptz_btn_ = nullptr;
    QPushButton *ptr_recover_config_btn_ = nullptr;
    CParkActionDlg *park_action_dlg_ = nullptr;             // created on first use, child of the panel
    CCruiseRecoverConfigDlg *cruise_recover_dlg_ = nullptr; // created on first use, child of the panel

    bool whiteTheme = false;
    bool stackedLayout = false;

    unsigned int screen_index_ = 0;
    QString camera_index_code_;
    QString owner_index_code_;

    bool b_command_extra_ = false;
    bool b_cascade_ = false;
    bool b_reserved_flag_ = false;
    bool b_software_ptz_ = false;
    bool b_park_action_perm_ = false;
    unsigned int panel_kind_ = 1;
    PTZWndType wnd_type_ = PTZWndNone;
    PTZPresetType preset_type_ = ptz_plugin_protocol::PRESET_TYPE_DEVICE;

    // presets
    CPresetTableModel *ptr_preset_model_ = nullptr;
    CSortPresetFilterModel *ptr_preset_proxy_ = nullptr;
    bool b_preset_config_perm_ = false;
    bool b_preset_edit_perm_ = false;
    int preset_count_ = 0;
    QString pending_preset_name_;

    // patterns
    CPatternTableModel *ptr_pattern_model_ = nullptr;

    QTimer *light_status_timer_ = nullptr;
    QTimer *wiper_status_timer_ = nullptr;
    QTimer *lockStatusTimer = nullptr;
    QTimer *lock_hold_timer_ = nullptr;

    bool b_light_on_ = false;
    bool b_wiper_on_ = false;
    bool b_light_blink_ = false;
    bool b_wiper_blink_ = false;

    // A move, zoom, focus or iris command whose stop is still owed to the camera.
    struct HeldMotion
    {
        int command = -1;
        bool software = false;
        QString owner_index_code;
        QString camera_index_code;
        Qt::MouseButton button = Qt::LeftButton; // whose release ends the motion
        quint64 serial = 0;
    };
    HeldMotion held_motion_;
    quint64 held_serial_ = 0;
    CMouseReleaseWatcher *ptr_release_watcher_ = nullptr; // child of the panel
    // "Update PTZ" was pressed and its answer has not come yet.
    bool b_update_ptz_pending_ = false;

    QMap<QString, bool> lockedByCamera;
    int remembered_patrol_no_ = 1;

    // patrols
    CCruiseTableModel *ptr_cruise_model_ = nullptr;
    Quillon::CDataObjectMapper *ptr_patrol_page_mapper_ = nullptr;
    QTimer *patrol_answer_timer_ = nullptr;
    int deleting_patrol_no_ = 0;
    QPersistentModelIndex deleting_patrol_index_;
    int editing_cruise_type_ = 0; // CruiseType of the slot opened for editing
    QString editing_cruise_id_;   // the text that came with that type
    int reported_dwell_min_ = 15; // dwell range reported with the type
    int reported_dwell_max_ = 30;
    int editor_dwell_min_ = 15; // range the editor offers
    int editor_dwell_max_ = 30;
    bool b_patrol_page_waiting_ = false;
    bool b_patrol_controls_waiting_ = false;

    static int current_user_ptz_perm_;

    std::function<bool(PreviewPTZStruct::PreviewWndOperate &)> delegate_state_callback_;
    std::function<void(ptz_plugin_protocol::PresetInfo &)> preset_info_callback_;
    std::function<void(bool)> ptz_tab_name_callback_;
};

} // namespace PreviewPTZControl
