#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/ctreeviewwithrightpixmapdelegate.h"

namespace PreviewPTZControl {

// Paints the base cell with its action pixmaps and, before the name of a pattern being recorded
// or played, a mark that tells the two apart at a glance: a red dot while recording, a small
// play triangle while playing.
class PREVIEWPTZCONTROL_EXPORT CPatternTableViewDelegate : public Quillon::CTreeViewWithRightPixmapDelegate
{
    Q_OBJECT
public:
    explicit CPatternTableViewDelegate(QObject *parent = nullptr);
    ~CPatternTableViewDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace PreviewPTZControl
