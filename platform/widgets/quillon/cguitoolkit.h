#pragma once

#include "quillon/quillon_export.h"

#include <QPixmap>
#include <QSize>
#include <QString>

class QWidget;

namespace Quillon {

// Rendering helpers shared by the library's widgets.
class QUILLON_EXPORT CGUIToolkit
{
public:
    // Renders an SVG (file or resource) at a logical size for a device pixel
    // ratio: the pixmap has size * ratio physical pixels and carries the ratio,
    // so it is drawn crisp at the logical size. Results are cached; a missing or
    // invalid SVG gives a null pixmap.
    static QPixmap GetPixmapFromSvg(const QString &path, const QSize &logicalSize, qreal devicePixelRatio);
    // Same, for the ratio of the widget's screen (the application's without a widget).
    static QPixmap GetPixmapFromSvg(const QString &path, const QSize &logicalSize, const QWidget *widget);

    static qreal GetDevicePixelRatio(const QWidget *widget = nullptr);

    // Scale factor for fixed-size graphic areas (animations, zoom strips): the
    // screen's logical DPI over 96, never below 1. A host may force a value
    // (0 or less returns to the screen's).
    static qreal GetGifScale(const QWidget *widget = nullptr);
    static void SetGifScaleOverride(qreal scale);
    static QSize ScaleByGifScale(const QSize &size, const QWidget *widget = nullptr);
    static int ScaleByGifScale(int length, const QWidget *widget = nullptr);
};

} // namespace Quillon
