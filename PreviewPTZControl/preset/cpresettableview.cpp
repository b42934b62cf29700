#include "preset/cpresettableview.h"

#include "boundary/rowlistview_p.h"

#include "preset/cpresettableviewdelegate.h"

#include "quillon/cguitoolkit.h"
#include "quillon/cscrollbar.h"
#include "quillon/cscrollbardelegate.h"

#include <QCursor>
#include <QHeaderView>
#include <QStyle>

namespace PreviewPTZControl {

namespace {
constexpr int kTypeColumnWidth = 26;

} // namespace

CPresetTableView::CPresetTableView(QWidget *parent)
    : Quillon::CTableView(parent)
{
    RowListView::SetUp(this);
    header()->setMinimumSectionSize(24);
    setItemDelegate(new CPresetTableViewDelegate(this));
    connect(this, &Quillon::CTableView::signalClickedPixmap, this, &CPresetTableView::OnTableViewClicked);
}

CPresetTableView::~CPresetTableView() = default;

int CPresetTableView::ActionColumnWidth(double device_pixel_ratio)
{
    int width = 120;
    if (device_pixel_ratio >= 1.24)
        width = 130;
    if (device_pixel_ratio >= 1.49)
        width = 145;
    if (device_pixel_ratio >= 1.74)
        width = 160;
    if (device_pixel_ratio >= 1.99)
        width = 180;
    return width;
}

void CPresetTableView::SetDevicePixelRatioOverride(double ratio)
{
    dpr_override_ = ratio;
    LayoutColumns();
}

double CPresetTableView::DevicePixelRatio() const
{
    return dpr_override_ > 0.0 ? dpr_override_ : devicePixelRatioF();
}

void CPresetTableView::LayoutColumns()
{
    if (!model() || model()->columnCount() != 3)
        return;
    const int action_width = ActionColumnWidth(DevicePixelRatio());
    setColumnWidth(0, kTypeColumnWidth);
    setColumnWidth(2, action_width);
    setColumnWidth(1, viewport()->width() - action_width - kTypeColumnWidth);
}

void CPresetTableView::SetWhiteTheme(bool white)
{
    if (white) {
        setAlternatingRowColors(true);
        setSelectionMode(QAbstractItemView::NoSelection);
        return;
    }
    setAlternatingRowColors(false);
    RowListView::UseDarkScrollBars(this);
}

void CPresetTableView::OnTableViewClicked(const QModelIndex &index, Quillon::CItemDataRole enumTypeRole)
{
    if (!isEnabled() || !index.isValid() || enumTypeRole == Quillon::ItemInertPixmapRole)
        return;
    switch (enumTypeRole) {
    case Quillon::ItemFirstRightPixmapRole:
        emit SignalPlayPreset(index);
        break;
    case Quillon::ItemSecondRightPixmapRole:
        emit SignalEditPreset(index);
        break;
    case Quillon::ItemThirdRightPixmapRole:
        emit SignalDeletePreset(index);
        break;
    default:
        break;
    }
}

void CPresetTableView::mousePressEvent(QMouseEvent *event)
{
    // The cursor position is used as reported, in screen coordinates; presses
    // away from any row at that point clear the selection.
    if (!indexAt(QCursor::pos()).isValid())
        clearSelection();
    Quillon::CTableView::mousePressEvent(event);
}

void CPresetTableView::resizeEvent(QResizeEvent *event)
{
    Quillon::CTableView::resizeEvent(event);
    LayoutColumns();
}

void CPresetTableView::showEvent(QShowEvent *event)
{
    Quillon::CTableView::showEvent(event);
    LayoutColumns();
    // Warms the renderer's cache for the edit image at this ratio.
    Quillon::CGUIToolkit::GetPixmapFromSvg(QStringLiteral(":/images/common_edit.svg"), QSize(24, 24),
                                           DevicePixelRatio());
}

} // namespace PreviewPTZControl
