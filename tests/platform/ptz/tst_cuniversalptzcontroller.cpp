#include "support/records.h"
#include "support/testenv.h"

#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CPTZStateStorageManager;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

namespace {

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

PresetControlRequest PresetRequest(const std::string &op, int number, const QString &camera = kDome)
{
    PresetControlRequest r;
    r.operation = op;
    r.camera_index_code = camera.toStdString();
    r.preset_index = number;
    return r;
}

CruiseControlRequest Patrol(int number, int points, int speed, int dwell, int type, const QString &camera = kDome)
{
    CruiseControlRequest r;
    r.camera_index_code = camera.toStdString();
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
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void pressAndReleaseMoveAndStop_data()
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
    void pressAndReleaseMoveAndStop()
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
    void badInputAnswersOnceWithText_data()
    {
        // The record handed to the controller: a command, preset, patrol, park or recovery request.
        QTest::addColumn<QVariant>("request");
        QTest::addColumn<bool>("revokeControl");
        auto row = [](const char *name, const auto &record, bool revoke = false) {
            QTest::newRow(name) << QVariant::fromValue(record) << revoke;
        };
        row("unknown camera", Cmd("no-such-camera", 24, 0));
        row("empty camera", Cmd(QString(), 24, 0));
        row("unknown command", Cmd(kDome, 99, 0));
        row("action 2", Cmd(kDome, 24, 2));
        row("speed 0", Cmd(kDome, 24, 0, 0));
        row("speed 41", Cmd(kDome, 21, 0, 41));
        row("pattern 5", Cmd(kDome, 36, 0, 20, 5));
        row("lock 3601 s", Cmd(kDome, 200, 1, 0, 3601));
        row("move on zoom-only camera", Cmd(QString::fromLatin1(demo::kBoxZoom), 24, 0));
        row("move without permission", Cmd(kDome, 24, 0), true);
        row("lock without permission", Cmd(kDome, 200, 1, 0, 60), true);
        row("preset 0", PresetRequest("GotoPreset", 0));
        row("preset 257", PresetRequest("SetPreset", 257));
        row("unknown preset operation", PresetRequest("RenamePreset", 3));
        row("preset unknown camera", PresetRequest("GotoPreset", 3, "no-such-camera"));
        row("patrol of 33 points", Patrol(1, 33, 10, 5, CRUISE_TYPE_DEVICE));
        row("patrol point speed 41", Patrol(1, 2, 41, 5, CRUISE_TYPE_DEVICE));
        row("patrol dwell 31 s", Patrol(1, 2, 10, 31, CRUISE_TYPE_DEVICE));
        row("patrol number 9", Patrol(9, 2, 10, 5, CRUISE_TYPE_DEVICE));
        row("patrol unknown camera", Patrol(1, 2, 10, 5, CRUISE_TYPE_DEVICE, "no-such-camera"));
        row("virtual patrol dwell 10 s", Patrol(2, 2, 0, 10, CRUISE_TYPE_VIRTUAL));
        SetParkActionRequest park;
        park.camera_index_code = kDome.toStdString();
        park.enabled = true;
        park.wait_time = 4;
        row("park wait 4 s", park);
        SetPatrolRecoverConfigRequest recovery;
        recovery.camera_index_code = kDome.toStdString();
        recovery.enabled = true;
        recovery.wait_time = 20;
        row("recovery wait 20 s", recovery);
    }
    void badInputAnswersOnceWithText()
    {
        QFETCH(QVariant, request);
        QFETCH(bool, revokeControl);
        CUniversalPTZController controller;
        QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
        QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
        QSignalSpy presets(&controller, &CUniversalPTZController::signalPresetFinished);
        QSignalSpy cruises(&controller, &CUniversalPTZController::signalCruiseFinished);
        QSignalSpy park(&controller, &CUniversalPTZController::SignalParkActionFinished);
        QSignalSpy recover(&controller, &CUniversalPTZController::SignalCruiseRecoverFinished);
        QSignalSpy tips(&controller, &CUniversalPTZController::SignalMessageTipNeeded);

        if (revokeControl)
            m_env.store()->revokePermission(demo::kOperator, site_store::CSiteStore::kAllCameras, 15);
        if (request.canConvert<PTZControlCommand>())
            controller.Control(request.value<PTZControlCommand>());
        else if (request.canConvert<PresetControlRequest>())
            controller.Preset(request.value<PresetControlRequest>());
        else if (request.canConvert<CruiseControlRequest>())
            controller.Cruise(request.value<CruiseControlRequest>());
        else if (request.canConvert<SetParkActionRequest>())
            controller.SetParkAction(request.value<SetParkActionRequest>());
        else
            controller.SetCruiseRecover(request.value<SetPatrolRecoverConfigRequest>());
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
    void lostDeviceFailsEveryRequest()
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
    void lightAndWiperStateFollowTheCamera()
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
    void manualMoveInterruptsPatrol_data()
    {
        QTest::addColumn<bool>("resume");
        QTest::newRow("resumes after the wait") << true;
        QTest::newRow("stays stopped") << false;
    }
    void manualMoveInterruptsPatrol()
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
        connect(&controller, &CUniversalPTZController::SignalPTZPanelInterrupt, this,
            [&](const QString &, const QString &camera) {
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
    void manualMoveStopsAutoScan()
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
    void patternStartEndsPatrolOnce()
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
    void patternCommandsKeepRunningState()
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
        QCOMPARE(cam->recordedPatterns(), QVector<int> { 2 });

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
    void lockAndUnlockRoundTrip()
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
    void lockHeldByAnother_data()
    {
        QTest::addColumn<QString>("holder");
        QTest::addColumn<bool>("canSeize");
        QTest::newRow("higher level") << QString::fromLatin1(demo::kSenior) << false;
        QTest::newRow("same level") << QString::fromLatin1(demo::kNoPark) << false;
        QTest::newRow("lower level") << QString::fromLatin1(demo::kJunior) << true;
    }
    void lockHeldByAnother()
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
        QCOMPARE(QString::fromStdString(status.user_name), canSeize ? QString::fromLatin1(demo::kOperator) : holder);
    }
    void autoTrackAnswersWithState()
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
    void parkActionAndRecoveryReachCameraAndSite()
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

private:
    // Runs `request` and waits until the controller holds no request.
    void settle(CUniversalPTZController &controller)
    {
        QTRY_COMPARE(controller.PendingRequestCount(), 0);
        QCoreApplication::processEvents();
    }
    void preparePatrol(CUniversalPTZController &controller)
    {
        QSignalSpy presets(&controller, &CUniversalPTZController::signalPresetFinished);
        QSignalSpy cruises(&controller, &CUniversalPTZController::signalCruiseFinished);
        for (int number : { 1, 2 }) {
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
        for (uint32_t preset : { 1u, 2u }) {
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

    PtzTestEnv m_env;
};

QTEST_GUILESS_MAIN(TestUniversalPTZController)
#include "tst_cuniversalptzcontroller.moc"
