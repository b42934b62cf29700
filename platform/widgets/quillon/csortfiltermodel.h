#pragma once

#include "quillon/quillon_export.h"

#include <QSortFilterProxyModel>

namespace Quillon {

// Sort/filter proxy of the library's lists. Texts sort in natural order,
// case-insensitively, so "Preset2" comes before "Preset10"; other values sort as
// QSortFilterProxyModel sorts them.
class QUILLON_EXPORT CSortFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit CSortFilterModel(QObject *parent = nullptr);
    ~CSortFilterModel() override;

    // <0, 0, >0 like strcmp; digit runs compare by value.
    static int NaturalCompare(const QString &left, const QString &right);

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
    // Three-way comparison of two values of the sort role.
    int CompareValues(const QVariant &left, const QVariant &right) const;
};

} // namespace Quillon
