// Who may move a camera, decided by the controller library for every request
// kind: the signed-in user's permission and the PTZ lock, whatever the
// request's owner field says.
#include "support/ptztestenv.h"
#include "support/records.h"

#include "zeph_plugin_manager/ccurrentuser.h"

#include <QRectF>
#include <QTest>

#include <functional>

using namespace ptz_plugin_protocol;
using ptz_test::Answers;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

namespace {

const QString kHolder = QStringLiteral("holder"); // level 50, holds the lock

enum class Actor { NoPermission, Below, Equal, Above };

// Requests name the holder as owner: naming the holder must not pass for the holder.
PTZControlCommand Cmd(uint32_t code, uint32_t action, int param = 0)
{
    PTZControlCommand c = ptz_test::Cmd(kDome, code, action, 20, param);
    c.owner_index_code = kHolder.toStdString();
    return c;
}

PresetControlRequest PresetRequest(const char *operation)
{
    PresetControlRequest r = ptz_test::PresetRequest(operation, 1, "Gate");
    r.owner_index_code = kHolder.toStdString();
    return r;
}

CruiseControlRequest CruiseRequest(const char *operation, int action)
{
    return ptz_test::CruiseRequest(operation, 1, action);
}

using Send = std::function<void(CUniversalPTZController &)>;

// Every kind of request a panel sends, by name.
const QVector<QPair<const char *, Send>> &Requests()
{
    using C = CUniversalPTZController;
    const std::string dome = kDome.toStdString();
    static const QVector<QPair<const char *, Send>> requests = {
        {"move", [](C &c) { c.Control(Cmd(PTZ_CMD_PAN_RIGHT, 0)); }},
        {"zoom", [](C &c) { c.Control(Cmd(PTZ_CMD_ZOOM_IN, 0)); }},
        {"light", [](C &c) { c.Control(Cmd(PTZ_CMD_LIGHT, 0)); }},
        {"wiper", [](C &c) { c.Control(Cmd(PTZ_CMD_WIPER, 0)); }},
        {"auto-scan on", [](C &c) { c.Control(Cmd(PTZ_CMD_AUTO_PAN, 0)); }},
        {"auto-scan off", [](C &c) { c.Control(Cmd(PTZ_CMD_AUTO_PAN, 1)); }},
        {"pattern record", [](C &c) { c.Control(Cmd(PTZ_CMD_PATTERN_RECORD_START, 0, 2)); }},
        {"pattern record stop", [](C &c) { c.Control(Cmd(PTZ_CMD_PATTERN_RECORD_STOP, 0, 2)); }},
        {"pattern play", [](C &c) { c.Control(Cmd(PTZ_CMD_PATTERN_RUN, 0, 1)); }},
        {"stop running", [](C &c) { c.Control(Cmd(PTZ_CMD_STOP_RUNNING, 1)); }},
        {"pattern delete", [](C &c) { c.Control(Cmd(PTZ_CMD_PATTERN_DELETE, 0, 1)); }},
        {"one-key focus", [](C &c) { c.Control(Cmd(PTZ_CMD_ONE_KEY_FOCUS, 0)); }},
        {"lens init", [](C &c) { c.Control(Cmd(PTZ_CMD_LENS_INIT, 0)); }},
        {"lock", [](C &c) { c.Control(Cmd(PTZ_CMD_LOCK, 1, 60)); }},
        {"unlock", [](C &c) { c.Control(Cmd(PTZ_CMD_UNLOCK, 1)); }},
        {"preset set", [](C &c) { c.Preset(PresetRequest("SetPreset")); }},
        {"preset call", [](C &c) { c.Preset(PresetRequest("GotoPreset")); }},
        {"preset delete", [](C &c) { c.Preset(PresetRequest("DelPreset")); }},
        {"patrol write", [](C &c) { c.Cruise(CruiseRequest("ModifyCruiseRoute", CRUISE_TYPE_DEVICE)); }},
        {"patrol delete", [](C &c) { c.Cruise(CruiseRequest("DelCruiseRoute", CRUISE_TYPE_DEVICE)); }},
        {"patrol start", [](C &c) { c.Cruise(CruiseRequest("CruiseRouteControl", 0)); }},
        {"patrol stop", [](C &c) { c.Cruise(CruiseRequest("CruiseRouteControl", 1)); }},
        {"park action",
         [dome](C &c) {
             c.SetParkAction({dome, true, 30, 5, 1});
         }},
        {"recovery",
         [dome](C &c) {
             c.SetCruiseRecover({dome, true, 30});
         }},
        {"auto track",
         [dome](C &c) {
             c.SetAutoTrack({dome, 1});
         }},
        {"3D positioning", [](C &c) { c.Position3D(kDome, QRectF(0.4, 0.4, 0.2, 0.2)); }},
    };
    return requests;
}

Send Request(const char *name)
{
    for (const auto &request : Requests()) {
        if (qstrcmp(request.first, name) == 0)
            return request.second;
    }
    return {};
}

} // namespace

Q_DECLARE_METATYPE(Actor)
Q_DECLARE_METATYPE(Send)

class TestUniversalPTZControllerAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_env.setUp();
        addUser(kHolder, 50, true);
        addUser(QStringLiteral("nobody"), 50, false);
        addUser(QStringLiteral("below"), 20, true);
        addUser(QStringLiteral("equal"), 50, true);
        addUser(QStringLiteral("above"), 80, true);
    }
    void cleanup() { m_env.tearDown(); }

    void everyRequestIsChecked_data()
    {
        QTest::addColumn<Send>("request");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<Actor>("actor");
        const QList<QPair<const char *, Actor>> actors = {{"no permission", Actor::NoPermission},
                                                          {"below holder", Actor::Below},
                                                          {"equal to holder", Actor::Equal},
                                                          {"above holder", Actor::Above}};
        for (const auto &request : Requests()) {
            for (const auto &actor : actors)
                QTest::addRow("%s, %s", request.first, actor.first)
                    << request.second << QByteArray(request.first) << actor.second;
        }
    }
    void everyRequestIsChecked()
    {
        QFETCH(Send, request);
        QFETCH(QByteArray, name);
        QFETCH(Actor, actor);
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        prepareCamera(controller);
        // The holder's patrol runs: lower users must not be able to end it.
        run(controller, Request("patrol start"));
        if (actor != Actor::NoPermission)
            QVERIFY(m_env.business()->LockPTZ(kDome.toStdString(), kHolder.toStdString(), 600));
        static const char *const names[] = {"nobody", "below", "equal", "above"};
        actAs(QString::fromLatin1(names[int(actor)]));
        cam->clearRequestLog();

        Answers answers(&controller);
        QSignalSpy seized(&controller, &CUniversalPTZController::SignalSeizedByOtherUser);
        request(controller);
        QCOMPARE(answers.count(), 0); // never inside the call
        QTRY_COMPARE(answers.count(), 1);
        QTRY_COMPARE(controller.PendingRequestCount(), 0);
        QCoreApplication::processEvents();

        const QString error = answers.error();
        if (actor == Actor::Above) {
            QVERIFY2(!error.contains(QStringLiteral("permission")) && !error.contains(QStringLiteral("locked")),
                     qPrintable(error));
            if (name != "lock" && name != "unlock")
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
            QCOMPARE(error, name == "park action"
                                ? QStringLiteral("You have no permission to configure the park action of this camera.")
                                : QStringLiteral("You have no PTZ control permission for this camera."));
        } else {
            QVERIFY2(error.contains(QStringLiteral("locked by holder")), qPrintable(error));
            QTRY_COMPARE(seized.count(), 1);
        }
    }
    void ownActivityMayBeStoppedUnderAnotherLock_data()
    {
        QTest::addColumn<Send>("start");
        QTest::addColumn<Send>("stop");
        QTest::newRow("auto-scan") << Request("auto-scan on") << Request("auto-scan off");
        QTest::newRow("patrol") << Request("patrol start") << Request("patrol stop");
        QTest::newRow("pattern") << Request("pattern play") << Request("stop running");
    }
    void ownActivityMayBeStoppedUnderAnotherLock()
    {
        QFETCH(Send, start);
        QFETCH(Send, stop);
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        prepareCamera(controller);
        actAs(QStringLiteral("below"));
        run(controller, start);
        QVERIFY(m_env.business()->LockPTZ(kDome.toStdString(), kHolder.toStdString(), 600));

        // The holder's lock does not keep "below" from stopping what "below" started, nor from releasing a held move.
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

private:
    void addUser(const QString &name, int level, bool permitted)
    {
        QVERIFY(m_env.store()->upsertUser({name, level}));
        if (permitted) {
            QVERIFY(m_env.store()->grantPermission(name, kDome, site_store::CSiteStore::kPermPtzControl));
            QVERIFY(m_env.store()->grantPermission(name, kDome, site_store::CSiteStore::kPermParkAction));
        }
    }
    void actAs(const QString &name) { QVERIFY(ZephPluginManager::CCurrentUser::Instance()->SetUser(name)); }
    void run(CUniversalPTZController &controller, const Send &request)
    {
        Answers answers(&controller);
        request(controller);
        QTRY_COMPARE(answers.count(), 1);
        QTRY_COMPARE(controller.PendingRequestCount(), 0);
        QVERIFY2(answers.error().isEmpty(), qPrintable(answers.error()));
    }
    // As the holder: presets 1 and 2, patrol 1 and pattern 1 on the dome.
    void prepareCamera(CUniversalPTZController &controller)
    {
        actAs(kHolder);
        Answers answers(&controller);
        controller.Preset(ptz_test::PresetRequest("SetPreset", 2, "Yard")); // names are unique per camera
        QTRY_COMPARE(answers.count(), 1);
        run(controller, Request("preset set"));
        run(controller, Request("patrol write"));
        for (int pattern : {2, 1}) { // 2 recorded, then kept
            controller.Control(Cmd(PTZ_CMD_PATTERN_RECORD_START, 0, pattern));
            QTRY_COMPARE(controller.PendingRequestCount(), 0);
            controller.Control(Cmd(PTZ_CMD_PATTERN_RECORD_STOP, 0, pattern));
            QTRY_COMPARE(controller.PendingRequestCount(), 0);
        }
    }

    PtzTestEnv m_env;
};

QTEST_GUILESS_MAIN(TestUniversalPTZControllerAccess)
#include "tst_cuniversalptzcontroller_access.moc"
