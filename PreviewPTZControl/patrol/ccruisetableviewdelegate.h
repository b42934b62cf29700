#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/ctreeviewwithrightpixmapdelegate.h"

namespace PreviewPTZControl {

// Paints a patrol row as the library does and puts a red dot before the name of the patrol
// that runs.
class PREVIEWPTZCONTROL_EXPORT CCruiseTableViewDelegate : public Quillon::CTreeViewWithRightPixmapDelegate
{
    Q_OBJECT
public:
    explicit CCruiseTableViewDelegate(QObject *parent = nullptr);
    ~CCruiseTableViewDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace PreviewPTZControl
