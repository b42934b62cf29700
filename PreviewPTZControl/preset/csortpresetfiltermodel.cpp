#include "preset/csortpresetfiltermodel.h"

namespace PreviewPTZControl {

CSortPresetFilterModel::CSortPresetFilterModel(QObject *parent)
    : Quillon::CSecondarySortFilterModel(parent)
{
}

CSortPresetFilterModel::~CSortPresetFilterModel() = default;

bool CSortPresetFilterModel::filterAcceptsRow(int source_row, const QModelIndex &source_parent) const
{
    return QSortFilterProxyModel::filterAcceptsRow(source_row, source_parent);
}

} // namespace PreviewPTZControl
