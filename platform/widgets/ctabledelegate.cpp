#include "quillon/ctabledelegate.h"

#include "quillon/citemdatarole.h"

#include <QApplication>
#include <QPainter>

namespace Quillon {

namespace {
constexpr int kTextPadding = 8;
// Rows that carry a running mark leave room for the mark before the text.
constexpr int kRunningMarkIndent = 20;
} // namespace

CTableDelegate::CTableDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

CTableDelegate::~CTableDelegate() = default;

void CTableDelegate::SetRowHeight(int height)
{
    m_rowHeight = qMax(0, height);
}

int CTableDelegate::GetRowHeight() const
{
    return m_rowHeight;
}

void CTableDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    PaintBackground(painter, option, index);
    PaintText(painter, option, index, TextRect(option, index));
}

QSize CTableDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), m_rowHeight));
    return size;
}

void CTableDelegate::PaintBackground(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    const QWidget *widget = opt.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &opt, painter, widget);
}

void CTableDelegate::PaintText(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index,
                               const QRect &textRect) const
{
    const QVariant itemText = index.data(ItemTextRole);
    const QString text = itemText.isValid() ? itemText.toString() : index.data(Qt::DisplayRole).toString();
    if (text.isEmpty() || !textRect.isValid())
        return;

    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);

    QColor color;
    const QVariant colorData = index.data(ItemTextColorRole);
    if (colorData.canConvert<QColor>())
        color = colorData.value<QColor>();
    if (!color.isValid()) {
        const QPalette::ColorGroup group = (opt.state & QStyle::State_Enabled) ? QPalette::Normal : QPalette::Disabled;
        color =
            opt.palette.color(group, (opt.state & QStyle::State_Selected) ? QPalette::HighlightedText : QPalette::Text);
    }

    painter->save();
    painter->setFont(opt.font);
    painter->setPen(color);
    const QString elided = opt.fontMetrics.elidedText(text, Qt::ElideRight, textRect.width());
    painter->drawText(textRect, int(Qt::AlignLeft | Qt::AlignVCenter), elided);
    painter->restore();
}

QRect CTableDelegate::TextRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int indent = index.data(ItemRunningRole).isValid() ? kRunningMarkIndent : kTextPadding;
    return option.rect.adjusted(indent, 0, -kTextPadding, 0);
}

} // namespace Quillon
