#pragma once

#include "previewptzcontrol_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "ptz_plugin_protocol/ptzlimits.h"
#include "quillon/cbasedialogwithbottom.h"

#include <QVector>

#include <memory>

class QAbstractItemModel;
class QComboBox;

namespace Ui {
class PresetEditDialogUI;
}

namespace Quillon {
class CPlaceholdLineEdit;
}

namespace PreviewPTZControl {

// Common form of the add and edit dialogs: a name edit, a number combo box and
// three numbered hint labels. Confirm checks the name before accepting.
class PREVIEWPTZCONTROL_EXPORT CBasePresetDialog : public Quillon::CBaseDialogWithBottom
{
    Q_OBJECT
public:
    static constexpr int kMaxNameInputLength = ptz_plugin_protocol::kMaxPresetNameLength;
    static constexpr int kMaxSavedNameLength = 20;
    static constexpr int kDefaultMaxPresetIndex = ptz_plugin_protocol::kMaxPresetIndex;

    CBasePresetDialog(QWidget *parent, const QVector<ptz_plugin_protocol::PresetInfo> &presets,
                      int max_preset_index = kDefaultMaxPresetIndex);
    ~CBasePresetDialog() override;

    // The preset list shown in the panel, for the duplicate check; rows of the
    // preset being edited (by number) are left out of it.
    void SetPresetModel(const QAbstractItemModel *model);

    QString GetPresetName() const;
    // The chosen number, or -1 when the combo box is empty.
    int GetPresetIndex() const;

    Quillon::CPlaceholdLineEdit *GetNameEdit() const;
    QComboBox *GetNumberComboBox() const;

    // The first failing rule's message for a name, empty when the name may be saved.
    // editing_preset_type -1 skips every row with the edited number.
    static QString CheckName(const QString &name, const QAbstractItemModel *model, int editing_preset_index,
                             int editing_preset_type = -1);

public slots:
    void OnSaveBtnClicked();

protected:
    void SetNumberedLabels();

    std::unique_ptr<::Ui::PresetEditDialogUI> ui_;
    QVector<ptz_plugin_protocol::PresetInfo> presets_;
    int max_preset_index_ = kDefaultMaxPresetIndex;
    // Number of the preset being edited; -1 while adding.
    int editing_preset_index_ = -1;
    int editing_preset_type_ = -1;
    const QAbstractItemModel *preset_model_ = nullptr;
};

} // namespace PreviewPTZControl
