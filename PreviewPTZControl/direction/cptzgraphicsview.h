#pragma once

#include "previewptzcontrol_export.h"

#include <QGraphicsView>

namespace PreviewPTZControl {

// Transparent view laid over the direction pad. It owns the mouse on the pad's
// surface and hands every press, release, move, enter and leave back to the pad.
class PREVIEWPTZCONTROL_EXPORT CPTZGraphicsView : public QGraphicsView
{
    Q_OBJECT
public:
    explicit CPTZGraphicsView(QGraphicsScene *scene, QWidget *parent = nullptr);
    ~CPTZGraphicsView() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
};

} // namespace PreviewPTZControl
