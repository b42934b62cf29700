#pragma once

#include "previewptzcontrol_export.h"

#include <QObject>
#include <QPixmap>

namespace PreviewPTZControl {

// The pixmaps of the preset list, rendered once for the panel's device pixel ratio.
class PREVIEWPTZCONTROL_EXPORT CPresetModelIcon
{
public:
    CPresetModelIcon(double device_pixel_ratio, QObject *parent = nullptr, bool white_theme = false);

    // Renders every pixmap at 24 x 24 logical pixels for the ratio given at construction.
    void SetPresetIcons();

    QPixmap GetNotSetPixmap() const { return not_set_pixmap_; }
    // 1 device, 2 fish-eye, 3 virtual; any other value gives the not-set pixmap.
    QPixmap GetPresetTypePixmap(int preset_type) const;
    QPixmap GetStartPixmap() const { return start_pixmap_; }
    QPixmap GetEditPixmap() const { return edit_pixmap_; }
    QPixmap GetDeletePixmap() const { return delete_pixmap_; }
    // Stands in for the edit and delete pixmaps where those actions are not offered.
    QPixmap GetEmptyPixmap() const { return QPixmap(); }

    // Every pixmap above, in one fixed order, so a theme change can swap each for its counterpart.
    QList<QPixmap> AllPixmaps() const;

    double GetDevicePixelRatio() const { return device_pixel_ratio_; }
    bool IsWhiteTheme() const { return white_theme_ != 0; }

private:
    QPixmap not_set_pixmap_;
    QPixmap device_pixmap_;
    QPixmap virtual_pixmap_;
    QPixmap fisheye_pixmap_;
    QPixmap start_pixmap_;
    QPixmap edit_pixmap_;
    QPixmap delete_pixmap_;
    double device_pixel_ratio_ = 1.0;
    quint8 white_theme_ = 0;
};

} // namespace PreviewPTZControl
