#include "pattern/cpatterntableviewdelegate.h"

#include "pattern/cpatterntablemodel.h"

#include "quillon/citemdatarole.h"

#include <QPainter>
#include <QPainterPath>

namespace PreviewPTZControl {

namespace {
const QColor kRecordingMark(0xF2, 0x5A, 0x5A);
const QColor kPlayingMark(0x3D, 0x8B, 0xFF);
constexpr qreal kMarkSize = 8.0;
constexpr qreal kMarkLeft = 7.0;
} // namespace

CPatternTableViewDelegate::CPatternTableViewDelegate(QObject *parent)
    : Quillon::CTreeViewWithRightPixmapDelegate(parent)
{
}

CPatternTableViewDelegate::~CPatternTableViewDelegate() = default;

void CPatternTableViewDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                      const QModelIndex &index) const
{
    Quillon::CTreeViewWithRightPixmapDelegate::paint(painter, option, index);
    if (index.column() != CPatternTableModel::kColumnName)
        return;
    const QModelIndex action = index.sibling(index.row(), CPatternTableModel::kColumnAction);
    const bool recording = action.data(Quillon::ItemSecondStateRole).toBool();
    const bool playing = action.data(Quillon::ItemFirstStateRole).toBool();
    if (!recording && !playing)
        return;
    const QRectF mark(option.rect.left() + kMarkLeft, option.rect.center().y() - kMarkSize / 2 + 1, kMarkSize,
                      kMarkSize);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    if (recording) {
        painter->setBrush(kRecordingMark);
        painter->drawEllipse(mark);
    } else {
        QPainterPath triangle;
        triangle.moveTo(mark.topLeft());
        triangle.lineTo(mark.right(), mark.center().y());
        triangle.lineTo(mark.bottomLeft());
        triangle.closeSubpath();
        painter->setBrush(kPlayingMark);
        painter->drawPath(triangle);
    }
    painter->restore();
}

} // namespace PreviewPTZControl
