#pragma once

#include "preset/cbasepresetdialog.h"

namespace PreviewPTZControl {

// Renames one preset; its number is shown but cannot be changed.
class PREVIEWPTZCONTROL_EXPORT CEditPresetDialog : public CBasePresetDialog
{
    Q_OBJECT
public:
    CEditPresetDialog(QWidget *parent, const ptz_plugin_protocol::PresetInfo &preset);
    ~CEditPresetDialog() override;
};

} // namespace PreviewPTZControl
