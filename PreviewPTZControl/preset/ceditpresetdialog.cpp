#include "preset/ceditpresetdialog.h"

#include "ui_preseteditdialogui.h"

#include "quillon/cplaceholdlineedit.h"

#include <QComboBox>

namespace PreviewPTZControl {

CEditPresetDialog::CEditPresetDialog(QWidget *parent, const ptz_plugin_protocol::PresetInfo &preset)
    : CBasePresetDialog(parent, QVector<ptz_plugin_protocol::PresetInfo>{preset})
{
    SetTitle(tr("ModifyPreset"));
    SetNumberedLabels();
    editing_preset_index_ = preset.preset_index;
    editing_preset_type_ = preset.preset_type;
    // A rename keeps the number; the box only shows it.
    ui_->ptr_presetnum_cbx_->addItem(QString::number(preset.preset_index));
    ui_->ptr_presetnum_cbx_->setCurrentIndex(0);
    ui_->ptr_presetnum_cbx_->setEnabled(false);
    ui_->pNameEdit->setText(QString::fromStdString(preset.preset_name));
}

CEditPresetDialog::~CEditPresetDialog() = default;

} // namespace PreviewPTZControl
