#include "quillon/ctableview.h"

#include "quillon/ctreeviewwithrightpixmapdelegate.h"

#include <QMouseEvent>

namespace Quillon {

CTableView::CTableView(QWidget *parent)
    : CAbstractItemView(parent)
{
    qRegisterMetaType<Quillon::CItemDataRole>("Quillon::CItemDataRole");
    m_defaultDelegate = new CTreeViewWithRightPixmapDelegate(this);
    setItemDelegate(m_defaultDelegate);
}

CTableView::~CTableView() = default;

const CTreeViewWithRightPixmapDelegate *CTableView::PixmapDelegate(const QModelIndex &index) const
{
    if (auto *d = qobject_cast<const CTreeViewWithRightPixmapDelegate *>(itemDelegate(index)))
        return d;
    // A foreign delegate: hit test with the library's default geometry.
    return m_defaultDelegate;
}

bool CTableView::PixmapAt(const QPoint &viewportPos, QModelIndex *index, CItemDataRole *role) const
{
    const QModelIndex hit = indexAt(viewportPos);
    if (!hit.isValid())
        return false;
    const auto rects = PixmapDelegate(hit)->RightPixmapRects(visualRect(hit), hit);
    for (const auto &pr : rects) {
        if (pr.second.contains(viewportPos)) {
            if (index)
                *index = hit;
            if (role)
                *role = pr.first;
            return true;
        }
    }
    return false;
}

QString CTableView::PixmapToolTipAt(const QPoint &viewportPos) const
{
    QModelIndex index;
    CItemDataRole role;
    if (!PixmapAt(viewportPos, &index, &role))
        return QString();
    return index.data(RightPixmapTipRole(role)).toString();
}

QRect CTableView::PixmapRect(const QModelIndex &index, CItemDataRole role) const
{
    if (!index.isValid())
        return QRect();
    for (const auto &pr : PixmapDelegate(index)->RightPixmapRects(visualRect(index), index)) {
        if (pr.first == role)
            return pr.second;
    }
    return QRect();
}

void CTableView::mousePressEvent(QMouseEvent *event)
{
    m_pressedIndex = QPersistentModelIndex();
    m_pressedRole = -1;
    if (event->button() == Qt::LeftButton) {
        QModelIndex index;
        CItemDataRole role;
        if (PixmapAt(event->pos(), &index, &role) && (index.flags() & Qt::ItemIsEnabled)) {
            m_pressedIndex = index;
            m_pressedRole = role;
        }
    }
    CAbstractItemView::mousePressEvent(event);
}

void CTableView::mouseReleaseEvent(QMouseEvent *event)
{
    QModelIndex index;
    CItemDataRole role = ItemFirstRightPixmapRole;
    const bool clicked = event->button() == Qt::LeftButton && m_pressedIndex.isValid()
                         && PixmapAt(event->pos(), &index, &role) && index == m_pressedIndex && role == m_pressedRole
                         && (index.flags() & Qt::ItemIsEnabled);
    m_pressedIndex = QPersistentModelIndex();
    m_pressedRole = -1;
    CAbstractItemView::mouseReleaseEvent(event);
    if (clicked)
        emit signalClickedPixmap(index, role);
}

} // namespace Quillon
