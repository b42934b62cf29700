#pragma once

#include "previewptzcontrol_export.h"

#include "patrol/ccruisecombobox.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "quillon/ctableview.h"

#include <QVector>

#include <vector>

namespace PreviewPTZControl {

class CCruiseTableEditModel;

// The patrol path editor: one row per point, each cell a drop-down placed over it so only
// allowed presets, speeds and dwell times can be picked. Points are read back from the
// drop-downs (GetPoints), which is what the panel saves.
class PREVIEWPTZCONTROL_EXPORT CCruiseTableEditView : public Quillon::CTableView
{
    Q_OBJECT
public:
    // Where the selected point stands in the path.
    enum IndexPlace {
        PlaceNone = 0,   // no valid selection
        PlaceOnly = 1,   // the only point
        PlaceFirst = 2,  // the first of several
        PlaceMiddle = 3, // in the middle
        PlaceLast = 4,   // the last of several
    };
    Q_ENUM(IndexPlace)

    explicit CCruiseTableEditView(QWidget *parent = nullptr);
    ~CCruiseTableEditView() override;

    CCruiseTableEditModel *GetEditModel() const { return edit_model_; }

    // Shows a path over the camera's presets (of the model's preset type).
    void SetPath(const ptz_plugin_protocol::GetCruiseRouteResponse &route,
                 const QVector<ptz_plugin_protocol::PresetInfo> &presets);
    // Each returns the index to make current; invalid when nothing changed or nothing is left
    // to select. Limits are the caller's to check.
    QModelIndex AddPoint();
    QModelIndex DeletePoint(int row);
    QModelIndex MoveUp(const QModelIndex &index);
    QModelIndex MoveDown(const QModelIndex &index);
    std::vector<ptz_plugin_protocol::CruisePoint> GetPoints() const;

    static IndexPlace PlaceOf(int row, int count);
    void UpdatePlace(const QModelIndex &index);
    void SetWhiteTheme(bool white);

    // The drop-down of one cell, or nullptr.
    CCruiseComboBox *CellComboBox(int row, int column) const;

signals:
    void SignalSetSaveIconsStatus(bool b_empty);
    void SignalSetPresetControlIconsStatus(CCruiseTableEditView::IndexPlace enum_index_place);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void PlaceComboBoxes(int row, const CCruiseComboBox::Entry &preset, int speed, int dwell_time);
    int RowOfComboBox(const QObject *combo, int *column = nullptr) const;
    QModelIndex SwapRows(int row, int other);
    void UpdateEmptyState();

    CCruiseTableEditModel *edit_model_ = nullptr;
};

} // namespace PreviewPTZControl

Q_DECLARE_METATYPE(PreviewPTZControl::CCruiseTableEditView::IndexPlace)
