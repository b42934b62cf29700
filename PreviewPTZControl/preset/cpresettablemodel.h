#pragma once

#include "previewptzcontrol_export.h"

#include "preset/cpresetmodelicon.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "ptz_plugin_protocol/ptzlimits.h"
#include "quillon/cstandarditemmodel.h"

#include <QVector>

namespace Quillon {
class CStandardItem;
}

namespace PreviewPTZControl {

// Rows of the preset tab: column 0 the type pixmap and the preset number,
// column 1 the name, column 2 the call, edit and delete pixmaps. Rows are added
// as presets arrive, so they are in arrival order, not number order.
class PREVIEWPTZCONTROL_EXPORT CPresetTableModel : public Quillon::CStandardItemModel
{
    Q_OBJECT
public:
    enum { kColumnType = 0, kColumnName = 1, kColumnAction = 2, kColumnCount = 3 };
    // Only this many rows take part in a reset; the panel never lists more.
    static constexpr int kMaxPresetRows = ptz_plugin_protocol::kMaxPresetIndex;

    CPresetTableModel(double device_pixel_ratio, QObject *parent = nullptr, bool white_theme = false);
    ~CPresetTableModel() override;

    // 2 lists fish-eye presets only; any other value lists device and virtual presets together.
    void SetPresetType(int preset_type);
    int GetPresetType() const { return preset_type_; }

    // Puts every existing row among the first kMaxPresetRows into its empty state.
    void ResetPresetItems();
    // Puts one row back into its empty state, all three items disabled.
    void ClearPresetItem(int row);
    // Re-enables a row and sets its pixmaps and tips again after an edit.
    void RestorePresetItem(int row, bool may_edit = true);
    // Fills rows from a list: a row whose number is known is updated, others are appended.
    void UpdatePresetList(const QVector<ptz_plugin_protocol::PresetInfo> &presets, bool may_edit);
    void AddPresetItem(const ptz_plugin_protocol::PresetInfo &preset, bool may_edit, bool insert_top);

    // Row whose column 0 holds the preset number, or -1.
    int FindPresetRow(int preset_index) const;

    // Re-renders the icons for the theme and puts them into the rows already shown.
    void SetWhiteTheme(bool white);
    const CPresetModelIcon &GetIcons() const { return icons_; }

private:
    bool AcceptsType(int type) const;
    void FillTypeItem(Quillon::CStandardItem *item, const ptz_plugin_protocol::PresetInfo &preset) const;
    void FillNameItem(Quillon::CStandardItem *item, const QString &name) const;
    void FillActionItem(Quillon::CStandardItem *item, int preset_type, bool offer_edit) const;

    CPresetModelIcon icons_;
    int32_t preset_type_ = -1;
};

} // namespace PreviewPTZControl
