#include "support/ptztestenv.h"
#include "support/records.h"

#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace ZephPluginManager;
using namespace ptz_plugin_protocol;
using ptz_test::CruisePoints;
using site_store::CSiteStore;
namespace demo = site_store::demo;

namespace {

CPTZBusinessInterfaceMgr *Mgr()
{
    return CPTZBusinessInterfaceMgr::Instance();
}

// One host call on a camera; calls whose answer carries an error text copy it to `text`.
using Call = std::function<bool(const std::string &camera, std::string *text)>;

template <typename Response>
bool WithText(bool ok, const Response &response, std::string *text)
{
    *text = response.error_text;
    return ok;
}

Call AddPreset(const PresetInfo &p)
{
    return [p](const std::string &cam, std::string *text) {
        AddPresetResponse rs;
        return WithText(Mgr()->AddPreset({cam, p}, rs), rs, text);
    };
}

Call UpdatePreset(int number)
{
    return [number](const std::string &cam, std::string *text) {
        UpdatePresetResponse rs;
        return WithText(Mgr()->UpdatePreset({cam, Preset(number, PRESET_TYPE_VIRTUAL, "n")}, rs), rs, text);
    };
}

Call DeletePreset(int number)
{
    return [number](const std::string &cam, std::string *text) {
        DeletePresetResponse rs;
        return WithText(Mgr()->DeletePreset({cam, number, PRESET_TYPE_VIRTUAL}, rs), rs, text);
    };
}

Call AddCruise(int number, int points, int type = CRUISE_TYPE_VIRTUAL)
{
    return [=](const std::string &cam, std::string *text) {
        AddCruiseResponse rs;
        const bool ok = Mgr()->AddCruise({cam, "cruise", number, type, CruisePoints(points)}, rs);
        return WithText(ok || !rs.cruise_id.empty(), rs, text);
    };
}

Call UpdateCruise(int number, const std::string &id)
{
    return [=](const std::string &cam, std::string *text) {
        UpdateCruiseResponse rs;
        return WithText(Mgr()->UpdateCruise({cam, "cruise", id, number, CRUISE_TYPE_VIRTUAL, CruisePoints(2)}, rs), rs,
                        text);
    };
}

Call DeleteCruise(int number)
{
    return [number](const std::string &cam, std::string *text) {
        DeleteCruiseResponse rs;
        return WithText(Mgr()->DeleteCruise({cam, "", number}, rs), rs, text);
    };
}

Call Park(int wait, int type = 5, int target = 0)
{
    return [=](const std::string &cam, std::string *) {
        return Mgr()->SetPTZParkAction({cam, true, wait, type, target});
    };
}

Call Recover(int wait)
{
    return [wait](const std::string &cam, std::string *) { return Mgr()->SetPatrolRecoverConfig({cam, true, wait}); };
}

Call Lock(int seconds)
{
    return [seconds](const std::string &cam, std::string *) { return Mgr()->LockPTZ(cam, "", seconds); };
}

} // namespace

Q_DECLARE_METATYPE(Call)

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
        Mgr()->SetClock([this] { return m_now; });
        Mgr()->SetClientName(QStringLiteral("desk-a"));
    }
    void cleanup()
    {
        Mgr()->SetClock(nullptr);
        CCameraManager::Instance()->Clear();
        CSiteStore::InstallCurrent(nullptr);
        delete m_dir;
        m_dir = nullptr;
    }

    void badInputFailsWithText_data()
    {
        QTest::addColumn<Call>("call");
        QTest::addColumn<QByteArray>("camera");

        const QByteArray unknown = "no-such-camera";
        const QByteArray dome = demo::kSpeedDome;
        const QVector<QPair<const char *, Call>> wellFormed = {
            {"GetPresets",
             [](const std::string &cam, std::string *text) {
                 GetPresetResponse rs;
                 return WithText(Mgr()->GetPresets({cam, -1}, rs), rs, text);
             }},
            {"AddPreset", AddPreset(Preset(1, PRESET_TYPE_VIRTUAL, "name"))},
            {"AddCruise", AddCruise(1, 2)},
            {"SetPTZParkAction", Park(30)},
            {"LockPTZ", Lock(60)},
            {"IsCameraPermissionValid",
             [](const std::string &cam, std::string *) { return Mgr()->IsCameraPermissionValid("", cam, 15); }},
        };
        for (const auto &call : wellFormed)
            QTest::addRow("%s: unknown camera", call.first) << call.second << unknown;

        QTest::newRow("permission of unknown user") << Call([](const std::string &cam, std::string *) {
            return Mgr()->IsCameraPermissionValid("nobody", cam, 15);
        }) << dome;
        QTest::newRow("add preset 257") << AddPreset(Preset(257, PRESET_TYPE_VIRTUAL, "name")) << dome;
        QTest::newRow("add device preset") << AddPreset(Preset(1, PRESET_TYPE_DEVICE, "name")) << dome;
        QTest::newRow("add preset without name") << AddPreset(Preset(1, PRESET_TYPE_VIRTUAL, "  ")) << dome;
        QTest::newRow("update missing preset") << UpdatePreset(12) << dome;
        QTest::newRow("delete missing preset") << DeletePreset(12) << dome;
        QTest::newRow("add patrol 9") << AddCruise(9, 2) << dome;
        QTest::newRow("add patrol of 33 points") << AddCruise(1, 33) << dome;
        QTest::newRow("add patrol of unknown type") << AddCruise(1, 2, 7) << dome;
        QTest::newRow("update unknown patrol id") << UpdateCruise(5, "5") << dome;
        QTest::newRow("delete missing patrol") << DeleteCruise(4) << dome;
        QTest::newRow("park wait 4 s") << Park(4) << dome;
        QTest::newRow("park patrol 9") << Park(30, 3, 9) << dome;
        QTest::newRow("recovery 20 s") << Recover(20) << dome;
        QTest::newRow("lock 3601 s") << Lock(3601) << dome;
    }
    void badInputFailsWithText()
    {
        QFETCH(Call, call);
        QFETCH(QByteArray, camera);
        const std::string untouched = "untouched";
        std::string text = untouched;
        QVERIFY(!call(camera.toStdString(), &text));
        QVERIFY(!Mgr()->LastError().isEmpty());
        if (text != untouched)
            QCOMPARE(QString::fromStdString(text), Mgr()->LastError());
        // Nothing was written.
        const QString dome = QString::fromLatin1(demo::kSpeedDome);
        CSiteStore *store = CSiteStore::Current();
        QVERIFY(store->virtualPresets(dome).isEmpty());
        QVERIFY(store->patrols(dome).isEmpty());
        QVERIFY(!store->lock(dome, m_now));
    }

    void lockLapsesAndRespectsLevels()
    {
        const std::string dome = demo::kSpeedDome;
        QSignalSpy spy(Mgr(), &CPTZBusinessInterfaceMgr::SignalPTZLockChanged);
        QVERIFY(Mgr()->LockPTZ(dome, "", 300));
        QCOMPARE(spy.count(), 1);

        PTZLockStatusResponse status;
        m_now = m_now.addSecs(120);
        QVERIFY(Mgr()->GetPTZLockStatus({dome}, status));
        QCOMPARE(status.locked, 1);
        QCOMPARE(status.remaining_time, 180);
        QCOMPARE(status.user_name, std::string(demo::kOperator));
        QVERIFY(!status.locked_by_other_client);

        // A lower level neither takes, breaks nor moves past the lock.
        std::string holder;
        QVERIFY(!Mgr()->LockPTZ(dome, demo::kJunior, 60));
        QVERIFY(!Mgr()->UnlockPTZ(dome, demo::kJunior));
        QVERIFY(!Mgr()->IsPTZControlAllowed(dome, demo::kJunior, &holder));
        QCOMPARE(holder, std::string(demo::kOperator));
        // The same level does not either.
        QVERIFY(!Mgr()->LockPTZ(dome, demo::kNoPark, 60));
        QVERIFY(!Mgr()->UnlockPTZ(dome, demo::kNoPark));
        QVERIFY(!Mgr()->IsPTZControlAllowed(dome, demo::kNoPark, nullptr));
        // The holder and a higher level may move; other cameras are free.
        QVERIFY(Mgr()->IsPTZControlAllowed(dome, "", nullptr));
        QVERIFY(Mgr()->IsPTZControlAllowed(dome, demo::kSenior, nullptr));
        QVERIFY(Mgr()->IsPTZControlAllowed(demo::kBoxZoom, demo::kJunior, nullptr));

        // A higher level takes the lock over.
        QVERIFY(Mgr()->LockPTZ(dome, demo::kSenior, 30));
        QVERIFY(Mgr()->GetPTZLockStatus({dome}, status));
        QCOMPARE(status.user_name, std::string(demo::kSenior));
        QCOMPARE(status.remaining_time, 30);

        // Expiry frees the camera for everybody.
        m_now = m_now.addSecs(30);
        QVERIFY(Mgr()->GetPTZLockStatus({dome}, status));
        QCOMPARE(status.locked, 0);
        QVERIFY(Mgr()->IsPTZControlAllowed(dome, demo::kJunior, nullptr));
        QVERIFY(Mgr()->LockPTZ(dome, demo::kJunior, 10));
        QVERIFY(Mgr()->UnlockPTZ(dome, demo::kJunior));
        QVERIFY(Mgr()->GetPTZLockStatus({dome}, status));
        QCOMPARE(status.locked, 0);
        QVERIFY(Mgr()->UnlockPTZ(dome, "")); // unlocking a free camera is harmless
    }
    void lockFromAnotherClient()
    {
        const std::string dome = demo::kSpeedDome;
        QVERIFY(Mgr()->LockPTZ(dome, "", 100));
        Mgr()->SetClientName(QStringLiteral("desk-b"));
        PTZLockStatusResponse status;
        QVERIFY(Mgr()->GetPTZLockStatus({dome}, status));
        QVERIFY(status.locked_by_other_client);
        // Another user sees no "other client" mark: it is simply someone else's lock.
        QVERIFY(CCurrentUser::Instance()->SetUser(QString::fromLatin1(demo::kSenior)));
        QVERIFY(Mgr()->GetPTZLockStatus({dome}, status));
        QVERIFY(!status.locked_by_other_client);
    }

    // Saving and listing patrols is checked through the panel's patrol editor; these are the slot rules.
    void cruiseSlots()
    {
        const std::string dome = demo::kSpeedDome;
        AddCruiseResponse added;
        QVERIFY(Mgr()->AddCruise({dome, "cruise3", 3, CRUISE_TYPE_VIRTUAL, CruisePoints(2)}, added));
        QCOMPARE(added.cruise_id, std::string("3"));
        QVERIFY(!Mgr()->AddCruise({dome, "cruise3", 3, CRUISE_TYPE_VIRTUAL, CruisePoints(1)}, added));
        UpdateCruiseResponse updated;
        QVERIFY(!Mgr()->UpdateCruise({dome, "cruise3", "3", 4, CRUISE_TYPE_VIRTUAL, CruisePoints(5)}, updated));
        // A slot the client has no record of (a device patrol) is taken on.
        QVERIFY(Mgr()->UpdateCruise({dome, "cruise6", "", 6, CRUISE_TYPE_DEVICE, CruisePoints(3)}, updated));
        GetCruiseResponse got;
        QVERIFY(Mgr()->GetCruises({dome}, got));
        QCOMPARE(int(got.cruises.size()), 2);
        DeleteCruiseResponse deleted;
        QVERIFY(Mgr()->DeleteCruise({dome, "3", -1}, deleted));
        QVERIFY(!Mgr()->DeleteCruise({dome, "3", -1}, deleted));
        QVERIFY(!deleted.error_text.empty());
    }

private:
    QTemporaryDir *m_dir = nullptr;
    QDateTime m_now;
};

QTEST_GUILESS_MAIN(TestBusinessInterface)
#include "tst_cptzbusinessinterfacemgr.moc"
