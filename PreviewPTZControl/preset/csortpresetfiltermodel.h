#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/csecondarysortfiltermodel.h"

namespace PreviewPTZControl {

// Proxy between the preset model and its view. The panel sets the name column
// as filter key, case-insensitive, and filters by fixed string.
class PREVIEWPTZCONTROL_EXPORT CSortPresetFilterModel : public Quillon::CSecondarySortFilterModel
{
    Q_OBJECT
public:
    explicit CSortPresetFilterModel(QObject *parent = nullptr);
    ~CSortPresetFilterModel() override;

protected:
    bool filterAcceptsRow(int source_row, const QModelIndex &source_parent) const override;
};

} // namespace PreviewPTZControl
