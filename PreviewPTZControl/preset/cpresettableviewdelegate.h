#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/ctreeviewwithrightpixmapdelegate.h"

namespace PreviewPTZControl {

// Paints the base cell with its action pixmaps, then the type pixmap of column 0.
class PREVIEWPTZCONTROL_EXPORT CPresetTableViewDelegate : public Quillon::CTreeViewWithRightPixmapDelegate
{
    Q_OBJECT
public:
    explicit CPresetTableViewDelegate(QObject *parent = nullptr);
    ~CPresetTableViewDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace PreviewPTZControl
