#include "support/ptztestenv.h"
#include "support/records.h"

#include <QTest>

#include <cmath>

using namespace ptz_plugin_protocol;
using namespace ptz_test;
using ptz_devices::DriverOperation;
using zeph_ptz_controller::CPTZStateStorageManager;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

using Send = std::function<void(CUniversalPTZController &)>;
using Check = std::function<bool()>;
Q_DECLARE_METATYPE(Send)
Q_DECLARE_METATYPE(Check)

namespace {
double PanDelta(double before, double after)
{
    return std::fmod(after - before + 540.0, 360.0) - 180.0;
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
        CUniversalPTZController controller;
        Answers answers(&controller);

        const ptz_devices::DeviceStatus start = cam->status();
        controller.Control(Cmd(kDome, uint32_t(code), 0, 10));
        QCOMPARE(answers.count(), 0); // never answered inside the call
        QTRY_COMPARE(answers.ok.count(), 1);
        QCOMPARE(answers.ok.at(0).at(0).toString(), kDome);
        QCOMPARE(answers.ok.at(0).at(2).value<PTZControlCommand>().command, uint32_t(code));
        m_env.clock()->advance(1000);
        const ptz_devices::DeviceStatus moved = cam->status();
        QCOMPARE(PanDelta(start.pan, moved.pan) > 1.0, panSign > 0);
        QCOMPARE(PanDelta(start.pan, moved.pan) < -1.0, panSign < 0);
        QCOMPARE(moved.tilt < start.tilt - 1.0, tiltSign < 0);
        QCOMPARE(moved.zoom > start.zoom, zoomSign > 0);

        controller.Control(Cmd(kDome, uint32_t(code), 1, 10));
        QTRY_COMPARE(answers.ok.count(), 2);
        m_env.clock()->advance(1000);
        const ptz_devices::DeviceStatus stopped = cam->status();
        m_env.clock()->advance(1000);
        QCOMPARE(cam->status().pan, stopped.pan);
        QCOMPARE(cam->status().zoom, stopped.zoom);
        QVERIFY(!cam->status().panTiltMoving);
        QCOMPARE(answers.failed.count(), 0);
    }
    void badInputAnswersOnceWithText_data()
    {
        QTest::addColumn<Send>("send");
        QTest::addColumn<bool>("revokeControl");
        auto control = [](const PTZControlCommand &c) {
            return Send([c](CUniversalPTZController &u) { u.Control(c); });
        };
        auto preset = [](const PresetControlRequest &r) {
            return Send([r](CUniversalPTZController &u) { u.Preset(r); });
        };
        auto patrol = [](int number, int points, int speed, int dwell, int type, const QString &camera = kDome) {
            CruiseControlRequest r = CruiseRequest("ModifyCruiseRoute", number, type, 0, camera);
            r.points = CruisePoints(points, speed, dwell);
            return Send([r](CUniversalPTZController &u) { u.Cruise(r); });
        };
        const QString box = QString::fromLatin1(demo::kBoxZoom);
        QTest::newRow("unknown camera") << control(Cmd("no-such-camera", 24, 0)) << false;
        QTest::newRow("empty camera") << control(Cmd(QString(), 24, 0)) << false;
        QTest::newRow("unknown command") << control(Cmd(kDome, 99, 0)) << false;
        QTest::newRow("action 2") << control(Cmd(kDome, 24, 2)) << false;
        QTest::newRow("speed 0") << control(Cmd(kDome, 24, 0, 0)) << false;
        QTest::newRow("speed 41") << control(Cmd(kDome, 21, 0, 41)) << false;
        QTest::newRow("pattern 5") << control(Cmd(kDome, 36, 0, 20, 5)) << false;
        QTest::newRow("lock 3601 s") << control(Cmd(kDome, 200, 1, 0, 3601)) << false;
        QTest::newRow("move on zoom-only camera") << control(Cmd(box, 24, 0)) << false;
        QTest::newRow("move without permission") << control(Cmd(kDome, 24, 0)) << true;
        QTest::newRow("lock without permission") << control(Cmd(kDome, 200, 1, 0, 60)) << true;
        QTest::newRow("preset 0") << preset(PresetRequest("GotoPreset", 0)) << false;
        QTest::newRow("preset 257") << preset(PresetRequest("SetPreset", 257)) << false;
        QTest::newRow("unknown preset operation") << preset(PresetRequest("RenamePreset", 3)) << false;
        QTest::newRow("preset unknown camera")
            << preset(PresetRequest("GotoPreset", 3, std::string(), "no-such-camera")) << false;
        QTest::newRow("patrol of 33 points") << patrol(1, 33, 10, 5, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("patrol point speed 41") << patrol(1, 2, 41, 5, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("patrol dwell 31 s") << patrol(1, 2, 10, 31, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("patrol number 9") << patrol(9, 2, 10, 5, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("patrol unknown camera") << patrol(1, 2, 10, 5, CRUISE_TYPE_DEVICE, "no-such-camera") << false;
        QTest::newRow("virtual patrol dwell 10 s") << patrol(2, 2, 0, 10, CRUISE_TYPE_VIRTUAL) << false;
        QTest::newRow("park wait 4 s") << Send([](CUniversalPTZController &u) {
            u.SetParkAction({kDome.toStdString(), true, 4, 5, 0});
        }) << false;
        QTest::newRow("recovery wait 20 s") << Send([](CUniversalPTZController &u) {
            u.SetCruiseRecover({kDome.toStdString(), true, 20});
        }) << false;
    }
    void badInputAnswersOnceWithText()
    {
        QFETCH(Send, send);
        QFETCH(bool, revokeControl);
        CUniversalPTZController controller;
        Answers answers(&controller);
        if (revokeControl)
            m_env.store()->revokePermission(demo::kOperator, site_store::CSiteStore::kAllCameras, 15);
        send(controller);
        QCOMPARE(answers.count(), 0);
        QTRY_COMPARE(answers.count(), 1);
        settle(controller);
        m_env.clock()->advance(100);
        QCoreApplication::processEvents();
        QCOMPARE(answers.count(), 1);
        QCOMPARE(answers.ok.count(), 0);
        if (!answers.presets.isEmpty()) {
            // Preset errors travel in the finished signal only; the panel raises them.
            QCOMPARE(answers.tips.count(), 0);
            QVERIFY(!answers.error().isEmpty());
            return;
        }
        QCOMPARE(answers.tips.count(), 1);
        QCOMPARE(answers.tips.at(0).at(1).toInt(), 0);
        QVERIFY(!answers.error().isEmpty());
        if (!answers.failed.isEmpty())
            QVERIFY(answers.failed.at(0).at(2).toInt() != CUniversalPTZController::kErrorNone);
        for (const QSignalSpy *spy : {&answers.cruises, &answers.park, &answers.recover}) {
            if (!spy->isEmpty())
                QCOMPARE(spy->at(0).at(1).toString(), answers.error());
        }
    }
    void lostDeviceFailsEveryRequest()
    {
        m_env.camera(demo::kSpeedDome)->disconnectDevice();
        CUniversalPTZController controller;
        Answers answers(&controller);
        controller.Control(Cmd(kDome, 24, 0));
        controller.Preset(PresetRequest("GotoPreset", 3));
        QTRY_COMPARE(answers.count(), 2);
        QCOMPARE(answers.failed.at(0).at(2).toInt(), int(CUniversalPTZController::kErrorDevice));
        QCOMPARE(answers.failed.at(0).at(3).toInt(), 24);
        QVERIFY(!answers.presets.at(0).at(1).toString().isEmpty());
        settle(controller);
    }
    void lightAndWiperStateFollowTheCamera()
    {
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        Answers answers(&controller);
        // The stored state is written before the result goes out, so a panel
        // reading it in its result handler sees the new value.
        bool light_when_answered = false;
        connect(&controller, &CUniversalPTZController::SignalExecutionSucceeded, this,
                [&](const QString &camera) { light_when_answered = Storage()->IsLight(camera); });

        controller.Control(Cmd(kDome, 2, 0));
        QTRY_COMPARE(answers.ok.count(), 1);
        QVERIFY(light_when_answered);
        QVERIFY(cam->status().light);
        controller.Control(Cmd(kDome, 3, 0));
        QTRY_COMPARE(answers.ok.count(), 2);
        QVERIFY(Storage()->IsWiper(kDome));

        cam->failNextRequests(1, QStringLiteral("relay stuck"));
        controller.Control(Cmd(kDome, 2, 1));
        QTRY_COMPARE(answers.failed.count(), 1);
        QVERIFY(Storage()->IsLight(kDome)); // the camera did not switch it off
        controller.Control(Cmd(kDome, 2, 1));
        QTRY_COMPARE(answers.ok.count(), 3);
        QVERIFY(!Storage()->IsLight(kDome));
        QVERIFY(!cam->status().light);
    }
    void lateSuccessReachesTheSharedState_data()
    {
        QTest::addColumn<uint>("code");
        QTest::addColumn<Check>("done");
        QTest::newRow("light on") << uint(PTZ_CMD_LIGHT) << Check([] { return Storage()->IsLight(kDome); });
        QTest::newRow("wiper on") << uint(PTZ_CMD_WIPER) << Check([] { return Storage()->IsWiper(kDome); });
        QTest::newRow("auto-scan on") << uint(PTZ_CMD_AUTO_PAN)
                                      << Check([] { return Storage()->IsAutoScan(kDome, false); });
        QTest::newRow("pattern record") << uint(PTZ_CMD_PATTERN_RECORD_START)
                                        << Check([] { return Storage()->GetRecordPattern(kDome) == 3; });
    }
    void lateSuccessReachesTheSharedState()
    {
        // The requester was told the camera did not answer, yet the camera did the work.
        QFETCH(uint, code);
        QFETCH(Check, done);
        CUniversalPTZController controller;
        controller.SetRequestTimeout(20);
        m_env.camera(demo::kSpeedDome)->setLatency(300);
        Answers answers(&controller);
        QSignalSpy changed(Storage(), &CPTZStateStorageManager::SignalStateChanged);

        controller.Control(Cmd(kDome, code, 0, 20, 3));
        QTRY_COMPARE(answers.failed.count(), 1);
        QCOMPARE(answers.error(), QStringLiteral("The camera did not answer in time."));
        QVERIFY(!done());
        QCOMPARE(changed.count(), 0);

        QTRY_VERIFY(done());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toString(), kDome);
        QCoreApplication::processEvents();
        QCOMPARE(answers.count(), 1); // the request had its one answer already
    }
    void lateFailureChangesNothing()
    {
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        controller.SetRequestTimeout(20);
        cam->setLatency(150);
        cam->failOperation(DriverOperation::Light, QStringLiteral("bulb broken"));
        Answers answers(&controller);
        QSignalSpy changed(Storage(), &CPTZStateStorageManager::SignalStateChanged);
        controller.Control(Cmd(kDome, PTZ_CMD_LIGHT, 0));
        QTRY_COMPARE(answers.failed.count(), 1);
        QTRY_COMPARE(cam->pendingRequestCount(), 0);
        QCoreApplication::processEvents();
        QVERIFY(!Storage()->IsLight(kDome));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(answers.count(), 1);
    }
    void setPresetOnTakenNumberRenamesOnly()
    {
        // A taken number is the edit dialog renaming the preset: the stored position stays.
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        cam->setPosition(120.0, -30.0, 4.0);
        preset(controller, PresetRequest("SetPreset", 7, "Lobby door"));
        cam->setPosition(300.0, -5.0, 1.0);
        cam->clearRequestLog();
        preset(controller, PresetRequest("SetPreset", 7, "Front door"));
        QCOMPARE(cam->requestLog().size(), 1);
        QCOMPARE(cam->requestLog().at(0).operation, DriverOperation::RenamePreset);
        QCOMPARE(cam->presets().at(0).name, QStringLiteral("Front door"));
        preset(controller, PresetRequest("GotoPreset", 7));
        m_env.clock()->advance(20000);
        QVERIFY2(qAbs(cam->status().pan - 120.0) < 0.5, qPrintable(QString::number(cam->status().pan)));
        QVERIFY(qAbs(cam->status().zoom - 4.0) < 0.05);

        // A free number stores the current view.
        cam->setPosition(45.0, -10.0, 2.0);
        cam->clearRequestLog();
        preset(controller, PresetRequest("SetPreset", 8, "Yard"));
        QCOMPARE(cam->requestLog().at(0).operation, DriverOperation::SetPreset);
        QCOMPARE(cam->presets().size(), 2);
        QVERIFY(qAbs(cam->presets().at(1).pan - 45.0) < 0.01);
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
        QVERIFY(!Storage()->IsCruising(kDome));
        QCOMPARE(Storage()->GetRecordPattern(kDome), 1);
        QCOMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 0);
    }
    void patternCommandsKeepRunningState()
    {
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        Answers answers(&controller);
        const auto run = [&](const PTZControlCommand &command) {
            const int before = answers.ok.count();
            controller.Control(command);
            return QTest::qWaitFor([&] { return answers.ok.count() == before + 1; }, 5000)
                       ? answers.ok.last().at(2).value<PTZControlCommand>().param
                       : -1;
        };

        QCOMPARE(run(Cmd(kDome, 34, 0, 20, 2)), 2);
        QCOMPARE(Storage()->GetRecordPattern(kDome), 2);
        QVERIFY(run(Cmd(kDome, 24, 0, 20)) >= 0);
        m_env.clock()->advance(500);
        QVERIFY(run(Cmd(kDome, 24, 1, 20)) >= 0);
        QCOMPARE(run(Cmd(kDome, 35, 0, 20, 0)), 2); // the recording one when no number is given
        QVERIFY(!Storage()->IsRecordPattern(kDome));
        QCOMPARE(cam->recordedPatterns(), QVector<int>{2});

        QCOMPARE(run(Cmd(kDome, 36, 0, 20, 2)), 2);
        QCOMPARE(Storage()->GetRunningPattern(kDome), 2);
        QCOMPARE(cam->status().runningPattern, 2);
        QCOMPARE(run(Cmd(kDome, 44, 1, 20, 0)), 2);
        QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
        QCOMPARE(cam->status().runningPattern, 0);

        QCOMPARE(run(Cmd(kDome, 45, 0, 20, 2)), 2);
        QVERIFY(cam->recordedPatterns().isEmpty());
        QCOMPARE(answers.failed.count(), 0);
    }
    void lockAndUnlockRoundTrip()
    {
        CUniversalPTZController controller;
        Answers answers(&controller);
        controller.Control(Cmd(kDome, 200, 1, 0, 120));
        QCOMPARE(answers.count(), 0);
        QTRY_COMPARE(answers.ok.count(), 1);
        QCOMPARE(answers.ok.at(0).at(2).value<PTZControlCommand>().param, 120);
        PTZLockStatusResponse status = lockStatus();
        QCOMPARE(status.locked, 1);
        QCOMPARE(QString::fromStdString(status.user_name), QString::fromLatin1(demo::kOperator));
        QVERIFY(status.remaining_time > 110 && status.remaining_time <= 120);

        // The holder keeps control.
        controller.Control(Cmd(kDome, 24, 0));
        QTRY_COMPARE(answers.ok.count(), 2);
        controller.Control(Cmd(kDome, 201, 1));
        QTRY_COMPARE(answers.ok.count(), 3);
        QCOMPARE(lockStatus().locked, 0);

        controller.Control(Cmd(kDome, 200, 1, 0, 0));
        QTRY_COMPARE(answers.ok.count(), 4);
        QCOMPARE(answers.ok.at(3).at(2).value<PTZControlCommand>().param, 300); // the default duration
        QCOMPARE(answers.failed.count(), 0);
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
        Answers answers(&controller);
        QSignalSpy seized(&controller, &CUniversalPTZController::SignalSeizedByOtherUser);

        // A user who outranks the holder keeps control; others are refused.
        controller.Control(Cmd(kDome, 24, 0));
        QTRY_COMPARE(answers.count(), 1);
        QCOMPARE(answers.ok.count(), canSeize ? 1 : 0);
        if (!canSeize) {
            QCOMPARE(answers.failed.at(0).at(2).toInt(), int(CUniversalPTZController::kErrorLockedByOther));
            QCOMPARE(answers.failed.at(0).at(3).toInt(), 24);
            QTRY_COMPARE(seized.count(), 1);
            QCOMPARE(seized.at(0).at(0).toString(), kDome);
            QVERIFY(!cam->status().panTiltMoving);
        }

        // A release always reaches the camera.
        controller.Control(Cmd(kDome, 24, 1));
        QTRY_COMPARE(answers.count(), 2);
        QCOMPARE(answers.failed.count(), canSeize ? 0 : 1);

        controller.Control(Cmd(kDome, 200, 1, 0, 60));
        QTRY_COMPARE(answers.count(), 3);
        settle(controller);
        QCOMPARE(answers.ok.count(), canSeize ? 3 : 1);
        QCOMPARE(seized.count(), canSeize ? 1 : 2); // taken from the holder, or refused twice
        QCOMPARE(QString::fromStdString(lockStatus().user_name),
                 canSeize ? QString::fromLatin1(demo::kOperator) : holder);
    }
    void autoTrackAnswersWithState()
    {
        CUniversalPTZController controller;
        Answers answers(&controller);
        controller.SetAutoTrack({kDome.toStdString(), 1});
        QCOMPARE(answers.count(), 0);
        QTRY_COMPARE(answers.track.count(), 1);
        QCOMPARE(answers.track.at(0).at(1).toString(), kDome);
        QCOMPARE(answers.track.at(0).at(2).toBool(), true);
        GetAutoTrackRequest get;
        get.camera_index_code = kDome.toStdString();
        controller.GetAutoTrack(get);
        QTRY_COMPARE(answers.track.count(), 2);
        QCOMPARE(answers.track.at(1).at(2).toBool(), true);

        // A camera without the ability refuses; the state reported stays off.
        controller.SetAutoTrack({demo::kBoxZoom, 1});
        QTRY_COMPARE(answers.track.count(), 3);
        QCOMPARE(answers.track.at(2).at(2).toBool(), false);
        QCOMPARE(answers.tips.count(), 1);
    }
    void parkActionAndRecoveryReachCameraAndSite()
    {
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        Answers answers(&controller);
        controller.SetParkAction({kDome.toStdString(), true, 720, 3, 2});
        QTRY_COMPARE(answers.park.count(), 1);
        QCOMPARE(answers.park.at(0).at(1).toString(), QString());
        QCOMPARE(cam->parkAction().waitingSeconds, 720);
        QCOMPARE(cam->parkAction().type, ptz_devices::ParkActionType::Patrol);
        GetParkActionResponse stored;
        QVERIFY(m_env.business()->GetPTZParkAction({kDome.toStdString()}, stored));
        QCOMPARE(stored.wait_time, 720);
        QCOMPARE(stored.target_id, 2);

        // Switched off, the waiting time is recorded as 0 whatever was chosen.
        controller.SetCruiseRecover({kDome.toStdString(), false, 45});
        QTRY_COMPARE(answers.recover.count(), 1);
        QCOMPARE(answers.recover.at(0).at(1).toString(), QString());
        QVERIFY(!cam->patrolRecovery().enabled);
        QCOMPARE(cam->patrolRecovery().waitingSeconds, 0);
        GetPatrolRecoverConfigResponse storedRecovery;
        QVERIFY(m_env.business()->GetPatrolRecoverConfig({kDome.toStdString()}, storedRecovery));
        QCOMPARE(storedRecovery.wait_time, 0);

        QCOMPARE(answers.tips.count(), 2);
        QCOMPARE(answers.tips.at(0).at(1).toInt(), 3);
        QCOMPARE(answers.tips.at(1).at(1).toInt(), 3);
    }

private:
    // Waits until the controller holds no request.
    void settle(CUniversalPTZController &controller)
    {
        QTRY_COMPARE(controller.PendingRequestCount(), 0);
        QCoreApplication::processEvents();
    }
    void preset(CUniversalPTZController &controller, const PresetControlRequest &request)
    {
        QSignalSpy finished(&controller, &CUniversalPTZController::signalPresetFinished);
        controller.Preset(request);
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(1).toString(), QString());
    }
    PTZLockStatusResponse lockStatus()
    {
        PTZLockStatusResponse status;
        m_env.business()->GetPTZLockStatus({kDome.toStdString()}, status);
        return status;
    }
    // Device presets 1 and 2, device patrol 1 over them, running.
    void preparePatrol(CUniversalPTZController &controller)
    {
        preset(controller, PresetRequest("SetPreset", 1, "p"));
        preset(controller, PresetRequest("SetPreset", 2, "q"));
        QSignalSpy cruises(&controller, &CUniversalPTZController::signalCruiseFinished);
        controller.Cruise(CruiseRequest("ModifyCruiseRoute", 1, CRUISE_TYPE_DEVICE));
        controller.Cruise(CruiseRequest("CruiseRouteControl", 1, 0, 0));
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
