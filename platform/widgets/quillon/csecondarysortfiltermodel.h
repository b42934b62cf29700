#pragma once

#include "quillon/csortfiltermodel.h"

namespace Quillon {

// Sorts by the sort column and breaks ties with a second column (and role),
// so rows that share a primary key keep a stable, meaningful order.
class QUILLON_EXPORT CSecondarySortFilterModel : public CSortFilterModel
{
    Q_OBJECT
public:
    explicit CSecondarySortFilterModel(QObject *parent = nullptr);
    ~CSecondarySortFilterModel() override;

    // column -1 switches the tie-break off.
    void SetSecondarySortColumn(int column, int role = Qt::DisplayRole);
    int GetSecondarySortColumn() const;
    int GetSecondarySortRole() const;

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    int m_secondaryColumn = -1;
    int m_secondaryRole = Qt::DisplayRole;
};

} // namespace Quillon
