#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ZephPluginManager;
using site_store::CSiteStore;
namespace demo = site_store::demo;

class TestCameraManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = new QTemporaryDir;
        QVERIFY(m_dir->isValid());
        CSiteStore::InstallCurrent(CSiteStore::Open(m_dir->filePath(QStringLiteral("site.sqlite"))));
        m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
        CCameraManager::Instance()->SetSimClock(m_clock);
    }
    void cleanup()
    {
        CCameraManager::Instance()->Clear();
        CCameraManager::Instance()->SetSimClock(nullptr);
        CSiteStore::InstallCurrent(nullptr);
        // Drivers are released through the event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_clock;
        m_clock = nullptr;
        delete m_dir;
        m_dir = nullptr;
    }

    void camerasFromStore_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<bool>("cascade");
        // What each kind may do is checked where it is used: panel tabs, fish-eye panel, controller refusals.
        QTest::newRow("speed dome") << demo::kSpeedDome << false;
        QTest::newRow("zoom-only box") << demo::kBoxZoom << false;
        QTest::newRow("fish-eye") << demo::kFishEye << false;
        QTest::newRow("cascaded") << demo::kCascade << true;
    }
    void camerasFromStore()
    {
        QFETCH(QString, id);
        QFETCH(bool, cascade);

        CCameraManager *mgr = CCameraManager::Instance();
        QCOMPARE(int(mgr->GetCameras().size()), 5);
        const std::shared_ptr<CCamera> camera = mgr->GetCameraByID(id.toStdString());
        QVERIFY(camera);
        QCOMPARE(camera->IsCascade(), cascade);

        // Each camera gets its own driver from the factory, for its model.
        ptz_devices::IPtzDriver *driver = CDriverTestAccess::GetDriver(id);
        QVERIFY2(driver, qPrintable(camera->DriverError()));
        QCOMPARE(driver->cameraId(), id);
        QCOMPARE(driver->capabilities().model, camera->GetModel());
    }
    void unknownCameraOrDriverKind()
    {
        QVERIFY(!CCameraManager::Instance()->GetCameraByID(std::string("nope")));
        // A camera of an unknown driver kind is listed without a driver, saying why.
        site_store::CameraRecord r;
        r.id = QStringLiteral("odd");
        r.name = QStringLiteral("Odd");
        r.driverKind = QStringLiteral("carrier-pigeon");
        r.model = QStringLiteral("speed-dome");
        QVERIFY(CSiteStore::Current()->upsertCamera(r));
        const auto camera = CCameraManager::Instance()->GetCameraByID(std::string("odd"));
        QVERIFY(!camera->HasDriver());
        QVERIFY(!camera->DriverError().isEmpty());
    }
    void followsCameraTableChanges()
    {
        CCameraManager *mgr = CCameraManager::Instance();
        const auto before = mgr->GetCameraByID(QString::fromLatin1(demo::kBoxZoom));
        ptz_devices::IPtzDriver *driver = CDriverTestAccess::GetDriver(QString::fromLatin1(demo::kBoxZoom));
        QSignalSpy spy(mgr, &CCameraManager::SignalCamerasChanged);

        // A rename keeps the running driver.
        auto record = *CSiteStore::Current()->camera(QString::fromLatin1(demo::kBoxZoom));
        record.name = QStringLiteral("Renamed");
        QVERIFY(CSiteStore::Current()->upsertCamera(record));
        QVERIFY(spy.count() >= 1);
        const auto after = mgr->GetCameraByID(QString::fromLatin1(demo::kBoxZoom));
        QCOMPARE(after->GetName(), QStringLiteral("Renamed"));
        QCOMPARE(CDriverTestAccess::GetDriver(QString::fromLatin1(demo::kBoxZoom)), driver);

        // A new model means a new driver.
        record.model = QStringLiteral("speed-dome");
        QVERIFY(CSiteStore::Current()->upsertCamera(record));
        const auto remodelled = mgr->GetCameraByID(QString::fromLatin1(demo::kBoxZoom));
        QVERIFY(remodelled->HasDriver());
        QCOMPARE(CDriverTestAccess::GetDriver(QString::fromLatin1(demo::kBoxZoom))->capabilities().model,
                 QStringLiteral("speed-dome"));

        QVERIFY(CSiteStore::Current()->removeCamera(QString::fromLatin1(demo::kBoxZoom)));
        QVERIFY(!mgr->GetCameraByID(QString::fromLatin1(demo::kBoxZoom)));
        QCOMPARE(int(mgr->GetCameras().size()), 4);
    }
    // Device presets reach the panel's list the same way; patrols carry the deletion rule.
    void devicePatrolsFromLastAnswers()
    {
        namespace pp = ptz_plugin_protocol;
        const QString id = QString::fromLatin1(demo::kSpeedDome);
        const std::string sid = id.toStdString();
        auto *camera = qobject_cast<ptz_devices::CSimulatedCamera *>(CDriverTestAccess::GetDriver(id));
        QVERIFY(camera);
        CPTZBusinessInterfaceMgr *biz = CPTZBusinessInterfaceMgr::Instance();
        camera->writePatrol(4, {{2, 10, 5, {}}, {2, 20, 6, {}}});
        camera->listPatrols();
        QTRY_COMPARE(camera->pendingRequestCount(), 0);
        pp::GetCruiseResponse cruises;
        QVERIFY(biz->GetCruises({sid}, cruises));
        QCOMPARE(int(cruises.cruises.size()), 1);
        QCOMPARE(cruises.cruises[0].cruise_index, 4);
        QCOMPARE(cruises.cruises[0].points[1].speed, 20);

        // A device patrol the client never recorded may be deleted (the camera
        // removes it); a slot that is empty everywhere may not.
        pp::DeleteCruiseResponse deleted;
        QVERIFY(biz->DeleteCruise({sid, "", 4}, deleted));
        QVERIFY(!biz->DeleteCruise({sid, "", 5}, deleted));
        camera->removePatrol(4);
        QTRY_COMPARE(camera->pendingRequestCount(), 0);
        QVERIFY(biz->GetCruises({sid}, cruises));
        QVERIFY(cruises.cruises.empty());
    }

private:
    QTemporaryDir *m_dir = nullptr;
    ptz_devices::CSimClock *m_clock = nullptr;
};

QTEST_GUILESS_MAIN(TestCameraManager)
#include "tst_ccameramanager.moc"
