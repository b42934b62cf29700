#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QObject>
#include <QRectF>
#include <QString>

#include <memory>

namespace zeph_ptz_controller {

class CPatrolRunner;

// Patrols over the client's virtual presets (CruiseType 3). A virtual preset
// is a digitally zoomed part of the live picture; the patrol shows each
// point's part for its dwell time by setting the digital-zoom style, which
// the live view applies (SignalDigitalZoomStyleChanged). Paths are read from
// the site store's patrol records of type 3.
class ZEPH_PTZ_CONTROLLER_EXPORT CVirtualPtzControllor : public QObject
{
    Q_OBJECT
public:
    enum Command { kCruiseStart = 37, kCruiseStop = 38 };
    Q_ENUM(Command)

    explicit CVirtualPtzControllor(QObject *parent = nullptr);
    ~CVirtualPtzControllor() override;

    void SetCamera(const QString &camera_index_code);
    QString GetCamera() const;

    // 37 starts patrol `value` (1-based) of the camera, 38 stops the running
    // one (value ignored). False when the command is unknown, no camera is
    // set, or the patrol has no usable point.
    bool Cruise(unsigned int command, unsigned int value);
    // True while a patrol runs, with its number.
    bool GetRunningState(unsigned int &cruise_index) const;
    bool IsRunningPatrol() const;

    // Digital zoom of the live picture: style 0 clears it; otherwise the
    // normalised rectangle left, top, right, bottom (0..1) is shown.
    void SetDigitalZoomStyle(int style, double left, double top, double right, double bottom);
    int GetDigitalZoomStyle() const;
    QRectF GetDigitalZoomRect() const;

    // Index of the point shown, -1 when no patrol runs.
    int GetPatrolPointIndex() const;

Q_SIGNALS:
    void SignalCruiseStateChanged(QString camera_index_code, int cruise_index, bool running);
    void SignalDigitalZoomStyleChanged(int style, QRectF area);

private:
    void ShowPoint(const ptz_plugin_protocol::CruisePoint &point);
    void StopRunning(bool notify);

    QString m_camera;
    int m_style = 0;
    QRectF m_area;
    std::unique_ptr<CPatrolRunner> m_runner;
};

} // namespace zeph_ptz_controller
