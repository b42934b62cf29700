#include "patrol/ccruisetablemodel.h"

#include "quillon/cstandarditem.h"
#include "vs_ui_data_controller/cvsstylemanager.h"

#include <algorithm>

namespace PreviewPTZControl {

namespace {
QColor NameColor(bool configured)
{
    return vs_ui_data_controller::CVSStyleManager::Instance()->GetTextNeuColorT2(configured ? 0.7 : 0.2);
}
} // namespace

CCruiseTableModel::CCruiseTableModel(QObject *parent, bool white_theme)
    : Quillon::CStandardItemModel(parent)
    , icons_(white_theme)
{
    setColumnCount(kColumnCount);
    for (int row = 0; row < kRowCount; ++row) {
        auto *name = new Quillon::CStandardItem;
        const QString text = tr("Patrol%1").arg(row + 1, 0, 10, QLatin1Char(' '));
        name->setEditable(false);
        name->SetItemEnabled(false);
        name->SetItemText(text);
        name->setData(NameColor(false), Quillon::ItemTextColorRole);
        name->setToolTip(text);

        auto *action = new Quillon::CStandardItem;
        action->setEditable(false);
        action->SetItemEnabled(true);
        action->setData(icons_.GetEmptyPixmap(), Quillon::ItemFirstRightPixmapRole);
        action->setData(tr("CallBQA8YLFY"), Quillon::ItemFirstRightPixmapTipRole);
        action->setData(icons_.GetEditPixmap(), Quillon::ItemSecondRightPixmapRole);
        action->setData(tr("Edit"), Quillon::ItemSecondRightPixmapTipRole);
        action->setData(icons_.GetEmptyPixmap(), Quillon::ItemThirdRightPixmapRole);
        action->setData(tr("Delete"), Quillon::ItemThirdRightPixmapTipRole);
        action->setData(false, PatrolRunningRole);
        action->setData(false, PatrolConfiguredRole);

        appendRow({name, action});
    }
}

CCruiseTableModel::~CCruiseTableModel() = default;

void CCruiseTableModel::UpdatePatrols(const QVector<ptz_plugin_protocol::CruiseInfo> &patrols, bool can_edit)
{
    for (int row = 0; row < kRowCount; ++row) {
        const bool configured =
            std::any_of(patrols.begin(), patrols.end(),
                        [row](const ptz_plugin_protocol::CruiseInfo &info) { return info.cruise_index - 1 == row; });
        const bool running = running_row_ == row;
        if (Quillon::CStandardItem *name = GetItem(row, kColumnName)) {
            name->SetItemEnabled(configured);
            name->setData(NameColor(configured), Quillon::ItemTextColorRole);
            name->setData(running, Quillon::ItemRunningRole);
        }
        Quillon::CStandardItem *action = GetItem(row, kColumnAction);
        if (!action)
            continue;
        action->setData(configured, PatrolConfiguredRole);
        action->setData(configured ? (running ? icons_.GetPausePixmap() : icons_.GetStartPixmap())
                                   : icons_.GetEmptyPixmap(),
                        Quillon::ItemFirstRightPixmapRole);
        action->setData(running, PatrolRunningRole);
        action->setData(can_edit ? icons_.GetEditPixmap() : icons_.GetEmptyPixmap(),
                        Quillon::ItemSecondRightPixmapRole);
        action->setData(configured && can_edit ? icons_.GetDeletePixmap() : icons_.GetEmptyPixmap(),
                        Quillon::ItemThirdRightPixmapRole);
    }
}

void CCruiseTableModel::UpdatePatrolRow(int row, bool configured)
{
    if (row < 0 || row >= kRowCount)
        return;
    if (Quillon::CStandardItem *name = GetItem(row, kColumnName))
        name->setData(NameColor(configured), Quillon::ItemTextColorRole);
    Quillon::CStandardItem *action = GetItem(row, kColumnAction);
    if (!action)
        return;
    action->setData(configured, PatrolConfiguredRole);
    action->setData(configured ? (running_row_ == row ? icons_.GetPausePixmap() : icons_.GetStartPixmap())
                               : icons_.GetEmptyPixmap(),
                    Quillon::ItemFirstRightPixmapRole);
    action->setData(configured ? icons_.GetDeletePixmap() : icons_.GetEmptyPixmap(), Quillon::ItemThirdRightPixmapRole);
}

void CCruiseTableModel::SetWhiteTheme(bool white)
{
    if (icons_.IsWhiteTheme() == white)
        return;
    icons_ = CPatrolPathIcon(white);
    for (int row = 0; row < kRowCount; ++row) {
        // The host's style manager has the theme's colours by now.
        if (Quillon::CStandardItem *name = GetItem(row, kColumnName))
            name->setData(NameColor(index(row, kColumnAction).data(PatrolConfiguredRole).toBool()),
                          Quillon::ItemTextColorRole);
        Quillon::CStandardItem *action = GetItem(row, kColumnAction);
        if (!action)
            continue;
        const auto shown = [action](int role) { return !action->data(role).value<QPixmap>().isNull(); };
        if (shown(Quillon::ItemFirstRightPixmapRole))
            action->setData(action->data(PatrolRunningRole).toBool() ? icons_.GetPausePixmap()
                                                                     : icons_.GetStartPixmap(),
                            Quillon::ItemFirstRightPixmapRole);
        if (shown(Quillon::ItemSecondRightPixmapRole))
            action->setData(icons_.GetEditPixmap(), Quillon::ItemSecondRightPixmapRole);
        if (shown(Quillon::ItemThirdRightPixmapRole))
            action->setData(icons_.GetDeletePixmap(), Quillon::ItemThirdRightPixmapRole);
    }
}

void CCruiseTableModel::SetPlayingIndex(const QModelIndex &index, bool playing)
{
    running_row_ = playing && index.isValid() ? index.row() : -1;
    RefreshPlayStates();
}

void CCruiseTableModel::ClearPlaying()
{
    running_row_ = -1;
    RefreshPlayStates();
}

void CCruiseTableModel::RefreshPlayStates()
{
    for (int row = 0; row < kRowCount; ++row)
        SetRowPlayState(index(row, kColumnName), row == running_row_);
}

void CCruiseTableModel::SetRowPlayState(const QModelIndex &index, bool running)
{
    const QModelIndex action_index = index.sibling(index.row(), kColumnAction);
    if (!action_index.isValid() || !action_index.data(PatrolConfiguredRole).toBool())
        return;
    Quillon::CStandardItem *action = GetItemFromIndex(action_index);
    Quillon::CStandardItem *name = GetItem(index.row(), kColumnName);
    if (!action || !name)
        return;
    action->setData(running ? icons_.GetPausePixmap() : icons_.GetStartPixmap(), Quillon::ItemFirstRightPixmapRole);
    action->setData(running ? tr("Stop") : tr("CallBQA8YLFY"), Quillon::ItemFirstRightPixmapTipRole);
    action->setData(running, PatrolRunningRole);
    name->setData(running, Quillon::ItemRunningRole);
}

} // namespace PreviewPTZControl
