#include "panel/cradiusframe.h"

#include <QPainter>
#include <QPen>

namespace PreviewPTZControl {

CRadiusFrame::CRadiusFrame(QWidget *parent)
    : Quillon::CFrame(parent, Qt::FramelessWindowHint)
{
    setFrameShape(QFrame::NoFrame);
}

CRadiusFrame::~CRadiusFrame() = default;

void CRadiusFrame::SetLineColor(const QColor &color)
{
    if (line_color_ == color)
        return;
    line_color_ = color;
    update();
}

void CRadiusFrame::SetDrawLine(bool draw)
{
    if (draw_line_ == draw)
        return;
    draw_line_ = draw;
    update();
}

void CRadiusFrame::paintEvent(QPaintEvent *event)
{
    Quillon::CFrame::paintEvent(event);
    if (!draw_line_)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line_color_, 3));
    painter.drawLine(QPointF(width() / 2, 0), QPointF(width() / 2, height()));
}

} // namespace PreviewPTZControl
