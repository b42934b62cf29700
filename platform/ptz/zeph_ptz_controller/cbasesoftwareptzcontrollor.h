#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>
#include <vector>

class QTimer;

namespace zeph_ptz_controller {

class CPatrolRunner;
class IPTZFishEyeController;

// Software PTZ on a fish-eye picture: moves, auto-pan, fish-eye presets and
// software patrols act on the selected sub-view of the fish-eye controller
// (or on a view of its own while none is set). Moves and auto-pan run on a
// 40 ms timer; patrols visit their points on a timer with the points' dwell
// times. Presets and patrols are kept in the site store (preset type 2,
// CruiseType 2) under the camera set with SetCamera.
//
// Command codes of Control: 11/12 zoom in/out, 21-28 moves, 29 auto-pan.
// Preset commands: kPresetSet, kPresetClear, kPresetGoto. Cruise commands:
// 37 start, 38 stop.
class ZEPH_PTZ_CONTROLLER_EXPORT CBaseSoftwarePtzControllor : public QObject
{
    Q_OBJECT
public:
    enum PresetCommand { kPresetSet = 8, kPresetClear = 9, kPresetGoto = 39 };
    Q_ENUM(PresetCommand)

    explicit CBaseSoftwarePtzControllor(QObject *parent = nullptr);
    ~CBaseSoftwarePtzControllor() override;

    virtual void SetCamera(const QString &camera_index_code);
    virtual QString GetCamera() const;
    virtual IPTZFishEyeController *GetSoftwareControllor() const;
    virtual void SetSoftwareControllor(IPTZFishEyeController *controller);

    // stop false starts (or changes) the motion of `command`, true ends it.
    // Returns false for an unknown command or a speed outside 1..40.
    virtual bool Control(unsigned int command, bool stop, int speed);
    virtual bool StartPtzControl(unsigned int command, int speed);
    virtual bool StopPtzControl(unsigned int command);

    // kPresetSet stores the current view under preset.preset_index (name from
    // preset.preset_name), kPresetGoto turns the view to it (filling `preset`),
    // kPresetClear removes it. Numbers 1..256.
    virtual bool Preset(unsigned int command, ptz_plugin_protocol::PresetInfo &preset);
    virtual bool RunPreset(ptz_plugin_protocol::PresetInfo &preset);
    virtual bool RunPreset(unsigned int preset_index);

    // 37 starts patrol `cruise_index` over `points` (read from the store when
    // empty), 38 stops it.
    virtual bool Cruise(unsigned int command, int cruise_index, std::vector<ptz_plugin_protocol::CruisePoint> &points);
    virtual bool StartPtzPatrol(int cruise_index, std::vector<ptz_plugin_protocol::CruisePoint> &points);
    virtual void StopPtzPatrol();
    virtual bool IsPtzPatrolling(int &cruise_index) const;
    virtual bool IsPtzAutoPanning() const;
    // The running (or last run) patrol number, 0 when none ran yet.
    virtual int GetPatrolPath() const;
    virtual bool GetPatrolPathByIndex(int cruise_index, std::vector<ptz_plugin_protocol::CruisePoint> &points);
    // Stops the patrol when it runs and removes it from the store.
    virtual bool DeleteCruise(int cruise_index);

    // View direction (see IPTZFishEyeController).
    void SetSemisphereFishEyePTZPos(double pan, double tilt, double zoom);
    void GetSemisphereFishEyePTZPos(double &pan, double &tilt, double &zoom) const;

    // Index of the patrol point being visited, -1 when no patrol runs.
    int GetPatrolPointIndex() const;

Q_SIGNALS:
    void SignalAutoPanRunningState(bool running);
    void SignalPatrolRunningState(bool running, int cruise_index);

private:
    void OnMotionTick();
    void VisitPoint(const ptz_plugin_protocol::CruisePoint &point);
    void StopAutoPan();
    void FollowSelectedWnd();
    void SetAutoPanRunning(bool running);
    void UpdateMotionTimer();

    QString m_camera;
    QPointer<IPTZFishEyeController> m_fisheye;
    // Own view when no fish-eye controller is set.
    double m_pan = 0.0;
    double m_tilt = -45.0;
    double m_zoom = 1.0;

    int m_pan_dir = 0;
    int m_tilt_dir = 0;
    int m_move_speed = 0;
    int m_zoom_dir = 0;
    int m_zoom_speed = 0;
    bool m_auto_pan = false;
    int m_auto_pan_speed = 0;
    QTimer *m_motion_timer = nullptr;

    std::unique_ptr<CPatrolRunner> m_runner;
    int m_last_patrol = 0;
};

} // namespace zeph_ptz_controller
