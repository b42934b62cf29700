#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelright.h"

#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableview.h"

#include "quillon/cdataobjectmapper.h"
#include "tarn/base/logging.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"
#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QPushButton>
#include <QTimer>

// The patrol list: starting and stopping patrols, deleting them, and keeping the running mark in
// step with the device, the software controller, the virtual controller and the other panels.

namespace PreviewPTZControl {

using namespace PanelPrivate;
using ptz_plugin_protocol::CruiseControlRequest;

namespace {
// Longer than the controller's own request time-out, so its failure normally comes first.
constexpr int kPatrolAnswerGuardMs = 35000;

bool IsPatrolKind(int type)
{
    return type == ptz_plugin_protocol::CRUISE_TYPE_DEVICE || type == ptz_plugin_protocol::CRUISE_TYPE_SOFTWARE
           || type == ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL;
}
} // namespace

void CPreviewPTZWnd::EnsurePatrolList()
{
    if (ptr_cruise_model_)
        return;
    ptr_cruise_model_ = new CCruiseTableModel(this, whiteTheme);
    CCruiseTableView *view = ui_right_->m_pTreeViewPatrol;
    view->setModel(ptr_cruise_model_);
    view->SetWhiteTheme(whiteTheme);
    connect(view, &CCruiseTableView::SignalPatrolPlayControl, this, &CPreviewPTZWnd::OnCruisePlay);
    connect(view, &CCruiseTableView::SignalPatrolEdit, this, &CPreviewPTZWnd::OnCruiseEdit);
    connect(view, &CCruiseTableView::SignalPatrolDelete, this, &CPreviewPTZWnd::OnCruiseDelete);

    CCruiseTableEditView *editor = ui_right_->m_pTreeViewPatrolEdit;
    if (!whiteTheme)
        editor->SetWhiteTheme(false);
    connect(editor, &CCruiseTableEditView::SignalSetPresetControlIconsStatus, this,
            &CPreviewPTZWnd::OnCruiseCtlIconChanged);
    connect(editor, &CCruiseTableEditView::SignalSetSaveIconsStatus, this, &CPreviewPTZWnd::OnPatrolSaveIconChanged);
    connect(ui_right_->pAddBtn, &QPushButton::clicked, this, &CPreviewPTZWnd::OnCruiseAddPreset);
    connect(ui_right_->pDeleteBtn, &QPushButton::clicked, this, &CPreviewPTZWnd::OnCruiseDelPreset);
    connect(ui_right_->pUpBtn, &QPushButton::clicked, this, &CPreviewPTZWnd::OnCruiseUpPreset);
    connect(ui_right_->pDownBtn, &QPushButton::clicked, this, &CPreviewPTZWnd::OnCruiseDownPreset);
    connect(ui_right_->pConfirmBtn, &QPushButton::clicked, this, &CPreviewPTZWnd::OnFinishEditCruisePath);
    connect(ui_right_->pCancelBtn, &QPushButton::clicked, this, &CPreviewPTZWnd::OnCancelEditCruisePath);
    ui_right_->pAddBtn->setToolTip(tr("AddPatrolPoint"));
    ui_right_->pUpBtn->setToolTip(tr("MovePatrolPointUp"));
    // Shown only where the installation offers the choice (SetPatrolUiStateWithPresetType).
    ui_right_->ptr_preset_type_frame->hide();

    // Role 0 shows the edit page, role 1 the list.
    ptr_patrol_page_mapper_ = new Quillon::CDataObjectMapper(this);
    ptr_patrol_page_mapper_->AddMapping(ui_right_->pPatrolModifyFrame, 0);
    ptr_patrol_page_mapper_->AddMapping(ui_right_->m_pTreeViewPatrol, 1);

    patrol_answer_timer_ = new QTimer(this);
    patrol_answer_timer_->setSingleShot(true);
    patrol_answer_timer_->setInterval(kPatrolAnswerGuardMs);
    connect(patrol_answer_timer_, &QTimer::timeout, this, &CPreviewPTZWnd::OnPatrolAnswerMissing);
    // The named failure slot stays without effect; this one brings a waiting page back.
    connect(ptr_ptz_get_controller_, &zeph_ptz_controller::CPTZGetController::SignalGetPatrolFailed, this,
            &CPreviewPTZWnd::OnPatrolQueryFailed);
    connect(StateStorage(), &zeph_ptz_controller::CPTZStateStorageManager::SignalStateChanged, this,
            [this](const QString &camera_index_code) {
                if (camera_index_code == camera_index_code_)
                    SyncPatrolRunningMark();
            });
}

void CPreviewPTZWnd::InitPatrolTab()
{
    EnsurePatrolList();
    // Whatever was asked of the previous camera no longer holds the page.
    if (b_patrol_page_waiting_)
        SetPatrolPageWaiting(false);
    if (b_patrol_controls_waiting_)
        SetPatrolControlsWaiting(false);
    ShowPatrolListPage();
    SetPatrolEditLabel(remembered_patrol_no_);
    ptr_cruise_model_->UpdatePatrols({}, false);
    ptr_cruise_model_->ClearPlaying();
}

void CPreviewPTZWnd::ShowPatrolListPage()
{
    if (ptr_patrol_page_mapper_)
        ptr_patrol_page_mapper_->SetData({{0, 0}, {1, 1}});
}

void CPreviewPTZWnd::ShowPatrolEditPage()
{
    if (ptr_patrol_page_mapper_)
        ptr_patrol_page_mapper_->SetData({{0, 1}, {1, 0}});
}

void CPreviewPTZWnd::SetPatrolEditLabel(int patrol_no)
{
    const QString text = tr("ThePathToThe%wFHUZzrWxBzbnqaB");
    // Without its translation the key carries no place for the number.
    ui_right_->pPatrolNameLabel->setText(
        text.contains(QLatin1String("%1")) ? text.arg(patrol_no, 0, 10, QLatin1Char(' ')) : text);
}

void CPreviewPTZWnd::UpdatePatrolPageState(bool running, int row)
{
    EnsurePatrolList();
    if (!running) {
        ptr_cruise_model_->ClearPlaying();
        return;
    }
    const QModelIndex index = ptr_cruise_model_->index(row, CCruiseTableModel::kColumnName);
    if (index.isValid())
        ptr_cruise_model_->SetPlayingIndex(index, true);
}

int CPreviewPTZWnd::RunningPatrolNumber() const
{
    if (camera_index_code_.isEmpty())
        return 0;
    if (b_software_ptz_) {
        int path = 0;
        if (ptr_software_controller_ && ptr_software_controller_->IsPtzPatrolling(path))
            return qMax(path, 1);
        return 0;
    }
    const int cruise = StateStorage()->GetRunningCruise(camera_index_code_);
    if (cruise > 0)
        return cruise;
    unsigned int virtual_cruise = 0;
    if (ptr_virtual_controller_ && ptr_virtual_controller_->GetCamera() == camera_index_code_
        && ptr_virtual_controller_->GetRunningState(virtual_cruise))
        return int(virtual_cruise);
    return 0;
}

void CPreviewPTZWnd::SyncPatrolRunningMark()
{
    // The shared state changes when any panel's request is answered, or when the camera resumes
    // a patrol by itself: every panel of the camera shows the same running row.
    const int running = RunningPatrolNumber();
    if (ptr_cruise_model_ && running != ptr_cruise_model_->PlayingRow() + 1)
        UpdatePatrolPageState(running > 0, running - 1);
}

void CPreviewPTZWnd::SetPatrolPageWaiting(bool waiting)
{
    b_patrol_page_waiting_ = waiting;
    ui_right_->m_pTabCruise->setEnabled(!waiting && !b_cascade_);
    UpdatePatrolAnswerGuard();
}

void CPreviewPTZWnd::SetPatrolControlsWaiting(bool waiting)
{
    b_patrol_controls_waiting_ = waiting;
    ptr_ptz_panel_left_->setEnabled(!waiting);
    ptr_ptz_panel_right_->setEnabled(!waiting);
    UpdatePatrolAnswerGuard();
}

void CPreviewPTZWnd::UpdatePatrolAnswerGuard()
{
    if (!patrol_answer_timer_)
        return;
    if (!b_patrol_page_waiting_ && !b_patrol_controls_waiting_)
        patrol_answer_timer_->stop();
    else if (!patrol_answer_timer_->isActive())
        patrol_answer_timer_->start();
}

void CPreviewPTZWnd::OnPatrolAnswerMissing()
{
    ZEPH_LOG_WARN("no answer to the patrol request of %s", qUtf8Printable(camera_index_code_));
    SetPatrolPageWaiting(false);
    SetPatrolControlsWaiting(false);
    emit SignalMessageTipNeeded(tr("ThePatrolRequestGotNoAnswer"), 0);
}

void CPreviewPTZWnd::OnPatrolQueryFailed(const QString &camera_index_code, int, const QString &error_info)
{
    if (camera_index_code != camera_index_code_)
        return;
    if (b_patrol_page_waiting_)
        SetPatrolPageWaiting(false);
    emit SignalMessageTipNeeded(error_info, 0);
}

QString CPreviewPTZWnd::CameraName() const
{
    const auto camera = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->GetCameraByID(
        camera_index_code_.toStdString());
    return camera ? camera->GetName() : QString();
}

void CPreviewPTZWnd::OnGetAllPatrolsSuc(const QString &camera_index_code,
                                        const QVector<ptz_plugin_protocol::CruiseInfo> &vec_patrols_info)
{
    if (camera_index_code != camera_index_code_)
        return;
    EnsurePatrolList();
    const int running = RunningPatrolNumber();
    if (running > 0)
        ptr_cruise_model_->SetPlayingIndex(ptr_cruise_model_->index(running - 1, 0), true);
    else
        ptr_cruise_model_->ClearPlaying();
    QVector<ptz_plugin_protocol::CruiseInfo> patrols;
    for (const auto &info : vec_patrols_info) {
        if (IsPatrolKind(info.cruise_type))
            patrols << info;
    }
    ptr_cruise_model_->UpdatePatrols(patrols, b_preset_edit_perm_);
}

// These getter results change nothing in the panel.
void CPreviewPTZWnd::OnGetAllPatrolsFailed(const QString &) { }
void CPreviewPTZWnd::OnGetPatrolFailed(const QString &, int, const QString &) { }
void CPreviewPTZWnd::OnSetHardwarePatrolFinish(const QString &) { }
void CPreviewPTZWnd::OnSetSoftwarePatrolFinish(const QString &) { }
void CPreviewPTZWnd::OnSetPatrolFailed(const QString &, const QString &) { }

void CPreviewPTZWnd::OnCruisePlay(const QModelIndex &index, bool b_play)
{
    if (!index.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectACruisePEPKFIMFo"), 2);
        return;
    }
    if (!ptr_ptz_get_controller_ || camera_index_code_.isEmpty())
        return;
    ptr_ptz_get_controller_->StartExecPTZPatrolCommand(camera_index_code_, index.row() + 1, !b_play);
    // A patrol excludes auto-scan and a playing pattern; they are stopped before it starts.
    StopAutoScan(owner_index_code_, camera_index_code_,
                 StateStorage()->IsAutoScan(camera_index_code_, b_software_ptz_));
    StopPatternPlaying(owner_index_code_, camera_index_code_, false, 0, true);
    ZEPH_LOG_INFO("Cruise play");
}

void CPreviewPTZWnd::OnGetPatrolTypeSuc(int i_patrol_path, bool b_stop_action, CruiseType cruise_type,
                                        const std::list<ptz_plugin_protocol::CruisePoint> &lst_cruise_point)
{
    if (camera_index_code_.isEmpty())
        return;
    const unsigned int command =
        b_stop_action ? ptz_plugin_protocol::PTZ_CMD_CRUISE_STOP : ptz_plugin_protocol::PTZ_CMD_CRUISE_START;
    if (cruise_type != ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL) {
        if (ptr_virtual_controller_) {
            ptr_virtual_controller_->Cruise(ptz_plugin_protocol::PTZ_CMD_CRUISE_STOP, 0);
            ptr_virtual_controller_->SetDigitalZoomStyle(0, -1, -1, -1, -1);
        }
        if (!b_software_ptz_) {
            StartDevicePatrolCommand(i_patrol_path, b_stop_action);
            return;
        }
        if (!ptr_software_controller_)
            return;
        std::vector<ptz_plugin_protocol::CruisePoint> points(lst_cruise_point.begin(), lst_cruise_point.end());
        if (ptr_software_controller_->Cruise(command, i_patrol_path, points))
            UpdatePatrolPageState(!b_stop_action, i_patrol_path - 1);
        else
            emit SignalMessageTipNeeded(tr("ThePatrolCouldNotBeStarted"), 0);
        return;
    }
    if (!ptr_virtual_controller_)
        return;
    // The virtual controller belongs to the panel's screen and follows its camera.
    if (ptr_virtual_controller_->GetCamera() != camera_index_code_)
        ptr_virtual_controller_->SetCamera(camera_index_code_);
    if (!ptr_virtual_controller_->Cruise(command, unsigned(qMax(0, i_patrol_path))) && !b_stop_action)
        emit SignalMessageTipNeeded(tr("ThePatrolCouldNotBeStarted"), 0);
}

void CPreviewPTZWnd::StartDevicePatrolCommand(int patrol_no, bool b_stop)
{
    if (!ptr_ptz_controller_)
        return;
    CruiseControlRequest request;
    request.camera_index_code = camera_index_code_.toStdString();
    request.camera_name = CameraName().toStdString();
    request.operation = "CruiseRouteControl";
    request.cruise_index = patrol_no;
    request.action = b_stop ? 1 : 0;
    // The running mark follows when the device answers.
    ptr_ptz_controller_->Cruise(request);
}

void CPreviewPTZWnd::OnCruiseControlFinish(const CruiseControlRequest &request, const QString &error)
{
    if (QString::fromStdString(request.camera_index_code) != camera_index_code_)
        return;
    const int number = request.cruise_index;
    const int row = number - 1;
    if (request.operation == "CruiseRouteControl") {
        // A refused command leaves the mark as it was; the controller shows why.
        if (!error.isEmpty() || number < 1)
            return;
        if (request.action == 0)
            UpdatePatrolPageState(true, row);
        else if (ptr_cruise_model_ && ptr_cruise_model_->PlayingRow() == row)
            UpdatePatrolPageState(false, row);
    } else if (request.operation == "DelCruiseRoute") {
        if (error.isEmpty() && ptr_cruise_model_)
            ptr_cruise_model_->UpdatePatrolRow(row, false);
        if (b_patrol_page_waiting_ && number == deleting_patrol_no_)
            SetPatrolPageWaiting(false);
        if (ptr_ptz_get_controller_)
            ptr_ptz_get_controller_->StartGetAllPatrols(camera_index_code_);
    } else if (request.operation == "ModifyCruiseRoute") {
        if (error.isEmpty() && ptr_cruise_model_)
            ptr_cruise_model_->UpdatePatrolRow(row, !request.points.empty());
        // Only the panel that saved was waiting; other panels of the camera just refresh the row.
        if (b_patrol_controls_waiting_ && number == remembered_patrol_no_) {
            ShowPatrolListPage();
            SetPatrolControlsWaiting(false);
        }
        if (ptr_ptz_get_controller_)
            ptr_ptz_get_controller_->StartGetAllPatrols(camera_index_code_);
    }
}

void CPreviewPTZWnd::OnVirtualCruiseStateChanged(const QString &camera_index_code, int cruise_no, bool running)
{
    if (camera_index_code != camera_index_code_ || !ptr_cruise_model_)
        return;
    const int row = cruise_no - 1;
    if (row < 0 || row >= CCruiseTableModel::kRowCount)
        return;
    if (running)
        UpdatePatrolPageState(true, row);
    else if (ptr_cruise_model_->PlayingRow() == row)
        UpdatePatrolPageState(false, row);
}

void CPreviewPTZWnd::StopCruisePlaying(const QString &owner_index_code, const QString &camera_index_code, bool b_resume,
                                       int, bool b_send)
{
    if (camera_index_code == camera_index_code_)
        UpdatePatrolPageState(false, -1);
    auto *storage = StateStorage();
    const int cruise = storage->GetRunningCruise(camera_index_code);
    if (cruise <= 0)
        return;
    if (b_resume) {
        storage->SetInterruptCruise(camera_index_code, cruise);
        InterruptPatrolLocked(true);
    } else {
        storage->SetCruising(camera_index_code, false, cruise);
    }
    if (b_send)
        ExecutePTZControl(PTZControlParam(owner_index_code, camera_index_code,
                                          ptz_plugin_protocol::PTZ_CMD_STOP_RUNNING,
                                          ptz_plugin_protocol::PTZ_ACTION_STOP, b_command_extra_));
}

void CPreviewPTZWnd::OnCruiseDelete(const QModelIndex &index)
{
    if (!index.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectACruisePEPKFIMFo"), 2);
        return;
    }
    if (vs_ui_data_controller::CNomalMessageManager::Instance()->ShowMessageTip(tr("ConfirmToDelete"), this)
        != vs_ui_data_controller::CNomalMessageManager::AnswerConfirm)
        return;
    if (!ptr_ptz_get_controller_ || camera_index_code_.isEmpty())
        return;
    deleting_patrol_no_ = index.row() + 1;
    deleting_patrol_index_ = index;
    ptr_ptz_get_controller_->DeleteGetPatrolType(camera_index_code_, deleting_patrol_no_);
}

void CPreviewPTZWnd::OnGetPatrolTypeSucBeforeDelete(int iPatrolPath, CruiseType enum_cruise_type,
                                                    const QString &index_code)
{
    if (camera_index_code_.isEmpty() || iPatrolPath != deleting_patrol_no_)
        return;
    if (enum_cruise_type == ptz_plugin_protocol::CRUISE_TYPE_DEVICE
        || enum_cruise_type == ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL) {
        if (ptr_virtual_controller_) {
            ptr_virtual_controller_->Cruise(ptz_plugin_protocol::PTZ_CMD_CRUISE_STOP, 0);
            ptr_virtual_controller_->SetDigitalZoomStyle(0, -1.0, -1.0, -1.0, -1.0);
        }
        if (deleting_patrol_index_.isValid()) {
            if (ptr_cruise_model_ && ptr_cruise_model_->PlayingRow() == deleting_patrol_index_.row())
                ptr_cruise_model_->ClearPlaying();
            if (StateStorage()->GetRunningCruise(camera_index_code_) == iPatrolPath)
                StateStorage()->SetCruising(camera_index_code_, false, iPatrolPath);
        }
    } else if (enum_cruise_type == ptz_plugin_protocol::CRUISE_TYPE_SOFTWARE && ptr_software_controller_) {
        ptr_software_controller_->DeleteCruise(iPatrolPath);
    }

    SetPatrolPageWaiting(true);
    ptz_plugin_protocol::DeleteCruiseRequest request;
    request.camera_index_code = camera_index_code_.toStdString();
    request.cruise_id = index_code.toStdString();
    request.cruise_index = iPatrolPath;
    ptz_plugin_protocol::DeleteCruiseResponse response;
    if (!Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->DeleteCruise(request,
                                                                                                       response)) {
        SetPatrolPageWaiting(false);
        emit SignalMessageTipNeeded(QString::fromStdString(response.error_text), 0);
        return;
    }
    if (!ptr_ptz_controller_) {
        SetPatrolPageWaiting(false);
        if (ptr_cruise_model_)
            ptr_cruise_model_->UpdatePatrolRow(iPatrolPath - 1, false);
        return;
    }
    CruiseControlRequest control;
    control.camera_index_code = request.camera_index_code;
    control.camera_name = CameraName().toStdString();
    control.operation = "DelCruiseRoute";
    control.cruise_index = iPatrolPath;
    control.action = enum_cruise_type;
    ptr_ptz_controller_->Cruise(control);
}

} // namespace PreviewPTZControl
