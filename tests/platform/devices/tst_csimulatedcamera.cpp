#include "support/records.h"
#include "support/simcameraharness.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>

using namespace ptz_devices;

using Request = std::function<quint64(CSimulatedCamera *)>;
Q_DECLARE_METATYPE(Request)

namespace {
ParkAction Park(int waitingSeconds, ParkActionType type = ParkActionType::Preset, int target = 1)
{
    ParkAction a;
    a.enabled = true;
    a.waitingSeconds = waitingSeconds;
    a.type = type;
    a.target = target;
    return a;
}
} // namespace

class tst_CSimulatedCamera : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void continuousMove_data()
    {
        QTest::addColumn<int>("panDir");
        QTest::addColumn<int>("tiltDir");
        QTest::addColumn<int>("speed");
        QTest::addColumn<int>("ms");
        QTest::addColumn<QPointF>("start"); // pan, tilt
        QTest::addColumn<QPointF>("end");

        QTest::newRow("right, speed 1, 1 s") << 1 << 0 << 1 << 1000 << QPointF(0, 0) << QPointF(2, 0);
        QTest::newRow("right, speed 40, 1 s") << 1 << 0 << 40 << 1000 << QPointF(0, 0) << QPointF(80, 0);
        QTest::newRow("left wraps below 0") << -1 << 0 << 10 << 1000 << QPointF(10, 0) << QPointF(350, 0);
        QTest::newRow("right wraps past 360") << 1 << 0 << 20 << 1000 << QPointF(350, 0) << QPointF(30, 0);
        QTest::newRow("up clamps at +10") << 0 << 1 << 20 << 1000 << QPointF(0, 0) << QPointF(0, 10);
        QTest::newRow("down clamps at -90") << 0 << -1 << 40 << 3000 << QPointF(0, 0) << QPointF(0, -90);
        QTest::newRow("down-right diagonal") << 1 << -1 << 5 << 1000 << QPointF(100, -40) << QPointF(110, -50);
        QTest::newRow("up-left, tilt clamps, pan goes on")
            << -1 << 1 << 10 << 2000 << QPointF(30, 0) << QPointF(350, 10);
    }
    void continuousMove()
    {
        QFETCH(int, panDir);
        QFETCH(int, tiltDir);
        QFETCH(int, speed);
        QFETCH(int, ms);
        QFETCH(QPointF, start);
        QFETCH(QPointF, end);

        SimCameraHarness h;
        h.camera->setPosition(start.x(), start.y());
        QVERIFY(h.ok(h.camera->movePanTilt(panDir, tiltDir, speed)));
        QVERIFY(h.status().panTiltMoving);
        h.clock.advance(ms);
        QVERIFY(h.ok(h.camera->stopPanTilt()));
        h.clock.advance(2000); // stopped means stopped
        QVERIFY(!h.status().panTiltMoving);
        QVERIFY2(near(h.status().pan, end.x()), qPrintable(QString::number(h.status().pan)));
        QVERIFY2(near(h.status().tilt, end.y()), qPrintable(QString::number(h.status().tilt)));
    }
    void zoomMovesWhileHeldAndClamps_data()
    {
        QTest::addColumn<int>("direction");
        QTest::addColumn<int>("speed");
        QTest::addColumn<int>("ms");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("expected");

        QTest::newRow("in, speed 10, 1 s") << 1 << 10 << 1000 << 1.0 << 6.0;
        QTest::newRow("in clamps at 30x") << 1 << 40 << 5000 << 1.0 << 30.0;
        QTest::newRow("out clamps at 1x") << -1 << 40 << 5000 << 3.0 << 1.0;
    }
    void zoomMovesWhileHeldAndClamps()
    {
        QFETCH(int, direction);
        QFETCH(int, speed);
        QFETCH(int, ms);
        QFETCH(double, start);
        QFETCH(double, expected);

        SimCameraHarness h;
        h.camera->setPosition(0, 0, start);
        QVERIFY(h.ok(h.camera->zoom(direction, speed)));
        h.clock.advance(ms);
        QVERIFY(h.ok(h.camera->zoom(0, 0)));
        h.clock.advance(1000);
        QVERIFY(near(h.status().zoom, expected));
        // Zoom is its own axis: pan and tilt did not move.
        QCOMPARE(h.status().pan, 0.0);
        QCOMPARE(h.status().tilt, 0.0);
    }
    void presetCallTakesTheShortWayAndMissingOnesFail()
    {
        SimCameraHarness h;
        h.camera->setPosition(123.5, -33.25, 7.5);
        QVERIFY(h.ok(h.camera->setPreset(17, QStringLiteral("Gate"))));
        QVERIFY(h.ok(h.camera->setPreset(3, QString())));
        QVERIFY(h.ok(h.camera->removePreset(3)));
        QVERIFY(!h.ok(h.camera->removePreset(3)));
        QVERIFY(!h.ok(h.camera->gotoPreset(3)));
        QVERIFY(!h.ok(h.camera->renamePreset(17, QStringLiteral("  "))));

        // The call takes the short way round: 300 -> 123.5 is 176.5 deg at 80 deg/s.
        h.camera->setPosition(300.0, 5.0, 1.0);
        QVERIFY(h.ok(h.camera->gotoPreset(17)));
        h.clock.advance(2200);
        QVERIFY(h.status().panTiltMoving);
        h.clock.advance(10000);
        const DeviceStatus s = h.status();
        QVERIFY(!s.panTiltMoving && !s.zoomMoving);
        QVERIFY(near(s.pan, 123.5));
        QVERIFY(near(s.tilt, -33.25));
        QVERIFY(near(s.zoom, 7.5));
    }
    void badInputFails_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<Request>("request");

        const QString dome = QStringLiteral("speed-dome");
        const QString box = QStringLiteral("box-zoom");
        const QString fishEye = QStringLiteral("fisheye");
        auto patrol = [](DevicePatrolPoint point, int count = 1) {
            return Request(
                [=](CSimulatedCamera *c) { return c->writePatrol(1, QVector<DevicePatrolPoint>(count, point)); });
        };
        QTest::newRow("preset 0") << dome
                                  << Request([](CSimulatedCamera *c) { return c->setPreset(0, QStringLiteral("x")); });
        QTest::newRow("preset 257") << dome << Request([](CSimulatedCamera *c) { return c->gotoPreset(257); });
        QTest::newRow("patrol 9") << dome << Request([](CSimulatedCamera *c) { return c->readPatrol(9); });
        QTest::newRow("33 points") << dome << patrol(PatrolPoint(1, 10, 5), 33);
        QTest::newRow("point speed 41") << dome << patrol(PatrolPoint(1, 41, 5));
        QTest::newRow("dwell 31") << dome << patrol(PatrolPoint(1, 10, 31));
        QTest::newRow("move speed 41") << dome << Request([](CSimulatedCamera *c) { return c->movePanTilt(0, 1, 41); });
        QTest::newRow("pattern 5") << dome << Request([](CSimulatedCamera *c) { return c->startPatternRecord(5); });
        QTest::newRow("pattern not recorded") << dome << Request([](CSimulatedCamera *c) { return c->playPattern(2); });
        QTest::newRow("empty patrol") << dome << Request([](CSimulatedCamera *c) { return c->startPatrol(3); });
        QTest::newRow("park wait 721 s") << dome
                                         << Request([](CSimulatedCamera *c) { return c->setParkAction(Park(721)); });
        QTest::newRow("park patrol 9") << dome << Request([](CSimulatedCamera *c) {
            return c->setParkAction(Park(30, ParkActionType::Patrol, 9));
        });
        QTest::newRow("no patterns on ptz-no-pattern")
            << QStringLiteral("ptz-no-pattern") << Request([](CSimulatedCamera *c) { return c->listPatterns(); });
        QTest::newRow("no pan on box-zoom")
            << box << Request([](CSimulatedCamera *c) { return c->movePanTilt(1, 0, 10); });
        QTest::newRow("no motor on fisheye")
            << fishEye << Request([](CSimulatedCamera *c) { return c->setPreset(1, QStringLiteral("x")); });
    }
    void badInputFails()
    {
        QFETCH(QString, model);
        QFETCH(Request, request);

        SimCameraHarness h(model);
        const DeviceStatus before = h.status();
        DriverReply reply;
        QVERIFY(h.await(request(h.camera.get()), &reply));
        QVERIFY(!reply.ok);
        QVERIFY(!reply.error.trimmed().isEmpty());
        h.clock.advance(1000);
        QCOMPARE(h.status(), before);
        QVERIFY(h.camera->presets().isEmpty());
        QVERIFY(h.camera->patrols().isEmpty());
    }
    void stopSupersedesWaitingMove()
    {
        SimCameraHarness h;
        QVERIFY(h.ok(h.camera->setPreset(1, QStringLiteral("home"))));
        QVERIFY(h.ok(h.camera->writePatrol(1, {PatrolPoint(1, 10, 5)})));
        QVERIFY(h.ok(h.camera->startPatrol(1)));
        QSignalSpy interrupted(h.camera.get(), &IPtzDriver::activityInterrupted);

        h.camera->setLatency(30);
        const quint64 move = h.camera->movePanTilt(1, 0, 40);
        const quint64 light = h.camera->setLight(true);
        QVERIFY(h.await(h.camera->stopPanTilt()));
        QCOMPARE(h.replies.size(), 6);
        QCOMPARE(h.replies.at(3).requestId, move);
        QVERIFY(h.replies.at(3).ok);
        QCOMPARE(h.replies.at(4).requestId, light);
        // The move never reached the head: the patrol was not interrupted, the
        // independent light request was carried out.
        QCOMPARE(interrupted.count(), 0);
        QCOMPARE(h.status().runningPatrol, 1);
        QVERIFY(h.status().light);

        // A stop does not reach back past something else on the pan/tilt axes.
        const quint64 move2 = h.camera->movePanTilt(1, 0, 40);
        h.camera->gotoPreset(1);
        QVERIFY(h.await(h.camera->stopPanTilt()));
        QCOMPARE(interrupted.count(), 1);
        QCOMPARE(h.answersFor(move2), 1);
    }
    void disconnectAndDestructionFailPending()
    {
        SimCameraHarness h;
        h.camera->setLatency(60000);
        QSignalSpy connection(h.camera.get(), &IPtzDriver::connectionChanged);
        const QVector<quint64> pending = {h.camera->movePanTilt(1, 0, 10), h.camera->setPreset(1, QStringLiteral("x")),
                                          h.camera->stopPanTilt(), h.camera->listPresets()};
        h.camera->disconnectDevice();
        QCOMPARE(connection.count(), 1);
        QVERIFY(!h.status().connected);
        for (quint64 id : pending) {
            DriverReply r;
            QVERIFY(h.await(id, &r));
            QVERIFY(!r.ok && !r.error.isEmpty());
            QCOMPARE(h.answersFor(id), 1);
        }
        QCOMPARE(h.camera->pendingRequestCount(), 0);
        QVERIFY(!h.ok(h.camera->gotoPreset(1)));

        h.camera->reconnectDevice();
        QCOMPARE(connection.count(), 2);
        h.camera->setLatency(0);
        QVERIFY(h.ok(h.camera->setPreset(1, QStringLiteral("x"))));

        // A camera going away answers what it still holds.
        h.camera->setLatency(60000);
        const int before = h.replies.size();
        const QVector<quint64> ids = {h.camera->movePanTilt(1, 0, 5), h.camera->listPresets()};
        h.camera.reset();
        QCOMPARE(h.replies.size(), before + ids.size());
        for (int i = 0; i < ids.size(); ++i) {
            QCOMPARE(h.replies.at(before + i).requestId, ids.at(i));
            QVERIFY(!h.replies.at(before + i).ok);
        }
    }
    void failedCallMovesNothingButFailedStopHalts()
    {
        SimCameraHarness h;
        QVERIFY(h.ok(h.camera->setPreset(1, QStringLiteral("a"))));
        h.camera->failOperation(DriverOperation::GotoPreset);
        h.camera->setPosition(90, 0);
        QVERIFY(!h.ok(h.camera->gotoPreset(1)));
        h.clock.advance(5000);
        QCOMPARE(h.status().pan, 90.0);

        QVERIFY(h.ok(h.camera->movePanTilt(1, 0, 10)));
        h.clock.advance(1000);
        h.camera->failNextRequests(1);
        QVERIFY(!h.ok(h.camera->stopPanTilt()));
        h.clock.advance(1000);
        QVERIFY(near(h.status().pan, 110.0));
    }
    void stateSurvivesRecreation()
    {
        SimCameraHarness h;
        h.camera->setPosition(45, -10, 3);
        QVERIFY(h.ok(h.camera->setPreset(1, QStringLiteral("Door"))));
        QVERIFY(h.ok(h.camera->writePatrol(5, {PatrolPoint(1, 10, 3), PatrolPoint(1, 40, 30)})));
        QVERIFY(h.ok(h.camera->startPatternRecord(2)));
        QVERIFY(h.ok(h.camera->movePanTilt(1, 0, 5)));
        h.clock.advance(1000);
        QVERIFY(h.ok(h.camera->stopPanTilt()));
        QVERIFY(h.ok(h.camera->stopPatternRecord(2)));
        QVERIFY(h.ok(h.camera->setParkAction(Park(120, ParkActionType::Patrol, 5))));
        const auto patrols = h.camera->patrols();

        h.create(QStringLiteral("speed-dome"));
        QCOMPARE(h.camera->patrols().at(0).points, patrols.at(0).points);
        QCOMPARE(h.camera->parkAction().target, 5);
        // The recreated camera really uses what it loaded.
        h.camera->setPosition(200, -60, 1);
        QVERIFY(h.ok(h.camera->gotoPreset(1)));
        h.clock.advance(5000);
        QVERIFY(near(h.status().pan, 45));
        QVERIFY(h.ok(h.camera->playPattern(2)));
        QCOMPARE(h.status().runningPattern, 2);

        // Another camera of the same store sees none of it.
        h.create(QStringLiteral("speed-dome"), QStringLiteral("cam-2"));
        QVERIFY(h.camera->presets().isEmpty());
        QVERIFY(h.camera->patrols().isEmpty());
        QVERIFY(h.camera->recordedPatterns().isEmpty());
    }
    void ownRealTimeClockDrivesCamera()
    {
        CSimulatedCamera camera(QStringLiteral("rt"), QStringLiteral("speed-dome"), nullptr, nullptr);
        QCOMPARE(camera.clock()->mode(), CSimClock::Mode::RealTime);
        QSignalSpy status(&camera, &IPtzDriver::statusChanged);
        camera.movePanTilt(1, 0, 40);
        QTRY_VERIFY(camera.status().pan > 2.0);
        QVERIFY(status.last().at(0).value<DeviceStatus>().panTiltMoving);
    }

    // Patrols, patterns, auto-scan, interruption, park action and patrol recovery:
    // everything that runs by itself on the simulation clock.
    // Presets 1 (0, 0), 2 (90, 0), 3 (90, -45); patrol 1 visits them in order:
    // preset 1 speed 40 dwell 2 s, preset 2 speed 10 dwell 3 s, preset 3 speed 20 dwell 1 s.
    void patrolVisitsPointsWithSpeedsAndDwell_data()
    {
        QTest::addColumn<QVector<int>>("times"); // ms after start
        QTest::addColumn<QVector<double>>("pans");
        QTest::addColumn<QVector<double>>("tilts");
        QTest::addColumn<QVector<bool>>("moving");

        // To preset 2: 90 deg at 20 deg/s = 4.5 s; to 3: 45 deg at 40 deg/s = 1.125 s;
        // back to 1: 90 deg at 80 deg/s = 1.125 s.
        QTest::newRow("dwell at the first point")
            << QVector<int>{0, 1999} << QVector<double>{0, 0} << QVector<double>{0, 0} << QVector<bool>{false, false};
        QTest::newRow("leaves after 2 s at speed 10") << QVector<int>{2000, 4250, 6499} << QVector<double>{0, 45, 89.98}
                                                      << QVector<double>{0, 0, 0} << QVector<bool>{true, true, true};
        QTest::newRow("dwells 3 s at the second point") << QVector<int>{6500, 9499} << QVector<double>{90, 90}
                                                        << QVector<double>{0, 0} << QVector<bool>{false, false};
        QTest::newRow("third point at speed 20, 1 s dwell")
            << QVector<int>{10000, 10625, 11624} << QVector<double>{90, 90, 90} << QVector<double>{-20, -45, -45}
            << QVector<bool>{true, false, false};
        QTest::newRow("loops back to the first point")
            << QVector<int>{11625, 12750, 14749, 14750 + 2250} << QVector<double>{90, 0, 0, 45}
            << QVector<double>{-45, 0, 0, 0} << QVector<bool>{true, false, false, true};
    }
    void patrolVisitsPointsWithSpeedsAndDwell()
    {
        QFETCH(QVector<int>, times);
        QFETCH(QVector<double>, pans);
        QFETCH(QVector<double>, tilts);
        QFETCH(QVector<bool>, moving);

        SimCameraHarness h;
        setUpPatrol(h);
        QVERIFY(h.ok(h.camera->startPatrol(1)));
        const qint64 start = h.clock.now();
        QCOMPARE(h.status().runningPatrol, 1);
        for (int i = 0; i < times.size(); ++i) {
            h.clock.advance(start + times.at(i) - h.clock.now());
            const DeviceStatus s = h.status();
            const QByteArray where = QByteArray::number(times.at(i)) + " ms: " + QByteArray::number(s.pan) + ", "
                                     + QByteArray::number(s.tilt);
            QVERIFY2(near(s.pan, pans.at(i), 0.05), where.constData());
            QVERIFY2(near(s.tilt, tilts.at(i), 0.05), where.constData());
            QVERIFY2(s.panTiltMoving == moving.at(i), where.constData());
            QCOMPARE(s.runningPatrol, 1);
        }
    }
    void manualControlInterruptsActivity_data()
    {
        QTest::addColumn<int>("activity"); // DeviceActivity
        QTest::addColumn<int>("control");  // 0 pan/tilt, 1 zoom, 2 preset call, 3 3D positioning

        const QVector<QPair<const char *, DeviceActivity>> activities = {{"auto-scan", DeviceActivity::AutoScan},
                                                                         {"patrol", DeviceActivity::Patrol},
                                                                         {"pattern", DeviceActivity::Pattern}};
        const char *controls[] = {"pan/tilt", "zoom", "preset call", "3D positioning"};
        for (const auto &a : activities)
            for (int c = 0; c < 4; ++c)
                QTest::addRow("%s by %s", a.first, controls[c]) << int(a.second) << c;
    }
    void manualControlInterruptsActivity()
    {
        QFETCH(int, activity);
        QFETCH(int, control);

        SimCameraHarness h;
        setUpPatrol(h);
        QVERIFY(h.ok(h.camera->startPatternRecord(3)));
        QVERIFY(h.ok(h.camera->movePanTilt(1, 0, 5)));
        h.clock.advance(500);
        QVERIFY(h.ok(h.camera->stopPanTilt()));
        QVERIFY(h.ok(h.camera->stopPatternRecord(3)));

        int number = 0;
        switch (DeviceActivity(activity)) {
        case DeviceActivity::AutoScan:
            QVERIFY(h.ok(h.camera->setAutoScan(true, 10)));
            break;
        case DeviceActivity::Patrol:
            QVERIFY(h.ok(h.camera->startPatrol(1)));
            number = 1;
            break;
        default:
            QVERIFY(h.ok(h.camera->playPattern(3)));
            number = 3;
            break;
        }
        h.clock.advance(300);

        QSignalSpy spy(h.camera.get(), &IPtzDriver::activityInterrupted);
        switch (control) {
        case 0:
            QVERIFY(h.ok(h.camera->movePanTilt(0, -1, 10)));
            break;
        case 1:
            QVERIFY(h.ok(h.camera->zoom(1, 10)));
            break;
        case 2:
            QVERIFY(h.ok(h.camera->gotoPreset(2)));
            break;
        default:
            QVERIFY(h.ok(h.camera->position3D(QRectF(0.1, 0.1, 0.2, 0.2))));
            break;
        }
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).value<DeviceActivity>(), DeviceActivity(activity));
        QCOMPARE(spy.at(0).at(1).toInt(), number);
        const DeviceStatus s = h.status();
        QVERIFY(!s.autoScan);
        QCOMPARE(s.runningPatrol, 0);
        QCOMPARE(s.runningPattern, 0);
    }
    void explicitStopIsNoInterruption()
    {
        SimCameraHarness h;
        setUpPatrol(h);
        QVERIFY(h.ok(h.camera->setPatrolRecovery({true, 15})));
        QVERIFY(h.ok(h.camera->startPatrol(1)));
        h.clock.advance(3000);
        QSignalSpy interrupted(h.camera.get(), &IPtzDriver::activityInterrupted);
        QSignalSpy resumed(h.camera.get(), &IPtzDriver::activityResumed);
        QVERIFY(h.ok(h.camera->stopPatrol(1)));
        // Focus and iris leave a running patrol alone.
        QVERIFY(h.ok(h.camera->startPatrol(1)));
        QVERIFY(h.ok(h.camera->focus(1, 5)));
        QVERIFY(h.ok(h.camera->iris(1, 5)));
        QCOMPARE(h.status().runningPatrol, 1);
        QVERIFY(h.ok(h.camera->stopActivity()));
        h.clock.advance(60000);
        QCOMPARE(interrupted.count(), 0);
        QCOMPARE(resumed.count(), 0);
        QCOMPARE(h.status().runningPatrol, 0);
    }
    void autoScanPansContinuously()
    {
        SimCameraHarness h;
        h.camera->setPosition(350, -30);
        QVERIFY(h.ok(h.camera->setAutoScan(true, 15)));
        h.clock.advance(10000);             // 30 deg/s
        QVERIFY(near(h.status().pan, 290)); // 350 + 300, wrapped
        QVERIFY(near(h.status().tilt, -30));
        QVERIFY(h.status().autoScan);
        QVERIFY(h.ok(h.camera->setAutoScan(false, 0)));
        h.clock.advance(1000);
        QVERIFY(near(h.status().pan, 290));
        QVERIFY(!h.status().panTiltMoving);
    }
    void parkActionFiresAfterWaitingTime_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("target");
        QTest::addColumn<int>("waitingSeconds");

        QTest::newRow("preset, 5 s") << int(ParkActionType::Preset) << 2 << 5;
        QTest::newRow("preset, 720 s") << int(ParkActionType::Preset) << 3 << 720;
        QTest::newRow("patrol, 30 s") << int(ParkActionType::Patrol) << 1 << 30;
        QTest::newRow("current view, 10 s") << int(ParkActionType::Preset) << 0 << 10;
    }
    void parkActionFiresAfterWaitingTime()
    {
        QFETCH(int, type);
        QFETCH(int, target);
        QFETCH(int, waitingSeconds);

        SimCameraHarness h;
        setUpPatrol(h);
        h.camera->setPosition(200, -80, 4); // the current view for target 0
        const ParkAction park{true, waitingSeconds, ParkActionType(type), target};
        QVERIFY(h.ok(h.camera->setParkAction(park)));
        QVERIFY(h.ok(h.camera->movePanTilt(1, 0, 10)));
        h.clock.advance(1000);
        QVERIFY(h.ok(h.camera->stopPanTilt())); // last control
        const qint64 idleFrom = h.clock.now();

        QSignalSpy resumed(h.camera.get(), &IPtzDriver::activityResumed);
        h.clock.advance(qint64(waitingSeconds) * 1000 - 1);
        QVERIFY(near(h.status().pan, 220));
        QVERIFY(!h.status().panTiltMoving);
        QCOMPARE(h.status().runningPatrol, 0);

        h.clock.advance(1);
        QCOMPARE(h.clock.now(), idleFrom + waitingSeconds * 1000);
        QVERIFY(h.status().panTiltMoving);
        h.clock.advance(5000);
        const DeviceStatus s = h.status();
        if (ParkActionType(type) == ParkActionType::Patrol) {
            QCOMPARE(s.runningPatrol, target);
            QCOMPARE(resumed.count(), 1);
            QCOMPARE(resumed.at(0).at(1).toInt(), target);
        } else if (target == 0) {
            QVERIFY(near(s.pan, 200));
            QVERIFY(near(s.tilt, -80));
            QVERIFY(near(s.zoom, 4));
        } else {
            const DevicePreset p = h.camera->presets().at(target - 1);
            QVERIFY(near(s.pan, p.pan));
            QVERIFY(near(s.tilt, p.tilt));
            QVERIFY(!s.panTiltMoving);
        }

        // Fires once per idle period.
        if (ParkActionType(type) == ParkActionType::Preset) {
            h.camera->setPosition(10, 0, 1);
            h.clock.advance(qint64(waitingSeconds) * 1000 * 2);
            QVERIFY(near(h.status().pan, 10));
        }
    }
    void recoveryResumesInterruptedPatrol_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("enabled") << true;
        QTest::newRow("disabled") << false;
    }
    void recoveryResumesInterruptedPatrol()
    {
        QFETCH(bool, enabled);
        SimCameraHarness h;
        setUpPatrol(h);
        QVERIFY(h.ok(h.camera->setPatrolRecovery({enabled, 15})));
        QVERIFY(h.ok(h.camera->startPatrol(1)));
        h.clock.advance(3000); // on the way to preset 2
        QSignalSpy resumed(h.camera.get(), &IPtzDriver::activityResumed);
        QVERIFY(h.ok(h.camera->movePanTilt(0, -1, 10)));
        h.clock.advance(500);
        QVERIFY(h.ok(h.camera->stopPanTilt()));
        QCOMPARE(h.status().runningPatrol, 0);

        h.clock.advance(14999);
        QCOMPARE(h.status().runningPatrol, 0);
        QVERIFY(!h.status().panTiltMoving);
        h.clock.advance(1);
        if (!enabled) {
            h.clock.advance(120000);
            QCOMPARE(h.status().runningPatrol, 0);
            QCOMPARE(resumed.count(), 0);
            return;
        }
        QCOMPARE(h.status().runningPatrol, 1);
        QCOMPARE(resumed.count(), 1);
        QCOMPARE(resumed.at(0).at(0).value<DeviceActivity>(), DeviceActivity::Patrol);
        // It resumes with the point it was heading for: preset 2, reached after
        // 70 deg at 20 deg/s and held for its 3 s dwell.
        h.clock.advance(3499);
        QVERIFY(h.status().panTiltMoving);
        h.clock.advance(1);
        QVERIFY(near(h.status().pan, 90));
        QVERIFY(near(h.status().tilt, 0));
        h.clock.advance(2999);
        QVERIFY(!h.status().panTiltMoving);
    }
    void resultDoesNotDependOnTickSize()
    {
        QVector<double> pans;
        for (int tick : {1, 7, 20, 1000}) {
            SimCameraHarness h;
            h.clock.setTickInterval(tick);
            setUpPatrol(h);
            QVERIFY(h.ok(h.camera->startPatrol(1)));
            h.clock.advance(4321);
            pans.append(h.status().pan);
        }
        for (double pan : pans)
            QVERIFY(near(pan, pans.first()));
        QVERIFY(near(pans.first(), (4321 - 2000) * 0.02));
    }

private:
    void setUpPatrol(SimCameraHarness &h)
    {
        h.camera->setPosition(0, 0);
        QVERIFY(h.ok(h.camera->setPreset(1, QStringLiteral("one"))));
        h.camera->setPosition(90, 0);
        QVERIFY(h.ok(h.camera->setPreset(2, QStringLiteral("two"))));
        h.camera->setPosition(90, -45);
        QVERIFY(h.ok(h.camera->setPreset(3, QStringLiteral("three"))));
        h.camera->setPosition(0, 0);
        QVERIFY(h.ok(h.camera->writePatrol(1, {PatrolPoint(1, 40, 2), PatrolPoint(2, 10, 3), PatrolPoint(3, 20, 1)})));
    }
};

QTEST_GUILESS_MAIN(tst_CSimulatedCamera)
#include "tst_csimulatedcamera.moc"
