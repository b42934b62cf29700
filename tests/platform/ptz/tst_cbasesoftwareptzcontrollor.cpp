#include "support/ptztestenv.h"
#include "support/records.h"

#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QSignalSpy>
#include <QTest>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CBaseSoftwarePtzControllor;
using zeph_ptz_controller::CPTZStateStorageManager;
using zeph_ptz_controller::CSimpleFishEyeController;
namespace demo = site_store::demo;

namespace {

struct Pos
{
    double pan = 0;
    double tilt = 0;
    double zoom = 0;
};

Pos PosOf(const CSimpleFishEyeController &view)
{
    Pos p;
    view.GetSemisphereFishEyePTZPos(p.pan, p.tilt, p.zoom);
    return p;
}

} // namespace

class TestBaseSoftwarePtzControllor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_env.setUp();
        m_view = new CSimpleFishEyeController(4, this);
        m_soft = new CBaseSoftwarePtzControllor(this);
        m_soft->SetSoftwareControllor(m_view);
        m_soft->SetCamera(kFishEye);
        m_view->SetFishEyeWndOpen(true);
    }
    void cleanup()
    {
        delete m_soft;
        delete m_view;
        m_env.tearDown();
    }

    void refusesBadControl_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("speed");
        QTest::newRow("unknown command") << 99 << 10;
        QTest::newRow("speed 0") << 24 << 0;
        QTest::newRow("speed 41") << 29 << 41;
    }
    void refusesBadControl()
    {
        QFETCH(int, code);
        QFETCH(int, speed);
        QSignalSpy autoPan(m_soft, &CBaseSoftwarePtzControllor::SignalAutoPanRunningState);
        QVERIFY(!m_soft->Control(unsigned(code), false, speed));
        QCOMPARE(autoPan.count(), 0);
        QVERIFY(!m_soft->IsPtzAutoPanning());
    }
    void autoPanRunsUntilAManualMove()
    {
        QSignalSpy autoPan(m_soft, &CBaseSoftwarePtzControllor::SignalAutoPanRunningState);
        const double start = PosOf(*m_view).pan;
        QVERIFY(m_soft->Control(PTZ_CMD_AUTO_PAN, false, 40));
        QCOMPARE(autoPan.count(), 1);
        QCOMPARE(autoPan.at(0).at(0).toBool(), true);
        QVERIFY(m_soft->IsPtzAutoPanning());
        QVERIFY(m_view->IsSelectedWndAutoPanning());
        QVERIFY(ptz_test::Storage()->IsAutoScan(kFishEye, true));
        QVERIFY(!ptz_test::Storage()->IsAutoScan(kFishEye, false));
        QTRY_VERIFY(PosOf(*m_view).pan > start + 2.0);

        QVERIFY(m_soft->Control(PTZ_CMD_TILT_DOWN, false, 5));
        QCOMPARE(autoPan.count(), 2);
        QCOMPARE(autoPan.at(1).at(0).toBool(), false);
        QVERIFY(!m_soft->IsPtzAutoPanning());
        QVERIFY(!ptz_test::Storage()->IsAutoScan(kFishEye, true));
        m_soft->Control(PTZ_CMD_TILT_DOWN, true, 0);
    }
    void patrolVisitsItsPoints()
    {
        storePreset(1, 30.0, -20.0, 1.0);
        storePreset(2, 200.0, -60.0, 3.0);
        QSignalSpy running(m_soft, &CBaseSoftwarePtzControllor::SignalPatrolRunningState);
        std::vector<CruisePoint> tooShort = ptz_test::CruisePoints(1, 10, 1);
        QVERIFY(!m_soft->Cruise(PTZ_CMD_CRUISE_START, 2, tooShort)); // software dwell is 2..30 s
        QCOMPARE(running.count(), 0);

        std::vector<CruisePoint> points = ptz_test::CruisePoints(2, 10, 2);
        QVERIFY(m_soft->Cruise(PTZ_CMD_CRUISE_START, 2, points));
        QCOMPARE(running.count(), 1);
        QCOMPARE(running.at(0).at(1).toInt(), 2);
        int number = 0;
        QVERIFY(m_soft->IsPtzPatrolling(number));
        QCOMPARE(number, 2);
        QVERIFY(m_view->IsSelectedWndPatrolling(number));
        QCOMPARE(PosOf(*m_view).pan, 30.0);
        QTRY_COMPARE_WITH_TIMEOUT(m_soft->GetPatrolPointIndex(), 1, 4000);
        QCOMPARE(PosOf(*m_view).pan, 200.0);
        QCOMPARE(PosOf(*m_view).zoom, 3.0);

        // Deleting the running patrol ends it.
        QVERIFY(m_soft->DeleteCruise(2));
        QCOMPARE(running.count(), 2);
        QCOMPARE(running.at(1).at(0).toBool(), false);
        QVERIFY(!m_soft->IsPtzPatrolling(number));
        QVERIFY(!m_view->IsSelectedWndPatrolling(number));
    }

private:
    void storePreset(int number, double pan, double tilt, double zoom)
    {
        QVERIFY(m_env.store()->upsertVirtualPreset(
            {kFishEye, number, QStringLiteral("P%1").arg(number), PRESET_TYPE_FISHEYE, pan, tilt, zoom}));
    }

    PtzTestEnv m_env;
    CSimpleFishEyeController *m_view = nullptr;
    CBaseSoftwarePtzControllor *m_soft = nullptr;
};

QTEST_GUILESS_MAIN(TestBaseSoftwarePtzControllor)
#include "tst_cbasesoftwareptzcontrollor.moc"
