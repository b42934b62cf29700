#pragma once

#include "preset/cbasepresetdialog.h"

namespace PreviewPTZControl {

// Names a new preset and offers the numbers the list does not use yet.
class PREVIEWPTZCONTROL_EXPORT CAddPresetDialog : public CBasePresetDialog
{
    Q_OBJECT
public:
    CAddPresetDialog(QWidget *parent, const QVector<ptz_plugin_protocol::PresetInfo> &presets,
                     int max_preset_index = kDefaultMaxPresetIndex);
    ~CAddPresetDialog() override;

    // Numbers 1..max_preset_index that no preset of the list uses, ascending.
    static QVector<int> FreePresetNumbers(const QVector<ptz_plugin_protocol::PresetInfo> &presets,
                                          int max_preset_index);

private:
    void OnNumberChanged(int combo_index);
};

} // namespace PreviewPTZControl
