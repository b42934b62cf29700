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
    void presetsSetCallRenameRemove()
    {
        SimCameraHarness h;
        h.camera->setPosition(123.5, -33.25, 7.5);
        QVERIFY(h.ok(h.camera->setPreset(17, QStringLiteral("Gate"))));
        QVERIFY(h.ok(h.camera->setPreset(3, QString())));
        QVERIFY(h.ok(h.camera->renamePreset(17, QStringLiteral("B"))));
        QVERIFY(h.ok(h.camera->removePreset(3)));
        DriverReply list;
        QVERIFY(h.await(h.camera->listPresets(), &list));
        const auto presets = list.result.value<QVector<DevicePreset>>();
        QCOMPARE(presets.size(), 1);
        QCOMPARE(presets.at(0).name, QStringLiteral("B"));
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
};

QTEST_GUILESS_MAIN(tst_CSimulatedCamera)
#include "tst_csimulatedcamera.moc"
