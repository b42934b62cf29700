#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <list>
#include <memory>
#include <vector>

namespace ptz_devices {
struct DriverReply;
}

namespace zeph_ptz_controller {
namespace detail {
struct GetQuery;
}

// Asynchronous reads for one panel: presets, patrols, patterns and the lock
// state of a camera, from its driver and the site store. Every Start...
// operation answers later from the event loop with exactly one success or
// failure signal, never inside the call. Lists that arrive are kept in a
// cache shared by all getters and read back synchronously (GetAllPresets,
// GetEditPatrol, GetPTZLockStatus). StopGettingData() drops every answer
// still outstanding.
//
// Preset lists hold the camera's device presets (type 1) first, then the
// client's fish-eye (2) and virtual (3) presets, each by number. Patrol slots
// are 1..8: a slot kept by the client (site store) has that record's type and
// its slot number as its identifier text; other slots are device patrols when
// the camera has them, else empty (CruiseType 0).
class ZEPH_PTZ_CONTROLLER_EXPORT CPTZGetController : public QObject
{
    Q_OBJECT
public:
    explicit CPTZGetController(QObject *parent = nullptr);
    ~CPTZGetController() override;

    void SetCamera(const QString &camera_index_code);
    QString GetCamera() const;

    // Presets -> SignalGetPresetsSuc / SignalGetPresetsFailed.
    void StartGetPresets(const QString &camera_index_code);
    // Same read, reported as SignalSyncPresetsSuc / SignalSyncPresetsFailed.
    void SyncPresetsFromDevice(const QString &camera_index_code);
    // The cached list; false when none was read for the camera yet.
    bool GetAllPresets(const QString &camera_index_code, QVector<ptz_plugin_protocol::PresetInfo> &presets);
    // Looks up number `preset_index` in the cached list. When device and
    // client presets share the number, a valid preset_type already set in
    // `preset` chooses; otherwise the first (device) one is taken.
    static bool GetPresetByIndexSync(const QString &camera_index_code, ptz_plugin_protocol::PresetInfo &preset,
                                     int preset_index);
    // Client presets (type 2 fish-eye or 3 virtual) kept in the site store;
    // adding an existing number replaces it. A preset without a position
    // takes the camera's current one. Synchronous; getters showing the camera
    // are told through SignalGetPresetsSuc.
    bool AddOnePreset(const QString &camera_index_code, const ptz_plugin_protocol::PresetInfo &preset);
    bool AddOnePreset(const QString &camera_index_code, const ptz_plugin_protocol::PresetInfo &preset,
                      QString &error_text);
    bool ModifyPresetName(const QString &camera_index_code, int preset_index, const QString &name, QString &error_text);
    bool DelPreset(const QString &camera_index_code, int preset_index);
    bool DelPreset(const QString &camera_index_code, int preset_index, QString &error_text);

    // All patrol slots -> SignalGetAllPatrolsSuc (configured slots only) / SignalGetAllPatrolsFailed.
    void StartGetAllPatrols(const QString &camera_index_code);
    // One patrol's path -> SignalGetSinglePatrolSuc, then GetEditPatrol / SignalGetPatrolFailed.
    void StartGetPatrol(const QString &camera_index_code, int cruise_index);
    // Kind of a slot before editing -> SignalGetPatrolTypeBeforeOpen(number,
    // type, identifier, dwell min, dwell max) / SignalGetPatrolFailed.
    void StartGetPatrolType(const QString &camera_index_code, int cruise_index);
    // Kind of a slot before deleting -> SignalGetPatrolTypeBeforeDelete / SignalGetPatrolFailed.
    void DeleteGetPatrolType(const QString &camera_index_code, int cruise_index);
    bool GetEditPatrol(const QString &camera_index_code, ptz_plugin_protocol::GetCruiseRouteResponse &route);
    // Kind and points of a slot for starting or stopping it -> SignalGetPatrolTypeSuc / SignalGetPatrolFailed.
    void StartExecPTZPatrolCommand(const QString &camera_index_code, int cruise_index, bool stop);
    // Writes a path: device patrols to the camera (SignalSetHardwarePatrolFinished),
    // client patrols to the site store (SignalSetSoftwarePatrolFinished); SignalSetPatrolFailed otherwise.
    void StartSetPatrol(const QString &camera_index_code, int cruise_index, ptz_plugin_protocol::CruiseType type,
                        const std::vector<ptz_plugin_protocol::CruisePoint> &points);

    // Recorded pattern numbers -> SignalGetAllPatternsSuc / SignalGetAllPatternsFailed.
    void StartGetPatterns(const QString &camera_index_code);

    // Lock state -> SignalGetPTZLockStatusSuc, then GetPTZLockStatus / SignalGetPTZLockStatusFailed.
    void StartGetPTZLockStatus(const QString &camera_index_code);
    bool GetPTZLockStatus(const QString &camera_index_code, ptz_plugin_protocol::PTZLockStatusResponse &status);

    // Light and wiper as the camera last reported them, copied into the shared
    // state storage (CPTZStateStorageManager) for every panel of the camera.
    // Synchronous; false when the camera cannot be reached.
    static bool ReadAuxiliaryState(const QString &camera_index_code);
    // Error text of this getter's last failed query for the camera (empty if none failed);
    // for the signals that name only the camera (SignalSyncPresetsFailed).
    QString LastErrorText(const QString &camera_index_code) const;

    void StopGettingData();
    // Forgets every list and status read so far (all getters share them);
    // for a switch of the site store and for tests.
    static void ClearCachedData();
    // Queries sent and not answered yet.
    int PendingQueryCount() const;

Q_SIGNALS:
    void SignalGetPresetsSuc(QString camera_index_code);
    void SignalGetPresetsFailed(QString camera_index_code, QString error_text);
    void SignalSyncPresetsSuc(QString camera_index_code);
    void SignalSyncPresetsFailed(QString camera_index_code);
    void SignalGetAllPatrolsSuc(QString camera_index_code, QVector<ptz_plugin_protocol::CruiseInfo> patrols);
    void SignalGetAllPatrolsFailed(QString camera_index_code);
    void SignalGetSinglePatrolSuc(QString camera_index_code, int cruise_index);
    void SignalGetPatrolFailed(QString camera_index_code, int cruise_index, QString error_text);
    void SignalGetPatrolTypeSuc(int cruise_index, bool stop, ptz_plugin_protocol::CruiseType type,
                                std::list<ptz_plugin_protocol::CruisePoint> points);
    void SignalGetPatrolTypeBeforeDelete(int cruise_index, ptz_plugin_protocol::CruiseType type, QString cruise_id);
    void SignalGetPatrolTypeBeforeOpen(int cruise_index, ptz_plugin_protocol::CruiseType type, QString cruise_id,
                                       int min_dwell_time, int max_dwell_time);
    void SignalSetPatrolFailed(QString camera_index_code, QString error_text);
    void SignalSetHardwarePatrolFinished(QString camera_index_code);
    void SignalSetSoftwarePatrolFinished(QString camera_index_code);
    void SignalGetAllPatternsSuc(QString camera_index_code, QVector<int> patterns);
    void SignalGetAllPatternsFailed(QString camera_index_code);
    void SignalGetPTZLockStatusSuc(QString camera_index_code);
    void SignalGetPTZLockStatusFailed(QString camera_index_code, QString error_text);

private:
    using Query = detail::GetQuery;
    struct Private;

    void Start(int kind, const QString &camera_index_code, int cruise_index = 0);
    void Send(const std::shared_ptr<Query> &query);
    void Later(const std::shared_ptr<Query> &query);
    void WatchDriver(QObject *driver);
    void OnDriverReplied(const ptz_devices::DriverReply &reply);
    void Complete(const std::shared_ptr<Query> &query);
    void OnPresetsChanged(const QString &camera_index_code);

    std::unique_ptr<Private> d;
};

} // namespace zeph_ptz_controller
