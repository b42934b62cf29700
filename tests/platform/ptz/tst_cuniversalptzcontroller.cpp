#include "support/ptztestenv.h"
#include "support/records.h"

#include <QTest>

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

class TestUniversalPTZController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void pressMovesAndReleaseStops_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("speed");
        QTest::newRow("pan right, slowest") << 24 << 1;
        QTest::newRow("down right, fastest") << 28 << 40;
        QTest::newRow("zoom in") << 11 << 20;
    }
    void pressMovesAndReleaseStops()
    {
        QFETCH(int, code);
        QFETCH(int, speed);
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        Answers answers(&controller);
        const ptz_devices::DeviceStatus start = cam->status();
        controller.Control(Cmd(kDome, uint32_t(code), 0, speed));
        QTRY_COMPARE(answers.ok.count(), 1);
        QCOMPARE(answers.ok.at(0).at(2).value<PTZControlCommand>().command, uint32_t(code));
        m_env.clock()->advance(1000);
        QVERIFY(cam->status().pan != start.pan || cam->status().zoom != start.zoom);

        controller.Control(Cmd(kDome, uint32_t(code), 1, speed));
        QTRY_COMPARE(answers.ok.count(), 2);
        const ptz_devices::DeviceStatus stopped = cam->status();
        m_env.clock()->advance(1000);
        QCOMPARE(cam->status().pan, stopped.pan);
        QCOMPARE(cam->status().zoom, stopped.zoom);
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
        auto patrol = [](int number, int points, int speed, int dwell, int type) {
            CruiseControlRequest r = CruiseRequest("ModifyCruiseRoute", number, type, 0);
            r.points = CruisePoints(points, speed, dwell);
            return Send([r](CUniversalPTZController &u) { u.Cruise(r); });
        };
        const QString box = QString::fromLatin1(demo::kBoxZoom);
        QTest::newRow("unknown camera") << control(Cmd("no-such-camera", 24, 0)) << false;
        QTest::newRow("unknown command") << control(Cmd(kDome, 99, 0)) << false;
        QTest::newRow("action 2") << control(Cmd(kDome, 24, 2)) << false;
        QTest::newRow("speed 0") << control(Cmd(kDome, 24, 0, 0)) << false;
        QTest::newRow("speed 41") << control(Cmd(kDome, 21, 0, 41)) << false;
        QTest::newRow("pattern 5") << control(Cmd(kDome, 36, 0, 20, 5)) << false;
        QTest::newRow("move on zoom-only camera") << control(Cmd(box, 24, 0)) << false;
        QTest::newRow("move without permission") << control(Cmd(kDome, 24, 0)) << true;
        QTest::newRow("preset 0") << preset(PresetRequest("GotoPreset", 0)) << false;
        QTest::newRow("preset 257") << preset(PresetRequest("SetPreset", 257)) << false;
        QTest::newRow("unknown preset operation") << preset(PresetRequest("RenamePreset", 3)) << false;
        QTest::newRow("patrol of 33 points") << patrol(1, 33, 10, 5, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("patrol point speed 41") << patrol(1, 2, 41, 5, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("patrol dwell 31 s") << patrol(1, 2, 10, 31, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("patrol number 9") << patrol(9, 2, 10, 5, CRUISE_TYPE_DEVICE) << false;
        QTest::newRow("virtual patrol dwell 10 s") << patrol(2, 2, 0, 10, CRUISE_TYPE_VIRTUAL) << false;
        QTest::newRow("auto track without the ability") << Send([](CUniversalPTZController &u) {
            u.SetAutoTrack({demo::kBoxZoom, 1});
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
        QVERIFY(!answers.error().isEmpty());
        // Preset errors travel in the finished signal only; the panel raises them.
        QCOMPARE(answers.tips.count(), answers.presets.isEmpty() ? 1 : 0);
        if (!answers.failed.isEmpty())
            QVERIFY(answers.failed.at(0).at(2).toInt() != CUniversalPTZController::kErrorNone);
        for (const QSignalSpy *spy : {&answers.cruises, &answers.park, &answers.recover}) {
            if (!spy->isEmpty())
                QCOMPARE(spy->at(0).at(1).toString(), answers.error());
        }
        if (!answers.track.isEmpty())
            QCOMPARE(answers.track.at(0).at(2).toBool(), false);
    }
    void lostDeviceFailsEveryRequest()
    {
        m_env.camera(demo::kSpeedDome)->disconnectDevice();
        CUniversalPTZController controller;
        Answers answers(&controller);
        controller.Control(Cmd(kDome, 24, 0));
        controller.Preset(PresetRequest("GotoPreset", 3));
        QCOMPARE(answers.count(), 0); // never inside the call
        QTRY_COMPARE(answers.count(), 2);
        QCOMPARE(answers.failed.at(0).at(2).toInt(), int(CUniversalPTZController::kErrorDevice));
        QCOMPARE(answers.failed.at(0).at(3).toInt(), 24);
        QVERIFY(!answers.presets.at(0).at(1).toString().isEmpty());
        settle(controller);
    }
    void lateAnswerIsFoldedIntoTheSharedState_data()
    {
        QTest::addColumn<uint>("code");
        QTest::addColumn<bool>("cameraFails");
        QTest::addColumn<Check>("done");
        const Check light = [] { return Storage()->IsLight(kDome); };
        QTest::newRow("light on") << uint(PTZ_CMD_LIGHT) << false << light;
        QTest::newRow("light fails late") << uint(PTZ_CMD_LIGHT) << true << light;
        QTest::newRow("auto-scan on") << uint(PTZ_CMD_AUTO_PAN) << false
                                      << Check([] { return Storage()->IsAutoScan(kDome, false); });
        QTest::newRow("pattern record") << uint(PTZ_CMD_PATTERN_RECORD_START) << false
                                        << Check([] { return Storage()->GetRecordPattern(kDome) == 3; });
    }
    void lateAnswerIsFoldedIntoTheSharedState()
    {
        // The requester was told the camera did not answer; what the camera did still counts.
        QFETCH(uint, code);
        QFETCH(bool, cameraFails);
        QFETCH(Check, done);
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        CUniversalPTZController controller;
        controller.SetRequestTimeout(20);
        cam->setLatency(300);
        if (cameraFails)
            cam->failOperation(DriverOperation::Light, QStringLiteral("bulb broken"));
        Answers answers(&controller);
        QSignalSpy changed(Storage(), &CPTZStateStorageManager::SignalStateChanged);

        controller.Control(Cmd(kDome, code, 0, 20, 3));
        QTRY_COMPARE(answers.failed.count(), 1);
        QCOMPARE(answers.error(), QStringLiteral("The camera did not answer in time."));
        QVERIFY(!done());
        QCOMPARE(changed.count(), 0);

        QTRY_COMPARE(cam->pendingRequestCount(), 0);
        QTRY_COMPARE(done(), !cameraFails);
        QCoreApplication::processEvents();
        QCOMPARE(changed.count(), cameraFails ? 0 : 1);
        if (!cameraFails)
            QCOMPARE(changed.at(0).at(0).toString(), kDome);
        QCOMPARE(answers.count(), 1); // the request had its one answer already
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
        QCOMPARE(interrupt.at(0).at(2).toBool(), false);
        QCOMPARE(interrupt.at(0).at(3).toInt(), 1);
        QVERIFY(cruising_at_notice);
        QCOMPARE(interrupted_at_notice, resume);
        QVERIFY(!Storage()->IsCruising(kDome));
        controller.Control(Cmd(kDome, 24, 1));
        QTRY_COMPARE(ok.count(), 2);

        if (resume) {
            QTRY_COMPARE(timeout.count(), 1);
            QCOMPARE(Storage()->GetRunningCruise(kDome), 1);
            QTRY_COMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 1);
        } else {
            int number = 0;
            QVERIFY(!Storage()->IsInterruptCruise(kDome, number));
            QCOMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 0);
        }
        QCOMPARE(interrupt.count(), 1); // the camera's own notice is not repeated
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
        QCOMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 0);
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
    // Device presets 1 and 2, device patrol 1 over them, running.
    void preparePatrol(CUniversalPTZController &controller)
    {
        preset(controller, PresetRequest("SetPreset", 1, "p"));
        preset(controller, PresetRequest("SetPreset", 2, "q"));
        QSignalSpy cruises(&controller, &CUniversalPTZController::signalCruiseFinished);
        controller.Cruise(CruiseRequest("ModifyCruiseRoute", 1, CRUISE_TYPE_DEVICE));
        controller.Cruise(CruiseRequest("CruiseRouteControl", 1, 0, 0));
        QTRY_COMPARE(cruises.count(), 2);
        QCOMPARE(m_env.camera(demo::kSpeedDome)->status().runningPatrol, 1);
    }

    PtzTestEnv m_env;
};

QTEST_GUILESS_MAIN(TestUniversalPTZController)
#include "tst_cuniversalptzcontroller.moc"
