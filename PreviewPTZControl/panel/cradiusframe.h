#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/cframe.h"

#include <QColor>

namespace PreviewPTZControl {

// Frameless frame that draws a 3 px vertical divider through its horizontal middle.
class PREVIEWPTZCONTROL_EXPORT CRadiusFrame : public Quillon::CFrame
{
    Q_OBJECT
    Q_PROPERTY(QColor lineColor READ LineColor WRITE SetLineColor)
    Q_PROPERTY(bool drawLine READ IsDrawLine WRITE SetDrawLine)

public:
    explicit CRadiusFrame(QWidget *parent = nullptr);
    ~CRadiusFrame() override;

    QColor LineColor() const { return line_color_; }
    void SetLineColor(const QColor &color);
    bool IsDrawLine() const { return draw_line_; }
    void SetDrawLine(bool draw);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor line_color_{255, 255, 255, 51};
    bool draw_line_ = true;
};

} // namespace PreviewPTZControl
