#pragma once

#include "ptz_devices/ptz_devices_export.h"

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

// Value types exchanged with a PTZ device driver. Plain records, copied freely,
// registered as meta types so they travel through queued signals and QVariant.
namespace ptz_devices {
Q_NAMESPACE_EXPORT(PTZ_DEVICES_EXPORT)

// What a request asked for; echoed in its reply.
enum class DriverOperation {
    None = 0,
    MovePanTilt,
    StopPanTilt,
    Zoom,
    Focus,
    Iris,
    Light,
    Wiper,
    OneKeyFocus,
    LensInit,
    AutoScan,
    Position3D,
    ListPresets,
    SetPreset,
    GotoPreset,
    RemovePreset,
    RenamePreset,
    ListPatrols,
    ReadPatrol,
    WritePatrol,
    RemovePatrol,
    StartPatrol,
    StopPatrol,
    ListPatterns,
    StartPatternRecord,
    StopPatternRecord,
    PlayPattern,
    StopPattern,
    RemovePattern,
    StopActivity,
    SetAutoTrack,
    GetAutoTrack,
    SetParkAction,
    GetParkAction,
    SetPatrolRecovery,
    GetPatrolRecovery,
    GetStatus,
};
Q_ENUM_NS(DriverOperation)

// A running activity that a manual move (or another activity) cut short.
enum class DeviceActivity {
    None = 0,
    AutoScan,
    Patrol,
    Pattern,
};
Q_ENUM_NS(DeviceActivity)

// Camera ability codes shared with the host's camera records.
enum AbilityCode {
    AbilityPtz = 1,
    AbilityManualTracking = 6,
    AbilityFaceCapture = 26,
    AbilityParkAction = 33,
    AbilityAutoTracking = 35,
    AbilityPattern = 46,
    AbilityPan = 48,
    AbilityTilt = 49,
    AbilityZoom = 50,
};

// Answer to exactly one request. `result` holds the operation's data:
//   ListPresets  -> QVector<DevicePreset>     ListPatrols -> QVector<DevicePatrol>
//   ReadPatrol   -> DevicePatrol              ListPatterns -> QVector<int> (recorded slots)
//   GetAutoTrack -> bool                      GetParkAction -> ParkAction
//   GetPatrolRecovery -> PatrolRecovery       GetStatus -> DeviceStatus
//   SetPreset, RenamePreset -> DevicePreset (as stored)
//   WritePatrol  -> DevicePatrol (as stored, no points when cleared)
//   SetAutoTrack -> bool                      others -> invalid QVariant
struct PTZ_DEVICES_EXPORT DriverReply
{
    quint64 requestId = 0;
    DriverOperation operation = DriverOperation::None;
    bool ok = false;
    QString error; // readable text when !ok
    QVariant result;
    // Main numeric argument of the request (preset, patrol or pattern number,
    // on/off as 1/0, ...), so a caller can tell answers apart without a lookup.
    int number = 0;
};

struct PTZ_DEVICES_EXPORT DeviceStatus
{
    double pan = 0.0;   // degrees, [0, 360)
    double tilt = 0.0;  // degrees, within the model's tilt range
    double zoom = 1.0;  // magnification, 1 .. capabilities().maxZoom
    double focus = 0.5; // 0 near .. 1 far
    double iris = 0.5;  // 0 closed .. 1 open
    bool panTiltMoving = false;
    bool zoomMoving = false;
    bool light = false;
    bool wiper = false;
    bool autoScan = false;
    int autoScanSpeed = 0;
    int runningPatrol = 0;    // 0 none, else 1-based patrol number
    int patrolPoint = 0;      // 1-based point of the running patrol being approached or dwelt at, 0 none
    int patrolPointCount = 0; // points of the running patrol, 0 none
    int runningPattern = 0;   // 0 none, else 1-based pattern slot being played
    int recordingPattern = 0; // 0 none, else 1-based pattern slot being recorded
    bool autoTrack = false;
    bool connected = true;
    int parkActions = 0; // park actions performed since the driver started (read-only)

    bool operator==(const DeviceStatus &other) const;
    bool operator!=(const DeviceStatus &other) const { return !(*this == other); }
};

struct PTZ_DEVICES_EXPORT DevicePreset
{
    int number = 0; // 1 .. presetSlots
    QString name;
    double pan = 0.0;
    double tilt = 0.0;
    double zoom = 1.0;
};

struct PTZ_DEVICES_EXPORT DevicePatrolPoint
{
    int preset = 0;       // 1-based preset number
    int speed = 0;        // 1 .. 40
    int dwellSeconds = 0; // within the model's dwell range
    QString presetName;   // filled on points read from the device

    bool operator==(const DevicePatrolPoint &other) const
    {
        return preset == other.preset && speed == other.speed && dwellSeconds == other.dwellSeconds;
    }
};

struct PTZ_DEVICES_EXPORT DevicePatrol
{
    int number = 0; // 1 .. patrolSlots
    QString name;
    QVector<DevicePatrolPoint> points;
};

enum class ParkActionType {
    None = 0,
    Patrol = 3,
    Preset = 5,
};
Q_ENUM_NS(ParkActionType)

struct PTZ_DEVICES_EXPORT ParkAction
{
    bool enabled = false;
    int waitingSeconds = 5; // 5 .. 720
    ParkActionType type = ParkActionType::None;
    int target = 0; // preset or patrol number; a preset action with target 0
                    // returns to the view the camera had when the action was set
};

struct PTZ_DEVICES_EXPORT PatrolRecovery
{
    bool enabled = false;
    int waitingSeconds = 0; // seconds without control before the patrol resumes
};

struct PTZ_DEVICES_EXPORT DriverCapabilities
{
    QString model;
    QVector<int> abilities; // ability codes, see AbilityCode
    bool fishEye = false;
    int presetSlots = 256;
    int patrolSlots = 8;
    int pointsPerPatrol = 32;
    int minSpeed = 1;
    int maxSpeed = 40;
    int minDwellSeconds = 1;
    int maxDwellSeconds = 30;
    int patternSlots = 4; // 0 when the model has no patterns
    double minTilt = -90.0;
    double maxTilt = 10.0;
    double maxZoom = 30.0;

    bool hasAbility(int code) const { return abilities.contains(code); }
};

PTZ_DEVICES_EXPORT QString operationName(DriverOperation operation);

// Registers the meta types above (idempotent); drivers call it on construction.
PTZ_DEVICES_EXPORT void registerDeviceMetaTypes();

} // namespace ptz_devices

Q_DECLARE_METATYPE(ptz_devices::DriverReply)
Q_DECLARE_METATYPE(ptz_devices::DeviceStatus)
Q_DECLARE_METATYPE(ptz_devices::DevicePreset)
Q_DECLARE_METATYPE(ptz_devices::DevicePatrolPoint)
Q_DECLARE_METATYPE(ptz_devices::DevicePatrol)
Q_DECLARE_METATYPE(ptz_devices::ParkAction)
Q_DECLARE_METATYPE(ptz_devices::PatrolRecovery)
Q_DECLARE_METATYPE(ptz_devices::DriverCapabilities)
Q_DECLARE_METATYPE(QVector<ptz_devices::DevicePreset>)
Q_DECLARE_METATYPE(QVector<ptz_devices::DevicePatrol>)
Q_DECLARE_METATYPE(QVector<ptz_devices::DevicePatrolPoint>)
