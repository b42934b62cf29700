#include "ptztestenv.h"

#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <functional>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CPTZStateStorageManager;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

namespace {

const QString kDome = QString::fromLatin1(demo::kSpeedDome);

PTZControlCommand Cmd(const QString &camera, uint32_t code, uint32_t action, int speed = 20, int param = 0)
{
    PTZControlCommand c;
    c.camera_index_code = camera.toStdString();
    c.command = code;
    c.action = action;
    c.speed = speed;
    c.param = param;
    return c;
}

double PanDelta(double before, double after)
{
    return std::fmod(after - before + 540.0, 360.0) - 180.0;
}

CPTZStateStorageManager *Storage()
{
    return CPTZStateStorageManager::Instance();
}

} // namespace

class TestUniversalPTZController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void pressAndReleaseMoveAndStop_data();
    void pressAndReleaseMoveAndStop();
    void badInputAnswersOnceWithText_data();
    void badInputAnswersOnceWithText();
    void lostDeviceFailsEveryRequest();
    void lightAndWiperStateFollowTheCamera();
    void manualMoveInterruptsPatrol_data();
    void manualMoveInterruptsPatrol();
    void manualMoveStopsAutoScan();
    void patternStartEndsPatrolOnce();
    void patternCommandsKeepRunningState();
    void lockAndUnlockRoundTrip();
    void lockHeldByAnother_data();
    void lockHeldByAnother();
    void autoTrackAnswersWithState();
    void parkActionAndRecoveryReachCameraAndSite();

private:
    // Runs `request` and waits until the controller holds no request.
    void settle(CUniversalPTZController &controller);
    void preparePatrol(CUniversalPTZController &controller);

    PtzTestEnv m_env;
};

void TestUniversalPTZController::init()
{
    m_env.setUp();
}

void TestUniversalPTZController::cleanup()
{
    m_env.tearDown();
}

void TestUniversalPTZController::settle(CUniversalPTZController &controller)
{
    QTRY_COMPARE(controller.PendingRequestCount(), 0);
    QCoreApplication::processEvents();
}

void TestUniversalPTZController::pressAndReleaseMoveAndStop_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("panSign");
    QTest::addColumn<int>("tiltSign");
    QTest::addColumn<int>("zoomSign");
    QTest::newRow("pan right") << 24 << 1 << 0 << 0;
    QTest::newRow("pan left") << 23 << -1 << 0 << 0;
    QTest::newRow("tilt down") << 22 << 0 << -1 << 0;
    QTest::newRow("down right") << 28 << 1 << -1 << 0;
    QTest::newRow("zoom in") << 11 << 0 << 0 << 1;
}

void TestUniversalPTZController::pressAndReleaseMoveAndStop()
{
    QFETCH(int, code);
    QFETCH(int, panSign);
    QFETCH(int, tiltSign);
    QFETCH(int, zoomSign);
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    QVERIFY(cam);
    CUniversalPTZController controller;
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);

    const ptz_devices::DeviceStatus start = cam->status();
    controller.Control(Cmd(kDome, uint32_t(code), 0, 10));
    QCOMPARE(ok.count(), 0); // never answered inside the call
    QTRY_COMPARE(ok.count(), 1);
    QCOMPARE(ok.at(0).at(0).toString(), kDome);
    QCOMPARE(ok.at(0).at(2).value<PTZControlCommand>().command, uint32_t(code));
    m_env.clock()->advance(1000);
    const ptz_devices::DeviceStatus moved = cam->status();
    QCOMPARE(PanDelta(start.pan, moved.pan) > 1.0, panSign > 0);
    QCOMPARE(PanDelta(start.pan, moved.pan) < -1.0, panSign < 0);
    QCOMPARE(moved.tilt < start.tilt - 1.0, tiltSign < 0);
    QCOMPARE(moved.zoom > start.zoom, zoomSign > 0);

    controller.Control(Cmd(kDome, uint32_t(code), 1, 10));
    QTRY_COMPARE(ok.count(), 2);
    m_env.clock()->advance(1000);
    const ptz_devices::DeviceStatus stopped = cam->status();
    m_env.clock()->advance(1000);
    QCOMPARE(cam->status().pan, stopped.pan);
    QCOMPARE(cam->status().tilt, stopped.tilt);
    QCOMPARE(cam->status().zoom, stopped.zoom);
    QVERIFY(!cam->status().panTiltMoving);
    QCOMPARE(failed.count(), 0);
}

void TestUniversalPTZController::badInputAnswersOnceWithText_data()
{
    QTest::addColumn<QString>("request");
    const char *rows[] = {"unknown camera",        "empty camera",           "unknown command",
                          "action 2",              "speed 0",                "speed 41",
                          "pattern 5",             "lock 3601 s",            "move on zoom-only camera",
                          "preset 0",              "preset 257",             "unknown preset operation",
                          "preset unknown camera", "patrol of 33 points",    "patrol point speed 41",
                          "patrol dwell 31 s",     "patrol number 9",        "patrol unknown camera",
                          "virtual patrol dwell 10 s", "park wait 4 s",     "recovery wait 20 s",
                          "move without permission", "lock without permission"};
    for (const char *row : rows)
        QTest::newRow(row) << QString::fromLatin1(row);
}

void TestUniversalPTZController::badInputAnswersOnceWithText()
{
    QFETCH(QString, request);
    CUniversalPTZController controller;
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
    QSignalSpy presets(&controller, &CUniversalPTZController::signalPresetFinished);
    QSignalSpy cruises(&controller, &CUniversalPTZController::signalCruiseFinished);
    QSignalSpy park(&controller, &CUniversalPTZController::SignalParkActionFinished);
    QSignalSpy recover(&controller, &CUniversalPTZController::SignalCruiseRecoverFinished);
    QSignalSpy tips(&controller, &CUniversalPTZController::SignalMessageTipNeeded);

    auto patrol = [&](int number, int points, int speed, int dwell, int type) {
        CruiseControlRequest r;
        r.camera_index_code = kDome.toStdString();
        r.operation = "ModifyCruiseRoute";
        r.cruise_index = number;
        r.action = type;
        for (int i = 0; i < points; ++i) {
            CruisePoint p;
            p.preset_index = uint32_t(i + 1);
            p.speed = speed;
            p.dwell_time = dwell;
            r.points.push_back(p);
        }
        return r;
    };
    auto preset = [&](const std::string &op, int number, const QString &camera = kDome) {
        PresetControlRequest r;
        r.operation = op;
        r.camera_index_code = camera.toStdString();
        r.preset_index = number;
        return r;
    };
    const QHash<QString, std::function<void()>> send = {
        {"unknown camera", [&] { controller.Control(Cmd("no-such-camera", 24, 0)); }},
        {"empty camera", [&] { controller.Control(Cmd(QString(), 24, 0)); }},
        {"unknown command", [&] { controller.Control(Cmd(kDome, 99, 0)); }},
        {"action 2", [&] { controller.Control(Cmd(kDome, 24, 2)); }},
        {"speed 0", [&] { controller.Control(Cmd(kDome, 24, 0, 0)); }},
        {"speed 41", [&] { controller.Control(Cmd(kDome, 21, 0, 41)); }},
        {"pattern 5", [&] { controller.Control(Cmd(kDome, 36, 0, 20, 5)); }},
        {"lock 3601 s", [&] { controller.Control(Cmd(kDome, 200, 1, 0, 3601)); }},
        {"move on zoom-only camera", [&] { controller.Control(Cmd(demo::kBoxZoom, 24, 0)); }},
        {"move without permission",
         [&] {
             m_env.store()->revokePermission(demo::kOperator, site_store::CSiteStore::kAllCameras, 15);
             controller.Control(Cmd(kDome, 24, 0));
         }},
        {"lock without permission",
         [&] {
             m_env.store()->revokePermission(demo::kOperator, site_store::CSiteStore::kAllCameras, 15);
             controller.Control(Cmd(kDome, 200, 1, 0, 60));
         }},
        {"preset 0", [&] { controller.Preset(preset("GotoPreset", 0)); }},
        {"preset 257", [&] { controller.Preset(preset("SetPreset", 257)); }},
        {"unknown preset operation", [&] { controller.Preset(preset("RenamePreset", 3)); }},
        {"preset unknown camera", [&] { controller.Preset(preset("GotoPreset", 3, "no-such-camera")); }},
        {"patrol of 33 points", [&] { controller.Cruise(patrol(1, 33, 10, 5, CRUISE_TYPE_DEVICE)); }},
        {"patrol point speed 41", [&] { controller.Cruise(patrol(1, 2, 41, 5, CRUISE_TYPE_DEVICE)); }},
        {"patrol dwell 31 s", [&] { controller.Cruise(patrol(1, 2, 10, 31, CRUISE_TYPE_DEVICE)); }},
        {"patrol number 9", [&] { controller.Cruise(patrol(9, 2, 10, 5, CRUISE_TYPE_DEVICE)); }},
        {"patrol unknown camera",
         [&] {
             CruiseControlRequest r = patrol(1, 2, 10, 5, CRUISE_TYPE_DEVICE);
             r.camera_index_code = "no-such-camera";
             controller.Cruise(r);
         }},
        {"virtual patrol dwell 10 s", [&] { controller.Cruise(patrol(2, 2, 0, 10, CRUISE_TYPE_VIRTUAL)); }},
        {"park wait 4 s",
         [&] {
             SetParkActionRequest r;
             r.camera_index_code = kDome.toStdString();
             r.enabled = true;
             r.wait_time = 4;
             controller.SetParkAction(r);
         }},
        {"recovery wait 20 s",
         [&] {
             SetPatrolRecoverConfigRequest r;
             r.camera_index_code = kDome.toStdString();
             r.enabled = true;
             r.wait_time = 20;
             controller.SetCruiseRecover(r);
         }},
    };
    QVERIFY(send.contains(request));
    send.value(request)();
    auto answers = [&] {
        return ok.count() + failed.count() + presets.count() + cruises.count() + park.count() + recover.count();
    };
    QCOMPARE(answers(), 0);
    QTRY_COMPARE(answers(), 1);
    settle(controller);
    m_env.clock()->advance(100);
    QCoreApplication::processEvents();
    QCOMPARE(answers(), 1);
    QCOMPARE(ok.count(), 0);

    QString text;
    if (!failed.isEmpty()) {
        QVERIFY(failed.at(0).at(2).toInt() != CUniversalPTZController::kErrorNone);
    } else if (!presets.isEmpty()) {
        text = presets.at(0).at(1).toString();
    } else if (!cruises.isEmpty()) {
        text = cruises.at(0).at(1).toString();
    } else if (!park.isEmpty()) {
        text = park.at(0).at(1).toString();
    } else {
        text = recover.at(0).at(1).toString();
    }
    if (!presets.isEmpty()) {
        // Preset errors travel in the finished signal only; the panel raises them.
        QCOMPARE(tips.count(), 0);
        QVERIFY(!text.isEmpty());
        return;
    }
    QCOMPARE(tips.count(), 1);
    QCOMPARE(tips.at(0).at(1).toInt(), 0);
    QVERIFY(!tips.at(0).at(0).toString().isEmpty());
    if (failed.isEmpty())
        QCOMPARE(text, tips.at(0).at(0).toString());
}

void TestUniversalPTZController::lostDeviceFailsEveryRequest()
{
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
    QSignalSpy presets(&controller, &CUniversalPTZController::signalPresetFinished);
    cam->disconnectDevice();
    controller.Control(Cmd(kDome, 24, 0));
    PresetControlRequest goto3;
    goto3.operation = "GotoPreset";
    goto3.camera_index_code = kDome.toStdString();
    goto3.preset_index = 3;
    controller.Preset(goto3);
    QTRY_COMPARE(failed.count(), 1);
    QTRY_COMPARE(presets.count(), 1);
    QCOMPARE(failed.at(0).at(2).toInt(), int(CUniversalPTZController::kErrorDevice));
    QCOMPARE(failed.at(0).at(3).toInt(), 24);
    QVERIFY(!presets.at(0).at(1).toString().isEmpty());
    settle(controller);
}

void TestUniversalPTZController::lightAndWiperStateFollowTheCamera()
{
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
    // The stored state is written before the result goes out, so a panel
    // reading it in its result handler sees the new value.
    bool light_when_answered = false;
    connect(&controller, &CUniversalPTZController::SignalExecutionSucceeded, this,
            [&](const QString &camera) { light_when_answered = Storage()->IsLight(camera); });

    controller.Control(Cmd(kDome, 2, 0));
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(light_when_answered);
    QVERIFY(cam->status().light);
    controller.Control(Cmd(kDome, 3, 0));
    QTRY_COMPARE(ok.count(), 2);
    QVERIFY(Storage()->IsWiper(kDome));

    cam->failNextRequests(1, QStringLiteral("relay stuck"));
    controller.Control(Cmd(kDome, 2, 1));
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY(Storage()->IsLight(kDome)); // the camera did not switch it off
    controller.Control(Cmd(kDome, 2, 1));
    QTRY_COMPARE(ok.count(), 3);
    QVERIFY(!Storage()->IsLight(kDome));
    QVERIFY(!cam->status().light);
}

void TestUniversalPTZController::preparePatrol(CUniversalPTZController &controller)
{
    QSignalSpy presets(&controller, &CUniversalPTZController::signalPresetFinished);
    QSignalSpy cruises(&controller, &CUniversalPTZController::signalCruiseFinished);
    for (int number : {1, 2}) {
        PresetControlRequest set;
        set.operation = "SetPreset";
        set.camera_index_code = kDome.toStdString();
        set.preset_index = number;
        set.preset_name = "p";
        controller.Preset(set);
    }
    QTRY_COMPARE(presets.count(), 2);
    QVERIFY(presets.at(0).at(1).toString().isEmpty());
    CruiseControlRequest modify;
    modify.camera_index_code = kDome.toStdString();
    modify.operation = "ModifyCruiseRoute";
    modify.cruise_index = 1;
    modify.action = CRUISE_TYPE_DEVICE;
    for (uint32_t preset : {1u, 2u}) {
        CruisePoint p;
        p.preset_index = preset;
        p.speed = 20;
        p.dwell_time = 5;
        modify.points.push_back(p);
    }
    controller.Cruise(modify);
    CruiseControlRequest start = modify;
    start.operation = "CruiseRouteControl";
    start.action = 0;
    start.points.clear();
    controller.Cruise(start);
    QTRY_COMPARE(cruises.count(), 2);
    QCOMPARE(cruises.at(0).at(1).toString(), QString());
    QCOMPARE(cruises.at(1).at(1).toString(), QString());
    QCOMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 1);
    QCOMPARE(Storage()->GetRunningCruise(kDome), 1);
}

void TestUniversalPTZController::manualMoveInterruptsPatrol_data()
{
    QTest::addColumn<bool>("resume");
    QTest::newRow("resumes after the wait") << true;
    QTest::newRow("stays stopped") << false;
}

void TestUniversalPTZController::manualMoveInterruptsPatrol()
{
    QFETCH(bool, resume);
    m_env.store()->setBoolSetting(site_store::CSiteStore::kResumeCruiseAfterInterrupt, resume);
    Storage()->SetInterruptWaitTime(50);
    CUniversalPTZController controller;
    preparePatrol(controller);

    QSignalSpy interrupt(&controller, &CUniversalPTZController::SignalPTZPanelInterrupt);
    QSignalSpy timeout(Storage(), &CPTZStateStorageManager::SignalInterruptTimeout);
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    // What a panel sees when the notice arrives: still patrolling, and whether it may resume.
    bool cruising_at_notice = false;
    bool interrupted_at_notice = false;
    connect(&controller, &CUniversalPTZController::SignalPTZPanelInterrupt, this, [&](const QString &, const QString &camera) {
        int number = 0;
        cruising_at_notice = Storage()->IsCruising(camera);
        interrupted_at_notice = Storage()->IsInterruptCruise(camera, number) && number == 1;
    });

    controller.Control(Cmd(kDome, 24, 0));
    QTRY_COMPARE(ok.count(), 1);
    QCOMPARE(interrupt.count(), 1);
    QCOMPARE(interrupt.at(0).at(1).toString(), kDome);
    QCOMPARE(interrupt.at(0).at(2).toBool(), false);
    QCOMPARE(interrupt.at(0).at(3).toInt(), 1);
    QVERIFY(cruising_at_notice);
    QCOMPARE(interrupted_at_notice, resume);
    QVERIFY(!Storage()->IsCruising(kDome));
    controller.Control(Cmd(kDome, 24, 1));
    QTRY_COMPARE(ok.count(), 2);

    if (resume) {
        QTRY_COMPARE(timeout.count(), 1);
        QCOMPARE(timeout.at(0).at(0).toBool(), true);
        QCOMPARE(timeout.at(0).at(2).toInt(), 1);
        QCOMPARE(Storage()->GetRunningCruise(kDome), 1);
        QTRY_COMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 1);
    } else {
        int number = 0;
        QVERIFY(!Storage()->IsInterruptCruise(kDome, number));
        QCOMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 0);
    }
    QCOMPARE(interrupt.count(), 1); // the camera's own notice is not repeated
}

void TestUniversalPTZController::manualMoveStopsAutoScan()
{
    CUniversalPTZController controller;
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy interrupt(&controller, &CUniversalPTZController::SignalPTZPanelInterrupt);
    controller.Control(Cmd(kDome, 29, 0, 15));
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(Storage()->IsAutoScan(kDome, false));
    QVERIFY(!Storage()->IsAutoScan(kDome, true));
    QCOMPARE(interrupt.count(), 0);

    controller.Control(Cmd(kDome, 21, 0, 15));
    QTRY_COMPARE(ok.count(), 2);
    QCOMPARE(interrupt.count(), 1);
    QCOMPARE(interrupt.at(0).at(3).toInt(), -1);
    QVERIFY(!Storage()->IsAutoScan(kDome, false));
    QVERIFY(!m_env.camera(demo::kSpeedDome)->status().autoScan);
}

void TestUniversalPTZController::patternStartEndsPatrolOnce()
{
    CUniversalPTZController controller;
    preparePatrol(controller);
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy interrupt(&controller, &CUniversalPTZController::SignalPTZPanelInterrupt);
    controller.Control(Cmd(kDome, 34, 0, 20, 1));
    QTRY_COMPARE(ok.count(), 1);
    settle(controller);
    QCOMPARE(interrupt.count(), 1);
    QCOMPARE(interrupt.at(0).at(2).toBool(), true); // ended by a pattern, not by a manual move
    QCOMPARE(interrupt.at(0).at(3).toInt(), 1);
    QVERIFY(!Storage()->IsCruising(kDome));
    QCOMPARE(Storage()->GetRecordPattern(kDome), 1);
    QCOMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 0);
}

void TestUniversalPTZController::patternCommandsKeepRunningState()
{
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);

    controller.Control(Cmd(kDome, 34, 0, 20, 2));
    QTRY_COMPARE(ok.count(), 1);
    QCOMPARE(Storage()->GetRecordPattern(kDome), 2);
    controller.Control(Cmd(kDome, 24, 0, 20));
    QTRY_COMPARE(ok.count(), 2);
    m_env.clock()->advance(500);
    controller.Control(Cmd(kDome, 24, 1, 20));
    QTRY_COMPARE(ok.count(), 3);
    controller.Control(Cmd(kDome, 35, 0, 20, 0)); // the recording one when no number is given
    QTRY_COMPARE(ok.count(), 4);
    QCOMPARE(ok.at(3).at(2).value<PTZControlCommand>().param, 2);
    QVERIFY(!Storage()->IsRecordPattern(kDome));
    QCOMPARE(cam->recordedPatterns(), QVector<int>{2});

    controller.Control(Cmd(kDome, 36, 0, 20, 2));
    QTRY_COMPARE(ok.count(), 5);
    QCOMPARE(Storage()->GetRunningPattern(kDome), 2);
    QCOMPARE(cam->status().runningPattern, 2);
    controller.Control(Cmd(kDome, 44, 1, 20, 0));
    QTRY_COMPARE(ok.count(), 6);
    QCOMPARE(ok.at(5).at(2).value<PTZControlCommand>().param, 2);
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QCOMPARE(cam->status().runningPattern, 0);

    controller.Control(Cmd(kDome, 45, 0, 20, 2));
    QTRY_COMPARE(ok.count(), 7);
    QVERIFY(cam->recordedPatterns().isEmpty());
    QCOMPARE(failed.count(), 0);
}

void TestUniversalPTZController::lockAndUnlockRoundTrip()
{
    CUniversalPTZController controller;
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
    PTZLockStatusRequest request;
    request.camera_index_code = kDome.toStdString();
    PTZLockStatusResponse status;

    controller.Control(Cmd(kDome, 200, 1, 0, 120));
    QCOMPARE(ok.count(), 0);
    QTRY_COMPARE(ok.count(), 1);
    QCOMPARE(ok.at(0).at(2).value<PTZControlCommand>().param, 120);
    QVERIFY(m_env.business()->GetPTZLockStatus(request, status));
    QCOMPARE(status.locked, 1);
    QCOMPARE(QString::fromStdString(status.user_name), QString::fromLatin1(demo::kOperator));
    QVERIFY(status.remaining_time > 110 && status.remaining_time <= 120);

    // The holder keeps control.
    controller.Control(Cmd(kDome, 24, 0));
    QTRY_COMPARE(ok.count(), 2);

    controller.Control(Cmd(kDome, 201, 1));
    QTRY_COMPARE(ok.count(), 3);
    QVERIFY(m_env.business()->GetPTZLockStatus(request, status));
    QCOMPARE(status.locked, 0);

    controller.Control(Cmd(kDome, 200, 1, 0, 0));
    QTRY_COMPARE(ok.count(), 4);
    QCOMPARE(ok.at(3).at(2).value<PTZControlCommand>().param, 300); // the default duration
    QCOMPARE(failed.count(), 0);
}

void TestUniversalPTZController::lockHeldByAnother_data()
{
    QTest::addColumn<QString>("holder");
    QTest::addColumn<bool>("canSeize");
    QTest::newRow("higher level") << QString::fromLatin1(demo::kSenior) << false;
    QTest::newRow("same level") << QString::fromLatin1(demo::kNoPark) << false;
    QTest::newRow("lower level") << QString::fromLatin1(demo::kJunior) << true;
}

void TestUniversalPTZController::lockHeldByAnother()
{
    QFETCH(QString, holder);
    QFETCH(bool, canSeize);
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    QVERIFY(m_env.business()->LockPTZ(kDome.toStdString(), holder.toStdString(), 600));
    CUniversalPTZController controller;
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
    QSignalSpy seized(&controller, &CUniversalPTZController::SignalSeizedByOtherUser);

    // A user who outranks the holder keeps control; others are refused.
    controller.Control(Cmd(kDome, 24, 0));
    QTRY_COMPARE(ok.count() + failed.count(), 1);
    QCOMPARE(ok.count(), canSeize ? 1 : 0);
    if (!canSeize) {
        QCOMPARE(failed.at(0).at(2).toInt(), int(CUniversalPTZController::kErrorLockedByOther));
        QCOMPARE(failed.at(0).at(3).toInt(), 24);
        QTRY_COMPARE(seized.count(), 1);
        QCOMPARE(seized.at(0).at(0).toString(), kDome);
        QVERIFY(!cam->status().panTiltMoving);
    }

    // A release always reaches the camera.
    controller.Control(Cmd(kDome, 24, 1));
    QTRY_COMPARE(ok.count() + failed.count(), 2);
    QCOMPARE(failed.count(), canSeize ? 0 : 1);

    controller.Control(Cmd(kDome, 200, 1, 0, 60));
    QTRY_COMPARE(ok.count() + failed.count(), 3);
    settle(controller);
    QCOMPARE(ok.count(), canSeize ? 3 : 1);
    QCOMPARE(seized.count(), canSeize ? 1 : 2); // taken from the holder, or refused twice
    PTZLockStatusRequest request;
    request.camera_index_code = kDome.toStdString();
    PTZLockStatusResponse status;
    QVERIFY(m_env.business()->GetPTZLockStatus(request, status));
    QCOMPARE(QString::fromStdString(status.user_name),
             canSeize ? QString::fromLatin1(demo::kOperator) : holder);
}

void TestUniversalPTZController::autoTrackAnswersWithState()
{
    CUniversalPTZController controller;
    QSignalSpy state(&controller, &CUniversalPTZController::SignalPTZAutoTrackState);
    SetAutoTrackRequest set;
    set.camera_index_code = kDome.toStdString();
    set.enable = 1;
    controller.SetAutoTrack(set);
    QCOMPARE(state.count(), 0);
    QTRY_COMPARE(state.count(), 1);
    QCOMPARE(state.at(0).at(1).toString(), kDome);
    QCOMPARE(state.at(0).at(2).toBool(), true);
    GetAutoTrackRequest get;
    get.camera_index_code = kDome.toStdString();
    controller.GetAutoTrack(get);
    QTRY_COMPARE(state.count(), 2);
    QCOMPARE(state.at(1).at(2).toBool(), true);

    // A camera without the ability refuses; the state reported stays off.
    QSignalSpy tips(&controller, &CUniversalPTZController::SignalMessageTipNeeded);
    set.camera_index_code = demo::kBoxZoom;
    controller.SetAutoTrack(set);
    QTRY_COMPARE(state.count(), 3);
    QCOMPARE(state.at(2).at(2).toBool(), false);
    QCOMPARE(tips.count(), 1);
}

void TestUniversalPTZController::parkActionAndRecoveryReachCameraAndSite()
{
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    QSignalSpy park(&controller, &CUniversalPTZController::SignalParkActionFinished);
    QSignalSpy recover(&controller, &CUniversalPTZController::SignalCruiseRecoverFinished);
    QSignalSpy tips(&controller, &CUniversalPTZController::SignalMessageTipNeeded);

    SetParkActionRequest action;
    action.camera_index_code = kDome.toStdString();
    action.enabled = true;
    action.wait_time = 720;
    action.action_type = 3;
    action.target_id = 2;
    controller.SetParkAction(action);
    QTRY_COMPARE(park.count(), 1);
    QCOMPARE(park.at(0).at(1).toString(), QString());
    QCOMPARE(cam->parkAction().waitingSeconds, 720);
    QCOMPARE(cam->parkAction().type, ptz_devices::ParkActionType::Patrol);
    GetParkActionRequest get;
    get.camera_index_code = action.camera_index_code;
    GetParkActionResponse stored;
    QVERIFY(m_env.business()->GetPTZParkAction(get, stored));
    QVERIFY(stored.enabled);
    QCOMPARE(stored.wait_time, 720);
    QCOMPARE(stored.target_id, 2);

    // Switched off, the waiting time is recorded as 0 whatever was chosen.
    SetPatrolRecoverConfigRequest recovery;
    recovery.camera_index_code = kDome.toStdString();
    recovery.enabled = false;
    recovery.wait_time = 45;
    controller.SetCruiseRecover(recovery);
    QTRY_COMPARE(recover.count(), 1);
    QCOMPARE(recover.at(0).at(1).toString(), QString());
    QVERIFY(!cam->patrolRecovery().enabled);
    QCOMPARE(cam->patrolRecovery().waitingSeconds, 0);
    GetPatrolRecoverConfigRequest getRecovery;
    getRecovery.camera_index_code = recovery.camera_index_code;
    GetPatrolRecoverConfigResponse storedRecovery;
    QVERIFY(m_env.business()->GetPatrolRecoverConfig(getRecovery, storedRecovery));
    QCOMPARE(storedRecovery.wait_time, 0);

    QCOMPARE(tips.count(), 2);
    QCOMPARE(tips.at(0).at(1).toInt(), 3);
    QCOMPARE(tips.at(1).at(1).toInt(), 3);
}

QTEST_GUILESS_MAIN(TestUniversalPTZController)
#include "tst_cuniversalptzcontroller.moc"
