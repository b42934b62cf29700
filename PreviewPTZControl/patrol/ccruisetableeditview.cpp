#include "patrol/ccruisetableeditview.h"

#include "patrol/ccruisetableeditmodel.h"

#include "quillon/cscrollbar.h"
#include "quillon/cscrollbardelegate.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QStyle>

namespace PreviewPTZControl {

namespace {
void Repolish(QWidget *widget)
{
    if (!widget)
        return;
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}
} // namespace

CCruiseTableEditView::CCruiseTableEditView(QWidget *parent)
    : Quillon::CTableView(parent)
{
    // The signal names the type unqualified; both spellings are known to the meta-type system.
    qRegisterMetaType<CCruiseTableEditView::IndexPlace>();
    qRegisterMetaType<CCruiseTableEditView::IndexPlace>("CCruiseTableEditView::IndexPlace");
    edit_model_ = new CCruiseTableEditModel(this);
    setModel(edit_model_);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    header()->setObjectName(QStringLiteral("ptr_patrol_edit_view_header_"));
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    SetEmptyViewText(tr("NoDataqrhgooag"));
}

CCruiseTableEditView::~CCruiseTableEditView() = default;

CCruiseComboBox *CCruiseTableEditView::CellComboBox(int row, int column) const
{
    return qobject_cast<CCruiseComboBox *>(indexWidget(edit_model_->index(row, column)));
}

void CCruiseTableEditView::SetPath(const ptz_plugin_protocol::GetCruiseRouteResponse &route,
                                   const QVector<ptz_plugin_protocol::PresetInfo> &presets)
{
    for (int row = 0; row < edit_model_->rowCount(); ++row) {
        for (int column = 0; column < CCruiseTableEditModel::kColumnCount; ++column) {
            if (QWidget *combo = CellComboBox(row, column))
                combo->deleteLater();
        }
    }
    edit_model_->LoadPath(route, presets);
    // Rows first, drop-downs after: each inserted row lays out every drop-down already placed.
    QVector<const ptz_plugin_protocol::CruisePoint *> loaded;
    for (const ptz_plugin_protocol::CruisePoint &point : route.points) {
        if (edit_model_->AppendPoint(point))
            loaded << &point;
    }
    for (int row = 0; row < loaded.size(); ++row) {
        const ptz_plugin_protocol::CruisePoint &point = *loaded.at(row);
        PlaceComboBoxes(row, edit_model_->PresetEntryOf(point), point.speed, point.dwell_time);
    }
    UpdateEmptyState();
    UpdatePlace(QModelIndex());
}

void CCruiseTableEditView::PlaceComboBoxes(int row, const CCruiseComboBox::Entry &preset, int speed, int dwell_time)
{
    auto *preset_combo = new CCruiseComboBox(edit_model_->PresetEntryModel(), preset.second);
    preset_combo->SelectEntry(preset);
    auto *speed_combo = new CCruiseComboBox(edit_model_->SpeedEntryModel(), speed);
    auto *time_combo = new CCruiseComboBox(edit_model_->DwellEntryModel(), dwell_time);
    CCruiseComboBox *combos[CCruiseTableEditModel::kColumnCount] = {preset_combo, speed_combo, time_combo};
    for (int column = 0; column < CCruiseTableEditModel::kColumnCount; ++column) {
        CCruiseComboBox *combo = combos[column];
        // The model keeps what the drop-down shows, also where a value fell back to the first entry.
        edit_model_->SetCellValue(row, column, combo->CurrentEntry());
        setIndexWidget(edit_model_->index(row, column), combo);
        connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this, combo]() {
            int column = 0;
            const int row = RowOfComboBox(combo, &column);
            if (row >= 0)
                edit_model_->SetCellValue(row, column, combo->CurrentEntry());
        });
        connect(combo, &CCruiseComboBox::SignalPressed, this, [this, combo]() {
            const int row = RowOfComboBox(combo);
            if (row < 0)
                return;
            const QModelIndex index = edit_model_->index(row, 0);
            setCurrentIndex(index);
            UpdatePlace(index);
        });
    }
}

int CCruiseTableEditView::RowOfComboBox(const QObject *combo, int *column) const
{
    for (int row = 0; row < edit_model_->rowCount(); ++row) {
        for (int c = 0; c < CCruiseTableEditModel::kColumnCount; ++c) {
            if (CellComboBox(row, c) == combo) {
                if (column)
                    *column = c;
                return row;
            }
        }
    }
    return -1;
}

QModelIndex CCruiseTableEditView::AddPoint()
{
    if (!edit_model_->AppendDefaultPoint())
        return QModelIndex();
    const int row = edit_model_->rowCount() - 1;
    PlaceComboBoxes(row, edit_model_->PresetEntries().first(), CCruiseTableEditModel::kDefaultSpeed,
                    CCruiseTableEditModel::kDefaultDwellTime);
    UpdateEmptyState();
    return edit_model_->index(row, 0);
}

QModelIndex CCruiseTableEditView::DeletePoint(int row)
{
    if (row < 0 || row >= edit_model_->rowCount())
        return QModelIndex();
    for (int column = 0; column < CCruiseTableEditModel::kColumnCount; ++column) {
        if (QWidget *combo = CellComboBox(row, column))
            combo->deleteLater();
    }
    edit_model_->RemovePoint(row);
    UpdateEmptyState();
    return QModelIndex();
}

QModelIndex CCruiseTableEditView::MoveUp(const QModelIndex &index)
{
    if (!index.isValid() || index.row() <= 0)
        return QModelIndex();
    return SwapRows(index.row(), index.row() - 1);
}

QModelIndex CCruiseTableEditView::MoveDown(const QModelIndex &index)
{
    if (!index.isValid() || index.row() >= edit_model_->rowCount() - 1)
        return QModelIndex();
    return SwapRows(index.row(), index.row() + 1);
}

QModelIndex CCruiseTableEditView::SwapRows(int row, int other)
{
    // The rows stay where they are; only the values they show change places.
    for (int column = 0; column < CCruiseTableEditModel::kColumnCount; ++column) {
        CCruiseComboBox *mine = CellComboBox(row, column);
        CCruiseComboBox *theirs = CellComboBox(other, column);
        if (!mine || !theirs)
            continue;
        const CCruiseComboBox::Entry entry = mine->CurrentEntry();
        mine->SelectEntry(theirs->CurrentEntry());
        theirs->SelectEntry(entry);
    }
    return edit_model_->index(other, 0);
}

std::vector<ptz_plugin_protocol::CruisePoint> CCruiseTableEditView::GetPoints() const
{
    std::vector<ptz_plugin_protocol::CruisePoint> points = edit_model_->Points();
    for (int row = 0; row < int(points.size()); ++row) {
        if (CCruiseComboBox *preset = CellComboBox(row, CCruiseTableEditModel::kColumnPreset))
            points[size_t(row)].preset_index = uint32_t(qMax(0, preset->CurrentValue()));
        if (CCruiseComboBox *speed = CellComboBox(row, CCruiseTableEditModel::kColumnSpeed))
            points[size_t(row)].speed = speed->CurrentValue();
        if (CCruiseComboBox *time = CellComboBox(row, CCruiseTableEditModel::kColumnTime))
            points[size_t(row)].dwell_time = time->CurrentValue();
    }
    return points;
}

CCruiseTableEditView::IndexPlace CCruiseTableEditView::PlaceOf(int row, int count)
{
    if (row < 0 || row >= count)
        return PlaceNone;
    if (row == 0)
        return row == count - 1 ? PlaceOnly : PlaceFirst;
    return row == count - 1 ? PlaceLast : PlaceMiddle;
}

void CCruiseTableEditView::UpdatePlace(const QModelIndex &index)
{
    emit SignalSetPresetControlIconsStatus(index.isValid() ? PlaceOf(index.row(), edit_model_->rowCount()) : PlaceNone);
}

void CCruiseTableEditView::UpdateEmptyState()
{
    emit SignalSetSaveIconsStatus(edit_model_->rowCount() == 0);
}

void CCruiseTableEditView::SetWhiteTheme(bool white)
{
    if (white) {
        setObjectName(QStringLiteral("CCruiseTableEditView_white_"));
        header()->setObjectName(QStringLiteral("ptr_patrol_edit_view_header_white_"));
        Repolish(this);
        Repolish(header());
        return;
    }
    header()->setObjectName(QStringLiteral("ptr_patrol_edit_view_header_"));
    Repolish(header());
    if (Quillon::CScrollBarDelegate *bars = GetScrollBarDelegate()) {
        for (QWidget *bar : {static_cast<QWidget *>(bars->GetVerticalScrollBar()),
                             static_cast<QWidget *>(bars->GetHorizontalScrollBar())}) {
            if (!bar)
                continue;
            bar->setObjectName(QStringLiteral("ptr_ptz_black_scrollbar_"));
            Repolish(bar);
        }
    }
}

void CCruiseTableEditView::resizeEvent(QResizeEvent *event)
{
    const int third = viewport()->width() / CCruiseTableEditModel::kColumnCount;
    for (int column = 0; column < CCruiseTableEditModel::kColumnCount; ++column)
        setColumnWidth(column, third);
    UpdatePlace(currentIndex());
    Quillon::CTableView::resizeEvent(event);
    UpdateEmptyState();
}

void CCruiseTableEditView::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid()) {
        for (int column = 0; column < CCruiseTableEditModel::kColumnCount; ++column) {
            if (CCruiseComboBox *combo = CellComboBox(index.row(), column))
                combo->clearFocus();
        }
    } else {
        clearSelection();
    }
    UpdatePlace(index);
    Quillon::CTableView::mousePressEvent(event);
}

} // namespace PreviewPTZControl
