#pragma once

// Internals of CUniversalPTZController, shared by its sources:
// cuniversalptzcontroller.cpp (request plumbing, interruptions),
// _access.cpp (who may move a camera), _commands.cpp (Control, one handler
// per command kind), _requests.cpp (presets, patrols, settings, 3D) and
// _replies.cpp (what each answer does to the shared state and the signals).

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include "ptz_devices/iptzdriver.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>
#include <QPair>
#include <QPointer>
#include <QRectF>
#include <QSet>

namespace ZephPluginManager {
class CPTZBusinessInterfaceMgr;
}

namespace zeph_ptz_controller {

class CPTZStateStorageManager;

namespace detail {

CPTZStateStorageManager *Storage();
ZephPluginManager::CPTZBusinessInterfaceMgr *Business();
// The signed-in user of the host; requests act for this user only.
QString ActingUser();

bool IsMove(uint32_t command);
bool IsLensAxis(uint32_t command);

// What a user may have started on a camera and stop again under anyone's lock.
enum class Activity { None, AutoScan, Patrol, Pattern, PatternRecord };

struct Pending
{
    enum Kind {
        ControlCommand,
        PresetRequest,
        CruiseRequest,
        ParkAction,
        CruiseRecover,
        AutoTrackSet,
        AutoTrackGet,
        Resume,
        Position3D,
        KindCount
    };

    Kind kind = ControlCommand;
    QString camera;
    QString owner; // as signalled: the request's owner or the camera
    QString user;  // who asked: the signed-in user at the time of the request
    ptz_plugin_protocol::PTZControlCommand command;
    ptz_plugin_protocol::PresetControlRequest preset;
    ptz_plugin_protocol::CruiseControlRequest cruise;
    ptz_plugin_protocol::SetParkActionRequest park;
    ptz_plugin_protocol::SetPatrolRecoverConfigRequest recover;
    bool on = false;
    bool rename = false;  // a SetPreset of a number the camera has: only the name changes
    int stopped_kind = 0; // what a 44 stopped: 1 pattern, 2 patrol
    bool resume_patrol = false;
    int resume_index = 0;

    QPointer<ptz_devices::IPtzDriver> driver;
    quint64 request_id = 0;
    qint64 deadline = 0;
};
using PendingPtr = std::shared_ptr<Pending>;

} // namespace detail

struct CUniversalPTZController::Private
{
    using Key = QPair<const QObject *, quint64>;
    QMap<Key, detail::PendingPtr> pending;
    // Requests already failed for want of an answer: a late answer still
    // updates the shared state (the camera did carry the request out).
    QMap<Key, detail::PendingPtr> overdue;
    QSet<const QObject *> connected_drivers;
    // Cameras whose interruption notice is on its way; the camera's own
    // report of the same interruption is then not repeated.
    QSet<QString> notices_pending;
    // Who started the activity running on a camera (camera -> activity -> user).
    QHash<QString, QHash<int, QString>> starters;
    QTimer *watchdog = nullptr;
    QElapsedTimer clock;
    int timeout_ms = 30000;
};

namespace detail {

// Handlers of one request kind. `fold` writes what a successful answer means
// into the shared state; it runs for answers in time and for late ones.
// `answer` emits the request's result signals, exactly once per request.
struct KindHandlers
{
    void (*fold)(CUniversalPTZController &c, Pending &p, const ptz_devices::DriverReply &reply);
    void (*answer)(CUniversalPTZController &c, const Pending &p, bool ok, const QString &error, int error_code);
};

// The handlers live in the sources of their concern; this struct is the
// controller's friend through which they reach its internals.
struct UniversalHandlers
{
    static const KindHandlers &ForKind(Pending::Kind kind);

    static void FoldControl(CUniversalPTZController &c, Pending &p, const ptz_devices::DriverReply &reply);
    static void AnswerControl(CUniversalPTZController &c, const Pending &p, bool ok, const QString &error,
                              int error_code);
    static CUniversalPTZController::Private &D(CUniversalPTZController &c) { return *c.d; }
    static void FailLater(CUniversalPTZController &c, const PendingPtr &p, int code, const QString &error)
    {
        c.FailLater(p, code, error);
    }
    static void Track(CUniversalPTZController &c, ptz_devices::IPtzDriver *driver, quint64 id, const PendingPtr &p)
    {
        c.Track(driver, id, p);
    }
    static void SucceedLater(CUniversalPTZController &c, const PendingPtr &p);
    static void Finish(CUniversalPTZController &c, const PendingPtr &p, bool ok, const QString &error, int code)
    {
        c.Finish(p, ok, error, code);
    }
    static void NoteStarted(CUniversalPTZController &c, const QString &camera, Activity activity, const QString &user)
    {
        c.NoteStarted(camera, int(activity), user);
    }
};

} // namespace detail

} // namespace zeph_ptz_controller
