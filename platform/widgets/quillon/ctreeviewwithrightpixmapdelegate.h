#pragma once

#include "quillon/citemdatarole.h"
#include "quillon/ctabledelegate.h"

#include <QPair>
#include <QRect>
#include <QSize>
#include <QVector>

namespace Quillon {

// Delegate that paints up to three action pixmaps at the right edge of a cell
// (ItemFirst/Second/ThirdRightPixmapRole) and shows their tips on hover.
// Each of the three has a fixed slot, so pixmaps line up from row to row; a
// null pixmap leaves its slot empty and cannot be clicked.
class QUILLON_EXPORT CTreeViewWithRightPixmapDelegate : public CTableDelegate
{
    Q_OBJECT
public:
    using PixmapRect = QPair<CItemDataRole, QRect>;

    explicit CTreeViewWithRightPixmapDelegate(QObject *parent = nullptr);
    ~CTreeViewWithRightPixmapDelegate() override;

    // Slot geometry, in logical pixels.
    void SetPixmapSlotSize(const QSize &size);
    QSize GetPixmapSlotSize() const;
    void SetPixmapSpacing(int spacing);
    int GetPixmapSpacing() const;
    void SetRightMargin(int margin);
    int GetRightMargin() const;

    // Rectangles of the pixmaps the index shows inside cellRect, left to right.
    QVector<PixmapRect> RightPixmapRects(const QRect &cellRect, const QModelIndex &index) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

protected:
    QRect TextRect(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void PaintRightPixmaps(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;

private:
    QRect SlotRect(const QRect &cellRect, int slot) const;

    QSize m_slotSize{24, 24};
    int m_spacing = 8;
    int m_rightMargin = 8;
};

} // namespace Quillon
