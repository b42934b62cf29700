#include "preset/cpresettableviewdelegate.h"

#include "quillon/citemdatarole.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QStyle>

namespace PreviewPTZControl {

CPresetTableViewDelegate::CPresetTableViewDelegate(QObject *parent)
    : Quillon::CTreeViewWithRightPixmapDelegate(parent)
{
}

CPresetTableViewDelegate::~CPresetTableViewDelegate() = default;

void CPresetTableViewDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    Quillon::CTreeViewWithRightPixmapDelegate::paint(painter, option, index);
    if (index.column() != 0)
        return;
    const QPixmap pixmap = index.data(Quillon::ItemLeadingPixmapRole).value<QPixmap>();
    if (pixmap.isNull())
        return;
    QStyleOptionViewItem cell(option);
    QApplication::style()->drawItemPixmap(painter, cell.rect, Qt::AlignRight | Qt::AlignVCenter, pixmap);
}

} // namespace PreviewPTZControl
