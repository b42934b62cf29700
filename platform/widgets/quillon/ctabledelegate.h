#pragma once

#include "quillon/quillon_export.h"

#include <QStyledItemDelegate>

namespace Quillon {

// Base delegate of the library's item views: item background through the style,
// then the item text (ItemTextRole, else the display text) in ItemTextColorRole.
class QUILLON_EXPORT CTableDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit CTableDelegate(QObject *parent = nullptr);
    ~CTableDelegate() override;

    void SetRowHeight(int height);
    int GetRowHeight() const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    // Background and selection of the cell, through the style.
    void PaintBackground(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    // The item text elided into textRect.
    void PaintText(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index,
                   const QRect &textRect) const;
    // Text area of the cell; subclasses shrink it to make room for their pixmaps.
    virtual QRect TextRect(const QStyleOptionViewItem &option, const QModelIndex &index) const;

private:
    int m_rowHeight = 32;
};

} // namespace Quillon
