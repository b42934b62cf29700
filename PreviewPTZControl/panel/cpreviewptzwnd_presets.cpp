#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelright.h"

#include "preset/caddpresetdialog.h"
#include "preset/ceditpresetdialog.h"
#include "preset/cpresettablemodel.h"
#include "preset/cpresettableview.h"
#include "preset/csortpresetfiltermodel.h"
#include "preset/presetnamerules.h"

#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>

namespace PreviewPTZControl {

using namespace PanelPrivate;
using ptz_plugin_protocol::PresetInfo;

namespace {
constexpr int kMaxPresets = ptz_plugin_protocol::kMaxPresetIndex;

bool IsClientPreset(int type)
{
    // Fish-eye and virtual presets live in the library's store, not on the camera.
    return type == ptz_plugin_protocol::PRESET_TYPE_VIRTUAL || type == ptz_plugin_protocol::PRESET_TYPE_FISHEYE;
}
} // namespace

void CPreviewPTZWnd::EnsurePresetList()
{
    if (ptr_preset_model_)
        return;
    ptr_preset_model_ = new CPresetTableModel(devicePixelRatioF(), this, whiteTheme);
    ptr_preset_proxy_ = new CSortPresetFilterModel(this);
    ptr_preset_proxy_->setSourceModel(ptr_preset_model_);
    ptr_preset_proxy_->setFilterKeyColumn(CPresetTableModel::kColumnName);
    ptr_preset_proxy_->setDynamicSortFilter(true);
    ptr_preset_proxy_->setFilterCaseSensitivity(Qt::CaseInsensitive);

    CPresetTableView *view = ui_right_->m_pTreeViewPreset;
    view->setModel(ptr_preset_proxy_);
    view->SetWhiteTheme(whiteTheme);
    connect(view, &CPresetTableView::SignalPlayPreset, this, &CPreviewPTZWnd::OnRunPresetBtnClicked);
    connect(view, &CPresetTableView::SignalEditPreset, this, &CPreviewPTZWnd::OnEditPresetBtnClicked);
    connect(view, &CPresetTableView::SignalDeletePreset, this, &CPreviewPTZWnd::OnDeletePresetBtnClicked);
    connect(ui_right_->ptz_add_preset_btn_, &QPushButton::clicked, this, &CPreviewPTZWnd::OnAddPreset);
    connect(ui_right_->ptr_line_edit_, &QLineEdit::textChanged, this, &CPreviewPTZWnd::OnFilterByPresetName);
    connect(ui_right_->btn_device_preset, &QPushButton::clicked, this, &CPreviewPTZWnd::OnDeviceOrVirtualPresetSwitch);
    connect(ui_right_->btn_virtual_preset, &QPushButton::clicked, this, &CPreviewPTZWnd::OnDeviceOrVirtualPresetSwitch);
}

void CPreviewPTZWnd::UpdatePresetPermissions()
{
    // Presets are configured with the camera's PTZ control right; without a camera nothing is allowed.
    const bool allowed = !camera_index_code_.isEmpty() && wnd_type_ != PTZWndNone
                         && zeph_ptz_controller::CCommonFunction::IsCameraPermissionValid(
                             owner_index_code_, camera_index_code_, ResourceData::PERMISSION_PTZ_CONTROL);
    b_preset_config_perm_ = allowed;
    b_preset_edit_perm_ = allowed;
}

void CPreviewPTZWnd::InitPresetTab()
{
    EnsurePresetList();
    UpdatePresetPermissions();
    // The list belongs to one camera: start from the rows the library already holds for it.
    ptr_preset_model_->removeRows(0, ptr_preset_model_->rowCount());
    QVector<PresetInfo> presets;
    if (ptr_ptz_get_controller_ && !camera_index_code_.isEmpty())
        ptr_ptz_get_controller_->GetAllPresets(camera_index_code_, presets);
    ptr_preset_model_->SetPresetType(preset_type_);
    ptr_preset_model_->UpdatePresetList(presets, b_preset_edit_perm_);
    preset_count_ = 0;
    ui_right_->ptz_preset_label_->setText(QStringLiteral("(0/0)"));
    UpdateAddPresetState(wnd_type_ != PTZWndNone);
    ui_right_->m_pTreeViewPreset->LayoutColumns();
}

void CPreviewPTZWnd::UpdateAddPresetState(bool enabled)
{
    ui_right_->ptz_add_preset_btn_->setEnabled(enabled && preset_count_ < kMaxPresets);
}

void CPreviewPTZWnd::SetPresetType(PTZPresetType type)
{
    preset_type_ = type;
    SetPatrolUiStateWithPresetType(type);
}

void CPreviewPTZWnd::ResortPresetList() { }

void CPreviewPTZWnd::SetPtzAuxiliaryLineHide() { }

int CPreviewPTZWnd::CountPresetsOfCurrentType(const QVector<PresetInfo> &presets) const
{
    int count = 0;
    for (const auto &preset : presets) {
        if (preset.preset_type == preset_type_)
            ++count;
    }
    return count;
}

void CPreviewPTZWnd::UpdatePresetCount()
{
    QVector<PresetInfo> presets;
    if (ptr_ptz_get_controller_)
        ptr_ptz_get_controller_->GetAllPresets(camera_index_code_, presets);
    preset_count_ = CountPresetsOfCurrentType(presets);
    ui_right_->ptz_preset_label_->setText(QStringLiteral("(%1/%2)").arg(preset_count_).arg(kMaxPresets));
    UpdateAddPresetState(preset_count_ < kMaxPresets);
}

void CPreviewPTZWnd::OnGetPresetSuc(const QString &camera_index_code)
{
    UpdateCurrentPtzPageState(true);
    if (camera_index_code != camera_index_code_)
        return;
    EnsurePresetList();
    ui_right_->m_pTabPreset->setEnabled(true);
    QVector<PresetInfo> presets;
    if (ptr_ptz_get_controller_)
        ptr_ptz_get_controller_->GetAllPresets(camera_index_code, presets);
    preset_count_ = CountPresetsOfCurrentType(presets);
    ui_right_->ptz_preset_label_->setText(QStringLiteral("(%1/%2)").arg(preset_count_).arg(kMaxPresets));
    UpdateAddPresetState(preset_count_ < kMaxPresets);

    // Rows of presets that left the camera's list (deleted here or elsewhere) go first.
    const bool fisheye_list = preset_type_ == ptz_plugin_protocol::PRESET_TYPE_FISHEYE;
    QSet<int> numbers;
    for (const auto &preset : qAsConst(presets)) {
        if ((preset.preset_type == ptz_plugin_protocol::PRESET_TYPE_FISHEYE) == fisheye_list)
            numbers.insert(preset.preset_index);
    }
    for (int row = ptr_preset_model_->rowCount() - 1; row >= 0; --row) {
        const QVariant number =
            ptr_preset_model_->index(row, CPresetTableModel::kColumnType).data(Quillon::ItemNumberRole);
        if (number.isValid() && !numbers.contains(number.toInt()))
            ptr_preset_model_->removeRow(row);
    }
    ptr_preset_model_->SetPresetType(preset_type_);
    ptr_preset_model_->UpdatePresetList(presets, b_preset_edit_perm_);
}

void CPreviewPTZWnd::OnGetPresetFailed(const QString &camera_index_code, const QString &)
{
    UpdateCurrentPtzPageState(true);
    if (camera_index_code != camera_index_code_)
        return;
    ui_right_->m_pTabPreset->setEnabled(true);
    emit SignalMessageTipNeeded(tr("FailedToGetThePresetjcOUTbb"), 0);
}

void CPreviewPTZWnd::OnSyncPresetsSuc(const QString &camera_index_code)
{
    FinishUpdatePtz();
    if (camera_index_code != camera_index_code_)
        return;
    OnGetPresetSuc(camera_index_code);
    emit SignalMessageTipNeeded(tr("Corvo-ControlClient.GetPtzConfigurationSuccess.msg"), 3);
}

void CPreviewPTZWnd::OnSyncPresetsFailed(const QString &camera_index_code)
{
    FinishUpdatePtz();
    // The signal names the camera; the camera's own words are kept by the getter.
    const QString error = ptr_ptz_get_controller_->LastErrorText(camera_index_code);
    if (!error.isEmpty())
        emit SignalMessageTipNeeded(error, 0);
}

PresetInfo CPreviewPTZWnd::PresetOfRow(const QModelIndex &index) const
{
    PresetInfo preset;
    if (!ptr_preset_proxy_ || !index.isValid())
        return preset;
    const QAbstractItemModel *model = index.model();
    const int row = index.row();
    preset.preset_index = model->index(row, CPresetTableModel::kColumnType).data(Quillon::ItemNumberRole).toInt();
    preset.preset_type = model->index(row, CPresetTableModel::kColumnAction).data(Quillon::ItemFirstStateRole).toInt();
    preset.preset_name = model->index(row, CPresetTableModel::kColumnName).data().toString().toStdString();
    // The library's record is authoritative (reserved flag, position); the row's type picks
    // between a device and a client preset that share the number.
    PresetInfo stored;
    stored.preset_type = preset.preset_type;
    if (zeph_ptz_controller::CPTZGetController::GetPresetByIndexSync(camera_index_code_, stored, preset.preset_index))
        return stored;
    return preset;
}

QVector<PresetInfo> CPreviewPTZWnd::PresetsSharingNumbers() const
{
    QVector<PresetInfo> all;
    if (ptr_ptz_get_controller_)
        ptr_ptz_get_controller_->GetAllPresets(camera_index_code_, all);
    // Device and virtual presets share one list keyed by number; fish-eye presets have their own.
    const bool fisheye = preset_type_ == ptz_plugin_protocol::PRESET_TYPE_FISHEYE;
    QVector<PresetInfo> shown;
    for (const auto &preset : qAsConst(all)) {
        if ((preset.preset_type == ptz_plugin_protocol::PRESET_TYPE_FISHEYE) == fisheye)
            shown << preset;
    }
    return shown;
}

void CPreviewPTZWnd::OnAddPreset()
{
    if (!b_preset_config_perm_ || camera_index_code_.isEmpty())
        return;
    EnsurePresetList();
    const bool client_preset =
        preset_type_ == ptz_plugin_protocol::PRESET_TYPE_FISHEYE
        || (preset_type_ == ptz_plugin_protocol::PRESET_TYPE_VIRTUAL && Config()->IsSupportVirtualPTZ());

    CAddPresetDialog dialog(this, PresetsSharingNumbers(), kMaxPresets);
    dialog.SetPresetModel(ptr_preset_model_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString name = dialog.GetPresetName();
    const int number = dialog.GetPresetIndex();
    if (number < 1)
        return;

    if (client_preset) {
        StateStorage()->SetPresetNum(camera_index_code_, number);
        PresetInfo preset;
        preset.preset_index = number;
        preset.preset_type = preset_type_;
        preset.preset_name = name.toStdString();
        QString error;
        bool stored = false;
        bool reread = false;
        if (preset_type_ == ptz_plugin_protocol::PRESET_TYPE_FISHEYE && ptr_software_controller_) {
            // The software controller records its current view with the preset; the
            // getter learns of it only by reading the list again.
            stored =
                ptr_software_controller_->Preset(zeph_ptz_controller::CBaseSoftwarePtzControllor::kPresetSet, preset);
            reread = stored;
        } else if (ptr_ptz_get_controller_) {
            stored = ptr_ptz_get_controller_->AddOnePreset(camera_index_code_, preset, error);
        }
        if (!stored) {
            if (!error.isEmpty())
                emit SignalMessageTipNeeded(error, 2);
            return;
        }
        // The store may already have told the getter, which then filled the row.
        if (ptr_preset_model_->FindPresetRow(number) < 0)
            ptr_preset_model_->AddPresetItem(preset, b_preset_edit_perm_, true);
        UpdatePresetCount();
        if (reread && ptr_ptz_get_controller_)
            ptr_ptz_get_controller_->StartGetPresets(camera_index_code_);
        if (preset_info_callback_)
            preset_info_callback_(preset);
        return;
    }

    UpdateCurrentPtzPageState(false);
    ptz_plugin_protocol::PresetControlRequest request;
    request.operation = "SetPreset";
    request.camera_index_code = camera_index_code_.toStdString();
    request.owner_index_code = owner_index_code_.toStdString();
    request.preset_index = number;
    request.preset_name = name.toStdString();
    if (ptr_ptz_controller_)
        ptr_ptz_controller_->Preset(request);
}

void CPreviewPTZWnd::OnRunPresetBtnClicked(const QModelIndex &index)
{
    if (!b_preset_config_perm_ || !index.isValid())
        return;
    const PresetInfo preset = PresetOfRow(index);
    if (wnd_type_ == PTZWndSoftware && ptr_software_controller_) {
        PresetInfo goto_preset = preset;
        ptr_software_controller_->Preset(zeph_ptz_controller::CBaseSoftwarePtzControllor::kPresetGoto, goto_preset);
        return;
    }
    DoPresetOperate(index, "GotoPreset");
}

void CPreviewPTZWnd::OnEditPresetBtnClicked(const QModelIndex &index)
{
    if (!index.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectAPresetPaIngnBeI"), 2);
        return;
    }
    if (lockedByCamera.value(camera_index_code_) || !ptr_preset_proxy_ || !b_preset_config_perm_)
        return;
    const PresetInfo preset = PresetOfRow(index);
    CEditPresetDialog dialog(this, preset);
    dialog.SetPresetModel(ptr_preset_model_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString name = dialog.GetPresetName();

    if (IsClientPreset(preset.preset_type)) {
        StateStorage()->SetPresetNum(camera_index_code_, preset.preset_index);
        QString error;
        if (!ptr_ptz_get_controller_
            || !ptr_ptz_get_controller_->ModifyPresetName(camera_index_code_, preset.preset_index, name, error)) {
            if (!error.isEmpty())
                emit SignalMessageTipNeeded(error, 2);
            return;
        }
        pending_preset_name_ = name;
        const int row = ptr_preset_model_->FindPresetRow(preset.preset_index);
        if (row >= 0)
            ModifyPresetName(ptr_preset_model_->index(row, CPresetTableModel::kColumnName));
        return;
    }

    UpdateCurrentPtzPageState(false);
    pending_preset_name_ = name;
    DoPresetOperate(index, "SetPreset");
}

void CPreviewPTZWnd::ModifyPresetName(const QModelIndex &index)
{
    if (!index.isValid() || !ptr_preset_model_)
        return;
    // Accepts rows of the list model or of its proxy.
    QModelIndex source = index;
    if (index.model() == ptr_preset_proxy_)
        source = ptr_preset_proxy_->mapToSource(index);
    const int row = source.row();
    if (auto *item = ptr_preset_model_->GetItem(row, CPresetTableModel::kColumnName)) {
        item->SetItemText(pending_preset_name_);
        item->setToolTip(pending_preset_name_);
    }
    ptr_preset_model_->RestorePresetItem(row, b_preset_edit_perm_);
}

void CPreviewPTZWnd::OnDeletePresetBtnClicked(const QModelIndex &index)
{
    if (!index.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectAPresetPrknxDNBA"), 2);
        return;
    }
    if (lockedByCamera.value(camera_index_code_) || !ptr_preset_proxy_ || !b_preset_config_perm_)
        return;
    if (vs_ui_data_controller::CNomalMessageManager::Instance()->ShowMessageTip(tr("ConfirmToDelete"), this)
        != vs_ui_data_controller::CNomalMessageManager::AnswerConfirm)
        return;

    const PresetInfo preset = PresetOfRow(index);
    QString error;
    if (IsClientPreset(preset.preset_type)) {
        if (ptr_ptz_get_controller_
            && ptr_ptz_get_controller_->DelPreset(camera_index_code_, preset.preset_index, error)) {
            const int row = ptr_preset_model_->FindPresetRow(preset.preset_index);
            if (index.model() == ptr_preset_proxy_)
                ptr_preset_proxy_->removeRow(index.row());
            else if (row >= 0)
                ptr_preset_model_->removeRow(row);
            UpdatePresetCount();
        }
    } else {
        UpdateCurrentPtzPageState(false);
        DoPresetOperate(index, "DelPreset");
    }
    UpdateCurrentPtzPageState(true);
    if (!error.isEmpty())
        emit SignalMessageTipNeeded(error, 0);
}

void CPreviewPTZWnd::DoPresetOperate(const QModelIndex &index, const std::string &operation)
{
    if (!ptr_ptz_controller_ || !index.isValid())
        return;
    const PresetInfo preset = PresetOfRow(index);
    ptz_plugin_protocol::PresetControlRequest request;
    request.operation = operation;
    request.camera_index_code = camera_index_code_.toStdString();
    request.owner_index_code = owner_index_code_.toStdString();
    request.preset_index = preset.preset_index;
    if (operation == "SetPreset")
        request.preset_name = pending_preset_name_.toStdString();
    ptr_ptz_controller_->Preset(request);
}

bool CPreviewPTZWnd::CheckPresetNameValid(const QString &name, const QModelIndex &)
{
    QString message;
    const bool valid = CheckListPresetName(name, ptr_preset_proxy_, &message);
    if (!message.isEmpty())
        emit SignalMessageTipNeeded(message, 2);
    return valid;
}

void CPreviewPTZWnd::OnPresetControlFinish(const ptz_plugin_protocol::PresetControlRequest &request,
                                           const QString &error)
{
    const QString camera = QString::fromStdString(request.camera_index_code);
    if (camera == camera_index_code_) {
        if (error.isEmpty()) {
            if (request.operation == "GotoPreset") {
                const QString owner = QString::fromStdString(request.owner_index_code);
                const bool resume = Config()->ResumeCruiseAfterInterrupt();
                StopAutoScan(owner, camera, true);
                StopPatternPlaying(owner, camera, resume, 0, true);
                StopCruisePlaying(owner, camera, resume, 0, true);
            } else {
                if (request.operation == "DelPreset" && ptr_preset_model_) {
                    const int row = ptr_preset_model_->FindPresetRow(request.preset_index);
                    if (row >= 0)
                        ptr_preset_model_->removeRow(row);
                }
                // The camera's list is read again: count, names and the add button follow it.
                if (ptr_ptz_get_controller_)
                    ptr_ptz_get_controller_->StartGetPresets(camera_index_code_);
            }
        } else if (request.operation == "SetPreset") {
            emit SignalMessageTipNeeded(error, 2);
        } else {
            emit SignalMessageTipNeeded(error, 0);
        }
    }
    UpdateCurrentPtzPageState(true);
}

void CPreviewPTZWnd::OnDeviceOrVirtualPresetSwitch()
{
    const bool virtual_preset = sender() == ui_right_->btn_virtual_preset;
    SetPresetType(virtual_preset ? ptz_plugin_protocol::PRESET_TYPE_VIRTUAL : ptz_plugin_protocol::PRESET_TYPE_DEVICE);
    SwitchPatrolEditorPresetType();
    UpdateCurrentPtzPageState(false);
    // The count and the add button follow the kind now in force once the list is read again.
    if (ptr_ptz_get_controller_ && !camera_index_code_.isEmpty())
        ptr_ptz_get_controller_->StartGetPresets(camera_index_code_);
}

void CPreviewPTZWnd::OnFilterByPresetName(const QString &text)
{
    if (!ptr_preset_proxy_)
        return;
    ptr_preset_proxy_->setFilterRole(Qt::DisplayRole);
    ptr_preset_proxy_->setFilterFixedString(text);
}

} // namespace PreviewPTZControl
