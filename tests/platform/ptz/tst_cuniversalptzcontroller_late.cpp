// Answers that come after the controller gave up on them: the requester was
// told the camera did not answer, yet the camera did the work, so the shared
// running state must follow it.
#include "support/ptztestenv.h"

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CPTZStateStorageManager;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

namespace {

const QString kDome = QString::fromLatin1(demo::kSpeedDome);

CPTZStateStorageManager *Storage()
{
    return CPTZStateStorageManager::Instance();
}

PTZControlCommand Cmd(uint32_t code, uint32_t action, int param = 0)
{
    PTZControlCommand c;
    c.camera_index_code = kDome.toStdString();
    c.command = code;
    c.action = action;
    c.speed = 20;
    c.param = param;
    return c;
}

using Send = std::function<void(CUniversalPTZController &)>;
using Check = std::function<bool()>;

} // namespace

Q_DECLARE_METATYPE(Send)
Q_DECLARE_METATYPE(Check)

class TestUniversalPTZControllerLate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void lateSuccessReachesTheSharedState_data();
    void lateSuccessReachesTheSharedState();
    void lateFailureChangesNothing();

private:
    PtzTestEnv m_env;
};

void TestUniversalPTZControllerLate::init()
{
    m_env.setUp();
}

void TestUniversalPTZControllerLate::cleanup()
{
    m_env.tearDown();
}

void TestUniversalPTZControllerLate::lateSuccessReachesTheSharedState_data()
{
    QTest::addColumn<Send>("send");
    QTest::addColumn<Check>("done");
    QTest::newRow("light on") << Send([](CUniversalPTZController &c) { c.Control(Cmd(PTZ_CMD_LIGHT, 0)); })
                              << Check([] { return Storage()->IsLight(kDome); });
    QTest::newRow("wiper on") << Send([](CUniversalPTZController &c) { c.Control(Cmd(PTZ_CMD_WIPER, 0)); })
                              << Check([] { return Storage()->IsWiper(kDome); });
    QTest::newRow("auto-scan on") << Send([](CUniversalPTZController &c) { c.Control(Cmd(PTZ_CMD_AUTO_PAN, 0)); })
                                  << Check([] { return Storage()->IsAutoScan(kDome, false); });
    QTest::newRow("pattern record")
        << Send([](CUniversalPTZController &c) { c.Control(Cmd(PTZ_CMD_PATTERN_RECORD_START, 0, 3)); })
        << Check([] { return Storage()->GetRecordPattern(kDome) == 3; });
}

void TestUniversalPTZControllerLate::lateSuccessReachesTheSharedState()
{
    QFETCH(Send, send);
    QFETCH(Check, done);
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    controller.SetRequestTimeout(20);
    cam->setLatency(300);
    QSignalSpy ok(&controller, &CUniversalPTZController::SignalExecutionSucceeded);
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
    QSignalSpy tips(&controller, &CUniversalPTZController::SignalMessageTipNeeded);
    QSignalSpy changed(Storage(), &CPTZStateStorageManager::SignalStateChanged);

    send(controller);
    QTRY_COMPARE(failed.count(), 1);
    QCOMPARE(tips.at(0).at(0).toString(), QStringLiteral("The camera did not answer in time."));
    QVERIFY(!done());
    QCOMPARE(changed.count(), 0);

    // The camera answers after all: the state follows and panels hear of it.
    QTRY_VERIFY(done());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), kDome);
    QCoreApplication::processEvents();
    QCOMPARE(ok.count(), 0); // the request had its one answer already
    QCOMPARE(failed.count(), 1);
}

void TestUniversalPTZControllerLate::lateFailureChangesNothing()
{
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    controller.SetRequestTimeout(20);
    cam->setLatency(150);
    cam->failOperation(ptz_devices::DriverOperation::Light, QStringLiteral("bulb broken"));
    QSignalSpy failed(&controller, &CUniversalPTZController::SignalExecutionFailed);
    QSignalSpy changed(Storage(), &CPTZStateStorageManager::SignalStateChanged);
    controller.Control(Cmd(PTZ_CMD_LIGHT, 0));
    QTRY_COMPARE(failed.count(), 1);
    QTRY_COMPARE(cam->pendingRequestCount(), 0);
    QCoreApplication::processEvents();
    QVERIFY(!Storage()->IsLight(kDome));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(failed.count(), 1);
}

QTEST_GUILESS_MAIN(TestUniversalPTZControllerLate)
#include "tst_cuniversalptzcontroller_late.moc"
