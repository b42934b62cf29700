#include "support/records.h"

#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"
#include "zeph_plugin_manager/czephpluginconfigmgr.h"

#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ZephPluginManager;
using namespace ptz_plugin_protocol;
using site_store::CSiteStore;
namespace demo = site_store::demo;

namespace {

std::vector<CruisePoint> points(int count)
{
    std::vector<CruisePoint> out;
    for (int i = 0; i < count; ++i) {
        CruisePoint p;
        p.preset_index = uint32_t(i % 256 + 1);
        p.speed = 10;
        p.dwell_time = 15;
        out.push_back(p);
    }
    return out;
}

} // namespace

class TestBusinessInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = new QTemporaryDir;
        QVERIFY(m_dir->isValid());
        CSiteStore::InstallCurrent(CSiteStore::Open(m_dir->filePath(QStringLiteral("site.sqlite"))));
        QVERIFY(!CSiteStore::Current()->isFallback());
        m_now = QDateTime(QDate(2026, 3, 1), QTime(9, 0), Qt::UTC);
        mgr()->SetClock([this] { return m_now; });
        mgr()->SetClientName(QStringLiteral("desk-a"));
    }
    void cleanup()
    {
        mgr()->SetClock(nullptr);
        CCameraManager::Instance()->Clear();
        CSiteStore::InstallCurrent(nullptr);
        delete m_dir;
        m_dir = nullptr;
    }

    void badInputFailsWithText_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QByteArray>("camera");

        const QByteArray unknown = "no-such-camera";
        const QByteArray dome = demo::kSpeedDome;
        for (const char *call : { "GetPTZLockStatus", "GetPTZParkAction", "GetPatrolRecoverConfig", "GetPresets",
                 "AddPreset", "UpdatePreset", "DeletePreset", "GetCruises", "AddCruise", "UpdateCruise", "DeleteCruise",
                 "SetPTZParkAction", "SetPatrolRecoverConfig", "LockPTZ", "UnlockPTZ", "IsCameraPermissionValid" })
            QTest::addRow("%s: unknown camera", call) << QString::fromLatin1(call) << unknown;
        QTest::newRow("unknown user") << "GetUserPTZPermission:nobody" << dome;
        QTest::newRow("permission of unknown user") << "IsCameraPermissionValid:nobody" << dome;
        QTest::newRow("add preset 0") << "AddPreset:0" << dome;
        QTest::newRow("add preset 257") << "AddPreset:257" << dome;
        QTest::newRow("add device preset") << "AddPreset:device" << dome;
        QTest::newRow("add preset without name") << "AddPreset:noname" << dome;
        QTest::newRow("update preset 257") << "UpdatePreset:257" << dome;
        QTest::newRow("update missing preset") << "UpdatePreset:12" << dome;
        QTest::newRow("delete preset 0") << "DeletePreset:0" << dome;
        QTest::newRow("delete missing preset") << "DeletePreset:12" << dome;
        QTest::newRow("add patrol 0") << "AddCruise:0" << dome;
        QTest::newRow("add patrol 9") << "AddCruise:9" << dome;
        QTest::newRow("add patrol of 33 points") << "AddCruise:33points" << dome;
        QTest::newRow("add patrol of unknown type") << "AddCruise:type7" << dome;
        QTest::newRow("update patrol 9") << "UpdateCruise:9" << dome;
        QTest::newRow("update patrol of 33 points") << "UpdateCruise:33points" << dome;
        QTest::newRow("update unknown patrol id") << "UpdateCruise:id" << dome;
        QTest::newRow("delete patrol 0") << "DeleteCruise:0" << dome;
        QTest::newRow("delete missing patrol") << "DeleteCruise:4" << dome;
        QTest::newRow("park wait 4 s") << "SetPTZParkAction:4" << dome;
        QTest::newRow("park patrol 9") << "SetPTZParkAction:patrol9" << dome;
        QTest::newRow("recovery 20 s") << "SetPatrolRecoverConfig:20" << dome;
        QTest::newRow("lock 0 s") << "LockPTZ:0" << dome;
        QTest::newRow("lock 3601 s") << "LockPTZ:3601" << dome;
    }
    void badInputFailsWithText()
    {
        QFETCH(QString, call);
        QFETCH(QByteArray, camera);
        const std::string cam = camera.toStdString();
        const QString variant = call.section(QLatin1Char(':'), 1);
        const QString op = call.section(QLatin1Char(':'), 0, 0);
        const int number = variant.toInt();
        std::string errorText = "untouched";
        bool hasErrorText = true;
        bool ok = true;

        if (op == QLatin1String("GetUserPTZPermission")) {
            GetUserPtzPermRequest rq { variant.toStdString() };
            GetUserPtzPermResponse rs;
            ok = mgr()->GetUserPTZPermission(rq, rs);
            hasErrorText = false;
        } else if (op == QLatin1String("IsCameraPermissionValid")) {
            ok = mgr()->IsCameraPermissionValid(variant.toStdString(), cam, 15);
            hasErrorText = false;
        } else if (op == QLatin1String("GetPTZLockStatus")) {
            PTZLockStatusResponse rs;
            ok = mgr()->GetPTZLockStatus({ cam }, rs);
            hasErrorText = false;
        } else if (op == QLatin1String("GetPTZParkAction")) {
            GetParkActionResponse rs;
            ok = mgr()->GetPTZParkAction({ cam }, rs);
            hasErrorText = false;
        } else if (op == QLatin1String("GetPatrolRecoverConfig")) {
            GetPatrolRecoverConfigResponse rs;
            ok = mgr()->GetPatrolRecoverConfig({ cam }, rs);
            hasErrorText = false;
        } else if (op == QLatin1String("GetPresets")) {
            GetPresetResponse rs;
            ok = mgr()->GetPresets({ cam, -1 }, rs);
            errorText = rs.error_text;
        } else if (op == QLatin1String("AddPreset")) {
            PresetInfo p = Preset(variant.isEmpty() ? 1 : number, PRESET_TYPE_VIRTUAL, "name");
            if (variant == QLatin1String("device"))
                p = PresetInfo { 1, PRESET_TYPE_DEVICE, "name" };
            else if (variant == QLatin1String("noname"))
                p = Preset(1, PRESET_TYPE_VIRTUAL, "  ");
            AddPresetResponse rs;
            ok = mgr()->AddPreset({ cam, p }, rs);
            errorText = rs.error_text;
        } else if (op == QLatin1String("UpdatePreset")) {
            UpdatePresetResponse rs;
            ok = mgr()->UpdatePreset({ cam, Preset(variant.isEmpty() ? 1 : number, PRESET_TYPE_VIRTUAL, "n") }, rs);
            errorText = rs.error_text;
        } else if (op == QLatin1String("DeletePreset")) {
            DeletePresetResponse rs;
            ok = mgr()->DeletePreset({ cam, variant.isEmpty() ? 1 : number, PRESET_TYPE_VIRTUAL }, rs);
            errorText = rs.error_text;
        } else if (op == QLatin1String("GetCruises")) {
            GetCruiseResponse rs;
            ok = mgr()->GetCruises({ cam }, rs);
            errorText = rs.error_text;
        } else if (op == QLatin1String("AddCruise")) {
            AddCruiseRequest rq { cam, "cruise", 1, CRUISE_TYPE_VIRTUAL, points(2) };
            if (variant == QLatin1String("33points"))
                rq.points = points(33);
            else if (variant == QLatin1String("type7"))
                rq.cruise_type = 7;
            else if (!variant.isEmpty())
                rq.cruise_index = number;
            AddCruiseResponse rs;
            ok = mgr()->AddCruise(rq, rs);
            errorText = rs.error_text;
            QVERIFY(rs.cruise_id.empty());
        } else if (op == QLatin1String("UpdateCruise")) {
            UpdateCruiseRequest rq { cam, "cruise", "", 1, CRUISE_TYPE_VIRTUAL, points(2) };
            if (variant == QLatin1String("33points"))
                rq.points = points(33);
            else if (variant == QLatin1String("id"))
                rq.cruise_id = "5";
            else if (!variant.isEmpty())
                rq.cruise_index = number;
            if (variant == QLatin1String("id"))
                rq.cruise_index = 5;
            UpdateCruiseResponse rs;
            ok = mgr()->UpdateCruise(rq, rs);
            errorText = rs.error_text;
        } else if (op == QLatin1String("DeleteCruise")) {
            DeleteCruiseResponse rs;
            ok = mgr()->DeleteCruise({ cam, "", variant.isEmpty() ? 1 : number }, rs);
            errorText = rs.error_text;
        } else if (op == QLatin1String("SetPTZParkAction")) {
            SetParkActionRequest rq { cam, true, 30, 5, 0 };
            if (variant == QLatin1String("patrol9"))
                rq = SetParkActionRequest { cam, true, 30, 3, 9 };
            else if (!variant.isEmpty())
                rq.wait_time = number;
            ok = mgr()->SetPTZParkAction(rq);
            hasErrorText = false;
        } else if (op == QLatin1String("SetPatrolRecoverConfig")) {
            ok = mgr()->SetPatrolRecoverConfig({ cam, true, variant.isEmpty() ? 30 : number });
            hasErrorText = false;
        } else if (op == QLatin1String("LockPTZ")) {
            ok = mgr()->LockPTZ(cam, "", variant.isEmpty() ? 60 : number);
            hasErrorText = false;
        } else if (op == QLatin1String("UnlockPTZ")) {
            ok = mgr()->UnlockPTZ(cam, "");
            hasErrorText = false;
        } else {
            QFAIL("unknown call");
        }

        QVERIFY(!ok);
        QVERIFY(!mgr()->LastError().isEmpty());
        if (hasErrorText)
            QCOMPARE(QString::fromStdString(errorText), mgr()->LastError());
        // Nothing was written.
        CSiteStore *store = CSiteStore::Current();
        QVERIFY(store->virtualPresets(QString::fromLatin1(demo::kSpeedDome)).isEmpty());
        QVERIFY(store->patrols(QString::fromLatin1(demo::kSpeedDome)).isEmpty());
        QVERIFY(!store->lock(QString::fromLatin1(demo::kSpeedDome), m_now));
    }

    void userLevelFollowsCurrentUser()
    {
        GetUserPtzPermResponse rs;
        QVERIFY(mgr()->GetUserPTZPermission({ "" }, rs));
        QCOMPARE(rs.ptz_level, demo::kOperatorLevel);
        QVERIFY(mgr()->GetUserPTZPermission({ demo::kSenior }, rs));
        QCOMPARE(rs.ptz_level, demo::kSeniorLevel);

        QSignalSpy spy(CCurrentUser::Instance(), &CCurrentUser::SignalUserChanged);
        QVERIFY(CCurrentUser::Instance()->SetUser(QString::fromLatin1(demo::kJunior)));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(CCurrentUser::Instance()->GetPTZLevel(), demo::kJuniorLevel);
        QVERIFY(mgr()->GetUserPTZPermission({ "" }, rs));
        QCOMPARE(rs.ptz_level, demo::kJuniorLevel);

        QVERIFY(!CCurrentUser::Instance()->SetUser(QStringLiteral("nobody")));
        QVERIFY(!CCurrentUser::Instance()->LastError().isEmpty());
        QCOMPARE(spy.count(), 1);
        QCOMPARE(CCurrentUser::Instance()->GetUserName(), QString::fromLatin1(demo::kJunior));
    }
    void cameraPermissionPerCameraAndWildcard()
    {
        const std::string dome = demo::kSpeedDome, box = demo::kBoxZoom;
        QVERIFY(mgr()->IsCameraPermissionValid("", dome, CSiteStore::kPermParkAction));
        QVERIFY(mgr()->IsCameraPermissionValid(demo::kNoPark, dome, CSiteStore::kPermPtzControl));
        QVERIFY(!mgr()->IsCameraPermissionValid(demo::kNoPark, dome, CSiteStore::kPermParkAction));
        QVERIFY(!mgr()->LastError().isEmpty());

        CSiteStore *store = CSiteStore::Current();
        QVERIFY(store->grantPermission(
            QString::fromLatin1(demo::kNoPark), QString::fromStdString(box), CSiteStore::kPermParkAction));
        QVERIFY(mgr()->IsCameraPermissionValid(demo::kNoPark, box, CSiteStore::kPermParkAction));
        QVERIFY(!mgr()->IsCameraPermissionValid(demo::kNoPark, dome, CSiteStore::kPermParkAction));

        // Taking away the wildcard leaves nothing behind it.
        QVERIFY(store->revokePermission(
            QString::fromLatin1(demo::kOperator), CSiteStore::kAllCameras, CSiteStore::kPermPtzControl));
        QVERIFY(!mgr()->IsCameraPermissionValid("", dome, CSiteStore::kPermPtzControl));
    }
    void lockLapsesAndRespectsLevels()
    {
        const std::string dome = demo::kSpeedDome;
        QSignalSpy spy(mgr(), &CPTZBusinessInterfaceMgr::SignalPTZLockChanged);
        QVERIFY(mgr()->LockPTZ(dome, "", 300));
        QCOMPARE(spy.count(), 1);

        PTZLockStatusResponse status;
        QVERIFY(mgr()->GetPTZLockStatus({ dome }, status));
        QCOMPARE(status.locked, 1);
        QCOMPARE(status.remaining_time, 300);
        QCOMPARE(status.user_name, std::string(demo::kOperator));
        QCOMPARE(status.user_detail, std::string("desk-a"));
        QCOMPARE(status.ptz_level, demo::kOperatorLevel);
        QVERIFY(!status.locked_by_other_client);

        m_now = m_now.addSecs(120);
        QVERIFY(mgr()->GetPTZLockStatus({ dome }, status));
        QCOMPARE(status.remaining_time, 180);

        // A lower level neither takes, breaks nor moves past the lock.
        std::string holder;
        QVERIFY(!mgr()->LockPTZ(dome, demo::kJunior, 60));
        QVERIFY(!mgr()->UnlockPTZ(dome, demo::kJunior));
        QVERIFY(!mgr()->IsPTZControlAllowed(dome, demo::kJunior, &holder));
        QCOMPARE(holder, std::string(demo::kOperator));
        // The same level does not either.
        QVERIFY(!mgr()->LockPTZ(dome, demo::kNoPark, 60));
        QVERIFY(!mgr()->UnlockPTZ(dome, demo::kNoPark));
        QVERIFY(!mgr()->IsPTZControlAllowed(dome, demo::kNoPark, nullptr));
        // The holder and a higher level may move.
        QVERIFY(mgr()->IsPTZControlAllowed(dome, "", nullptr));
        QVERIFY(mgr()->IsPTZControlAllowed(dome, demo::kSenior, nullptr));
        // Other cameras are free.
        QVERIFY(mgr()->IsPTZControlAllowed(demo::kBoxZoom, demo::kJunior, nullptr));

        // A higher level takes the lock over.
        QVERIFY(mgr()->LockPTZ(dome, demo::kSenior, 30));
        QVERIFY(mgr()->GetPTZLockStatus({ dome }, status));
        QCOMPARE(status.user_name, std::string(demo::kSenior));
        QCOMPARE(status.remaining_time, 30);
        QCOMPARE(status.ptz_level, demo::kSeniorLevel);

        // Expiry frees the camera for everybody.
        m_now = m_now.addSecs(30);
        QVERIFY(mgr()->GetPTZLockStatus({ dome }, status));
        QCOMPARE(status.locked, 0);
        QCOMPARE(status.remaining_time, 0);
        QVERIFY(mgr()->IsPTZControlAllowed(dome, demo::kJunior, nullptr));
        QVERIFY(mgr()->LockPTZ(dome, demo::kJunior, 10));
        QVERIFY(mgr()->UnlockPTZ(dome, demo::kJunior));
        QVERIFY(mgr()->GetPTZLockStatus({ dome }, status));
        QCOMPARE(status.locked, 0);
        QVERIFY(mgr()->UnlockPTZ(dome, "")); // unlocking a free camera is harmless
    }
    void lockFromAnotherClient()
    {
        const std::string dome = demo::kSpeedDome;
        QVERIFY(mgr()->LockPTZ(dome, "", 100));
        mgr()->SetClientName(QStringLiteral("desk-b"));
        PTZLockStatusResponse status;
        QVERIFY(mgr()->GetPTZLockStatus({ dome }, status));
        QCOMPARE(status.user_name, std::string(demo::kOperator));
        QVERIFY(status.locked_by_other_client);
        // Another user sees no "other client" mark: it is simply someone else's lock.
        QVERIFY(CCurrentUser::Instance()->SetUser(QString::fromLatin1(demo::kSenior)));
        QVERIFY(mgr()->GetPTZLockStatus({ dome }, status));
        QVERIFY(!status.locked_by_other_client);
    }

    void virtualPresetsRoundTrip()
    {
        const std::string dome = demo::kSpeedDome;
        AddPresetResponse added;
        QVERIFY(mgr()->AddPreset({ dome, Preset(-1, PRESET_TYPE_VIRTUAL, "first") }, added));
        QCOMPARE(added.preset_index, 1);
        QVERIFY(mgr()->AddPreset({ dome, Preset(10, PRESET_TYPE_VIRTUAL, "tenth") }, added));
        QCOMPARE(added.preset_index, 10);
        QVERIFY(mgr()->AddPreset({ dome, Preset(-1, PRESET_TYPE_VIRTUAL, "second") }, added));
        QCOMPARE(added.preset_index, 2);
        PresetInfo fish = Preset(-1, PRESET_TYPE_VIRTUAL, "fish");
        fish.preset_type = PRESET_TYPE_FISHEYE;
        fish.pan = 45;
        QVERIFY(mgr()->AddPreset({ dome, fish }, added));
        QCOMPARE(added.preset_index, 3);
        QVERIFY(!mgr()->AddPreset({ dome, Preset(10, PRESET_TYPE_VIRTUAL, "again") }, added));
        QVERIFY(!added.error_text.empty());

        GetPresetResponse got;
        QVERIFY(mgr()->GetPresets({ dome, PRESET_TYPE_VIRTUAL }, got));
        QCOMPARE(int(got.presets.size()), 3);
        QCOMPARE(got.presets[0].preset_name, std::string("first"));
        QCOMPARE(got.presets[2].preset_index, 10);
        QVERIFY(mgr()->GetPresets({ dome, PRESET_TYPE_FISHEYE }, got));
        QCOMPARE(int(got.presets.size()), 1);
        QCOMPARE(got.presets[0].pan, 45.0);
        QVERIFY(mgr()->GetPresets({ dome, -1 }, got));
        QCOMPARE(int(got.presets.size()), 4);
        QVERIFY(mgr()->GetPresets({ demo::kBoxZoom, -1 }, got));
        QVERIFY(got.presets.empty());

        UpdatePresetResponse updated;
        QVERIFY(mgr()->UpdatePreset({ dome, Preset(10, PRESET_TYPE_VIRTUAL, "renamed") }, updated));
        DeletePresetResponse deleted;
        QVERIFY(mgr()->DeletePreset({ dome, 1, PRESET_TYPE_VIRTUAL }, deleted));
        QVERIFY(!mgr()->DeletePreset({ dome, 3, PRESET_TYPE_VIRTUAL }, deleted)); // 3 is a fish-eye preset
        QVERIFY(mgr()->GetPresets({ dome, PRESET_TYPE_VIRTUAL }, got));
        QCOMPARE(int(got.presets.size()), 2);
        QCOMPARE(got.presets[1].preset_name, std::string("renamed"));
    }
    void cruisesRoundTrip()
    {
        const std::string dome = demo::kSpeedDome;
        AddCruiseResponse added;
        QVERIFY(mgr()->AddCruise({ dome, "cruise3", 3, CRUISE_TYPE_VIRTUAL, points(2) }, added));
        QCOMPARE(added.cruise_id, std::string("3"));
        QVERIFY(mgr()->AddCruise({ dome, "cruise1", 1, CRUISE_TYPE_DEVICE, points(32) }, added));
        QVERIFY(!mgr()->AddCruise({ dome, "cruise3", 3, CRUISE_TYPE_VIRTUAL, points(1) }, added));

        GetCruiseResponse got;
        QVERIFY(mgr()->GetCruises({ dome }, got));
        QCOMPARE(int(got.cruises.size()), 2);
        QCOMPARE(got.cruises[0].cruise_index, 1);
        QCOMPARE(int(got.cruises[0].points.size()), 32);
        QCOMPARE(got.cruises[1].cruise_type, int(CRUISE_TYPE_VIRTUAL));
        QCOMPARE(got.cruises[1].cruise_id, std::string("3"));
        QCOMPARE(got.cruises[1].points[1].preset_index, 2u);
        QCOMPARE(got.cruises[1].points[1].dwell_time, 15);

        UpdateCruiseResponse updated;
        QVERIFY(mgr()->UpdateCruise({ dome, "cruise3", "3", 3, CRUISE_TYPE_VIRTUAL, points(5) }, updated));
        QVERIFY(!mgr()->UpdateCruise({ dome, "cruise3", "3", 4, CRUISE_TYPE_VIRTUAL, points(5) }, updated));
        // A slot the client has no record of (a device patrol) is taken on.
        QVERIFY(mgr()->UpdateCruise({ dome, "cruise6", "", 6, CRUISE_TYPE_DEVICE, points(3) }, updated));
        QVERIFY(mgr()->GetCruises({ dome }, got));
        QCOMPARE(int(got.cruises.size()), 3);
        QCOMPARE(int(got.cruises[1].points.size()), 5);

        DeleteCruiseResponse deleted;
        QVERIFY(mgr()->DeleteCruise({ dome, "3", -1 }, deleted));
        QVERIFY(!mgr()->DeleteCruise({ dome, "3", -1 }, deleted));
        QVERIFY(!deleted.error_text.empty());
        QVERIFY(mgr()->GetCruises({ dome }, got));
        QCOMPARE(int(got.cruises.size()), 2);
    }
    void parkActionAndRecoveryRoundTrip()
    {
        const std::string cam = demo::kPtzNoPattern;
        GetParkActionResponse park;
        QVERIFY(mgr()->GetPTZParkAction({ cam }, park));
        QVERIFY(!park.enabled);
        QCOMPARE(park.wait_time, 5);

        QVERIFY(mgr()->SetPTZParkAction({ cam, true, 720, 3, 2 }));
        QVERIFY(mgr()->GetPTZParkAction({ cam }, park));
        QVERIFY(park.enabled);
        QCOMPARE(park.wait_time, 720);
        QCOMPARE(park.action_type, 3);
        QCOMPARE(park.target_id, 2);
        QCOMPARE(park.camera_index_code, cam);

        GetPatrolRecoverConfigResponse recover;
        QVERIFY(mgr()->GetPatrolRecoverConfig({ cam }, recover));
        QVERIFY(!recover.enabled);
        QCOMPARE(recover.wait_time, 0);
        QVERIFY(mgr()->SetPatrolRecoverConfig({ cam, true, 90 }));
        QVERIFY(mgr()->GetPatrolRecoverConfig({ cam }, recover));
        QVERIFY(recover.enabled);
        QCOMPARE(recover.wait_time, 90);
        QVERIFY(mgr()->SetPatrolRecoverConfig({ cam, false, 17 })); // time is irrelevant when off
        QVERIFY(mgr()->GetPatrolRecoverConfig({ cam }, recover));
        QCOMPARE(recover.wait_time, 0);
    }
    void productTypeAndSwitches()
    {
        CSiteStore *store = CSiteStore::Current();
        QVERIFY(store->setSetting(CSiteStore::kProductType, QStringLiteral("Enterprise")));
        QVERIFY(store->setBoolSetting(CSiteStore::kShowExtraButton, false));
        QCOMPARE(CZephPluginConfigMgr::Instance()->GetProductType(), QStringLiteral("Enterprise"));
        QVERIFY(!CZephPluginConfigMgr::Instance()->GetSwitch(CSiteStore::kShowExtraButton, true));
        QVERIFY(CZephPluginConfigMgr::Instance()->GetSwitch(CSiteStore::kIsSupportPTZLock));
        QCOMPARE(CZephPluginConfigMgr::Instance()->GetTrackNum(), 4);
    }

private:
    CPTZBusinessInterfaceMgr *mgr() { return CPTZBusinessInterfaceMgr::Instance(); }
    QTemporaryDir *m_dir = nullptr;
    QDateTime m_now;
};

QTEST_GUILESS_MAIN(TestBusinessInterface)
#include "tst_cptzbusinessinterfacemgr.moc"
