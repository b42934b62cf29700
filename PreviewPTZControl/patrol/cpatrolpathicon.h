#pragma once

#include "previewptzcontrol_export.h"

#include <QPixmap>

namespace PreviewPTZControl {

// The action pixmaps of the patrol list (start, pause, edit, delete), rendered once at
// 24 x 24 for the theme given at construction.
class PREVIEWPTZCONTROL_EXPORT CPatrolPathIcon
{
public:
    explicit CPatrolPathIcon(bool white_theme = false);

    QPixmap GetStartPixmap() const { return start_pixmap_; }
    QPixmap GetPausePixmap() const { return pause_pixmap_; }
    QPixmap GetEditPixmap() const { return edit_pixmap_; }
    QPixmap GetDeletePixmap() const { return delete_pixmap_; }
    // A null pixmap: set in an icon role it hides that icon.
    QPixmap GetEmptyPixmap() const { return QPixmap(QString()); }

    bool IsWhiteTheme() const { return white_theme_; }

private:
    QPixmap start_pixmap_;
    QPixmap pause_pixmap_;
    QPixmap edit_pixmap_;
    QPixmap delete_pixmap_;
    bool white_theme_ = false;
};

} // namespace PreviewPTZControl
