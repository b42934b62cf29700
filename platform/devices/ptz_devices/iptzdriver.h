#pragma once

#include "ptz_devices/ptz_devices_export.h"
#include "ptz_devices/ptzdevicetypes.h"

#include <QObject>
#include <QRectF>
#include <QString>
#include <QVector>

namespace ptz_devices {

// One camera's PTZ device, in PTZ terms rather than command codes.
//
// Every request returns a request id at once and is answered exactly once
// through replied(), success or failure, always later from the event loop and
// never inside the call. Requests to one driver run in the order they were
// made. A stop is never dropped or overtaken; it may supersede a move of the
// same axes that is still waiting, in which case that move is answered as done.
// Pan/tilt and zoom/focus/iris are independent axes. A driver that loses its
// device answers every pending request with a failure, and later requests fail
// (asynchronously) until it is connected again.
//
// Directions are -1, 0 or +1 (pan: -1 left, +1 right; tilt: -1 down, +1 up;
// zoom: +1 in (tele), -1 out (wide); focus: +1 far, -1 near; iris: +1 open,
// -1 close). Speeds run from capabilities().minSpeed to maxSpeed (1 to 40);
// a direction or speed of 0 on zoom/focus/iris stops that axis.
class PTZ_DEVICES_EXPORT IPtzDriver : public QObject
{
    Q_OBJECT
public:
    explicit IPtzDriver(QObject *parent = nullptr)
        : QObject(parent)
    {
    }
    ~IPtzDriver() override = default;

    virtual QString cameraId() const = 0;
    virtual DriverCapabilities capabilities() const = 0;
    // Synchronous snapshot of the last known state.
    virtual DeviceStatus status() const = 0;
    virtual bool isConnected() const = 0;

    // Continuous moves.
    virtual quint64 movePanTilt(int panDirection, int tiltDirection, int speed) = 0;
    virtual quint64 stopPanTilt() = 0;
    virtual quint64 zoom(int direction, int speed) = 0;
    virtual quint64 focus(int direction, int speed) = 0;
    virtual quint64 iris(int direction, int speed) = 0;

    // Auxiliaries and lens.
    virtual quint64 setLight(bool on) = 0;
    virtual quint64 setWiper(bool on) = 0;
    virtual quint64 oneKeyFocus() = 0;
    virtual quint64 initLens() = 0;

    // Continuous pan at `speed` until switched off or interrupted.
    virtual quint64 setAutoScan(bool on, int speed) = 0;

    // Centre on `area` (normalised to the picture, 0..1 both ways, y down) and
    // zoom by its size: a box half the picture wide doubles the zoom; a box
    // drawn from right to left (negative width) zooms out instead.
    virtual quint64 position3D(const QRectF &area) = 0;

    // Presets (1 .. presetSlots).
    virtual quint64 listPresets() = 0;
    virtual quint64 setPreset(int number, const QString &name) = 0; // stores the current position
    virtual quint64 gotoPreset(int number) = 0;                     // answered when the move starts
    virtual quint64 removePreset(int number) = 0;
    virtual quint64 renamePreset(int number, const QString &name) = 0;

    // Patrols (1 .. patrolSlots), each up to pointsPerPatrol points.
    virtual quint64 listPatrols() = 0;          // only patrols that have points
    virtual quint64 readPatrol(int number) = 0; // empty patrol when the slot is free
    virtual quint64 writePatrol(int number, const QVector<DevicePatrolPoint> &points) = 0;
    virtual quint64 removePatrol(int number) = 0;
    virtual quint64 startPatrol(int number) = 0;
    virtual quint64 stopPatrol(int number) = 0; // 0 stops whichever patrol runs

    // Patterns (1 .. patternSlots).
    virtual quint64 listPatterns() = 0;
    virtual quint64 startPatternRecord(int number) = 0;
    virtual quint64 stopPatternRecord(int number) = 0;
    virtual quint64 playPattern(int number) = 0;
    virtual quint64 stopPattern(int number) = 0; // 0 stops whichever pattern plays
    virtual quint64 removePattern(int number) = 0;

    // Stops whatever runs: auto-scan, patrol, pattern playback, and all motion.
    virtual quint64 stopActivity() = 0;

    virtual quint64 setAutoTrack(bool on) = 0;
    virtual quint64 getAutoTrack() = 0;
    virtual quint64 setParkAction(const ParkAction &action) = 0;
    virtual quint64 getParkAction() = 0;
    virtual quint64 setPatrolRecovery(const PatrolRecovery &recovery) = 0;
    virtual quint64 getPatrolRecovery() = 0;
    virtual quint64 requestStatus() = 0;

Q_SIGNALS:
    void replied(const ptz_devices::DriverReply &reply);
    void statusChanged(const ptz_devices::DeviceStatus &status);
    void connectionChanged(bool connected);
    // A manual move (or another command) stopped a running activity.
    void activityInterrupted(ptz_devices::DeviceActivity activity, int number);
    // The device started an activity on its own (park action, patrol recovery).
    void activityResumed(ptz_devices::DeviceActivity activity, int number);
};

} // namespace ptz_devices
