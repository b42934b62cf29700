#include "support/records.h"
#include "support/testenv.h"

#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QSignalSpy>
#include <QTest>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CVirtualPtzControllor;
namespace demo = site_store::demo;

class TestVirtualPtzControllor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_env.setUp();
        QVERIFY(m_env.store()->upsertVirtualPreset({kDome, 1, QString(), PRESET_TYPE_VIRTUAL, 180.0, -45.0, 4.0}));
    }
    void cleanup() { m_env.tearDown(); }

    void refusesWhatItCannotRun_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("command");
        QTest::addColumn<int>("patrol");
        QTest::newRow("no camera") << QString() << 37 << 2;
        QTest::newRow("unknown command") << kDome << 36 << 2;
        QTest::newRow("device patrol") << kDome << 37 << 3;
        QTest::newRow("dwell below 15 s") << kDome << 37 << 4;
        QTest::newRow("empty slot") << kDome << 37 << 5;
        QTest::newRow("patrol 9") << kDome << 37 << 9;
    }
    void refusesWhatItCannotRun()
    {
        QFETCH(QString, camera);
        QFETCH(int, command);
        QFETCH(int, patrol);
        storePatrol(2, CRUISE_TYPE_VIRTUAL, 20);
        storePatrol(3, CRUISE_TYPE_DEVICE, 20);
        storePatrol(4, CRUISE_TYPE_VIRTUAL, 10);
        CVirtualPtzControllor controller;
        controller.SetCamera(camera);
        QSignalSpy state(&controller, &CVirtualPtzControllor::SignalCruiseStateChanged);
        QVERIFY(!controller.Cruise(unsigned(command), unsigned(patrol)));
        QCOMPARE(state.count(), 0);
        QVERIFY(!controller.IsRunningPatrol());
    }

private:
    void storePatrol(int number, int type, int dwell)
    {
        QVERIFY(m_env.store()->upsertPatrol({kDome, number, type, QString(), {{1, 0, dwell, QString()}}}));
    }
    PtzTestEnv m_env;
};

QTEST_GUILESS_MAIN(TestVirtualPtzControllor)
#include "tst_cvirtualptzcontrollor.moc"
