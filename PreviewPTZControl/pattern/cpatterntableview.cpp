#include "pattern/cpatterntableview.h"

#include "boundary/rowlistview_p.h"

#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableviewdelegate.h"
#include "preset/cpresettableview.h"

#include "quillon/cscrollbar.h"
#include "quillon/cscrollbardelegate.h"

#include <QHeaderView>
#include <QStyle>

namespace PreviewPTZControl {

CPatternTableView::CPatternTableView(QWidget *parent)
    : Quillon::CTableView(parent)
{
    RowListView::SetUp(this);
    header()->setMinimumSectionSize(24);
    setItemDelegate(new CPatternTableViewDelegate(this));
    connect(this, &Quillon::CTableView::signalClickedPixmap, this, &CPatternTableView::OnTableViewClicked);
}

CPatternTableView::~CPatternTableView() = default;

void CPatternTableView::LayoutColumns()
{
    if (!model() || model()->columnCount() != CPatternTableModel::kColumnCount)
        return;
    // The action column is as wide as the preset list's, so the icons line up across the tabs.
    const int action_width = CPresetTableView::ActionColumnWidth(devicePixelRatioF());
    setColumnWidth(CPatternTableModel::kColumnAction, action_width);
    setColumnWidth(CPatternTableModel::kColumnName, qMax(0, viewport()->width() - action_width));
}

void CPatternTableView::SetWhiteTheme(bool white)
{
    if (auto *patterns = qobject_cast<CPatternTableModel *>(model()))
        patterns->SetWhiteTheme(white);
    if (white) {
        setAlternatingRowColors(true);
        setSelectionMode(QAbstractItemView::NoSelection);
        return;
    }
    setAlternatingRowColors(false);
    RowListView::UseDarkScrollBars(this);
}

void CPatternTableView::OnTableViewClicked(const QModelIndex &index, Quillon::CItemDataRole enumType)
{
    if (!isEnabled() || !index.isValid() || enumType == Quillon::ItemInertPixmapRole)
        return;
    const QModelIndex action = index.sibling(index.row(), CPatternTableModel::kColumnAction);
    switch (enumType) {
    case Quillon::ItemFirstRightPixmapRole:
        emit SignalPattenPlayControl(index, !action.data(Quillon::ItemFirstStateRole).toBool());
        break;
    case Quillon::ItemSecondRightPixmapRole:
        emit SignalPattenRecordControl(index, !action.data(Quillon::ItemSecondStateRole).toBool());
        break;
    case Quillon::ItemThirdRightPixmapRole:
        emit SignalPattenDeleteControl(index);
        break;
    default:
        break;
    }
}

void CPatternTableView::resizeEvent(QResizeEvent *event)
{
    Quillon::CTableView::resizeEvent(event);
    LayoutColumns();
}

void CPatternTableView::showEvent(QShowEvent *event)
{
    Quillon::CTableView::showEvent(event);
    LayoutColumns();
}

} // namespace PreviewPTZControl
