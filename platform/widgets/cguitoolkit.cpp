#include "quillon/cguitoolkit.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QScreen>
#include <QSvgRenderer>
#include <QWidget>
#include <QtMath>

#include <atomic>

namespace Quillon {

namespace {
std::atomic<double> g_gifScaleOverride{0.0};

QScreen *ScreenOf(const QWidget *widget)
{
    if (widget) {
        if (QScreen *s = widget->screen())
            return s;
    }
    return QGuiApplication::primaryScreen();
}
} // namespace

QPixmap CGUIToolkit::GetPixmapFromSvg(const QString &path, const QSize &logicalSize, qreal devicePixelRatio)
{
    if (path.isEmpty() || logicalSize.isEmpty())
        return QPixmap();
    const qreal dpr = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    const QString key = QStringLiteral("quillon-svg:%1:%2x%3@%4")
                            .arg(path)
                            .arg(logicalSize.width())
                            .arg(logicalSize.height())
                            .arg(dpr, 0, 'f', 3);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;

    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return QPixmap();

    const QSize physical(qCeil(logicalSize.width() * dpr), qCeil(logicalSize.height() * dpr));
    QImage image(physical, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(physical)));
    }
    pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(dpr);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QPixmap CGUIToolkit::GetPixmapFromSvg(const QString &path, const QSize &logicalSize, const QWidget *widget)
{
    return GetPixmapFromSvg(path, logicalSize, GetDevicePixelRatio(widget));
}

qreal CGUIToolkit::GetDevicePixelRatio(const QWidget *widget)
{
    if (widget)
        return widget->devicePixelRatioF();
    if (QScreen *s = QGuiApplication::primaryScreen())
        return s->devicePixelRatio();
    return qApp ? qApp->devicePixelRatio() : 1.0;
}

qreal CGUIToolkit::GetGifScale(const QWidget *widget)
{
    const double forced = g_gifScaleOverride.load();
    if (forced > 0.0)
        return forced;
    QScreen *screen = ScreenOf(widget);
    if (!screen)
        return 1.0;
    return qMax<qreal>(1.0, screen->logicalDotsPerInch() / 96.0);
}

void CGUIToolkit::SetGifScaleOverride(qreal scale)
{
    g_gifScaleOverride.store(scale > 0.0 ? scale : 0.0);
}

QSize CGUIToolkit::ScaleByGifScale(const QSize &size, const QWidget *widget)
{
    const qreal scale = GetGifScale(widget);
    return QSize(qRound(size.width() * scale), qRound(size.height() * scale));
}

int CGUIToolkit::ScaleByGifScale(int length, const QWidget *widget)
{
    return qRound(length * GetGifScale(widget));
}

} // namespace Quillon
