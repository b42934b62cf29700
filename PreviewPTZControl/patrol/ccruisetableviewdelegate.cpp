#include "patrol/ccruisetableviewdelegate.h"

#include "quillon/citemdatarole.h"

#include <QPainter>

namespace PreviewPTZControl {

CCruiseTableViewDelegate::CCruiseTableViewDelegate(QObject *parent)
    : Quillon::CTreeViewWithRightPixmapDelegate(parent)
{
}

CCruiseTableViewDelegate::~CCruiseTableViewDelegate() = default;

void CCruiseTableViewDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    Quillon::CTreeViewWithRightPixmapDelegate::paint(painter, option, index);
    if (index.column() != 0 || !index.data(Quillon::ItemRunningRole).toBool())
        return;
    const QColor red(250, 50, 57, 255);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(red);
    painter->setBrush(red);
    painter->drawEllipse(QPointF(option.rect.left() + 10, option.rect.top() + option.rect.height() / 2), 1.5, 1.5);
    painter->restore();
}

} // namespace PreviewPTZControl
