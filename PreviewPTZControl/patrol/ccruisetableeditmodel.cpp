#include "patrol/ccruisetableeditmodel.h"

#include "quillon/cstandarditem.h"

namespace PreviewPTZControl {

CCruiseTableEditModel::CCruiseTableEditModel(QObject *parent)
    : Quillon::CStandardItemModel(parent)
{
    setColumnCount(kColumnCount);
    const QString headers[kColumnCount] = {tr("Preset"), tr("Speed"), tr("Time")};
    const int widths[kColumnCount] = {80, 60, 50};
    for (int column = 0; column < kColumnCount; ++column) {
        const QString &text = headers[column];
        auto *header = new Quillon::CStandardItem(text);
        header->setToolTip(text);
        header->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        setHorizontalHeaderItem(column, header);
        SetColumnWidth(column, widths[column]);
    }
    for (int speed = kMinSpeed; speed <= kMaxSpeed; ++speed)
        speed_entries_.append({QString::number(speed), speed});
    speed_entry_model_ = CCruiseComboBox::BuildEntryModel(speed_entries_, this);
    preset_entry_model_ = CCruiseComboBox::BuildEntryModel({}, this);
    SetDwellRange(min_dwell_, max_dwell_);
}

CCruiseTableEditModel::~CCruiseTableEditModel() = default;

void CCruiseTableEditModel::SetPresetType(int preset_type)
{
    preset_type_ = preset_type;
}

void CCruiseTableEditModel::SetDwellRange(int min_time, int max_time)
{
    min_dwell_ = min_time;
    max_dwell_ = max_time;
    dwell_entries_.clear();
    for (int seconds = min_time; seconds <= max_time; ++seconds)
        dwell_entries_.append({QString::number(seconds), seconds});
    // Drop-downs still showing the old entries keep them until they go with their rows.
    if (dwell_entry_model_)
        dwell_entry_model_->deleteLater();
    dwell_entry_model_ = CCruiseComboBox::BuildEntryModel(dwell_entries_, this);
}

void CCruiseTableEditModel::LoadPath(const ptz_plugin_protocol::GetCruiseRouteResponse &,
                                     const QVector<ptz_plugin_protocol::PresetInfo> &presets)
{
    removeRows(0, rowCount());
    preset_entries_.clear();
    for (const ptz_plugin_protocol::PresetInfo &preset : presets) {
        if (preset.preset_type != preset_type_ || preset.reserved == 1)
            continue;
        const QString name = QString::fromStdString(preset.preset_name);
        preset_entries_.append({name.isEmpty() ? tr("Preset%1").arg(preset.preset_index) : name, preset.preset_index});
    }
    if (preset_entry_model_)
        preset_entry_model_->deleteLater();
    preset_entry_model_ = CCruiseComboBox::BuildEntryModel(preset_entries_, this);
}

CCruiseComboBox::Entry CCruiseTableEditModel::PresetEntryOf(const ptz_plugin_protocol::CruisePoint &point) const
{
    const int number = int(point.preset_index);
    for (const CCruiseComboBox::Entry &entry : preset_entries_) {
        if (entry.second == number)
            return entry;
    }
    // The preset left the camera: the point stays visible, marked, so it can be fixed.
    return {tr("PatrolPointPresetMissing%1").arg(number), number};
}

bool CCruiseTableEditModel::AppendPoint(const ptz_plugin_protocol::CruisePoint &point)
{
    if (point.preset_index < 1 || point.dwell_time < 1 || point.speed <= 0)
        return false;
    AppendRow(PresetEntryOf(point), point.speed, point.dwell_time);
    return true;
}

bool CCruiseTableEditModel::AppendDefaultPoint()
{
    if (preset_entries_.isEmpty())
        return false;
    AppendRow(preset_entries_.first(), kDefaultSpeed, min_dwell_);
    return true;
}

void CCruiseTableEditModel::AppendRow(const CCruiseComboBox::Entry &preset, int speed, int dwell_time)
{
    auto *preset_item = new Quillon::CStandardItem(preset.first);
    preset_item->setData(preset.second, Qt::UserRole);
    auto *speed_item = new Quillon::CStandardItem(QString::number(speed));
    auto *time_item = new Quillon::CStandardItem(QString::number(dwell_time));
    for (QStandardItem *item : {static_cast<QStandardItem *>(preset_item), static_cast<QStandardItem *>(speed_item),
                                static_cast<QStandardItem *>(time_item)})
        item->setEditable(false);
    appendRow({preset_item, speed_item, time_item});
}

void CCruiseTableEditModel::RemovePoint(int row)
{
    if (row >= 0 && row < rowCount())
        removeRow(row);
}

void CCruiseTableEditModel::SetCellValue(int row, int column, const CCruiseComboBox::Entry &entry)
{
    QStandardItem *cell = item(row, column);
    if (!cell)
        return;
    if (column == kColumnPreset) {
        cell->setText(entry.first);
        cell->setData(entry.second, Qt::UserRole);
    } else {
        cell->setText(QString::number(entry.second));
    }
}

std::vector<ptz_plugin_protocol::CruisePoint> CCruiseTableEditModel::Points() const
{
    std::vector<ptz_plugin_protocol::CruisePoint> points;
    points.reserve(size_t(rowCount()));
    for (int row = 0; row < rowCount(); ++row) {
        ptz_plugin_protocol::CruisePoint point;
        point.preset_index = uint32_t(qMax(0, item(row, kColumnPreset)->data(Qt::UserRole).toInt()));
        point.speed = item(row, kColumnSpeed)->text().toInt();
        point.dwell_time = item(row, kColumnTime)->text().toInt();
        points.push_back(point);
    }
    return points;
}

} // namespace PreviewPTZControl
