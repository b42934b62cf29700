#pragma once

#include "site_store/site_store_export.h"
#include "site_store/siterecords.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <optional>

class QSqlDatabase;

namespace site_store {

class CSiteTransaction;

// The site's persistent configuration on SQLite: cameras, users and their
// permissions, switches, client-side presets and patrols, park-action and
// recovery settings, PTZ locks and the simulated cameras' device state.
//
// Every write is one transaction (WAL journal), so a killed process leaves
// the last committed state. Each operation returns false on failure and
// leaves the reason in lastError(). Use a store from the thread that opened it.
//
// A write reports success only when it reached the store's file: a file that
// is read-only is opened for reading only, another program's database is not
// opened at all, and once the file is removed or replaced under the running
// store every later write is refused (fileLost() says so once). Writes by
// other connections or processes on the same file are seen by the next read.
//
// A process has one current store (Current()); tests install a temporary one
// per test with InstallCurrent(Open(path)).
class SITE_STORE_EXPORT CSiteStore : public QObject
{
    Q_OBJECT

public:
    enum class Table {
        Cameras,
        Users,
        Permissions,
        Settings,
        VirtualPresets,
        Patrols,
        ParkActions,
        Recovery,
        Locks,
        DeviceState,
        All
    };
    Q_ENUM(Table)

    // Wildcard camera id of a permission granted on all cameras.
    static const QString kAllCameras; // "*"
    // Environment variable naming the store file when no --site option is given.
    static const char *const kPathEnvVar; // "PTZ_SITE_STORE"

    // Permission items.
    static constexpr int kPermPtzControl = 15;
    static constexpr int kPermParkAction = 796;

    // Setting keys; switches hold "true"/"false", GetTrackNum a number.
    static const QString kIsSupportPTZLock;
    static const QString kIsSupportVirtualPTZ;
    static const QString kIsSupportUpdatePTZInfo;
    static const QString kResumeCruiseAfterInterrupt;
    static const QString kShowPreSetTabWidget;
    static const QString kShowExtraButton;
    static const QString kShowUserLevel;
    static const QString kGetTrackNum;
    static const QString kProductType;
    static const QString kCurrentUser;

    ~CSiteStore() override;

    // Opens (creating and seeding when new) the database at `path`. Never
    // returns null: when the file cannot be opened or is not a valid store
    // (damaged, another program's, newer), the result is a seeded in-memory
    // store with isFallback() true and the reason in openError(), which is
    // also logged. A store file without write permission is opened read-only:
    // isReadOnly() is true and openError() says so.
    static std::unique_ptr<CSiteStore> Open(const QString &path);
    // A fresh seeded in-memory store (not a fallback).
    static std::unique_ptr<CSiteStore> OpenInMemory();

    // Path from "--site FILE" in `arguments`, else $PTZ_SITE_STORE, else
    // DefaultPath().
    static QString ResolvePath(const QStringList &arguments);
    // "<AppDataLocation>/site.sqlite"
    static QString DefaultPath();

    // The process-wide store. Opened on first use from ResolvePath({}) when
    // none was installed.
    static CSiteStore *Current();
    // Replaces (and destroys) the current store; null just drops it.
    static void InstallCurrent(std::unique_ptr<CSiteStore> store);
    // Increases whenever the current store is replaced, so holders of data
    // read from it can tell that they must reload.
    static quint64 CurrentGeneration();

    QString path() const; // empty for in-memory stores
    bool isFallback() const;
    QString openError() const;
    QString lastError() const;
    // True when writes are refused: the file is read-only, or it was removed
    // or replaced while open. The reason is in writeRefusal().
    bool isReadOnly() const;
    QString writeRefusal() const;

    // Writes the demo site (cameras, users, permissions, switches). Done
    // automatically for a new store; replaces rows with the same keys.
    bool seedDemoSite();

    // Cameras
    QList<CameraRecord> cameras() const;
    std::optional<CameraRecord> camera(const QString &id) const;
    bool upsertCamera(const CameraRecord &camera);
    bool removeCamera(const QString &id);

    // Users and permissions
    QList<UserRecord> users() const;
    std::optional<UserRecord> user(const QString &name) const;
    bool upsertUser(const UserRecord &user);
    bool removeUser(const QString &name); // also drops the user's permissions
    QList<PermissionRecord> permissions(const QString &user) const;
    bool grantPermission(const QString &user, const QString &cameraId, int item);
    bool revokePermission(const QString &user, const QString &cameraId, int item);
    // Granted for this camera or for kAllCameras.
    bool hasPermission(const QString &user, const QString &cameraId, int item) const;

    // Current user (kept in the settings)
    QString currentUserName() const;
    bool setCurrentUser(const QString &name); // false for an unknown user

    // Settings
    QString setting(const QString &key, const QString &defaultValue = QString()) const;
    bool boolSetting(const QString &key, bool defaultValue = false) const;
    int intSetting(const QString &key, int defaultValue = 0) const;
    bool setSetting(const QString &key, const QString &value);
    bool setBoolSetting(const QString &key, bool value);

    // Virtual presets
    QList<VirtualPresetRecord> virtualPresets(const QString &cameraId) const;
    std::optional<VirtualPresetRecord> virtualPreset(const QString &cameraId, int number) const;
    bool upsertVirtualPreset(const VirtualPresetRecord &preset);
    bool removeVirtualPreset(const QString &cameraId, int number);

    // Client patrols
    QList<PatrolRecord> patrols(const QString &cameraId) const;
    std::optional<PatrolRecord> patrol(const QString &cameraId, int number) const;
    bool upsertPatrol(const PatrolRecord &patrol);
    bool removePatrol(const QString &cameraId, int number);

    // Park action and patrol recovery; absent rows read as defaults.
    ParkActionRecord parkAction(const QString &cameraId) const;
    bool setParkAction(const ParkActionRecord &record);
    RecoveryRecord recovery(const QString &cameraId) const;
    bool setRecovery(const RecoveryRecord &record);

    // PTZ locks; lock() answers only a lock that has not lapsed at `now`.
    std::optional<LockRecord> lock(const QString &cameraId,
                                   const QDateTime &now = QDateTime::currentDateTimeUtc()) const;
    bool setLock(const LockRecord &record);
    bool clearLock(const QString &cameraId);

    // Opaque per-camera device state (JSON text) of the simulated cameras.
    QByteArray deviceState(const QString &cameraId, const QString &key) const;
    QStringList deviceStateKeys(const QString &cameraId) const;
    bool setDeviceState(const QString &cameraId, const QString &key, const QByteArray &json);
    bool removeDeviceState(const QString &cameraId, const QString &key);

Q_SIGNALS:
    // After a committed write; cameraId is empty for site-wide tables.
    void changed(site_store::CSiteStore::Table table, const QString &cameraId);
    // Once, when the store finds its file removed or replaced while open; from
    // then on it refuses writes. `message` is a sentence for the user.
    void fileLost(const QString &message);

private:
    friend class CSiteTransaction;
    explicit CSiteStore(QObject *parent = nullptr);
    std::optional<CameraRecord> readCamera(const QString &id) const;
    std::optional<UserRecord> readUser(const QString &name) const;
    bool readPermission(const QString &user, const QString &cameraId, int item) const;
    std::optional<QString> readSetting(const QString &key) const;
    std::optional<LockRecord> readLock(const QString &cameraId) const;
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace site_store
