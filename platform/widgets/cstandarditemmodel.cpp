#include "quillon/cstandarditemmodel.h"

#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"

namespace Quillon {

CStandardItemModel::CStandardItemModel(QObject *parent)
    : QStandardItemModel(parent)
{
    setItemPrototype(new CStandardItem);
}

CStandardItemModel::CStandardItemModel(int rows, int columns, QObject *parent)
    : QStandardItemModel(parent)
{
    // Prototype first, so the initial cells are created as the library's type.
    setItemPrototype(new CStandardItem);
    setColumnCount(columns);
    setRowCount(rows);
}

CStandardItemModel::~CStandardItemModel() = default;

CStandardItem *CStandardItemModel::GetItem(int row, int column) const
{
    return dynamic_cast<CStandardItem *>(item(row, column));
}

CStandardItem *CStandardItemModel::GetItemFromIndex(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return nullptr;
    return dynamic_cast<CStandardItem *>(itemFromIndex(index));
}

void CStandardItemModel::SetColumnWidth(int column, int width)
{
    setHeaderData(column, Qt::Horizontal, width, ColumnWidthRole);
}

int CStandardItemModel::GetColumnWidth(int column) const
{
    const QVariant v = headerData(column, Qt::Horizontal, ColumnWidthRole);
    return v.isValid() ? v.toInt() : -1;
}

} // namespace Quillon
