#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelright.h"

#include "zeph_ptz_controller/cptzgetcontroller.h"

#include <QPushButton>

namespace PreviewPTZControl {

// The preset list model arrives with the preset subsystem; until then the tab keeps its
// count label, add button and enabled state in step with the binding.

void CPreviewPTZWnd::InitPresetTab()
{
    ui_right_->ptz_preset_label_->setText(QStringLiteral("(0/0)"));
    UpdateAddPresetState(wnd_type_ != PTZWndNone);
}

void CPreviewPTZWnd::UpdateAddPresetState(bool enabled)
{
    ui_right_->ptz_add_preset_btn_->setEnabled(enabled);
}

void CPreviewPTZWnd::SetPresetType(PTZPresetType type)
{
    preset_type_ = type;
    SetPatrolUiStateWithPresetType(type);
}

void CPreviewPTZWnd::ResortPresetList() {}

void CPreviewPTZWnd::SetPtzAuxiliaryLineHide() {}

void CPreviewPTZWnd::OnGetPresetSuc(const QString &camera_index_code)
{
    UpdateCurrentPtzPageState(true);
    if (camera_index_code != camera_index_code_)
        return;
    ui_right_->m_pTabPreset->setEnabled(true);
    QVector<ptz_plugin_protocol::PresetInfo> presets;
    if (ptr_ptz_get_controller_)
        ptr_ptz_get_controller_->GetAllPresets(camera_index_code, presets);
    int count = 0;
    for (const auto &preset : qAsConst(presets))
        if (preset.preset_type == preset_type_)
            ++count;
    ui_right_->ptz_preset_label_->setText(QStringLiteral("(%1/%2)").arg(count).arg(256));
}

void CPreviewPTZWnd::OnGetPresetFailed(const QString &camera_index_code, const QString &str_error_info)
{
    UpdateCurrentPtzPageState(true);
    if (camera_index_code != camera_index_code_)
        return;
    ui_right_->m_pTabPreset->setEnabled(true);
    if (!str_error_info.isEmpty())
        emit SignalMessageTipNeeded(str_error_info, 0);
}

void CPreviewPTZWnd::OnSyncPresetsSuc(const QString &camera_index_code)
{
    ptr_update_ptz_btn_->setEnabled(IsWorking());
    emit SignalUpdatePtzInfoEnabled(true);
    if (camera_index_code != camera_index_code_)
        return;
    OnGetPresetSuc(camera_index_code);
    emit SignalMessageTipNeeded(tr("Corvo-ControlClient.GetPtzConfigurationSuccess.msg"), 3);
}

void CPreviewPTZWnd::OnSyncPresetsFailed(const QString &error_info)
{
    ptr_update_ptz_btn_->setEnabled(IsWorking());
    emit SignalUpdatePtzInfoEnabled(true);
    if (!error_info.isEmpty())
        emit SignalMessageTipNeeded(error_info, 0);
}

void CPreviewPTZWnd::OnPresetControlFinish(const ptz_plugin_protocol::PresetControlRequest &, const QString &) {}

} // namespace PreviewPTZControl
