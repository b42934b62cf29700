#include "support/ptztestenv.h"
#include "support/records.h"

#include <QTest>

using namespace ptz_plugin_protocol;
using ptz_test::Storage;
using zeph_ptz_controller::CPTZStateStorageManager;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

namespace {
const QString kOther = QStringLiteral("other-camera");
} // namespace

class TestPTZStateStorageManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void changesAreSignalledOnce()
    {
        QSignalSpy changed(Storage(), &CPTZStateStorageManager::SignalStateChanged);
        Storage()->SetCruising(kOther, true, 4);
        Storage()->SetCruising(kOther, true, 4);
        Storage()->SetLight(kOther, false); // already off
        QCOMPARE(changed.count(), 1);
        QCOMPARE(Storage()->GetRunningCruise(kOther), 4);
        Storage()->SetCruising(kOther, false, 4);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(Storage()->GetRunningCruise(kOther), -1);
    }
    void resumeSkippedWhenItsOwnerIsGone()
    {
        QSignalSpy timeout(Storage(), &CPTZStateStorageManager::SignalInterruptTimeout);
        bool resumed = false;
        auto *owner = new QObject;
        Storage()->SetInterruptCruise(kOther, 1, 10, owner, [&] { resumed = true; });
        delete owner;
        QTRY_COMPARE(timeout.count(), 1);
        QVERIFY(!resumed);
    }
    void clearedInterruptionStaysSilent()
    {
        QSignalSpy timeout(Storage(), &CPTZStateStorageManager::SignalInterruptTimeout);
        Storage()->SetInterruptCruise(kOther, 1, 10);
        Storage()->ClearInterrupt(kOther);
        // A later interruption of the same wait on another camera fires; the cleared one never does.
        Storage()->SetInterruptCruise(kDome, 2, 20);
        QTRY_COMPARE(timeout.count(), 1);
        QCOMPARE(timeout.at(0).at(1).toString(), kDome);
        QCOMPARE(Storage()->GetRunningCruise(kOther), -1);
    }
    void secondRecordKeepsTheFirstResume()
    {
        QSignalSpy timeout(Storage(), &CPTZStateStorageManager::SignalInterruptTimeout);
        int resumed = 0;
        QObject owner;
        Storage()->SetInterruptCruise(kOther, 2, 20, &owner, [&] { ++resumed; });
        Storage()->SetInterruptCruise(kOther, 2); // a panel records the same interruption
        QTRY_COMPARE(timeout.count(), 1);
        QCOMPARE(resumed, 1);
    }
    void resumeHandlerBringsBackAPanelsInterruption()
    {
        // The camera patrols; a panel records the interruption itself, without a resume of its own.
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        cam->setPreset(1, QStringLiteral("a"));
        cam->setPreset(2, QStringLiteral("b"));
        cam->writePatrol(1, {PatrolPoint(1, 20, 5), PatrolPoint(2, 20, 5)});
        QTRY_COMPARE(cam->pendingRequestCount(), 0);
        CUniversalPTZController controller;
        Storage()->SetInterruptWaitTime(20);
        Storage()->SetInterruptCruise(kDome, 1);
        QCOMPARE(cam->status().runningPatrol, 0);
        QTRY_COMPARE(cam->status().runningPatrol, 1);
        QCOMPARE(Storage()->GetRunningCruise(kDome), 1);
    }

private:
    PtzTestEnv m_env;
};

QTEST_GUILESS_MAIN(TestPTZStateStorageManager)
#include "tst_cptzstatestoragemanager.moc"
