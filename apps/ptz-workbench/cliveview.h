#pragma once

#include "cparkactionnotice.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace ptz_devices {
struct DeviceStatus;
}
namespace zeph_ptz_controller {
class CVirtualPtzControllor;
}

// One screen of the live-view grid: paints what its camera sees, cropped and
// scaled from a synthetic panorama by the camera's pan, tilt and zoom.
class CLiveView : public QWidget
{
    Q_OBJECT

public:
    explicit CLiveView(unsigned int screen, QWidget *parent = nullptr);

    // Reads a camera's position and running state (read-only); false when unknown.
    using StatusSource = std::function<bool(const QString &cameraId, ptz_devices::DeviceStatus &status)>;

    unsigned int Screen() const { return m_screen; }
    void SetStatusSource(StatusSource source) { m_status = std::move(source); }
    void SetCamera(const QString &cameraId, const QString &name, bool fishEye);
    QString CameraId() const { return m_cameraId; }
    bool IsFishEye() const { return m_fishEye; }
    void SetSelected(bool selected);

    // Picture actions asked for by the panel: 1 3D positioning (drag a box), 4 manual tracking and
    // 5 face capture (click a target); 0 for none.
    void SetPictureAction(int function);
    int PictureAction() const { return m_action; }

    // Runs patrols over the screen's virtual presets; its digital zoom crops the picture.
    zeph_ptz_controller::CVirtualPtzControllor *VirtualController() const { return m_virtual; }

    // The shared panorama: 360 degrees wide, from 45 degrees above the horizon to straight down.
    static const QImage &Panorama();
    // What the camera sees at its position, of the given size: every pan (wrapping at 360),
    // tilt and zoom is covered; blurred away from focus 0.5, darker or brighter with the iris.
    static QImage RenderScene(const ptz_devices::DeviceStatus &status, const QSize &size);
    static QImage ApplyLens(const QImage &picture, double focus, double iris);

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
    // overlay: also the texts (name, position, what runs); a digitally zoomed picture adds them
    // after cropping.
    void PaintScene(QPainter &painter, const QRect &area, bool overlay);
    void PaintOverlay(QPainter &painter, const QRect &area);
    void PaintFishEye(QPainter &painter, const QRect &area);
    QString VirtualPatrolText() const;

    unsigned int m_screen;
    QString m_cameraId;
    CParkActionNotice m_parkNotice;
    QString m_name;
    StatusSource m_status;
    zeph_ptz_controller::CVirtualPtzControllor *m_virtual = nullptr;
    bool m_fishEye = false;
    bool m_selected = false;
    int m_action = 0;
    bool m_dragging = false;
    QPoint m_boxStart;
    QRect m_box;
};
