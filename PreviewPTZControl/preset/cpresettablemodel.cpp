#include "preset/cpresettablemodel.h"

#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"

#include <iterator>

namespace PreviewPTZControl {

using ptz_plugin_protocol::PresetInfo;
using Quillon::CStandardItem;

namespace {
bool OffersEdit(const PresetInfo &preset, bool may_edit)
{
    // The device keeps presets with the reserved flag for itself.
    return preset.reserved != 1 && may_edit;
}
} // namespace

CPresetTableModel::CPresetTableModel(double device_pixel_ratio, QObject *parent, bool white_theme)
    : Quillon::CStandardItemModel(parent)
    , icons_(device_pixel_ratio, this, white_theme)
    , preset_type_(-1)
{
    setColumnCount(kColumnCount);
}

CPresetTableModel::~CPresetTableModel() = default;

void CPresetTableModel::SetWhiteTheme(bool white)
{
    if (icons_.IsWhiteTheme() == white)
        return;
    const QList<QPixmap> before = icons_.AllPixmaps();
    icons_ = CPresetModelIcon(icons_.GetDevicePixelRatio(), this, white);
    const QList<QPixmap> after = icons_.AllPixmaps();
    static const int roles[] = {Quillon::ItemLeadingPixmapRole, Quillon::ItemFirstRightPixmapRole,
                                Quillon::ItemSecondRightPixmapRole, Quillon::ItemThirdRightPixmapRole};
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            CStandardItem *item = GetItem(row, column);
            for (int role = 0; item && role < int(std::size(roles)); ++role) {
                const QPixmap shown = item->data(roles[role]).value<QPixmap>();
                for (int i = 0; !shown.isNull() && i < before.size(); ++i) {
                    if (shown.cacheKey() == before.at(i).cacheKey()) {
                        item->setData(after.at(i), roles[role]);
                        break;
                    }
                }
            }
        }
    }
}

void CPresetTableModel::SetPresetType(int preset_type)
{
    preset_type_ = preset_type;
}

bool CPresetTableModel::AcceptsType(int type) const
{
    if (type == ptz_plugin_protocol::PRESET_TYPE_INVALID)
        return false;
    if (preset_type_ == ptz_plugin_protocol::PRESET_TYPE_FISHEYE)
        return type == ptz_plugin_protocol::PRESET_TYPE_FISHEYE;
    return type != ptz_plugin_protocol::PRESET_TYPE_FISHEYE;
}

void CPresetTableModel::ResetPresetItems()
{
    for (int row = 0; row < rowCount() && row < kMaxPresetRows; ++row) {
        const QString name = tr("Preset%1").arg(row + 1);
        if (CStandardItem *type_item = GetItem(row, kColumnType)) {
            type_item->SetItemEnabled(false);
            type_item->setData(icons_.GetNotSetPixmap(), Quillon::ItemLeadingPixmapRole);
            type_item->setData(QString(), Quillon::ItemExtraTextRole);
        }
        if (CStandardItem *name_item = GetItem(row, kColumnName)) {
            FillNameItem(name_item, name);
            name_item->SetItemEnabled(true);
        }
        if (CStandardItem *action_item = GetItem(row, kColumnAction)) {
            action_item->SetItemEnabled(true);
            FillActionItem(action_item, -1, true);
        }
    }
}

void CPresetTableModel::ClearPresetItem(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    const QString name = tr("Preset%1").arg(row + 1);
    if (CStandardItem *type_item = GetItem(row, kColumnType)) {
        type_item->setData(icons_.GetNotSetPixmap(), Quillon::ItemLeadingPixmapRole);
        type_item->setData(QString(), Quillon::ItemExtraTextRole);
        type_item->SetItemEnabled(false);
    }
    if (CStandardItem *name_item = GetItem(row, kColumnName)) {
        FillNameItem(name_item, name);
        name_item->SetItemEnabled(false);
    }
    if (CStandardItem *action_item = GetItem(row, kColumnAction)) {
        FillActionItem(action_item, -1, true);
        action_item->SetItemEnabled(false);
    }
}

void CPresetTableModel::RestorePresetItem(int row, bool may_edit)
{
    if (row < 0 || row >= rowCount())
        return;
    CStandardItem *action_item = GetItem(row, kColumnAction);
    const int type = action_item ? action_item->data(Quillon::ItemFirstStateRole).toInt() : -1;
    if (CStandardItem *type_item = GetItem(row, kColumnType)) {
        type_item->setData(icons_.GetPresetTypePixmap(type), Quillon::ItemLeadingPixmapRole);
        type_item->SetItemEnabled(true);
    }
    if (CStandardItem *name_item = GetItem(row, kColumnName)) {
        // The name may have been changed through the display role alone.
        FillNameItem(name_item, name_item->text());
        name_item->SetItemEnabled(true);
    }
    if (action_item) {
        FillActionItem(action_item, type, may_edit);
        action_item->SetItemEnabled(true);
    }
}

int CPresetTableModel::FindPresetRow(int preset_index) const
{
    if (rowCount() == 0)
        return -1;
    const QModelIndexList hits =
        match(index(0, kColumnType), Quillon::ItemNumberRole, preset_index, 1, Qt::MatchExactly);
    return hits.isEmpty() ? -1 : hits.first().row();
}

void CPresetTableModel::UpdatePresetList(const QVector<PresetInfo> &presets, bool may_edit)
{
    for (const PresetInfo &preset : presets) {
        if (!AcceptsType(preset.preset_type))
            continue;
        const int row = FindPresetRow(preset.preset_index);
        if (row < 0) {
            AddPresetItem(preset, may_edit, false);
            continue;
        }
        if (CStandardItem *type_item = GetItem(row, kColumnType)) {
            FillTypeItem(type_item, preset);
            type_item->SetItemEnabled(true);
        }
        if (CStandardItem *name_item = GetItem(row, kColumnName)) {
            FillNameItem(name_item, QString::fromStdString(preset.preset_name));
            name_item->SetItemEnabled(true);
        }
        if (CStandardItem *action_item = GetItem(row, kColumnAction)) {
            action_item->SetItemEnabled(true);
            FillActionItem(action_item, preset.preset_type, OffersEdit(preset, may_edit));
        }
    }
}

void CPresetTableModel::AddPresetItem(const PresetInfo &preset, bool may_edit, bool insert_top)
{
    auto *type_item = new CStandardItem;
    FillTypeItem(type_item, preset);
    auto *name_item = new CStandardItem;
    FillNameItem(name_item, QString::fromStdString(preset.preset_name));
    auto *action_item = new CStandardItem;
    FillActionItem(action_item, preset.preset_type, OffersEdit(preset, may_edit));
    const QList<QStandardItem *> items{type_item, name_item, action_item};
    if (insert_top)
        insertRow(0, items);
    else
        appendRow(items);
}

void CPresetTableModel::FillTypeItem(CStandardItem *item, const PresetInfo &preset) const
{
    item->setData(icons_.GetPresetTypePixmap(preset.preset_type), Quillon::ItemLeadingPixmapRole);
    item->setData(preset.preset_index, Quillon::ItemNumberRole);
}

void CPresetTableModel::FillNameItem(CStandardItem *item, const QString &name) const
{
    item->SetItemText(name);
    item->setToolTip(name);
}

void CPresetTableModel::FillActionItem(CStandardItem *item, int preset_type, bool offer_edit) const
{
    item->setData(icons_.GetStartPixmap(), Quillon::ItemFirstRightPixmapRole);
    item->setData(tr("CallBQA8YLFY"), Quillon::ItemFirstRightPixmapTipRole);
    item->setData(preset_type, Quillon::ItemFirstStateRole);
    if (offer_edit) {
        item->setData(icons_.GetEditPixmap(), Quillon::ItemSecondRightPixmapRole);
        item->setData(tr("Edit"), Quillon::ItemSecondRightPixmapTipRole);
        item->setData(icons_.GetDeletePixmap(), Quillon::ItemThirdRightPixmapRole);
        item->setData(tr("Delete"), Quillon::ItemThirdRightPixmapTipRole);
    } else {
        item->setData(icons_.GetEmptyPixmap(), Quillon::ItemSecondRightPixmapRole);
        item->setData(QString(), Quillon::ItemSecondRightPixmapTipRole);
        item->setData(icons_.GetEmptyPixmap(), Quillon::ItemThirdRightPixmapRole);
        item->setData(QString(), Quillon::ItemThirdRightPixmapTipRole);
    }
}

} // namespace PreviewPTZControl
