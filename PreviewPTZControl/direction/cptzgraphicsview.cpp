#include "direction/cptzgraphicsview.h"

#include "direction/cptzcloud.h"

#include <QEnterEvent>
#include <QMouseEvent>

namespace PreviewPTZControl {

CPTZGraphicsView::CPTZGraphicsView(QGraphicsScene *scene, QWidget *parent)
    : QGraphicsView(scene, parent)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // No frame, so viewport coordinates are pad coordinates; no fill, so the pad shows through.
    setFrameShape(QFrame::NoFrame);
    setBackgroundBrush(Qt::NoBrush);
    setAttribute(Qt::WA_TranslucentBackground);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_TranslucentBackground);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    viewport()->installEventFilter(this);
}

CPTZGraphicsView::~CPTZGraphicsView() = default;

bool CPTZGraphicsView::eventFilter(QObject *watched, QEvent *event)
{
    auto *cloud = qobject_cast<CPTZCloud *>(parentWidget());
    if (!cloud || !event) {
        return false;
    }
    if (watched == viewport()) {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            cloud->HandleMousePress(static_cast<QMouseEvent *>(event));
            break;
        case QEvent::MouseButtonRelease:
            cloud->HandleMouseRelease(static_cast<QMouseEvent *>(event));
            break;
        case QEvent::Enter:
            cloud->HandleEnter(event);
            break;
        case QEvent::Leave:
            cloud->HandleLeave(event);
            break;
        default:
            break;
        }
    }
    return QGraphicsView::eventFilter(watched, event);
}

void CPTZGraphicsView::mouseMoveEvent(QMouseEvent *event)
{
    if (auto *cloud = qobject_cast<CPTZCloud *>(parentWidget())) {
        cloud->HandleMouseMove(event);
    }
    if (event && !event->isAccepted()) {
        QGraphicsView::mouseMoveEvent(event);
    }
}

} // namespace PreviewPTZControl
