#include "cfisheyeview.h"

#include "cliveview.h"

#include "panel/cpreviewptzwnd.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QtMath>

#include <cmath>

namespace {
constexpr int kFishEyeSize = 480;
constexpr int kPanoramaPixelsPerDegree = 8; // as the live view's panorama
constexpr double kPanoramaTiltTop = 45.0;
constexpr double kFieldOfView = 60.0; // across a sub-view at zoom 1
constexpr double kRimTilt = 20.0;     // a 220 degree lens: the rim sees a little above the horizon
constexpr double kLensSpan = 90.0 + kRimTilt;
constexpr int kMaxDewarpWidth = 320; // sub-views are computed small and scaled up
const QRgb kOutside = qRgb(10, 10, 12);

QImage BuildFishEye()
{
    const QImage &pano = CLiveView::Panorama();
    QImage image(kFishEyeSize, kFishEyeSize, QImage::Format_RGB32);
    const double radius = kFishEyeSize / 2.0;
    for (int y = 0; y < kFishEyeSize; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < kFishEyeSize; ++x) {
            const double dx = x + 0.5 - radius;
            const double dy = y + 0.5 - radius;
            const double r = std::hypot(dx, dy);
            if (r > radius) {
                line[x] = kOutside;
                continue;
            }
            // Up in the picture is north (pan 0), pan grows clockwise; distance from the centre is
            // the angle from straight down.
            double pan = qRadiansToDegrees(std::atan2(dx, -dy));
            if (pan < 0)
                pan += 360.0;
            const double tilt = -90.0 + kLensSpan * r / radius;
            const int px = qBound(0, int(pan * kPanoramaPixelsPerDegree), pano.width() - 1);
            const int py = qBound(0, int((kPanoramaTiltTop - tilt) * kPanoramaPixelsPerDegree), pano.height() - 1);
            line[x] = pano.pixel(px, py);
        }
    }
    return image;
}
} // namespace

const QImage &CFishEyeView::FishEyeImage()
{
    static const QImage image = BuildFishEye();
    return image;
}

QImage CFishEyeView::Dewarp(double pan, double tilt, double zoom, const QSize &size)
{
    QImage out(size, QImage::Format_RGB32);
    if (size.isEmpty())
        return out;
    const QImage &fish = FishEyeImage();
    const double radius = fish.width() / 2.0;
    const double p = qDegreesToRadians(pan);
    const double t = qDegreesToRadians(tilt);
    const double focal = (size.width() / 2.0) / std::tan(qDegreesToRadians(kFieldOfView / std::max(1.0, zoom)) / 2);
    // Camera axes in east/north/up coordinates.
    const double fwd[3] = {std::cos(t) * std::sin(p), std::cos(t) * std::cos(p), std::sin(t)};
    const double right[3] = {std::cos(p), -std::sin(p), 0.0};
    const double up[3] = {-std::sin(t) * std::sin(p), -std::sin(t) * std::cos(p), std::cos(t)};
    for (int v = 0; v < size.height(); ++v) {
        auto *line = reinterpret_cast<QRgb *>(out.scanLine(v));
        const double y = size.height() / 2.0 - v - 0.5;
        for (int u = 0; u < size.width(); ++u) {
            const double x = u + 0.5 - size.width() / 2.0;
            const double d[3] = {x * right[0] + y * up[0] + focal * fwd[0], x * right[1] + y * up[1] + focal * fwd[1],
                                 x * right[2] + y * up[2] + focal * fwd[2]};
            const double elevation = qRadiansToDegrees(std::atan2(d[2], std::hypot(d[0], d[1])));
            if (elevation > kRimTilt) { // beyond the rim of the lens
                line[u] = kOutside;
                continue;
            }
            const double azimuth = std::atan2(d[0], d[1]);
            const double r = radius * (elevation + 90.0) / kLensSpan;
            const int fx = qBound(0, int(radius + r * std::sin(azimuth)), fish.width() - 1);
            const int fy = qBound(0, int(radius - r * std::cos(azimuth)), fish.height() - 1);
            line[u] = fish.pixel(fx, fy);
        }
    }
    return out;
}

CFishEyeView::CFishEyeView(CLiveView *view, PreviewPTZControl::CPreviewPTZWnd *panel)
    : QWidget(view)
    , m_panel(panel)
    , m_subViews(kSubViewCount)
{
    setObjectName(QStringLiteral("ptr_fisheye_view_"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setGeometry(view->rect());
    view->installEventFilter(this);

    m_controller = new zeph_ptz_controller::CSimpleFishEyeController(kSubViewCount, this);
    // The sub-views start on the four quarters, a little below the horizon.
    for (int i = kSubViewCount - 1; i >= 0; --i) {
        m_controller->SetSelectedWnd(i);
        m_controller->SetSemisphereFishEyePTZPos(i * 360.0 / kSubViewCount, -15.0, 1.5);
    }
    connect(m_controller, &zeph_ptz_controller::IPTZFishEyeController::SignalFishEyeWndOpen, this, [this](bool open) {
        if (!open)
            Close();
    });
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, QOverload<>::of(&QWidget::update));
    timer->start(40); // the live view's frame rate
}

bool CFishEyeView::SetOpen(CLiveView *view, PreviewPTZControl::CPreviewPTZWnd *panel, bool open)
{
    if (!view)
        return false;
    CFishEyeView *current = Of(view);
    if (!open) {
        if (current)
            current->Close();
        return true;
    }
    if (current)
        return true;
    if (!panel || !view->IsFishEye() || view->CameraId().isEmpty())
        return false;
    auto *fishEye = new CFishEyeView(view, panel);
    panel->SetFishEyeController(fishEye->m_controller);
    fishEye->m_controller->SetFishEyeWndOpen(true);
    if (!panel->IsSoftwarePTZ()) { // the panel has no software controller to steer with
        fishEye->Close();
        return false;
    }
    fishEye->show();
    return true;
}

CFishEyeView *CFishEyeView::Of(const CLiveView *view)
{
    return view ? view->findChild<CFishEyeView *>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

void CFishEyeView::Close()
{
    if (!parentWidget())
        return;
    parentWidget()->removeEventFilter(this);
    hide();
    setParent(nullptr); // no longer found by Of() while the deletion waits
    m_controller->SetFishEyeWndOpen(false);
    deleteLater();
}

int CFishEyeView::SelectedSubView() const
{
    return m_controller->GetSelectedWnd();
}

QRect CFishEyeView::CircleRect() const
{
    const int side = std::max(8, std::min(width() / 2, height()) - 12);
    return QRect(width() / 4 - side / 2, height() / 2 - side / 2, side, side);
}

QRect CFishEyeView::SubViewRect(int index) const
{
    const int gap = 4;
    const int left = width() / 2 + gap;
    const int w = (width() - left - 2 * gap) / 2;
    const int h = (height() - 3 * gap) / 2;
    return QRect(left + (index % 2) * (w + gap), gap + (index / 2) * (h + gap), w, h);
}

QImage CFishEyeView::SubViewImage(int index)
{
    if (index < 0 || index >= m_subViews.size())
        return QImage();
    SubView &sub = m_subViews[index];
    double pan = 0, tilt = 0, zoom = 1;
    m_controller->GetWndPTZPos(index, pan, tilt, zoom);
    QSize size = SubViewRect(index).size();
    if (size.width() > kMaxDewarpWidth)
        size = QSize(kMaxDewarpWidth, size.height() * kMaxDewarpWidth / size.width());
    size = size.expandedTo(QSize(16, 9));
    if (sub.image.isNull() || sub.pan != pan || sub.tilt != tilt || sub.zoom != zoom || sub.size != size) {
        sub.pan = pan;
        sub.tilt = tilt;
        sub.zoom = zoom;
        sub.size = size;
        sub.image = Dewarp(pan, tilt, zoom, size);
    }
    return sub.image;
}

void CFishEyeView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(16, 18, 22));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect circle = CircleRect();
    painter.drawImage(circle, FishEyeImage());
    PaintDirections(painter, circle);

    QFont font = painter.font();
    font.setPixelSize(12);
    painter.setFont(font);
    const int selected = SelectedSubView();
    for (int i = 0; i < kSubViewCount; ++i) {
        const QRect area = SubViewRect(i);
        painter.drawImage(area, SubViewImage(i));
        painter.setPen(QPen(i == selected ? QColor(64, 158, 255) : QColor(60, 64, 72), i == selected ? 3 : 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(area.adjusted(1, 1, -2, -2));
        const SubView &sub = m_subViews.at(i);
        painter.setPen(Qt::white);
        painter.drawText(area.adjusted(6, 4, -6, -4), Qt::AlignLeft | Qt::AlignTop, QString::number(i + 1));
        painter.drawText(
            area.adjusted(6, 4, -6, -4), Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap,
            tr("P %1° T %2° Z %3x").arg(sub.pan, 0, 'f', 1).arg(sub.tilt, 0, 'f', 1).arg(sub.zoom, 0, 'f', 1));
    }
    painter.setPen(Qt::white);
    painter.drawText(rect().adjusted(8, 6, -8, -6), Qt::AlignLeft | Qt::AlignTop, tr("Fish-eye view"));
}

void CFishEyeView::PaintDirections(QPainter &painter, const QRect &circle)
{
    // Where each sub-view looks, marked on the circle; the selected one stands out.
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = circle.width() / 2.0;
    const int selected = SelectedSubView();
    for (int i = 0; i < kSubViewCount; ++i) {
        double pan = 0, tilt = 0, zoom = 1;
        m_controller->GetWndPTZPos(i, pan, tilt, zoom);
        const double r = radius * (tilt + 90.0) / kLensSpan;
        const QPointF at(circle.center().x() + r * std::sin(qDegreesToRadians(pan)),
                         circle.center().y() - r * std::cos(qDegreesToRadians(pan)));
        const bool chosen = i == selected;
        painter.setPen(QPen(chosen ? QColor(64, 158, 255) : QColor(255, 255, 255, 170), chosen ? 3 : 2));
        painter.setBrush(Qt::NoBrush);
        const double mark = std::max(6.0, radius * 0.25 / zoom);
        painter.drawEllipse(at, mark, mark);
        painter.drawText(QRectF(at.x() - 10, at.y() - 10, 20, 20), Qt::AlignCenter, QString::number(i + 1));
    }
}

void CFishEyeView::mousePressEvent(QMouseEvent *event)
{
    if (CLiveView *view = qobject_cast<CLiveView *>(parentWidget()))
        emit view->SignalSelected(view->Screen());
    if (event->button() != Qt::LeftButton)
        return;
    for (int i = 0; i < kSubViewCount; ++i) {
        if (SubViewRect(i).contains(event->pos()))
            m_controller->SetSelectedWnd(i); // the panel hears SignalFishEyeSelectedWndChanged
    }
    if (m_panel)
        m_panel->OnFishEyePlayDisplayWndPress();
    update();
}

void CFishEyeView::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    menu.addAction(tr("Close fish-eye view"), this, [this] { Close(); });
    menu.exec(event->globalPos());
}

bool CFishEyeView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}
