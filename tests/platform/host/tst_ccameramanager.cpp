#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include "ptz_devices/csimclock.h"
#include "ptz_devices/iptzdriver.h"
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
        CSiteStore::InstallCurrent(CSiteStore::Open(storePath()));
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
        QTest::addColumn<bool>("fishEye");
        QTest::addColumn<bool>("pattern");
        QTest::addColumn<bool>("pan");

        QTest::newRow("speed dome") << demo::kSpeedDome << false << false << true << true;
        QTest::newRow("no patterns") << demo::kPtzNoPattern << false << false << false << true;
        QTest::newRow("zoom-only box") << demo::kBoxZoom << false << false << false << false;
        QTest::newRow("fish-eye") << demo::kFishEye << false << true << false << false;
        QTest::newRow("cascaded") << demo::kCascade << true << false << true << true;
    }
    void camerasFromStore()
    {
        QFETCH(QString, id);
        QFETCH(bool, cascade);
        QFETCH(bool, fishEye);
        QFETCH(bool, pattern);
        QFETCH(bool, pan);

        CCameraManager *mgr = CCameraManager::Instance();
        QCOMPARE(int(mgr->GetCameras().size()), 5);
        const std::shared_ptr<CCamera> camera = mgr->GetCameraByID(id.toStdString());
        QVERIFY(camera);
        QCOMPARE(camera->IsCascade(), cascade);
        QCOMPARE(camera->IsFishEye(), fishEye);
        QCOMPARE(camera->HasAbility(46), pattern);
        QCOMPARE(camera->HasAbility(48), pan);
        QVERIFY(camera->HasAbility(1));

        // Each camera gets its own driver from the factory, for its model.
        ptz_devices::IPtzDriver *driver = CDriverTestAccess::GetDriver(id);
        QVERIFY2(driver, qPrintable(camera->DriverError()));
        QCOMPARE(driver->cameraId(), id);
        QCOMPARE(driver->capabilities().model, camera->GetModel());
    }
    void unknownCameraOrDriverKind()
    {
        QVERIFY(!CCameraManager::Instance()->GetCameraByID(std::string("nope")));
        QVERIFY(!CDriverTestAccess::GetDriver(QStringLiteral("nope")));
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
    void driverStateSurvivesRestart()
    {
        const QString id = QString::fromLatin1(demo::kSpeedDome);
        ptz_devices::IPtzDriver *driver = CDriverTestAccess::GetDriver(id);
        QVERIFY(driver);
        QVERIFY(answer(driver, driver->setPreset(7, QStringLiteral("Gate"))).ok);
        QVERIFY(!CSiteStore::Current()->deviceState(id, QStringLiteral("presets")).isEmpty());

        // A new process: fresh store object on the same file, fresh drivers.
        CCameraManager::Instance()->Clear();
        CSiteStore::InstallCurrent(CSiteStore::Open(storePath()));
        driver = CDriverTestAccess::GetDriver(id);
        QVERIFY(driver);
        const auto listed = answer(driver, driver->listPresets());
        QVERIFY(listed.ok);
        const auto presets = listed.result.value<QVector<ptz_devices::DevicePreset>>();
        QCOMPARE(presets.size(), 1);
        QCOMPARE(presets.at(0).number, 7);
        QCOMPARE(presets.at(0).name, QStringLiteral("Gate"));
    }
    void devicePresetsAndPatrolsFromLastAnswers()
    {
        namespace pp = ptz_plugin_protocol;
        const QString id = QString::fromLatin1(demo::kSpeedDome);
        const std::string sid = id.toStdString();
        ptz_devices::IPtzDriver *driver = CDriverTestAccess::GetDriver(id);
        QVERIFY(driver);
        CPTZBusinessInterfaceMgr *biz = CPTZBusinessInterfaceMgr::Instance();

        QVERIFY(answer(driver, driver->setPreset(2, QStringLiteral("Door"))).ok);
        QVERIFY(answer(driver, driver->setPreset(1, QStringLiteral("Hall"))).ok);
        pp::GetPresetResponse presets;
        QVERIFY(biz->GetPresets({sid, pp::PRESET_TYPE_DEVICE}, presets));
        QCOMPARE(int(presets.presets.size()), 2);
        QCOMPARE(presets.presets[1].preset_name, std::string("Door"));

        QVector<ptz_devices::DevicePatrolPoint> path{{2, 10, 5, {}}, {2, 20, 6, {}}};
        QVERIFY(answer(driver, driver->writePatrol(4, path)).ok);
        QVERIFY(answer(driver, driver->listPatrols()).ok);
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
        QVERIFY(answer(driver, driver->removePatrol(4)).ok);
        QVERIFY(biz->GetCruises({sid}, cruises));
        QVERIFY(cruises.cruises.empty());
    }

private:
    QString storePath() const { return m_dir->filePath(QStringLiteral("site.sqlite")); }
    // Waits for the driver's answer to `requestId`; a missing answer comes back as a failure.
    static ptz_devices::DriverReply answer(ptz_devices::IPtzDriver *driver, quint64 requestId)
    {
        ptz_devices::DriverReply result;
        bool done = false;
        QMetaObject::Connection c =
            connect(driver, &ptz_devices::IPtzDriver::replied, driver, [&](const ptz_devices::DriverReply &r) {
                if (r.requestId == requestId) {
                    result = r;
                    done = true;
                }
            });
        if (!QTest::qWaitFor([&] { return done; }, 5000))
            result.error = QStringLiteral("no answer");
        disconnect(c);
        return result;
    }

    QTemporaryDir *m_dir = nullptr;
    ptz_devices::CSimClock *m_clock = nullptr;
};

QTEST_GUILESS_MAIN(TestCameraManager)
#include "tst_ccameramanager.moc"
