#include "cliveview.h"

#include "cfisheyeview.h"

#include "ptz_devices/ptzdevicetypes.h"
#include "site_store/csitestore.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QTimer>

#include <cmath>

namespace {
constexpr int kPixelsPerDegree = 8;
constexpr double kTiltTop = 45.0; // degrees shown at the top of the panorama (above the tilt limit: the view's height)
constexpr double kTiltBottom = -90.0; // and at its bottom
constexpr double kFieldOfView = 60.0; // horizontal, at zoom 1
const QColor kBackground(16, 18, 22);
const char kCameraMime[] = "application/x-ptz-camera-id";

QImage BuildPanorama()
{
    const int width = 360 * kPixelsPerDegree;
    const int height = int((kTiltTop - kTiltBottom) * kPixelsPerDegree);
    const int horizon = int(kTiltTop * kPixelsPerDegree);
    QImage image(width, height, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);

    QLinearGradient sky(0, 0, 0, horizon);
    sky.setColorAt(0, QColor(58, 104, 168));
    sky.setColorAt(1, QColor(178, 205, 230));
    p.fillRect(0, 0, width, horizon, sky);
    QLinearGradient ground(0, horizon, 0, height);
    ground.setColorAt(0, QColor(96, 112, 84));
    ground.setColorAt(1, QColor(52, 58, 50));
    p.fillRect(0, horizon, width, height - horizon, ground);

    // Fixed seed: every run shows the same site.
    QRandomGenerator rng(20261122);
    for (int i = 0; i < 70; ++i) {
        const int x = rng.bounded(width);
        const int w = 40 + rng.bounded(140);
        const int h = 60 + rng.bounded(260);
        const QColor c = QColor::fromHsv(200 + rng.bounded(40), 20 + rng.bounded(60), 90 + rng.bounded(120));
        p.fillRect(x, horizon - h, w, h, c);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(250, 236, 150, 170));
        for (int wy = horizon - h + 10; wy < horizon - 14; wy += 22)
            for (int wx = x + 8; wx < x + w - 10; wx += 18)
                if (rng.bounded(3) != 0)
                    p.drawRect(wx, wy, 8, 10);
    }
    for (int i = 0; i < 90; ++i) {
        const int x = rng.bounded(width);
        const int r = 14 + rng.bounded(24);
        p.setBrush(QColor(88, 66, 40));
        p.drawRect(x - 3, horizon - r, 6, r + 6);
        p.setBrush(QColor::fromHsv(95 + rng.bounded(40), 150, 90 + rng.bounded(60)));
        p.drawEllipse(QPoint(x, horizon - r - r / 2), r, r);
    }
    // A road with lane marks gives the downward tilt something to show.
    p.setBrush(QColor(70, 70, 74));
    p.drawRect(0, horizon + 180, width, 160);
    p.setBrush(QColor(235, 235, 220));
    for (int x = 0; x < width; x += 120)
        p.drawRect(x, horizon + 256, 60, 8);
    // Compass marks every 90 degrees, ticks every 10.
    QFont font = p.font();
    font.setPixelSize(44);
    font.setBold(true);
    p.setFont(font);
    const char *names[] = {"N", "E", "S", "W"};
    for (int deg = 0; deg < 360; deg += 10) {
        const int x = deg * kPixelsPerDegree;
        p.setPen(QPen(QColor(255, 255, 255, 150), deg % 90 == 0 ? 3 : 1));
        p.drawLine(x, horizon - 12, x, horizon + 12);
        if (deg % 90 == 0) {
            p.setPen(QColor(255, 255, 255));
            p.drawText(QRect(x - 40, 40, 80, 60), Qt::AlignCenter, QString::fromLatin1(names[deg / 90]));
        }
    }
    return image;
}
} // namespace

CLiveView::CLiveView(unsigned int screen, QWidget *parent)
    : QWidget(parent)
    , m_screen(screen)
{
    setAcceptDrops(true);
    setMinimumSize(160, 90);
    setAttribute(Qt::WA_OpaquePaintEvent);
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, QOverload<>::of(&QWidget::update));
    timer->start(40);
    m_virtual = new zeph_ptz_controller::CVirtualPtzControllor(this);
    connect(m_virtual, &zeph_ptz_controller::CVirtualPtzControllor::SignalDigitalZoomStyleChanged, this,
            QOverload<>::of(&QWidget::update));
}

const QImage &CLiveView::Panorama()
{
    static const QImage panorama = BuildPanorama();
    return panorama;
}

void CLiveView::SetCamera(const QString &cameraId, const QString &name, bool fishEye)
{
    CFishEyeView::SetOpen(this, nullptr, false); // a new picture starts without the fish-eye view
    m_cameraId = cameraId;
    m_name = name;
    m_fishEye = fishEye;
    // Another camera: a patrol over the old one's virtual presets ends, and so does its zoom.
    m_virtual->SetCamera(cameraId);
    if (!m_virtual->IsRunningPatrol())
        m_virtual->SetDigitalZoomStyle(0, -1, -1, -1, -1);
    update();
}

void CLiveView::SetSelected(bool selected)
{
    if (m_selected == selected)
        return;
    m_selected = selected;
    update();
}

void CLiveView::SetPictureAction(int function)
{
    m_action = function;
    m_box = QRect();
    m_dragging = false;
    setCursor(function == 0 ? Qt::ArrowCursor : Qt::CrossCursor);
    update();
}

void CLiveView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), kBackground);
    if (m_cameraId.isEmpty()) {
        painter.setPen(QColor(140, 146, 156));
        // Wrapped within the screen: narrow screens of a nine-screen grid sit side by side.
        painter.drawText(rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("Screen %1: drop a camera here").arg(m_screen + 1));
    } else if (m_fishEye) {
        PaintFishEye(painter, rect());
    } else if (m_virtual->GetDigitalZoomStyle() != 0) {
        // Digital zoom: the part of the picture the virtual preset keeps fills the screen.
        QImage picture(size(), QImage::Format_RGB32);
        QPainter scene(&picture);
        PaintScene(scene, rect(), false);
        scene.end();
        const QRectF zoom = m_virtual->GetDigitalZoomRect();
        const QRectF source(zoom.left() * width(), zoom.top() * height(), zoom.width() * width(),
                            zoom.height() * height());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(rect()), picture, source);
        PaintOverlay(painter, rect());
    } else {
        PaintScene(painter, rect(), true);
    }
    if (m_dragging) {
        painter.setPen(QPen(QColor(255, 210, 80), 2, Qt::DashLine));
        painter.drawRect(m_box.normalized());
    }
    if (m_action != 0) {
        painter.setPen(QColor(255, 210, 80));
        // Wrapped: a nine-screen view is too narrow for the sentence on one line.
        painter.drawText(rect().adjusted(8, 24, -8, -8), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                         m_action == 1 ? tr("3D positioning: drag a box around the target")
                                       : tr("Click the target on the picture"));
    }
    painter.setPen(QPen(m_selected ? QColor(64, 158, 255) : QColor(48, 52, 60), m_selected ? 3 : 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(1, 1, -2, -2));
}

QImage CLiveView::RenderScene(const ptz_devices::DeviceStatus &status, const QSize &size)
{
    QImage picture(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    picture.fill(kBackground);
    const QImage &pano = Panorama();
    double srcW = kFieldOfView / std::max(1.0, status.zoom) * kPixelsPerDegree;
    double srcH = srcW * picture.height() / picture.width();
    // A view taller than the panorama at this zoom shows the panorama's full height instead.
    if (srcH > pano.height()) {
        srcH = pano.height();
        srcW = srcH * picture.width() / picture.height();
    }
    const double cy = (kTiltTop - status.tilt) * kPixelsPerDegree;
    const double top = std::clamp(cy - srcH / 2, 0.0, pano.height() - srcH);
    // Pan wraps at 360 degrees: the crop may start before 0 or end after the seam.
    const double width = pano.width();
    double left = std::fmod(status.pan * kPixelsPerDegree - srcW / 2, width);
    if (left < 0)
        left += width;
    const double scale = picture.width() / srcW;
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, status.zoom < 4);
    for (double start = left, done = 0; done < srcW - 1e-6;) {
        const double piece = std::min(srcW - done, width - start);
        painter.drawImage(QRectF(done * scale, 0, piece * scale, picture.height()), pano,
                          QRectF(start, top, piece, srcH));
        done += piece;
        start = 0;
    }
    painter.end();
    return ApplyLens(picture, status.focus, status.iris);
}

QImage CLiveView::ApplyLens(const QImage &picture, double focus, double iris)
{
    // One-key focus and lens initialisation bring focus to 0.5 (sharp); the picture blurs
    // further from it. Iris 0.5 is the normal exposure.
    QImage out = picture;
    const double blur = std::abs(focus - 0.5) * 2.0; // 0 sharp .. 1 far out
    if (blur > 0.02) {
        const int factor = 1 + int(std::lround(blur * 11));
        const QImage small =
            picture.scaled(std::max(1, picture.width() / factor), std::max(1, picture.height() / factor),
                           Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        out = small.scaled(picture.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    if (std::abs(iris - 0.5) > 0.01) {
        QPainter painter(&out);
        const int alpha = int(std::lround(std::abs(iris - 0.5) * 2.0 * (iris < 0.5 ? 220 : 170)));
        painter.fillRect(out.rect(), iris < 0.5 ? QColor(0, 0, 0, alpha) : QColor(255, 255, 255, alpha));
    }
    return out;
}

void CLiveView::PaintScene(QPainter &painter, const QRect &area, bool overlay)
{
    ptz_devices::DeviceStatus status;
    if (!m_status || !m_status(m_cameraId, status))
        status = ptz_devices::DeviceStatus();
    painter.save();
    painter.drawImage(area.topLeft(), RenderScene(status, area.size()));
    if (status.light)
        painter.fillRect(area, QColor(255, 240, 190, 60));
    if (!status.connected)
        painter.fillRect(area, QColor(0, 0, 0, 160));
    painter.restore();
    if (overlay)
        PaintOverlay(painter, area);
}

QString CLiveView::VirtualPatrolText() const
{
    unsigned int patrol = 0;
    if (!m_virtual->GetRunningState(patrol))
        return QString();
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    const auto record = store ? store->patrol(m_cameraId, int(patrol)) : std::nullopt;
    const int count = record ? record->points.size() : 0;
    return tr("patrol %1 \u00b7 point %2 of %3").arg(patrol).arg(m_virtual->GetPatrolPointIndex() + 1).arg(count);
}

void CLiveView::PaintOverlay(QPainter &painter, const QRect &area)
{
    ptz_devices::DeviceStatus status;
    if (!m_status || !m_status(m_cameraId, status))
        status = ptz_devices::DeviceStatus();
    QStringList running;
    if (status.autoScan)
        running << tr("AUTO-SCAN");
    if (status.runningPatrol > 0)
        running << tr("patrol %1 \u00b7 point %2 of %3")
                       .arg(status.runningPatrol)
                       .arg(status.patrolPoint)
                       .arg(status.patrolPointCount);
    const QString virtual_patrol = VirtualPatrolText();
    if (!virtual_patrol.isEmpty())
        running << virtual_patrol;
    if (status.runningPattern > 0)
        running << tr("pattern %1").arg(status.runningPattern);
    if (m_parkNotice.Update(m_cameraId, status.parkActions))
        running << tr("park action");
    if (status.recordingPattern > 0)
        running << tr("recording pattern %1").arg(status.recordingPattern);
    QStringList aux;
    if (status.light)
        aux << tr("LIGHT");
    if (status.wiper)
        aux << tr("WIPER");
    if (!status.connected)
        aux << tr("DISCONNECTED");

    painter.setPen(Qt::white);
    QFont font = painter.font();
    font.setPixelSize(13);
    painter.setFont(font);
    const QRect text = area.adjusted(8, 6, -8, -6);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, m_name);
    painter.drawText(text, Qt::AlignRight | Qt::AlignTop, aux.join(QLatin1String("  ")));
    painter.drawText(
        text, Qt::AlignLeft | Qt::AlignBottom,
        tr("P %1°  T %2°  Z %3x").arg(status.pan, 0, 'f', 1).arg(status.tilt, 0, 'f', 1).arg(status.zoom, 0, 'f', 1));
    painter.setPen(QColor(255, 210, 80));
    painter.drawText(text, Qt::AlignRight | Qt::AlignBottom, running.join(QLatin1String("  ")));
}

void CLiveView::PaintFishEye(QPainter &painter, const QRect &area)
{
    const int d = std::min(area.width(), area.height()) - 12;
    const QRect circle(area.center().x() - d / 2, area.center().y() - d / 2, d, d);
    QPainterPath clip;
    clip.addEllipse(circle);
    painter.save();
    painter.setClipPath(clip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // The panorama bent into a ring: sky outside, ground towards the centre.
    const QImage &pano = Panorama();
    const int slices = 72;
    for (int i = 0; i < slices; ++i) {
        painter.save();
        painter.translate(circle.center());
        painter.rotate(i * 360.0 / slices);
        const QRectF source(pano.width() * i / slices, 0, pano.width() / slices + 1, pano.height() * 0.6);
        painter.drawImage(QRectF(-d * 0.045, -d / 2.0, d * 0.09, d / 2.0), pano, source);
        painter.restore();
    }
    painter.restore();
    painter.setPen(Qt::white);
    painter.drawText(area.adjusted(8, 6, -8, -6), Qt::AlignLeft | Qt::AlignTop, m_name);
}

void CLiveView::mousePressEvent(QMouseEvent *event)
{
    emit SignalSelected(m_screen);
    if (event->button() == Qt::LeftButton && m_action == 1 && !m_cameraId.isEmpty()) {
        m_boxStart = event->pos();
        m_box = QRect(m_boxStart, m_boxStart);
        m_dragging = true;
    }
    QWidget::mousePressEvent(event);
}

void CLiveView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragging) {
        m_box = QRect(m_boxStart, event->pos());
        update();
    }
    QWidget::mouseMoveEvent(event);
}

void CLiveView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !m_cameraId.isEmpty() && width() > 0 && height() > 0) {
        if (m_action == 1 && m_dragging) {
            m_dragging = false;
            m_box = QRect(m_boxStart, event->pos());
            // Keep the drawing direction: a box drawn right to left asks to zoom out.
            const QRectF box(double(m_box.left()) / width(), double(m_box.top()) / height(),
                             double(m_box.width()) / width(), double(m_box.height()) / height());
            m_box = QRect();
            update();
            if (std::abs(box.width()) > 0.01 && std::abs(box.height()) > 0.01)
                emit SignalBoxDrawn(m_screen, box);
        } else if (m_action == 4 || m_action == 5) {
            emit SignalTargetClicked(m_screen, m_action,
                                     QPointF(double(event->pos().x()) / width(), double(event->pos().y()) / height()));
        }
    }
    QWidget::mouseReleaseEvent(event);
}

void CLiveView::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_cameraId.isEmpty())
        return;
    QMenu menu(this);
    menu.addAction(tr("Close %1").arg(m_name), this, [this] { emit SignalCloseRequested(m_screen); });
    if (m_fishEye)
        menu.addAction(tr("Open fish-eye view"), this, [this] { emit SignalFishEyeRequested(m_screen, true); });
    menu.exec(event->globalPos());
}

void CLiveView::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasFormat(QLatin1String(kCameraMime)) || event->mimeData()->hasText())
        event->acceptProposedAction();
}

void CLiveView::dropEvent(QDropEvent *event)
{
    QString id = QString::fromUtf8(event->mimeData()->data(QLatin1String(kCameraMime)));
    if (id.isEmpty())
        id = event->mimeData()->text();
    if (!id.isEmpty())
        emit SignalCameraDropped(m_screen, id);
    event->acceptProposedAction();
}
