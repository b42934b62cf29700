#pragma once

#include "quillon/quillon_export.h"

#include <QStandardItemModel>

namespace Quillon {

class CStandardItem;

// QStandardItemModel whose items are CStandardItem, also those it creates itself.
class QUILLON_EXPORT CStandardItemModel : public QStandardItemModel
{
    Q_OBJECT
public:
    explicit CStandardItemModel(QObject *parent = nullptr);
    CStandardItemModel(int rows, int columns, QObject *parent = nullptr);
    ~CStandardItemModel() override;

    // The item at (row, column) as the library's type; nullptr when missing or foreign.
    CStandardItem *GetItem(int row, int column = 0) const;
    CStandardItem *GetItemFromIndex(const QModelIndex &index) const;

    // Header width read by the library's views (ColumnWidthRole).
    void SetColumnWidth(int column, int width);
    int GetColumnWidth(int column) const;
};

} // namespace Quillon
