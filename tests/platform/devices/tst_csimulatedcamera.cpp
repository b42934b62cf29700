#include "support/records.h"
#include "support/simcameraharness.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <tuple>

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
        QTest::addColumn<QVector<double>>("direction"); // pan, tilt, zoom
        QTest::addColumn<int>("speed");
        QTest::addColumn<int>("ms");
        QTest::addColumn<QVector<double>>("start"); // pan, tilt, zoom
        QTest::addColumn<QVector<double>>("end");

        QTest::newRow("right, speed 1, 1 s")
            << QVector<double>{1, 0, 0} << 1 << 1000 << QVector<double>{0, 0, 1} << QVector<double>{2, 0, 1};
        QTest::newRow("left wraps below 0")
            << QVector<double>{-1, 0, 0} << 10 << 1000 << QVector<double>{10, 0, 1} << QVector<double>{350, 0, 1};
        QTest::newRow("right wraps past 360")
            << QVector<double>{1, 0, 0} << 20 << 1000 << QVector<double>{350, 0, 1} << QVector<double>{30, 0, 1};
        QTest::newRow("up clamps at +10")
            << QVector<double>{0, 1, 0} << 20 << 1000 << QVector<double>{0, 0, 1} << QVector<double>{0, 10, 1};
        QTest::newRow("down clamps at -90")
            << QVector<double>{0, -1, 0} << 40 << 3000 << QVector<double>{0, 0, 1} << QVector<double>{0, -90, 1};
        QTest::newRow("up-left, tilt clamps, pan goes on")
            << QVector<double>{-1, 1, 0} << 10 << 2000 << QVector<double>{30, 0, 1} << QVector<double>{350, 10, 1};
        QTest::newRow("zoom in, speed 10, 1 s")
            << QVector<double>{0, 0, 1} << 10 << 1000 << QVector<double>{0, 0, 1} << QVector<double>{0, 0, 6};
        QTest::newRow("zoom in clamps at 30x")
            << QVector<double>{0, 0, 1} << 40 << 5000 << QVector<double>{0, 0, 1} << QVector<double>{0, 0, 30};
        QTest::newRow("zoom out clamps at 1x")
            << QVector<double>{0, 0, -1} << 40 << 5000 << QVector<double>{0, 0, 3} << QVector<double>{0, 0, 1};
    }
    void continuousMove()
    {
        QFETCH(QVector<double>, direction);
        QFETCH(int, speed);
        QFETCH(int, ms);
        QFETCH(QVector<double>, start);
        QFETCH(QVector<double>, end);

        SimCameraHarness h;
        h.camera->setPosition(start[0], start[1], start[2]);
        if (direction[2] != 0)
            QVERIFY(h.ok(h.camera->zoom(int(direction[2]), speed)));
        else
            QVERIFY(h.ok(h.camera->movePanTilt(int(direction[0]), int(direction[1]), speed)));
        QVERIFY(h.status().panTiltMoving || h.status().zoomMoving);
        h.clock.advance(ms);
        QVERIFY(h.ok(h.camera->stopPanTilt()));
        QVERIFY(h.ok(h.camera->zoom(0, 0)));
        h.clock.advance(2000); // stopped means stopped
        const DeviceStatus s = h.status();
        QVERIFY(!s.panTiltMoving && !s.zoomMoving);
        QVERIFY2(near(s.pan, end[0]) && near(s.tilt, end[1]) && near(s.zoom, end[2]),
                 qPrintable(QStringLiteral("%1, %2, %3").arg(s.pan).arg(s.tilt).arg(s.zoom)));
    }
    void presetCallTakesTheShortWay()
    {
        SimCameraHarness h;
        h.camera->setPosition(123.5, -33.25, 7.5);
        QVERIFY(h.ok(h.camera->setPreset(17, QStringLiteral("Gate"))));
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
        QTest::newRow("preset 0") << dome
                                  << Request([](CSimulatedCamera *c) { return c->setPreset(0, QStringLiteral("x")); });
        QTest::newRow("missing preset") << dome << Request([](CSimulatedCamera *c) { return c->gotoPreset(3); });
        QTest::newRow("pattern not recorded") << dome << Request([](CSimulatedCamera *c) { return c->playPattern(2); });
        QTest::newRow("empty patrol") << dome << Request([](CSimulatedCamera *c) { return c->startPatrol(3); });
        QTest::newRow("park wait 721 s") << dome
                                         << Request([](CSimulatedCamera *c) { return c->setParkAction(Park(721)); });
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

    // Patrols, patterns, auto-scan, interruption, park action and patrol recovery:
    // everything that runs by itself on the simulation clock.
    // Presets 1 (0, 0), 2 (90, 0), 3 (90, -45); patrol 1 visits them in order:
    // preset 1 speed 40 dwell 2 s, preset 2 speed 10 dwell 3 s, preset 3 speed 20 dwell 1 s.
    void patrolVisitsPointsWithSpeedsAndDwell_data()
    {
        QTest::addColumn<int>("tick");           // the result must not depend on the clock's step
        QTest::addColumn<QVector<int>>("times"); // ms after start
        QTest::addColumn<QVector<double>>("pans");
        QTest::addColumn<QVector<double>>("tilts");
        QTest::addColumn<QVector<bool>>("moving");

        // To preset 2: 90 deg at 20 deg/s = 4.5 s; to 3: 45 deg at 40 deg/s = 1.125 s;
        // back to 1: 90 deg at 80 deg/s = 1.125 s.
        QTest::newRow("dwell at the first point") << 20 << QVector<int>{0, 1999} << QVector<double>{0, 0}
                                                  << QVector<double>{0, 0} << QVector<bool>{false, false};
        QTest::newRow("leaves after 2 s at speed 10")
            << 7 << QVector<int>{2000, 4250, 6499} << QVector<double>{0, 45, 89.98} << QVector<double>{0, 0, 0}
            << QVector<bool>{true, true, true};
        QTest::newRow("dwells 3 s at the second point") << 1000 << QVector<int>{6500, 9499} << QVector<double>{90, 90}
                                                        << QVector<double>{0, 0} << QVector<bool>{false, false};
        QTest::newRow("third point at speed 20, 1 s dwell")
            << 1 << QVector<int>{10000, 10625, 11624} << QVector<double>{90, 90, 90} << QVector<double>{-20, -45, -45}
            << QVector<bool>{true, false, false};
        QTest::newRow("loops back to the first point")
            << 20 << QVector<int>{11625, 12750, 14749, 14750 + 2250} << QVector<double>{90, 0, 0, 45}
            << QVector<double>{-45, 0, 0, 0} << QVector<bool>{true, false, false, true};
    }
    void patrolVisitsPointsWithSpeedsAndDwell()
    {
        QFETCH(int, tick);
        QFETCH(QVector<int>, times);
        QFETCH(QVector<double>, pans);
        QFETCH(QVector<double>, tilts);
        QFETCH(QVector<bool>, moving);

        SimCameraHarness h;
        h.clock.setTickInterval(tick);
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
        QTest::addColumn<Request>("start");
        QTest::addColumn<int>("activity"); // DeviceActivity
        QTest::addColumn<int>("number");
        QTest::addColumn<Request>("control");
        const QVector<std::tuple<const char *, Request, DeviceActivity, int>> activities = {
            {"auto-scan", [](CSimulatedCamera *c) { return c->setAutoScan(true, 10); }, DeviceActivity::AutoScan, 0},
            {"patrol", [](CSimulatedCamera *c) { return c->startPatrol(1); }, DeviceActivity::Patrol, 1},
            {"pattern", [](CSimulatedCamera *c) { return c->playPattern(3); }, DeviceActivity::Pattern, 3}};
        const QVector<QPair<const char *, Request>> controls = {
            {"pan/tilt", [](CSimulatedCamera *c) { return c->movePanTilt(0, -1, 10); }},
            {"zoom", [](CSimulatedCamera *c) { return c->zoom(1, 10); }},
            {"preset call", [](CSimulatedCamera *c) { return c->gotoPreset(2); }},
            {"3D positioning", [](CSimulatedCamera *c) { return c->position3D(QRectF(0.1, 0.1, 0.2, 0.2)); }}};
        for (const auto &a : activities)
            for (const auto &c : controls)
                QTest::addRow("%s by %s", std::get<0>(a), c.first)
                    << std::get<1>(a) << int(std::get<2>(a)) << std::get<3>(a) << c.second;
    }
    void manualControlInterruptsActivity()
    {
        QFETCH(Request, start);
        QFETCH(int, activity);
        QFETCH(int, number);
        QFETCH(Request, control);

        SimCameraHarness h;
        setUpPatrol(h);
        QVERIFY(h.ok(h.camera->startPatternRecord(3)));
        QVERIFY(h.ok(h.camera->movePanTilt(1, 0, 5)));
        h.clock.advance(500);
        QVERIFY(h.ok(h.camera->stopPanTilt()));
        QVERIFY(h.ok(h.camera->stopPatternRecord(3)));
        QVERIFY(h.ok(start(h.camera.get())));
        h.clock.advance(300);

        QSignalSpy spy(h.camera.get(), &IPtzDriver::activityInterrupted);
        QVERIFY(h.ok(control(h.camera.get())));
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
