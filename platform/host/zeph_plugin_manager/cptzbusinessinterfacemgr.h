#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "tarn/base/singleton.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ZephPluginManager {

// The host's synchronous PTZ business calls. Each returns false on failure
// with a readable reason in LastError() and, where the response has one, in
// its error_text. Unknown cameras and users, preset numbers outside 1-256 and
// patrols that break the patrol rules (ptz_plugin_protocol/cruisepath.h) are refused.
//
// Virtual and fish-eye presets and the client's patrol bookkeeping live in the
// site store; device presets and patrols are answered from the camera's last
// known list (what its driver last reported).
class HOST_SERVICES_EXPORT CPTZBusinessInterfaceMgr : public QObject,
                                                      public Tarn::Base::CSingleton<CPTZBusinessInterfaceMgr>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CPTZBusinessInterfaceMgr>;

public:
    using Clock = std::function<QDateTime()>;

    // An empty user id asks for the current user.
    bool GetUserPTZPermission(const ptz_plugin_protocol::GetUserPtzPermRequest &request,
                              ptz_plugin_protocol::GetUserPtzPermResponse &response);
    bool GetPTZLockStatus(const ptz_plugin_protocol::PTZLockStatusRequest &request,
                          ptz_plugin_protocol::PTZLockStatusResponse &response);
    bool GetPTZParkAction(const ptz_plugin_protocol::GetParkActionRequest &request,
                          ptz_plugin_protocol::GetParkActionResponse &response);
    bool GetPatrolRecoverConfig(const ptz_plugin_protocol::GetPatrolRecoverConfigRequest &request,
                                ptz_plugin_protocol::GetPatrolRecoverConfigResponse &response);

    // preset_type -1 answers every type: device presets first, then the
    // client's fish-eye and virtual presets, each by number.
    bool GetPresets(const ptz_plugin_protocol::GetPresetRequest &request,
                    ptz_plugin_protocol::GetPresetResponse &response);
    // Client presets (type 2 or 3). A preset_index of -1 takes the lowest free number.
    bool AddPreset(const ptz_plugin_protocol::AddPresetRequest &request,
                   ptz_plugin_protocol::AddPresetResponse &response);
    bool UpdatePreset(const ptz_plugin_protocol::UpdatePresetRequest &request,
                      ptz_plugin_protocol::UpdatePresetResponse &response);
    bool DeletePreset(const ptz_plugin_protocol::DeletePresetRequest &request,
                      ptz_plugin_protocol::DeletePresetResponse &response);

    // Patrols of the camera by slot: the client's records, then device patrols
    // of the driver's last list in slots the client does not keep.
    bool GetCruises(const ptz_plugin_protocol::GetCruisesRequest &request,
                    ptz_plugin_protocol::GetCruiseResponse &response);
    // cruise_id of a client patrol is its slot number as decimal text.
    bool AddCruise(const ptz_plugin_protocol::AddCruiseRequest &request,
                   ptz_plugin_protocol::AddCruiseResponse &response);
    bool UpdateCruise(const ptz_plugin_protocol::UpdateCruiseRequest &request,
                      ptz_plugin_protocol::UpdateCruiseResponse &response);
    bool DeleteCruise(const ptz_plugin_protocol::DeleteCruiseRequest &request,
                      ptz_plugin_protocol::DeleteCruiseResponse &response);

    // The patrols the client keeps for a camera (no device patrols), by slot.
    std::vector<ptz_plugin_protocol::CruiseInfo> StoredCruises(const QString &camera);
    std::optional<ptz_plugin_protocol::CruiseInfo> StoredCruise(const QString &camera, int number);
    // Checks a patrol with the patrol rules and keeps it in the site store,
    // replacing what the slot held. Every write of a client patrol goes here.
    bool StorePatrol(const QString &camera, int number, int type, const std::string &name,
                     const std::vector<ptz_plugin_protocol::CruisePoint> &points, std::string *errorText);

    // Settings the controller library writes after the device accepted them.
    bool SetPTZParkAction(const ptz_plugin_protocol::SetParkActionRequest &request);
    bool SetPatrolRecoverConfig(const ptz_plugin_protocol::SetPatrolRecoverConfigRequest &request);

    // PTZ lock bookkeeping for the lock and unlock commands. An empty user
    // means the current user. Locking succeeds when the camera is free, held
    // by the same user, or held by a user of a lower level (who is then
    // seized); seconds 1..3600. Unlocking succeeds for the holder and for a
    // user of a higher level; unlocking a free camera succeeds.
    bool LockPTZ(const std::string &cameraId, const std::string &user, int seconds);
    bool UnlockPTZ(const std::string &cameraId, const std::string &user);
    // True when `user` may move the camera now: it is not locked, locked by
    // that user, or locked by a user of a lower level. When false, `holder` receives the holder's name.
    bool IsPTZControlAllowed(const std::string &cameraId, const std::string &user, std::string *holder = nullptr);

    // Permission item (15 PTZ control, 796 park action) of `user` (empty: the
    // current user) on the camera, granted directly or for all cameras.
    bool IsCameraPermissionValid(const std::string &user, const std::string &cameraId, int item);

    QString LastError() const;

    // Name of this client, stored with the locks it takes so that the same
    // user on another client is told apart. Defaults to the machine's host name.
    void SetClientName(const QString &name);
    QString ClientName() const;

    // Time source of lock expiry; tests install a manual one. Null restores the wall clock.
    void SetClock(Clock clock);
    QDateTime Now() const;

Q_SIGNALS:
    // A lock changed hands or lapsed by an unlock (camera id, new holder or empty).
    void SignalPTZLockChanged(const QString &cameraId, const QString &holder);

private:
    CPTZBusinessInterfaceMgr();
    ~CPTZBusinessInterfaceMgr() override;

    bool Fail(const QString &error, std::string *errorText = nullptr);
    bool ResolveCruiseNumber(const std::string &cruiseId, int index, int *number, std::string *errorText);
    // The preset-name rules for a client preset, duplicates among the camera's presets of that type included.
    bool CheckPresetName(const QString &camera, int number, int type, const std::string &utf8, QString *name,
                         std::string *errorText);
    bool ValidateCruise(int number, int type, const std::vector<ptz_plugin_protocol::CruisePoint> &points,
                        std::string *errorText);

    QString m_lastError;
    QString m_clientName;
    Clock m_clock;
};

} // namespace ZephPluginManager
