// Who may move a camera. Decided here, below every panel, from the host's
// signed-in user, the camera's permissions and the PTZ lock in the site store.
#include "zeph_ptz_controller/cuniversalptzcontroller_p.h"

#include "zeph_ptz_controller/ccommonfunction.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QTimer>

namespace zeph_ptz_controller {

using detail::Activity;
using detail::Tr;

namespace {

// Whether the activity a stop names is running now, by the shared state.
bool IsRunning(const QString &camera, Activity activity)
{
    CPTZStateStorageManager *storage = detail::Storage();
    switch (activity) {
    case Activity::AutoScan:
        return storage->IsAutoScan(camera, false);
    case Activity::Patrol:
        return storage->IsCruising(camera);
    case Activity::Pattern:
        return storage->IsRunningPattern(camera);
    case Activity::PatternRecord:
        return storage->IsRecordPattern(camera);
    case Activity::None:
        break;
    }
    return false;
}

} // namespace

bool CUniversalPTZController::Admit(const PendingPtr &pending, int permission_item, int own_stop)
{
    const QString &camera = pending->camera;
    pending->user = detail::ActingUser();
    if (own_stop != int(Activity::None) && !pending->user.isEmpty() && IsRunning(camera, Activity(own_stop))
        && d->starters.value(camera).value(own_stop) == pending->user)
        return true;
    // The owner identifier is never the user: permission is the signed-in user's.
    if (!CCommonFunction::IsCameraPermissionValid(QString(), camera,
                                                  ResourceData::ResourcePermissionItem(permission_item))) {
        FailLater(pending, kErrorNoPermission,
                  permission_item == ResourceData::PERMISSION_PARK_ACTION_CONFIG
                      ? Tr("You have no permission to configure the park action of this camera.")
                      : Tr("You have no PTZ control permission for this camera."));
        return false;
    }
    QString error;
    if (!CheckLock(camera, &error)) {
        FailLater(pending, kErrorLockedByOther, error);
        QTimer::singleShot(0, this, [this, camera] { emit SignalSeizedByOtherUser(camera); });
        return false;
    }
    return true;
}

bool CUniversalPTZController::CheckLock(const QString &camera, QString *error)
{
    std::string holder;
    // An empty user is the signed-in one.
    if (detail::Business()->IsPTZControlAllowed(camera.toStdString(), std::string(), &holder))
        return true;
    *error = holder.empty() ? detail::Business()->LastError()
                            : Tr("The PTZ of this camera is locked by %1.").arg(QString::fromStdString(holder));
    return false;
}

void CUniversalPTZController::NoteStarted(const QString &camera, int activity, const QString &user)
{
    QHash<int, QString> &started = d->starters[camera];
    // One activity runs at a time; a new one ends the others.
    if (activity != int(Activity::PatternRecord)) {
        for (Activity running : {Activity::AutoScan, Activity::Patrol, Activity::Pattern})
            started.remove(int(running));
    }
    started.insert(activity, user);
}

} // namespace zeph_ptz_controller
