#include "preset/caddpresetdialog.h"

#include "ui_preseteditdialogui.h"

#include <QComboBox>
#include <QSet>

namespace PreviewPTZControl {

CAddPresetDialog::CAddPresetDialog(QWidget *parent, const QVector<ptz_plugin_protocol::PresetInfo> &presets,
                                   int max_preset_index)
    : CBasePresetDialog(parent, presets, max_preset_index)
{
    SetTitle(tr("AddPreset"));
    SetNumberedLabels();

    const QVector<int> free_numbers = FreePresetNumbers(presets_, max_preset_index_);
    QStringList entries;
    entries.reserve(free_numbers.size());
    for (int number : free_numbers)
        entries << QString::number(number);
    ui_->ptr_presetnum_cbx_->addItems(entries);
    if (!entries.isEmpty()) {
        ui_->ptr_presetnum_cbx_->setCurrentIndex(0);
        OnNumberChanged(0);
    }
    connect(ui_->ptr_presetnum_cbx_, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CAddPresetDialog::OnNumberChanged);
}

CAddPresetDialog::~CAddPresetDialog() = default;

QVector<int> CAddPresetDialog::FreePresetNumbers(const QVector<ptz_plugin_protocol::PresetInfo> &presets,
                                                 int max_preset_index)
{
    QSet<int> used;
    for (const auto &preset : presets)
        used.insert(preset.preset_index);
    QVector<int> numbers;
    for (int n = 1; n <= max_preset_index; ++n) {
        if (!used.contains(n))
            numbers.append(n);
    }
    return numbers;
}

void CAddPresetDialog::OnNumberChanged(int combo_index)
{
    if (combo_index < 0)
        return;
    ui_->pNameEdit->setText(tr("Preset%1").arg(ui_->ptr_presetnum_cbx_->itemText(combo_index)));
}

} // namespace PreviewPTZControl
