#pragma once

#include "ptz_devices/iptzdriver.h"
#include "ptz_devices/ptz_devices_export.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>
#include <QPointer>
#include <QVariantList>
#include <QVector>

#include <deque>
#include <functional>
#include <memory>

class QTimer;

namespace ptz_devices {

class CSimClock;
class IDeviceStateStore;
class CMemoryDeviceStateStore;

// A PTZ camera simulated in process: the embedded default driver and the
// workhorse of the tests.
//
// Physical model:
// - pan in degrees, wraps at 360; tilt from -90 (straight down) to +10
//   degrees above the horizon; zoom 1x to 30x; focus and iris 0..1.
// - angular velocity is linear in the speed: 2 deg/s at speed 1, 80 deg/s at
//   speed 40 (2 deg/s per step); diagonal moves run both axes at that rate.
// - zoom moves at 0.5x/s per speed step, focus and iris at 0.01/s per step.
// - a preset call moves at full speed (40); a patrol point at its own speed.
// - one-key focus sets focus to 0.5; lens initialisation sets zoom to 1x,
//   focus and iris to 0.5.
//
// Models: "speed-dome" (every ability), "ptz-no-pattern" (no patterns),
// "box-zoom" (zoom only, no pan/tilt), "fisheye" (no motor, fish-eye flag),
// "cascaded" (behaves as a speed dome).
//
// Requests are answered after latency() wall-clock ms (0: on the next event
// loop pass), in order. Timed behaviour (moves, dwell, park action, patrol
// recovery, pattern replay) follows the CSimClock.
class PTZ_DEVICES_EXPORT CSimulatedCamera : public IPtzDriver
{
    Q_OBJECT
public:
    struct RequestLogEntry
    {
        quint64 id = 0;
        DriverOperation operation = DriverOperation::None;
        QVariantList arguments;
        qint64 time = 0; // clock time when received, ms
    };

    // Requests still pending when the camera is destroyed are answered with a
    // failure from the destructor, so no caller waits forever.
    // `clock` null: the camera creates its own real-time clock. `store` null:
    // durable state lives in a private in-memory store.
    CSimulatedCamera(const QString &cameraId, const QString &model, CSimClock *clock, IDeviceStateStore *store,
                     QObject *parent = nullptr);
    ~CSimulatedCamera() override;

    static QStringList models();
    static bool isKnownModel(const QString &model);
    static DriverCapabilities capabilitiesForModel(const QString &model);

    // IPtzDriver
    QString cameraId() const override { return m_cameraId; }
    DriverCapabilities capabilities() const override { return m_caps; }
    DeviceStatus status() const override;
    bool isConnected() const override { return m_connected; }

    quint64 movePanTilt(int panDirection, int tiltDirection, int speed) override;
    quint64 stopPanTilt() override;
    quint64 zoom(int direction, int speed) override;
    quint64 focus(int direction, int speed) override;
    quint64 iris(int direction, int speed) override;
    // Sets the iris at once (0 closed .. 1 open), as a camera's exposure setting does.
    quint64 setIrisLevel(double level);
    quint64 setLight(bool on) override;
    quint64 setWiper(bool on) override;
    quint64 oneKeyFocus() override;
    quint64 initLens() override;
    quint64 setAutoScan(bool on, int speed) override;
    quint64 position3D(const QRectF &area) override;
    quint64 listPresets() override;
    quint64 setPreset(int number, const QString &name) override;
    quint64 gotoPreset(int number) override;
    quint64 removePreset(int number) override;
    quint64 renamePreset(int number, const QString &name) override;
    quint64 listPatrols() override;
    quint64 readPatrol(int number) override;
    quint64 writePatrol(int number, const QVector<DevicePatrolPoint> &points) override;
    quint64 removePatrol(int number) override;
    quint64 startPatrol(int number) override;
    quint64 stopPatrol(int number) override;
    quint64 listPatterns() override;
    quint64 startPatternRecord(int number) override;
    quint64 stopPatternRecord(int number) override;
    quint64 playPattern(int number) override;
    quint64 stopPattern(int number) override;
    quint64 removePattern(int number) override;
    quint64 stopActivity() override;
    quint64 setAutoTrack(bool on) override;
    quint64 getAutoTrack() override;
    quint64 setParkAction(const ParkAction &action) override;
    quint64 getParkAction() override;
    quint64 setPatrolRecovery(const PatrolRecovery &recovery) override;
    quint64 getPatrolRecovery() override;
    quint64 requestStatus() override;

    // Simulation controls.
    QString model() const { return m_model; }
    CSimClock *clock() const;
    int latency() const { return m_latency; }
    void setLatency(int ms);

    // Fault injection. Failed requests are still answered asynchronously.
    void failNextRequests(int count, const QString &error = QString());
    // The next `times` requests of `operation` fail; a negative count fails
    // them all until clearFaults().
    void failOperation(DriverOperation operation, const QString &error = QString(), int times = 1);
    void clearFaults();
    // Places the head at once, as if it had been turned by hand (no request,
    // no control time); stops whatever moves or runs.
    void setPosition(double pan, double tilt, double zoom = 1.0);

    // Drops the connection: pending requests fail, later ones fail until
    // reconnect. Held moves stop (nobody could release them); a running
    // patrol, pattern or auto-scan goes on, as on a real device.
    void disconnectDevice();
    void reconnectDevice();

    // Inspection (synchronous, no request).
    QVector<RequestLogEntry> requestLog() const { return m_log; }
    void clearRequestLog() { m_log.clear(); }
    int pendingRequestCount() const { return int(m_queue.size()); }
    QVector<DevicePreset> presets() const;
    QVector<DevicePatrol> patrols() const;
    QVector<int> recordedPatterns() const;
    ParkAction parkAction() const { return m_park; }
    PatrolRecovery patrolRecovery() const { return m_recovery; }
    // Clock time of the last control request (moves, presets, activities).
    qint64 lastControlTime() const { return m_lastControl; }

private:
    quint64 enqueueLensMove(DriverOperation operation, int direction, int speed, int *axisDirection, int *axisSpeed);
    struct Request;
    struct PatternEvent
    {
        qint64 offset = 0; // ms since recording started
        int kind = 0;      // see csimulatedcamera.cpp
        int a = 0;
        int b = 0;
        int c = 0;
    };
    struct Pattern
    {
        QVector<PatternEvent> events;
        qint64 duration = 0;
        double startPan = 0.0;
        double startTilt = 0.0;
        double startZoom = 1.0;
    };

    quint64 enqueue(DriverOperation op, const QVariantList &args, int number,
                    std::function<void(DriverReply &)> execute);
    void scheduleProcessing();
    void processQueue();
    void answer(DriverReply reply);
    bool checkAbility(int code, DriverReply &reply) const;
    bool checkSpeed(int speed, DriverReply &reply) const;
    bool checkRange(int value, int max, const QString &what, DriverReply &reply) const;
    void markControl();

    void onTick(qint64 now, qint64 delta);
    void advance(qint64 ms);
    qint64 timeToNextEvent() const;
    void stepPhysics(qint64 ms);
    void handleDueEvents();
    bool arriveAtTarget();
    bool dwellElapsed();
    bool playPatternStep();
    bool fireIdleAction();

    void applyPanTilt(int panDir, int tiltDir, int speed);
    void applyZoom(int dir, int speed);
    void recordEvent(int kind, int a, int b, int c);
    void beginTarget(double pan, double tilt, double zoom, int speed);
    bool isTargeting() const { return m_targetingPanTilt || m_targetingZoom; }
    bool activityRunning() const;
    void haltManualMotion();
    void interruptActivities(bool report);
    void stopPatternPlayback();
    void startPatrolNow(int number, int fromPoint);
    void startPatternNow(int number);
    void restartPatternCycle();
    void patrolArrived();
    void notifyStatus();

    void loadState();
    bool savePresets();
    bool savePatrols();
    bool savePatterns();
    bool saveSettings();
    void storeFailed(DriverReply &reply) const;

    QString m_cameraId;
    QString m_model;
    DriverCapabilities m_caps;
    QPointer<CSimClock> m_clock;
    IDeviceStateStore *m_store = nullptr;
    std::unique_ptr<CMemoryDeviceStateStore> m_ownStore;

    // Request pipeline.
    std::deque<std::unique_ptr<Request>> m_queue;
    QTimer *m_processTimer = nullptr;
    QElapsedTimer m_wall; // latency is wall-clock time
    quint64 m_nextId = 1;
    int m_latency = 0;
    bool m_connected = true;
    int m_failNext = 0;
    QString m_failNextError;
    struct OperationFault
    {
        QString error;
        int remaining = 1; // < 0: until cleared
    };
    QHash<int, OperationFault> m_failOps;
    QVector<RequestLogEntry> m_log;

    // Physical state.
    double m_pan = 0.0;
    double m_tilt = 0.0;
    double m_zoom = 1.0;
    double m_focus = 0.5;
    double m_iris = 0.5;
    int m_panDir = 0;
    int m_tiltDir = 0;
    int m_ptSpeed = 0;
    int m_zoomDir = 0;
    int m_zoomSpeed = 0;
    int m_focusDir = 0;
    int m_focusSpeed = 0;
    int m_irisDir = 0;
    int m_irisSpeed = 0;
    bool m_light = false;
    bool m_wiper = false;
    bool m_autoTrack = false;
    bool m_autoScan = false;
    int m_autoScanSpeed = 0;

    // Positioning towards a target (preset call, patrol point, 3D positioning).
    bool m_targetingPanTilt = false;
    bool m_targetingZoom = false;
    double m_targetPan = 0.0;
    double m_targetTilt = 0.0;
    double m_targetZoom = 1.0;
    int m_targetSpeed = 0;

    // Presets, patrols, patterns.
    QMap<int, DevicePreset> m_presets;
    QMap<int, DevicePatrol> m_patrols;
    QMap<int, Pattern> m_patterns;

    int m_patrol = 0;      // running patrol
    int m_patrolPoint = 0; // index of the point being approached / dwelt at
    bool m_patrolDwelling = false;
    qint64 m_dwellEnd = 0;

    int m_recording = 0;
    qint64 m_recordStart = 0;
    Pattern m_recordBuffer;

    int m_playing = 0;
    qint64 m_playStart = -1; // -1 while returning to the pattern's start
    int m_playNext = 0;      // next event index

    // Idle-time behaviour.
    ParkAction m_park;
    double m_parkPan = 0.0; // position kept for a preset park action with target 0
    double m_parkTilt = 0.0;
    double m_parkZoom = 1.0;
    PatrolRecovery m_recovery;
    qint64 m_lastControl = 0;
    int m_parkActions = 0;       // park actions performed, reported in the status
    bool m_parkDone = true;      // park fires once per idle period
    int m_interruptedPatrol = 0; // waiting to be resumed
    int m_interruptedPatrolPoint = 0;

    qint64 m_simNow = 0; // clock time processed so far
    DeviceStatus m_lastStatus;
};

} // namespace ptz_devices
