#pragma once

#include "previewptzcontrol_export.h"

#include <QPixmap>

namespace PreviewPTZControl {

// The action pixmaps of the pattern list for one theme, rendered once for the panel's
// device pixel ratio.
class PREVIEWPTZCONTROL_EXPORT CPatternIcon
{
public:
    explicit CPatternIcon(double device_pixel_ratio, bool white_theme = false);

    // Renders the five pixmaps again, from the white theme's images when asked.
    void SetPatternIcons(bool white_theme);

    QPixmap GetPlayPixmap() const { return play_pixmap_; }
    QPixmap GetStopPlayPixmap() const { return stop_play_pixmap_; }
    QPixmap GetRecordPixmap() const { return record_pixmap_; }
    QPixmap GetStopRecordPixmap() const { return stop_record_pixmap_; }
    QPixmap GetDeletePixmap() const { return delete_pixmap_; }
    // Stands in for an action the row does not offer.
    QPixmap GetEmptyPixmap() const { return QPixmap(); }

    double GetDevicePixelRatio() const { return device_pixel_ratio_; }
    bool IsWhiteTheme() const { return white_theme_; }

private:
    QPixmap play_pixmap_;
    QPixmap stop_play_pixmap_;
    QPixmap record_pixmap_;
    QPixmap stop_record_pixmap_;
    QPixmap delete_pixmap_;
    double device_pixel_ratio_ = 1.0;
    bool white_theme_ = false;
};

} // namespace PreviewPTZControl
