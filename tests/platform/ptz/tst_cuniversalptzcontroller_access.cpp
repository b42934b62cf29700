// Who may move a camera, decided by the controller library for every request
// kind: the signed-in user's permission and the PTZ lock, whatever the
// request's owner field says.
#include "support/ptztestenv.h"

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include "zeph_plugin_manager/ccurrentuser.h"

#include <QRectF>
#include <QSignalSpy>
#include <QTest>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CPTZStateStorageManager;
using zeph_ptz_controller::CUniversalPTZController;
using ptz_devices::DriverOperation;
namespace demo = site_store::demo;

namespace {

const QString kDome = QString::fromLatin1(demo::kSpeedDome);
const QString kHolder = QStringLiteral("holder"); // level 50, holds the lock

enum class Actor { NoPermission, Below, Equal, Above };

enum class Request {
    Move, Zoom, Light, Wiper, AutoScanOn, AutoScanOff, RecordStart, RecordStop, PatternPlay, StopRunning,
    PatternDelete, OneKeyFocus, LensInit, Lock, Unlock, PresetSet, PresetCall, PresetDelete, PatrolWrite,
    PatrolDelete, PatrolStart, PatrolStop, ParkAction, Recovery, AutoTrack, Position3D
};

PTZControlCommand Cmd(uint32_t code, uint32_t action, int param = 0)
{
    PTZControlCommand c;
    c.camera_index_code = kDome.toStdString();
    c.owner_index_code = kHolder.toStdString(); // naming the holder must not pass for the holder
    c.command = code;
    c.action = action;
    c.speed = 20;
    c.param = param;
    return c;
}

PresetControlRequest PresetRequest(const char *operation)
{
    PresetControlRequest r;
    r.operation = operation;
    r.camera_index_code = kDome.toStdString();
    r.owner_index_code = kHolder.toStdString();
    r.preset_index = 1;
    r.preset_name = "Gate";
    return r;
}

CruiseControlRequest CruiseRequest(const char *operation, int action)
{
    CruiseControlRequest r;
    r.camera_index_code = kDome.toStdString();
    r.operation = operation;
    r.cruise_index = 1;
    r.action = action;
    for (uint32_t preset : {1u, 2u}) {
        CruisePoint p;
        p.preset_index = preset;
        p.speed = 20;
        p.dwell_time = 5;
        r.points.push_back(p);
    }
    return r;
}

void Send(CUniversalPTZController &c, Request request)
{
    switch (request) {
    case Request::Move: return c.Control(Cmd(PTZ_CMD_PAN_RIGHT, 0));
    case Request::Zoom: return c.Control(Cmd(PTZ_CMD_ZOOM_IN, 0));
    case Request::Light: return c.Control(Cmd(PTZ_CMD_LIGHT, 0));
    case Request::Wiper: return c.Control(Cmd(PTZ_CMD_WIPER, 0));
    case Request::AutoScanOn: return c.Control(Cmd(PTZ_CMD_AUTO_PAN, 0));
    case Request::AutoScanOff: return c.Control(Cmd(PTZ_CMD_AUTO_PAN, 1));
    case Request::RecordStart: return c.Control(Cmd(PTZ_CMD_PATTERN_RECORD_START, 0, 2));
    case Request::RecordStop: return c.Control(Cmd(PTZ_CMD_PATTERN_RECORD_STOP, 0, 2));
    case Request::PatternPlay: return c.Control(Cmd(PTZ_CMD_PATTERN_RUN, 0, 1));
    case Request::StopRunning: return c.Control(Cmd(PTZ_CMD_STOP_RUNNING, 1));
    case Request::PatternDelete: return c.Control(Cmd(PTZ_CMD_PATTERN_DELETE, 0, 1));
    case Request::OneKeyFocus: return c.Control(Cmd(PTZ_CMD_ONE_KEY_FOCUS, 0));
    case Request::LensInit: return c.Control(Cmd(PTZ_CMD_LENS_INIT, 0));
    case Request::Lock: return c.Control(Cmd(PTZ_CMD_LOCK, 1, 60));
    case Request::Unlock: return c.Control(Cmd(PTZ_CMD_UNLOCK, 1));
    case Request::PresetSet: return c.Preset(PresetRequest("SetPreset"));
    case Request::PresetCall: return c.Preset(PresetRequest("GotoPreset"));
    case Request::PresetDelete: return c.Preset(PresetRequest("DelPreset"));
    case Request::PatrolWrite: return c.Cruise(CruiseRequest("ModifyCruiseRoute", CRUISE_TYPE_DEVICE));
    case Request::PatrolDelete: return c.Cruise(CruiseRequest("DelCruiseRoute", CRUISE_TYPE_DEVICE));
    case Request::PatrolStart: return c.Cruise(CruiseRequest("CruiseRouteControl", 0));
    case Request::PatrolStop: return c.Cruise(CruiseRequest("CruiseRouteControl", 1));
    case Request::ParkAction: {
        SetParkActionRequest r;
        r.camera_index_code = kDome.toStdString();
        r.enabled = true;
        r.wait_time = 30;
        r.action_type = 5;
        r.target_id = 1;
        return c.SetParkAction(r);
    }
    case Request::Recovery: {
        SetPatrolRecoverConfigRequest r;
        r.camera_index_code = kDome.toStdString();
        r.enabled = true;
        r.wait_time = 30;
        return c.SetCruiseRecover(r);
    }
    case Request::AutoTrack: {
        SetAutoTrackRequest r;
        r.camera_index_code = kDome.toStdString();
        r.enable = 1;
        return c.SetAutoTrack(r);
    }
    case Request::Position3D: return c.Position3D(kDome, QRectF(0.4, 0.4, 0.2, 0.2));
    }
}

// Every answer signal of the controller, and the error text it carried.
struct Answers
{
    explicit Answers(CUniversalPTZController *c)
        : ok(c, &CUniversalPTZController::SignalExecutionSucceeded),
          failed(c, &CUniversalPTZController::SignalExecutionFailed),
          tips(c, &CUniversalPTZController::SignalMessageTipNeeded),
          presets(c, &CUniversalPTZController::signalPresetFinished),
          cruises(c, &CUniversalPTZController::signalCruiseFinished),
          park(c, &CUniversalPTZController::SignalParkActionFinished),
          recover(c, &CUniversalPTZController::SignalCruiseRecoverFinished),
          track(c, &CUniversalPTZController::SignalPTZAutoTrackState),
          position(c, &CUniversalPTZController::SignalPosition3DFinished)
    {
    }
    int count() const
    {
        return ok.count() + failed.count() + presets.count() + cruises.count() + park.count() + recover.count() +
               track.count() + position.count();
    }
    QString error() const
    {
        for (const auto &tip : tips) {
            if (tip.at(1).toInt() == 0)
                return tip.at(0).toString();
        }
        return presets.isEmpty() ? QString() : presets.at(0).at(1).toString();
    }
    QSignalSpy ok, failed, tips, presets, cruises, park, recover, track, position;
};

} // namespace

Q_DECLARE_METATYPE(Actor)
Q_DECLARE_METATYPE(Request)

class TestUniversalPTZControllerAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyRequestIsChecked_data();
    void everyRequestIsChecked();
    void ownActivityMayBeStoppedUnderAnotherLock_data();
    void ownActivityMayBeStoppedUnderAnotherLock();

private:
    void addUser(const QString &name, int level, bool permitted);
    void actAs(const QString &name);
    // As the holder: presets 1 and 2, patrol 1 and pattern 1 on the dome.
    void prepareCamera(CUniversalPTZController &controller);
    void run(CUniversalPTZController &controller, Request request);

    PtzTestEnv m_env;
};

void TestUniversalPTZControllerAccess::init()
{
    m_env.setUp();
    addUser(kHolder, 50, true);
    addUser(QStringLiteral("nobody"), 50, false);
    addUser(QStringLiteral("below"), 20, true);
    addUser(QStringLiteral("equal"), 50, true);
    addUser(QStringLiteral("above"), 80, true);
}

void TestUniversalPTZControllerAccess::cleanup()
{
    m_env.tearDown();
}

void TestUniversalPTZControllerAccess::addUser(const QString &name, int level, bool permitted)
{
    site_store::UserRecord user;
    user.name = name;
    user.ptzLevel = level;
    QVERIFY(m_env.store()->upsertUser(user));
    if (permitted) {
        QVERIFY(m_env.store()->grantPermission(name, kDome, site_store::CSiteStore::kPermPtzControl));
        QVERIFY(m_env.store()->grantPermission(name, kDome, site_store::CSiteStore::kPermParkAction));
    }
}

void TestUniversalPTZControllerAccess::actAs(const QString &name)
{
    QVERIFY(ZephPluginManager::CCurrentUser::Instance()->SetUser(name));
}

void TestUniversalPTZControllerAccess::run(CUniversalPTZController &controller, Request request)
{
    Answers answers(&controller);
    Send(controller, request);
    QTRY_COMPARE(answers.count(), 1);
    QTRY_COMPARE(controller.PendingRequestCount(), 0);
    QVERIFY2(answers.error().isEmpty(), qPrintable(answers.error()));
}

void TestUniversalPTZControllerAccess::prepareCamera(CUniversalPTZController &controller)
{
    actAs(kHolder);
    PresetControlRequest second = PresetRequest("SetPreset");
    second.preset_index = 2;
    second.preset_name = "Yard"; // names are unique per camera
    Answers answers(&controller);
    controller.Preset(second);
    QTRY_COMPARE(answers.count(), 1);
    run(controller, Request::PresetSet);
    run(controller, Request::PatrolWrite);
    Send(controller, Request::RecordStart); // pattern 2: recorded, then kept
    QTRY_COMPARE(controller.PendingRequestCount(), 0);
    Send(controller, Request::RecordStop);
    QTRY_COMPARE(controller.PendingRequestCount(), 0);
    controller.Control(Cmd(PTZ_CMD_PATTERN_RECORD_START, 0, 1));
    QTRY_COMPARE(controller.PendingRequestCount(), 0);
    controller.Control(Cmd(PTZ_CMD_PATTERN_RECORD_STOP, 0, 1));
    QTRY_COMPARE(controller.PendingRequestCount(), 0);
}

void TestUniversalPTZControllerAccess::everyRequestIsChecked_data()
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<Actor>("actor");
    const QList<QPair<const char *, Request>> requests = {
        {"move", Request::Move}, {"zoom", Request::Zoom}, {"light", Request::Light}, {"wiper", Request::Wiper},
        {"auto-scan on", Request::AutoScanOn}, {"auto-scan off", Request::AutoScanOff},
        {"pattern record", Request::RecordStart}, {"pattern record stop", Request::RecordStop},
        {"pattern play", Request::PatternPlay}, {"stop running", Request::StopRunning},
        {"pattern delete", Request::PatternDelete}, {"one-key focus", Request::OneKeyFocus},
        {"lens init", Request::LensInit}, {"lock", Request::Lock}, {"unlock", Request::Unlock},
        {"preset set", Request::PresetSet}, {"preset call", Request::PresetCall},
        {"preset delete", Request::PresetDelete}, {"patrol write", Request::PatrolWrite},
        {"patrol delete", Request::PatrolDelete}, {"patrol start", Request::PatrolStart},
        {"patrol stop", Request::PatrolStop}, {"park action", Request::ParkAction},
        {"recovery", Request::Recovery}, {"auto track", Request::AutoTrack}, {"3D positioning", Request::Position3D}};
    const QList<QPair<const char *, Actor>> actors = {{"no permission", Actor::NoPermission},
                                                      {"below holder", Actor::Below},
                                                      {"equal to holder", Actor::Equal},
                                                      {"above holder", Actor::Above}};
    for (const auto &request : requests) {
        for (const auto &actor : actors)
            QTest::addRow("%s, %s", request.first, actor.first) << request.second << actor.second;
    }
}

void TestUniversalPTZControllerAccess::everyRequestIsChecked()
{
    QFETCH(Request, request);
    QFETCH(Actor, actor);
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    prepareCamera(controller);
    // The holder's patrol runs: lower users must not be able to end it.
    run(controller, Request::PatrolStart);
    if (actor != Actor::NoPermission)
        QVERIFY(m_env.business()->LockPTZ(kDome.toStdString(), kHolder.toStdString(), 600));
    static const char *const names[] = {"nobody", "below", "equal", "above"};
    actAs(QString::fromLatin1(names[int(actor)]));
    cam->clearRequestLog();

    Answers answers(&controller);
    QSignalSpy seized(&controller, &CUniversalPTZController::SignalSeizedByOtherUser);
    Send(controller, request);
    QCOMPARE(answers.count(), 0); // never inside the call
    QTRY_COMPARE(answers.count(), 1);
    QTRY_COMPARE(controller.PendingRequestCount(), 0);
    QCoreApplication::processEvents();

    const QString error = answers.error();
    if (actor == Actor::Above) {
        QVERIFY2(!error.contains(QStringLiteral("permission")) && !error.contains(QStringLiteral("locked")),
                 qPrintable(error));
        if (request != Request::Lock && request != Request::Unlock)
            QVERIFY(!cam->requestLog().isEmpty());
        return;
    }
    QVERIFY(cam->requestLog().isEmpty());
    QCOMPARE(cam->status().runningPatrol, 1);
    if (!answers.failed.isEmpty()) {
        const int code = answers.failed.at(0).at(2).toInt();
        QCOMPARE(code, actor == Actor::NoPermission ? int(CUniversalPTZController::kErrorNoPermission)
                                                    : int(CUniversalPTZController::kErrorLockedByOther));
    }
    if (actor == Actor::NoPermission) {
        QCOMPARE(error, request == Request::ParkAction
                            ? QStringLiteral("You have no permission to configure the park action of this camera.")
                            : QStringLiteral("You have no PTZ control permission for this camera."));
    } else {
        QVERIFY2(error.contains(QStringLiteral("locked by holder")), qPrintable(error));
        QTRY_COMPARE(seized.count(), 1);
    }
}

void TestUniversalPTZControllerAccess::ownActivityMayBeStoppedUnderAnotherLock_data()
{
    QTest::addColumn<Request>("start");
    QTest::addColumn<Request>("stop");
    QTest::newRow("auto-scan") << Request::AutoScanOn << Request::AutoScanOff;
    QTest::newRow("patrol") << Request::PatrolStart << Request::PatrolStop;
    QTest::newRow("pattern") << Request::PatternPlay << Request::StopRunning;
}

void TestUniversalPTZControllerAccess::ownActivityMayBeStoppedUnderAnotherLock()
{
    QFETCH(Request, start);
    QFETCH(Request, stop);
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    prepareCamera(controller);
    actAs(QStringLiteral("below"));
    run(controller, start);
    QVERIFY(m_env.business()->LockPTZ(kDome.toStdString(), kHolder.toStdString(), 600));

    // The lock holder's lock keeps "below" from moving the camera...
    Answers refused(&controller);
    Send(controller, Request::Move);
    QTRY_COMPARE(refused.count(), 1);
    QCOMPARE(refused.failed.count(), 1);
    // ...but not from stopping what "below" started, nor from releasing a held move.
    run(controller, stop);
    const ptz_devices::DeviceStatus status = cam->status();
    QVERIFY(!status.autoScan);
    QCOMPARE(status.runningPatrol, 0);
    QCOMPARE(status.runningPattern, 0);
    Answers released(&controller);
    controller.Control(Cmd(PTZ_CMD_PAN_RIGHT, 1));
    QTRY_COMPARE(released.count(), 1);
    QCOMPARE(released.ok.count(), 1);
}

QTEST_GUILESS_MAIN(TestUniversalPTZControllerAccess)
#include "tst_cuniversalptzcontroller_access.moc"
