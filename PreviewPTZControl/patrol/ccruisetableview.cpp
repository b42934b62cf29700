#include "patrol/ccruisetableview.h"

#include "boundary/rowlistview_p.h"

#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableviewdelegate.h"
#include "preset/cpresettableview.h"

#include "quillon/cscrollbar.h"
#include "quillon/cscrollbardelegate.h"
#include "tarn/base/logging.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QStyle>

namespace PreviewPTZControl {

CCruiseTableView::CCruiseTableView(QWidget *parent)
    : Quillon::CTableView(parent)
{
    RowListView::SetUp(this);
    setItemDelegate(new CCruiseTableViewDelegate(this));
    connect(this, &Quillon::CTableView::signalClickedPixmap, this, &CCruiseTableView::OnTableViewClicked);
}

CCruiseTableView::~CCruiseTableView() = default;

void CCruiseTableView::SetWhiteTheme(bool white)
{
    if (white) {
        setAlternatingRowColors(true);
        setSelectionMode(QAbstractItemView::NoSelection);
        return;
    }
    setAlternatingRowColors(false);
    RowListView::UseDarkScrollBars(this);
}

void CCruiseTableView::SetDevicePixelRatioOverride(double ratio)
{
    dpr_override_ = ratio;
    LayoutColumns();
}

double CCruiseTableView::DevicePixelRatio() const
{
    return dpr_override_ > 0.0 ? dpr_override_ : devicePixelRatioF();
}

void CCruiseTableView::LayoutColumns()
{
    if (!model() || model()->columnCount() != CCruiseTableModel::kColumnCount)
        return;
    const int action_width = CPresetTableView::ActionColumnWidth(DevicePixelRatio());
    const int name_width = viewport()->width() - action_width;
    setColumnWidth(CCruiseTableModel::kColumnAction, action_width);
    setColumnWidth(CCruiseTableModel::kColumnName, name_width);
    ZEPH_LOG_INFO("Cruise width is %d, %d", action_width, name_width);
}

void CCruiseTableView::OnTableViewClicked(const QModelIndex &index, Quillon::CItemDataRole enumTypeRole)
{
    if (!index.isValid() || enumTypeRole == Quillon::ItemInertPixmapRole)
        return;
    switch (enumTypeRole) {
    case Quillon::ItemFirstRightPixmapRole:
        emit SignalPatrolPlayControl(index, !index.data(CCruiseTableModel::PatrolRunningRole).toBool());
        break;
    case Quillon::ItemSecondRightPixmapRole:
        emit SignalPatrolEdit(index);
        break;
    case Quillon::ItemThirdRightPixmapRole:
        emit SignalPatrolDelete(index);
        break;
    default:
        break;
    }
}

void CCruiseTableView::resizeEvent(QResizeEvent *event)
{
    LayoutColumns();
    Quillon::CTableView::resizeEvent(event);
}

void CCruiseTableView::showEvent(QShowEvent *event)
{
    Quillon::CTableView::showEvent(event);
    LayoutColumns();
}

void CCruiseTableView::mousePressEvent(QMouseEvent *event)
{
    if (!indexAt(event->pos()).isValid())
        clearSelection();
    Quillon::CTableView::mousePressEvent(event);
}

} // namespace PreviewPTZControl
