#pragma once

#include "previewptzcontrol_export.h"

#include "patrol/ccruisecombobox.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "quillon/cstandarditemmodel.h"

#include <QVector>

#include <vector>

namespace PreviewPTZControl {

// Points of the patrol path being edited, one row each: column 0 the preset (its number in
// Qt::UserRole), column 1 the speed, column 2 the dwell time in seconds. Also holds the entries
// the cells' drop-downs offer.
class PREVIEWPTZCONTROL_EXPORT CCruiseTableEditModel : public Quillon::CStandardItemModel
{
    Q_OBJECT
public:
    enum { kColumnPreset = 0, kColumnSpeed = 1, kColumnTime = 2, kColumnCount = 3 };
    static constexpr int kMaxPoints = 32;
    static constexpr int kMinSpeed = 1;
    static constexpr int kMaxSpeed = 40;
    static constexpr int kDefaultSpeed = 30;
    // Deliberately fixed: a range without it starts new points on its minimum.
    static constexpr int kDefaultDwellTime = 15;

    explicit CCruiseTableEditModel(QObject *parent = nullptr);
    ~CCruiseTableEditModel() override;

    // Type of the presets offered (1 device, 2 fish-eye, 3 virtual).
    void SetPresetType(int preset_type);
    int GetPresetType() const { return preset_type_; }

    // Removes every point and rebuilds the preset entries from the camera's presets.
    void LoadPath(const ptz_plugin_protocol::GetCruiseRouteResponse &route,
                  const QVector<ptz_plugin_protocol::PresetInfo> &presets);
    // A point read back; refused (false) without a preset, a dwell time or a speed.
    bool AppendPoint(const ptz_plugin_protocol::CruisePoint &point);
    // A new point on the first preset offered; false when no preset is offered.
    bool AppendDefaultPoint();
    void SetDwellRange(int min_time, int max_time);
    int GetMinDwellTime() const { return min_dwell_; }
    int GetMaxDwellTime() const { return max_dwell_; }

    bool HasPresets() const { return !preset_entries_.isEmpty(); }
    int PointCount() const { return rowCount(); }
    void RemovePoint(int row);
    // Writes one cell's value (and its text) back, as its drop-down shows it.
    void SetCellValue(int row, int column, const CCruiseComboBox::Entry &entry);
    std::vector<ptz_plugin_protocol::CruisePoint> Points() const;

    // The same entries as models the drop-downs share; rebuilt with the entries.
    QAbstractItemModel *PresetEntryModel() const { return preset_entry_model_; }
    QAbstractItemModel *SpeedEntryModel() const { return speed_entry_model_; }
    QAbstractItemModel *DwellEntryModel() const { return dwell_entry_model_; }

    const CCruiseComboBox::Entries &PresetEntries() const { return preset_entries_; }
    const CCruiseComboBox::Entries &SpeedEntries() const { return speed_entries_; }
    const CCruiseComboBox::Entries &DwellEntries() const { return dwell_entries_; }
    // Text of a point's preset: its entry, or the name read with the point when the preset is gone.
    CCruiseComboBox::Entry PresetEntryOf(const ptz_plugin_protocol::CruisePoint &point) const;

private:
    void AppendRow(const CCruiseComboBox::Entry &preset, int speed, int dwell_time);

    int32_t preset_type_ = -1;
    CCruiseComboBox::Entries preset_entries_;
    CCruiseComboBox::Entries speed_entries_;
    CCruiseComboBox::Entries dwell_entries_;
    QStandardItemModel *preset_entry_model_ = nullptr;
    QStandardItemModel *speed_entry_model_ = nullptr;
    QStandardItemModel *dwell_entry_model_ = nullptr;
    int min_dwell_ = 15;
    int max_dwell_ = 30;
};

} // namespace PreviewPTZControl
