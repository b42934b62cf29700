#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelright.h"

#include "patrol/ccruisetableeditmodel.h"
#include "patrol/ccruisetableeditview.h"
#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableview.h"

#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"
#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QPushButton>
#include <QRegularExpression>

// The patrol edit page: opening a slot, the path editor's buttons, saving and cancelling.

namespace PreviewPTZControl {

using namespace PanelPrivate;
using ptz_plugin_protocol::CRUISE_TYPE_DEVICE;
using ptz_plugin_protocol::CRUISE_TYPE_SOFTWARE;
using ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL;

namespace {
constexpr int kSoftwareDwellMin = 2;
constexpr int kSoftwareDwellMax = 30;
constexpr int kVirtualDwellMin = 15;
constexpr int kVirtualDwellMax = 30;
constexpr int kMaxCruiseNameLength = 64;
} // namespace

void CPreviewPTZWnd::SetPatrolEditorDwellRange(int min_time, int max_time)
{
    // A camera that reports no usable range still gets a path it can edit.
    if (min_time < 1 || max_time < min_time) {
        min_time = kVirtualDwellMin;
        max_time = kVirtualDwellMax;
    }
    editor_dwell_min_ = min_time;
    editor_dwell_max_ = max_time;
}

void CPreviewPTZWnd::UpdatePatrolEditPageState(int type)
{
    // Points over virtual presets carry no speed.
    ui_right_->m_pTreeViewPatrolEdit->setColumnHidden(CCruiseTableEditModel::kColumnSpeed, type == CRUISE_TYPE_VIRTUAL);
    QPushButton *device = ui_right_->btn_device_preset;
    QPushButton *virtual_button = ui_right_->btn_virtual_preset;
    // Exclusive buttons refuse to be unchecked both; the exclusion is lifted while they are set.
    device->setAutoExclusive(false);
    virtual_button->setAutoExclusive(false);
    device->setChecked(type == ptz_plugin_protocol::PRESET_TYPE_DEVICE);
    virtual_button->setChecked(type == ptz_plugin_protocol::PRESET_TYPE_VIRTUAL);
    device->setAutoExclusive(true);
    virtual_button->setAutoExclusive(true);
}

void CPreviewPTZWnd::SetPatrolUiStateWithPresetType(PTZPresetType type)
{
    QWidget *frame = ui_right_->ptr_preset_type_frame;
    if (type == ptz_plugin_protocol::PRESET_TYPE_FISHEYE)
        frame->hide();
    else if (frame->isHidden() && !IsCompactProduct())
        frame->show();
    UpdatePatrolEditPageState(type);
}

void CPreviewPTZWnd::ShowPatrolPath(const ptz_plugin_protocol::GetCruiseRouteResponse &route)
{
    CCruiseTableEditView *editor = ui_right_->m_pTreeViewPatrolEdit;
    QVector<ptz_plugin_protocol::PresetInfo> presets;
    if (ptr_ptz_get_controller_)
        ptr_ptz_get_controller_->GetAllPresets(camera_index_code_, presets);
    editor->GetEditModel()->SetPresetType(preset_type_);
    editor->GetEditModel()->SetDwellRange(editor_dwell_min_, editor_dwell_max_);
    editor->SetPath(route, presets);
}

void CPreviewPTZWnd::EnterVacantPatrolEditView()
{
    ShowPatrolEditPage();
    SetPatrolEditLabel(remembered_patrol_no_);
    UpdateCurrentPtzPageState(true);
    ptz_plugin_protocol::GetCruiseRouteResponse empty;
    empty.camera_index_code = camera_index_code_.toStdString();
    empty.cruise_index = remembered_patrol_no_;
    ShowPatrolPath(empty);
}

void CPreviewPTZWnd::OnCruiseEdit(const QModelIndex &index)
{
    if (!index.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectACruisePEPKFIMFo"), 2);
        return;
    }
    if (!ptr_ptz_get_controller_ || camera_index_code_.isEmpty())
        return;
    remembered_patrol_no_ = index.row() + 1;
    ui_right_->m_pTreeViewPatrol->setCurrentIndex(index);
    ptr_ptz_get_controller_->StartGetPatrolType(camera_index_code_, remembered_patrol_no_);
}

void CPreviewPTZWnd::OnGetPatrolTypeSucBeforeOpen(int iPatrolPath, CruiseType enum_cruise_type,
                                                  const QString &index_code, int min_time, int max_time)
{
    if (camera_index_code_.isEmpty() || iPatrolPath != remembered_patrol_no_)
        return;
    editing_cruise_type_ = enum_cruise_type;
    editing_cruise_id_ = index_code;
    reported_dwell_min_ = min_time;
    reported_dwell_max_ = max_time;
    bool fetch = false;
    if (b_software_ptz_) {
        SetPatrolEditorDwellRange(kSoftwareDwellMin, kSoftwareDwellMax);
        fetch = enum_cruise_type == CRUISE_TYPE_SOFTWARE;
    } else if (enum_cruise_type == CRUISE_TYPE_DEVICE) {
        if (preset_type_ != ptz_plugin_protocol::PRESET_TYPE_DEVICE)
            SetPresetType(ptz_plugin_protocol::PRESET_TYPE_DEVICE);
        SetPatrolEditorDwellRange(min_time, max_time);
        fetch = true;
    } else if (enum_cruise_type == CRUISE_TYPE_VIRTUAL) {
        if (preset_type_ != ptz_plugin_protocol::PRESET_TYPE_VIRTUAL)
            SetPresetType(ptz_plugin_protocol::PRESET_TYPE_VIRTUAL);
        SetPatrolEditorDwellRange(kVirtualDwellMin, kVirtualDwellMax);
        fetch = true;
    } else {
        SetPatrolEditorDwellRange(min_time, max_time);
    }
    if (!fetch) {
        EnterVacantPatrolEditView();
        return;
    }
    SetPatrolPageWaiting(true);
    ptr_ptz_get_controller_->StartGetPatrol(camera_index_code_, iPatrolPath);
}

void CPreviewPTZWnd::OnGetSinglePatrolSuc(const QString &camera_index_code, int i_patrol_path)
{
    if (camera_index_code != camera_index_code_)
        return;
    ShowPatrolEditPage();
    SetPatrolEditLabel(i_patrol_path);
    SetPatrolPageWaiting(false);
    if (i_patrol_path != remembered_patrol_no_ || !ptr_ptz_get_controller_)
        return;
    ptz_plugin_protocol::GetCruiseRouteResponse route;
    ptr_ptz_get_controller_->GetEditPatrol(camera_index_code, route);
    ShowPatrolPath(route);
}

void CPreviewPTZWnd::SwitchPatrolEditorPresetType()
{
    const bool virtual_presets = preset_type_ == ptz_plugin_protocol::PRESET_TYPE_VIRTUAL;
    if (virtual_presets)
        SetPatrolEditorDwellRange(kVirtualDwellMin, kVirtualDwellMax);
    else
        SetPatrolEditorDwellRange(reported_dwell_min_, reported_dwell_max_);
    const bool same_kind = editing_cruise_type_ == (virtual_presets ? CRUISE_TYPE_VIRTUAL : CRUISE_TYPE_DEVICE);
    if (same_kind && ptr_ptz_get_controller_ && !camera_index_code_.isEmpty()) {
        SetPatrolPageWaiting(true);
        ptr_ptz_get_controller_->StartGetPatrol(camera_index_code_, remembered_patrol_no_);
    } else {
        EnterVacantPatrolEditView();
    }
}

void CPreviewPTZWnd::OnCruiseCtlIconChanged(CCruiseTableEditView::IndexPlace place)
{
    ui_right_->pDeleteBtn->setEnabled(place != CCruiseTableEditView::PlaceNone);
    ui_right_->pUpBtn->setEnabled(place == CCruiseTableEditView::PlaceMiddle
                                  || place == CCruiseTableEditView::PlaceLast);
    ui_right_->pDownBtn->setEnabled(place == CCruiseTableEditView::PlaceFirst
                                    || place == CCruiseTableEditView::PlaceMiddle);
}

void CPreviewPTZWnd::OnPatrolSaveIconChanged(bool b_empty)
{
    ui_right_->pConfirmBtn->setEnabled(!b_empty);
}

void CPreviewPTZWnd::OnCruiseAddPreset()
{
    CCruiseTableEditView *editor = ui_right_->m_pTreeViewPatrolEdit;
    const CCruiseTableEditModel *model = editor->GetEditModel();
    if (model->PointCount() >= CCruiseTableEditModel::kMaxPoints) {
        emit SignalMessageTipNeeded(tr("TheMaximumNumberOfCrhuRLUhpy"), 2);
        return;
    }
    if (!model->HasPresets()) {
        emit SignalMessageTipNeeded(tr("NoPresetPointIsAvailOJPfSsBC"), 2);
        return;
    }
    const QModelIndex added = editor->AddPoint();
    editor->setCurrentIndex(added);
    editor->scrollTo(added);
    editor->UpdatePlace(added);
}

void CPreviewPTZWnd::OnCruiseDelPreset()
{
    CCruiseTableEditView *editor = ui_right_->m_pTreeViewPatrolEdit;
    const QModelIndex current = editor->currentIndex();
    if (!current.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectACruisePeEYjvBRk"), 2);
        return;
    }
    const QModelIndex next = editor->DeletePoint(current.row());
    editor->setCurrentIndex(next);
    editor->UpdatePlace(next);
}

void CPreviewPTZWnd::OnCruiseUpPreset()
{
    CCruiseTableEditView *editor = ui_right_->m_pTreeViewPatrolEdit;
    const QModelIndex current = editor->currentIndex();
    if (!current.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectACruisePeEYjvBRk"), 2);
        return;
    }
    const QModelIndex moved = editor->MoveUp(current);
    if (!moved.isValid())
        return;
    editor->setCurrentIndex(moved);
    editor->UpdatePlace(moved);
}

void CPreviewPTZWnd::OnCruiseDownPreset()
{
    CCruiseTableEditView *editor = ui_right_->m_pTreeViewPatrolEdit;
    const QModelIndex current = editor->currentIndex();
    if (!current.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectACruisePeEYjvBRk"), 2);
        return;
    }
    const QModelIndex moved = editor->MoveDown(current);
    if (!moved.isValid())
        return;
    editor->setCurrentIndex(moved);
    editor->UpdatePlace(moved);
}

void CPreviewPTZWnd::OnFinishEditCruisePath()
{
    const int number = remembered_patrol_no_;
    const bool device_presets = ui_right_->btn_device_preset->isChecked();
    if (ptr_cruise_model_ && ptr_cruise_model_->PlayingRow() == number - 1 && (b_software_ptz_ || device_presets)) {
        if (vs_ui_data_controller::CNomalMessageManager::Instance()->ShowMessageTip(tr("ThisOperationWillStocdYSojGC"),
                                                                                    this)
            != vs_ui_data_controller::CNomalMessageManager::AnswerConfirm)
            return;
        if (b_software_ptz_) {
            if (ptr_software_controller_) {
                std::vector<ptz_plugin_protocol::CruisePoint> none;
                ptr_software_controller_->Cruise(ptz_plugin_protocol::PTZ_CMD_CRUISE_STOP, number, none);
            }
        } else if (ptr_virtual_controller_) {
            // A device patrol stops when its path is written.
            ptr_virtual_controller_->Cruise(ptz_plugin_protocol::PTZ_CMD_CRUISE_STOP, 0);
        }
        UpdatePatrolPageState(false, number - 1);
    }
    const int type = b_software_ptz_ ? CRUISE_TYPE_SOFTWARE : device_presets ? CRUISE_TYPE_DEVICE : CRUISE_TYPE_VIRTUAL;
    const std::vector<ptz_plugin_protocol::CruisePoint> points = ui_right_->m_pTreeViewPatrolEdit->GetPoints();
    const std::string name = "cruise" + std::to_string(number);

    SetPatrolPageWaiting(true);
    auto *host = Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance();
    bool saved = false;
    std::string error;
    const bool held_patrol = editing_cruise_type_ == CRUISE_TYPE_DEVICE || editing_cruise_type_ == CRUISE_TYPE_SOFTWARE
                             || editing_cruise_type_ == CRUISE_TYPE_VIRTUAL;
    if (!held_patrol) {
        ptz_plugin_protocol::AddCruiseRequest request;
        request.camera_index_code = camera_index_code_.toStdString();
        request.cruise_name = name;
        request.cruise_index = number;
        request.cruise_type = type;
        request.points = points;
        ptz_plugin_protocol::AddCruiseResponse response;
        saved = host->AddCruise(request, response);
        error = response.error_text;
        if (saved)
            editing_cruise_id_ = QString::fromStdString(response.cruise_id);
    } else {
        ptz_plugin_protocol::UpdateCruiseRequest request;
        request.camera_index_code = camera_index_code_.toStdString();
        request.cruise_name = name;
        request.cruise_id = editing_cruise_id_.toStdString();
        request.cruise_index = number;
        request.cruise_type = type;
        request.points = points;
        ptz_plugin_protocol::UpdateCruiseResponse response;
        saved = host->UpdateCruise(request, response);
        error = response.error_text;
    }
    if (!saved) {
        // The editor stays open with the path as entered.
        SetPatrolPageWaiting(false);
        emit SignalMessageTipNeeded(
            tr("FailedToModifyCruiseskhaYaoN") + QLatin1Char(' ') + QString::fromStdString(error), 2);
        return;
    }
    editing_cruise_type_ = type;
    ShowPatrolListPage();
    SetPatrolEditLabel(number);
    SetPatrolPageWaiting(false);
    if (!ptr_ptz_controller_) {
        if (ptr_cruise_model_)
            ptr_cruise_model_->UpdatePatrolRow(number - 1, !points.empty());
        return;
    }
    ptz_plugin_protocol::CruiseControlRequest control;
    control.camera_index_code = camera_index_code_.toStdString();
    control.camera_name = CameraName().toStdString();
    control.operation = "ModifyCruiseRoute";
    control.cruise_index = number;
    control.action = type;
    control.points = points;
    SetPatrolControlsWaiting(true);
    ptr_ptz_controller_->Cruise(control);
}

void CPreviewPTZWnd::OnCancelEditCruisePath()
{
    ShowPatrolListPage();
    SetPatrolEditLabel(remembered_patrol_no_);
    if (ptr_ptz_get_controller_ && !camera_index_code_.isEmpty())
        ptr_ptz_get_controller_->StartGetAllPatrols(camera_index_code_);
}

bool CPreviewPTZWnd::CheckCruiseNameValid(const QString &name, const QModelIndex &)
{
    QString tip;
    static const QRegularExpression forbidden(QStringLiteral("[/\\\\:*?\"<>|]"));
    if (name.isEmpty()) {
        tip = tr("NameCanNotBeEmpty");
    } else if (forbidden.match(name).hasMatch()) {
        tip = tr("InvalidCruisePathNamdmlYVWU") + QLatin1Char(' ') + tr("TheInputCannotContainAnyOfTheFollowingCh")
              + QStringLiteral(" / \\ : * ? \" < > |");
    } else if (name.length() > kMaxCruiseNameLength) {
        tip = tr("InvalidCruisePathNamdmlYVWU") + QLatin1Char(' ')
              + tr("NoMoreThan%1CharactersCanBeInput").arg(kMaxCruiseNameLength);
    } else if (ptr_cruise_model_) {
        // The row being renamed carries the name already, so one hit is the row itself.
        const QModelIndexList hits =
            ptr_cruise_model_->match(ptr_cruise_model_->index(0, CCruiseTableModel::kColumnName), Quillon::ItemTextRole,
                                     name, CCruiseTableModel::kRowCount, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (hits.size() > 1)
            tip = tr("NameAlreadyExists");
    }
    if (tip.isEmpty())
        return true;
    emit SignalMessageTipNeeded(tip, 2);
    return false;
}

} // namespace PreviewPTZControl
