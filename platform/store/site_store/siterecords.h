#pragma once

#include "site_store/site_store_export.h"

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVector>

namespace site_store {

// Camera of the site. `driverKind` selects the device driver ("sim" for the
// simulated camera), `driverAddress` is what that driver connects to and
// `model` picks the driver's behaviour profile.
struct SITE_STORE_EXPORT CameraRecord
{
    QString id;
    QString name;
    QString driverKind;
    QString driverAddress;
    QString model;
    QList<int> abilities; // ability codes, ascending
    bool cascade = false;
    bool fishEye = false;
    int accessProtocol = 0;

    bool hasAbility(int code) const { return abilities.contains(code); }
    bool operator==(const CameraRecord &o) const;
};

struct SITE_STORE_EXPORT UserRecord
{
    QString name;
    int ptzLevel = 0;

    bool operator==(const UserRecord &o) const { return name == o.name && ptzLevel == o.ptzLevel; }
};

// One granted permission item. A camera id of CSiteStore::kAllCameras grants
// the item on every camera.
struct SITE_STORE_EXPORT PermissionRecord
{
    QString user;
    QString cameraId;
    int item = 0;
};

// A preset kept by the client rather than by the camera.
struct SITE_STORE_EXPORT VirtualPresetRecord
{
    QString cameraId;
    int number = 0; // 1..256
    QString name;
    int type = 3;    // 2 fish-eye, 3 virtual
    double pan = 0;  // degrees
    double tilt = 0; // degrees
    double zoom = 1; // magnification
};

struct SITE_STORE_EXPORT PatrolPointRecord
{
    int preset = 0; // 1-based preset number
    int speed = 0;  // 1..40
    int dwell = 0;  // seconds
    QString presetName;

    bool operator==(const PatrolPointRecord &o) const
    {
        return preset == o.preset && speed == o.speed && dwell == o.dwell && presetName == o.presetName;
    }
};

// A patrol definition kept by the client (software or virtual-preset patrols,
// and the name/type bookkeeping of device patrols).
struct SITE_STORE_EXPORT PatrolRecord
{
    QString cameraId;
    int number = 0; // slot 1..8
    int type = 0;   // 1 device, 2 software, 3 virtual presets
    QString name;
    QVector<PatrolPointRecord> points; // at most 32
};

struct SITE_STORE_EXPORT ParkActionRecord
{
    QString cameraId;
    bool enabled = false;
    int waitSeconds = 5; // 5..720
    int actionType = 5;  // 5 preset (target 0 = current view), 3 patrol
    int targetId = 0;
};

struct SITE_STORE_EXPORT RecoveryRecord
{
    QString cameraId;
    bool enabled = false;
    int waitSeconds = 0; // 15, 30, 45, 60, 90, 120; 0 when disabled
};

// A PTZ lock; it lapses at `expiresAt` (UTC).
struct SITE_STORE_EXPORT LockRecord
{
    QString cameraId;
    QString holder;
    int holderLevel = 0;
    QDateTime expiresAt;
    QString holderDetail; // the client the holder locked from

    // Whole seconds left at `now`, 0 when lapsed.
    int remainingSeconds(const QDateTime &now) const;
};

} // namespace site_store

Q_DECLARE_METATYPE(site_store::CameraRecord)
