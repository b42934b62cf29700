#include "quillon/cabstractitemview.h"

#include "quillon/citemdatarole.h"
#include "quillon/cscrollbardelegate.h"

#include <QHeaderView>
#include <QPainter>

namespace Quillon {

CAbstractItemView::CAbstractItemView(QWidget *parent)
    : QTreeView(parent)
{
    setRootIsDecorated(false);
    setIndentation(0);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setMouseTracking(true);
    header()->setStretchLastSection(false);
    m_scrollBarDelegate = new CScrollBarDelegate(this);
}

CAbstractItemView::~CAbstractItemView() = default;

void CAbstractItemView::setModel(QAbstractItemModel *newModel)
{
    if (QAbstractItemModel *old = model())
        disconnect(old, &QAbstractItemModel::headerDataChanged, this, &CAbstractItemView::OnHeaderDataChanged);
    QTreeView::setModel(newModel);
    if (newModel) {
        connect(newModel, &QAbstractItemModel::headerDataChanged, this, &CAbstractItemView::OnHeaderDataChanged);
        ApplyColumnWidthsFromModel();
    }
}

CScrollBarDelegate *CAbstractItemView::GetScrollBarDelegate() const
{
    return m_scrollBarDelegate;
}

void CAbstractItemView::ApplyColumnWidthsFromModel()
{
    QAbstractItemModel *m = model();
    if (!m)
        return;
    for (int column = 0; column < m->columnCount(rootIndex()); ++column) {
        const QVariant width = m->headerData(column, Qt::Horizontal, ColumnWidthRole);
        if (width.isValid() && width.toInt() >= 0)
            setColumnWidth(column, width.toInt());
    }
}

void CAbstractItemView::SetEmptyViewText(const QString &text)
{
    if (m_emptyViewText == text)
        return;
    m_emptyViewText = text;
    viewport()->update();
}

QString CAbstractItemView::GetEmptyViewText() const
{
    return m_emptyViewText;
}

void CAbstractItemView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (m_emptyViewText.isEmpty())
        return;
    if (model() && model()->rowCount(rootIndex()) > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect(), int(Qt::AlignCenter | Qt::TextWordWrap), m_emptyViewText);
}

void CAbstractItemView::OnHeaderDataChanged(Qt::Orientation orientation, int, int)
{
    if (orientation == Qt::Horizontal)
        ApplyColumnWidthsFromModel();
}

} // namespace Quillon
