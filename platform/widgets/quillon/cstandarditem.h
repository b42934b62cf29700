#pragma once

#include "quillon/quillon_export.h"

#include <QStandardItem>

namespace Quillon {

// The item type of the library's models. Models built on CStandardItemModel
// create this type, so views may rely on the cast succeeding.
class QUILLON_EXPORT CStandardItem : public QStandardItem
{
public:
    enum { Type = QStandardItem::UserType + 361 };

    CStandardItem();
    explicit CStandardItem(const QString &text);
    CStandardItem(const QIcon &icon, const QString &text);
    ~CStandardItem() override;

    int type() const override;
    QStandardItem *clone() const override;

    // Sets the display text and the painted text (ItemTextRole) together.
    void SetItemText(const QString &text);
    QString GetItemText() const;

    // Enable switch; a disabled item is painted dimmed and its pixmaps do not react.
    void SetItemEnabled(bool enabled);
    bool IsItemEnabled() const;
};

} // namespace Quillon
