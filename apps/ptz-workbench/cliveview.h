#pragma once

#include "cparkactionnotice.h"

#include <QPointer>
#include <QWidget>

namespace ptz_devices {
class IPtzDriver;
}

// One screen of the live-view grid: paints what its camera sees, cropped and
// scaled from a synthetic panorama by the camera's pan, tilt and zoom.
class CLiveView : public QWidget
{
    Q_OBJECT

public:
    explicit CLiveView(unsigned int screen, QWidget *parent = nullptr);

    unsigned int Screen() const { return m_screen; }
    void SetCamera(const QString &cameraId, const QString &name, ptz_devices::IPtzDriver *driver, bool fishEye);
    QString CameraId() const { return m_cameraId; }
    bool IsFishEye() const { return m_fishEye; }
    void SetSelected(bool selected);

    // Picture actions asked for by the panel: 1 3D positioning (drag a box), 4 manual tracking and
    // 5 face capture (click a target); 0 for none.
    void SetPictureAction(int function);
    int PictureAction() const { return m_action; }

    // The shared panorama: 360 degrees wide, from 45 degrees above the horizon to straight down.
    static const QImage &Panorama();

signals:
    void SignalSelected(unsigned int screen);
    // The operator closed the screen's picture (context menu).
    void SignalCloseRequested(unsigned int screen);
    // The operator asked for the fish-eye view of the screen's fish-eye camera (context menu).
    void SignalFishEyeRequested(unsigned int screen, bool open);
    void SignalCameraDropped(unsigned int screen, const QString &cameraId);
    // A box was drawn in 3D mode, normalised to the picture (y down).
    void SignalBoxDrawn(unsigned int screen, const QRectF &box);
    // A target was clicked for manual tracking or face capture, normalised to the picture.
    void SignalTargetClicked(unsigned int screen, int function, const QPointF &point);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void PaintScene(QPainter &painter, const QRect &area);
    void PaintFishEye(QPainter &painter, const QRect &area);

    unsigned int m_screen;
    QString m_cameraId;
    CParkActionNotice m_parkNotice;
    QString m_name;
    QPointer<ptz_devices::IPtzDriver> m_driver;
    bool m_fishEye = false;
    bool m_selected = false;
    int m_action = 0;
    bool m_dragging = false;
    QPoint m_boxStart;
    QRect m_box;
};
