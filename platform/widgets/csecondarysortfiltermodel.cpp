#include "quillon/csecondarysortfiltermodel.h"

namespace Quillon {

CSecondarySortFilterModel::CSecondarySortFilterModel(QObject *parent)
    : CSortFilterModel(parent)
{
}

CSecondarySortFilterModel::~CSecondarySortFilterModel() = default;

void CSecondarySortFilterModel::SetSecondarySortColumn(int column, int role)
{
    if (m_secondaryColumn == column && m_secondaryRole == role)
        return;
    m_secondaryColumn = column;
    m_secondaryRole = role;
    invalidate();
}

int CSecondarySortFilterModel::GetSecondarySortColumn() const
{
    return m_secondaryColumn;
}

int CSecondarySortFilterModel::GetSecondarySortRole() const
{
    return m_secondaryRole;
}

bool CSecondarySortFilterModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const int primary = CompareValues(left.data(sortRole()), right.data(sortRole()));
    if (primary != 0 || m_secondaryColumn < 0)
        return primary < 0;
    const QModelIndex l = left.sibling(left.row(), m_secondaryColumn);
    const QModelIndex r = right.sibling(right.row(), m_secondaryColumn);
    if (!l.isValid() || !r.isValid())
        return false;
    // The tie-break follows the sort direction too, so both keys read the same way.
    return CompareValues(l.data(m_secondaryRole), r.data(m_secondaryRole)) < 0;
}

} // namespace Quillon
