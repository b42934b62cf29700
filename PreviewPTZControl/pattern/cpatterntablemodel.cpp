#include "pattern/cpatterntablemodel.h"

#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"
#include "vs_ui_data_controller/cvsstylemanager.h"

namespace PreviewPTZControl {

using Quillon::CStandardItem;

namespace {
constexpr int kPlayingRole = Quillon::ItemFirstStateRole;
constexpr int kRecordingRole = Quillon::ItemSecondStateRole;
constexpr int kRecordedRole = Quillon::ItemThirdStateRole;
} // namespace

CPatternTableModel::CPatternTableModel(double device_pixel_ratio, QObject *parent, bool white_theme)
    : Quillon::CStandardItemModel(parent)
    , icons_(device_pixel_ratio, white_theme)
{
    setColumnCount(kColumnCount);
}

CPatternTableModel::~CPatternTableModel() = default;

void CPatternTableModel::InitPatterns(int count, bool may_edit)
{
    removeRows(0, rowCount());
    b_record_permission_ = may_edit;
    b_delete_permission_ = may_edit;
    for (int row = 0; row < count; ++row) {
        // The translation carries the placeholder; without one the number is appended.
        QString name = tr("Track%LSFuNRhoUtBhyfpg");
        name = name.contains(QLatin1String("%1")) ? name.arg(row + 1) : name + QString::number(row + 1);
        auto *name_item = new CStandardItem;
        name_item->SetItemText(name);
        name_item->setToolTip(name);
        name_item->setData(row + 1, Quillon::ItemNumberRole);
        auto *action_item = new CStandardItem;
        action_item->setData(false, kPlayingRole);
        action_item->setData(false, kRecordingRole);
        action_item->setData(false, kRecordedRole);
        // Nothing is known about the slot until the camera's list arrives.
        name_item->SetItemEnabled(false);
        action_item->SetItemEnabled(false);
        appendRow({name_item, action_item});
        RefreshRow(row);
    }
}

bool CPatternTableModel::UpdatePatterns(const QVector<int> &pattern_numbers)
{
    if (pattern_numbers.size() > rowCount())
        return false;
    for (int row = 0; row < rowCount(); ++row) {
        CStandardItem *action_item = GetItem(row, kColumnAction);
        if (!action_item)
            continue;
        action_item->setData(pattern_numbers.contains(row + 1), kRecordedRole);
        action_item->setData(false, kPlayingRole);
        action_item->setData(false, kRecordingRole);
        action_item->SetItemEnabled(true);
        if (CStandardItem *name_item = GetItem(row, kColumnName))
            name_item->SetItemEnabled(true);
        RefreshRow(row);
    }
    return true;
}

void CPatternTableModel::SetRecordingState(int row, bool recording)
{
    SetRowState(row, kRecordingRole, recording);
}

void CPatternTableModel::SetPlayingState(int row, bool playing)
{
    SetRowState(row, kPlayingRole, playing);
}

void CPatternTableModel::SetPermissions(bool may_record, bool may_delete)
{
    b_record_permission_ = may_record;
    b_delete_permission_ = may_delete;
    for (int row = 0; row < rowCount(); ++row)
        RefreshRow(row);
}

void CPatternTableModel::SetWhiteTheme(bool white)
{
    if (white == icons_.IsWhiteTheme())
        return;
    icons_.SetPatternIcons(white);
    for (int row = 0; row < rowCount(); ++row)
        RefreshRow(row);
}

bool CPatternTableModel::IsRecorded(int row) const
{
    return RowState(row, kRecordedRole);
}

bool CPatternTableModel::IsRecording(int row) const
{
    return RowState(row, kRecordingRole);
}

bool CPatternTableModel::IsPlaying(int row) const
{
    return RowState(row, kPlayingRole);
}

bool CPatternTableModel::RowState(int row, int role) const
{
    const CStandardItem *action_item = GetItem(row, kColumnAction);
    return action_item && action_item->data(role).toBool();
}

void CPatternTableModel::SetRowState(int row, int role, bool on)
{
    CStandardItem *action_item = GetItem(row, kColumnAction);
    if (!action_item)
        return;
    action_item->setData(on, role);
    RefreshRow(row);
}

void CPatternTableModel::RefreshRow(int row)
{
    CStandardItem *action_item = GetItem(row, kColumnAction);
    if (!action_item)
        return;
    const bool playing = action_item->data(kPlayingRole).toBool();
    const bool recording = action_item->data(kRecordingRole).toBool();
    const bool has_pattern = recording || action_item->data(kRecordedRole).toBool();

    if (playing) {
        action_item->setData(icons_.GetStopPlayPixmap(), Quillon::ItemFirstRightPixmapRole);
        action_item->setData(tr("Stop"), Quillon::ItemFirstRightPixmapTipRole);
    } else if (has_pattern) {
        action_item->setData(icons_.GetPlayPixmap(), Quillon::ItemFirstRightPixmapRole);
        action_item->setData(tr("CallBQA8YLFY"), Quillon::ItemFirstRightPixmapTipRole);
    } else {
        action_item->setData(icons_.GetEmptyPixmap(), Quillon::ItemFirstRightPixmapRole);
        action_item->setData(QString(), Quillon::ItemFirstRightPixmapTipRole);
    }

    if (!b_record_permission_) {
        action_item->setData(icons_.GetEmptyPixmap(), Quillon::ItemSecondRightPixmapRole);
        action_item->setData(QString(), Quillon::ItemSecondRightPixmapTipRole);
    } else if (recording) {
        action_item->setData(icons_.GetStopRecordPixmap(), Quillon::ItemSecondRightPixmapRole);
        action_item->setData(tr("StopRecordingPattern"), Quillon::ItemSecondRightPixmapTipRole);
    } else {
        action_item->setData(icons_.GetRecordPixmap(), Quillon::ItemSecondRightPixmapRole);
        action_item->setData(tr("StartRecordingPattern"), Quillon::ItemSecondRightPixmapTipRole);
    }

    if (b_record_permission_ && b_delete_permission_ && has_pattern) {
        action_item->setData(icons_.GetDeletePixmap(), Quillon::ItemThirdRightPixmapRole);
        action_item->setData(tr("Delete"), Quillon::ItemThirdRightPixmapTipRole);
    } else {
        action_item->setData(icons_.GetEmptyPixmap(), Quillon::ItemThirdRightPixmapRole);
        action_item->setData(QString(), Quillon::ItemThirdRightPixmapTipRole);
    }

    if (CStandardItem *name_item = GetItem(row, kColumnName)) {
        // Empty slots read dimmer than recorded ones; a running row leaves room for its mark.
        const auto *style = vs_ui_data_controller::CVSStyleManager::Instance();
        name_item->setData(style->GetTextNeuColorT2(has_pattern ? 0.9 : 0.45), Quillon::ItemTextColorRole);
        name_item->setData(playing || recording ? QVariant(true) : QVariant(), Quillon::ItemRunningRole);
    }
}

} // namespace PreviewPTZControl
