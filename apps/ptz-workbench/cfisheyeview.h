#pragma once

#include <QImage>
#include <QPointer>
#include <QVector>
#include <QWidget>

class CLiveView;

namespace PreviewPTZControl {
class CPreviewPTZWnd;
}
namespace zeph_ptz_controller {
class CSimpleFishEyeController;
}

// The fish-eye view of a screen: the circular picture of a ceiling-mounted fish-eye camera and
// four dewarped sub-views cut out of it. It covers its live view while open; the screen's panel
// steers the selected sub-view through its software PTZ controller.
class CFishEyeView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kSubViewCount = 4;

    // Opens or closes the fish-eye view on a screen; open needs a panel with a software controller.
    static bool SetOpen(CLiveView *view, PreviewPTZControl::CPreviewPTZWnd *panel, bool open);
    // The open fish-eye view of a live view, or null.
    static CFishEyeView *Of(const CLiveView *view);

    zeph_ptz_controller::CSimpleFishEyeController *Controller() const { return m_controller; }
    int SelectedSubView() const;
    // The last dewarped picture of a sub-view (as painted, before scaling).
    QImage SubViewImage(int index);
    QRect SubViewRect(int index) const;
    QRect CircleRect() const;

    // Equidistant fish-eye picture of the shared panorama: centre straight down, rim 20 degrees
    // above the horizon.
    static const QImage &FishEyeImage();
    // Cuts a flat picture looking along pan/tilt with the field of view of `zoom` out of the fish-eye picture.
    static QImage Dewarp(double pan, double tilt, double zoom, const QSize &size);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    CFishEyeView(CLiveView *view, PreviewPTZControl::CPreviewPTZWnd *panel);
    void Close();
    void PaintDirections(QPainter &painter, const QRect &circle);

    struct SubView
    {
        double pan = -1;
        double tilt = 0;
        double zoom = 0;
        QSize size;
        QImage image;
    };

    QPointer<PreviewPTZControl::CPreviewPTZWnd> m_panel;
    zeph_ptz_controller::CSimpleFishEyeController *m_controller = nullptr;
    QVector<SubView> m_subViews;
};
