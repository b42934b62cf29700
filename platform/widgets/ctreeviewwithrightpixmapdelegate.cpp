#include "quillon/ctreeviewwithrightpixmapdelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QPixmap>
#include <QToolTip>

namespace Quillon {

namespace {
constexpr CItemDataRole kPixmapRoles[3] = {ItemFirstRightPixmapRole, ItemSecondRightPixmapRole,
                                           ItemThirdRightPixmapRole};

QPixmap PixmapOf(const QModelIndex &index, int role)
{
    const QVariant v = index.data(role);
    return v.canConvert<QPixmap>() ? v.value<QPixmap>() : QPixmap();
}
} // namespace

CTreeViewWithRightPixmapDelegate::CTreeViewWithRightPixmapDelegate(QObject *parent)
    : CTableDelegate(parent)
{
}

CTreeViewWithRightPixmapDelegate::~CTreeViewWithRightPixmapDelegate() = default;

void CTreeViewWithRightPixmapDelegate::SetPixmapSlotSize(const QSize &size)
{
    m_slotSize = size;
}

QSize CTreeViewWithRightPixmapDelegate::GetPixmapSlotSize() const
{
    return m_slotSize;
}

void CTreeViewWithRightPixmapDelegate::SetPixmapSpacing(int spacing)
{
    m_spacing = qMax(0, spacing);
}

int CTreeViewWithRightPixmapDelegate::GetPixmapSpacing() const
{
    return m_spacing;
}

void CTreeViewWithRightPixmapDelegate::SetRightMargin(int margin)
{
    m_rightMargin = qMax(0, margin);
}

int CTreeViewWithRightPixmapDelegate::GetRightMargin() const
{
    return m_rightMargin;
}

QRect CTreeViewWithRightPixmapDelegate::SlotRect(const QRect &cellRect, int slot) const
{
    // Slot 2 sits at the right margin, the others step leftwards from it.
    const int right = cellRect.right() - m_rightMargin - (2 - slot) * (m_slotSize.width() + m_spacing);
    const int top = cellRect.top() + (cellRect.height() - m_slotSize.height()) / 2;
    return QRect(right - m_slotSize.width() + 1, top, m_slotSize.width(), m_slotSize.height());
}

QVector<CTreeViewWithRightPixmapDelegate::PixmapRect>
CTreeViewWithRightPixmapDelegate::RightPixmapRects(const QRect &cellRect, const QModelIndex &index) const
{
    QVector<PixmapRect> rects;
    if (!index.isValid())
        return rects;
    for (int slot = 0; slot < 3; ++slot) {
        if (PixmapOf(index, kPixmapRoles[slot]).isNull())
            continue;
        const QRect r = SlotRect(cellRect, slot);
        // A slot pushed out of a narrow cell is neither drawn nor clickable.
        if (r.left() < cellRect.left())
            continue;
        rects.append(qMakePair(kPixmapRoles[slot], r));
    }
    return rects;
}

void CTreeViewWithRightPixmapDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                             const QModelIndex &index) const
{
    CTableDelegate::paint(painter, option, index);
    PaintRightPixmaps(painter, option, index);
}

void CTreeViewWithRightPixmapDelegate::PaintRightPixmaps(QPainter *painter, const QStyleOptionViewItem &option,
                                                         const QModelIndex &index) const
{
    const auto rects = RightPixmapRects(option.rect, index);
    if (rects.isEmpty())
        return;
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    if (!(option.state & QStyle::State_Enabled) || !(index.flags() & Qt::ItemIsEnabled))
        painter->setOpacity(0.4);
    for (const auto &pr : rects) {
        const QPixmap pm = PixmapOf(index, pr.first);
        QSizeF logical = QSizeF(pm.size()) / pm.devicePixelRatioF();
        logical.scale(logical.boundedTo(QSizeF(pr.second.size())), Qt::KeepAspectRatio);
        QRectF target(QPointF(0, 0), logical);
        target.moveCenter(QRectF(pr.second).center());
        painter->drawPixmap(target, pm, QRectF(pm.rect()));
    }
    painter->restore();
}

QRect CTreeViewWithRightPixmapDelegate::TextRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QRect r = CTableDelegate::TextRect(option, index);
    const auto rects = RightPixmapRects(option.rect, index);
    if (!rects.isEmpty())
        r.setRight(qMin(r.right(), rects.first().second.left() - m_spacing));
    return r;
}

bool CTreeViewWithRightPixmapDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                                                 const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event && event->type() == QEvent::ToolTip) {
        for (const auto &pr : RightPixmapRects(option.rect, index)) {
            if (!pr.second.contains(event->pos()))
                continue;
            const QString tip = index.data(RightPixmapTipRole(pr.first)).toString();
            if (tip.isEmpty())
                break;
            QToolTip::showText(event->globalPos(), tip, view ? view->viewport() : nullptr, pr.second);
            return true;
        }
    }
    return CTableDelegate::helpEvent(event, view, option, index);
}

} // namespace Quillon
