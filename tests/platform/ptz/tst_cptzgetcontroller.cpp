#include "support/ptztestenv.h"
#include "support/records.h"

#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <numeric>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CPTZGetController;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

namespace {
int Count(int sum, const QSignalSpy &spy)
{
    return sum + spy.count();
}
} // namespace

using Query = std::function<void(CPTZGetController &, const QString &camera, int number)>;
Q_DECLARE_METATYPE(Query)

class TestPTZGetController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void queriesAnswerLaterAndOnce_data()
    {
        QTest::addColumn<Query>("query");
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("succeeds");
        using G = CPTZGetController;
        const QVector<QPair<const char *, Query>> queries = {
            {"presets", [](G &g, const QString &c, int) { g.StartGetPresets(c); }},
            {"sync presets", [](G &g, const QString &c, int) { g.SyncPresetsFromDevice(c); }},
            {"all patrols", [](G &g, const QString &c, int) { g.StartGetAllPatrols(c); }},
            {"patrol type", [](G &g, const QString &c, int n) { g.StartGetPatrolType(c, n); }},
            {"patrol type before delete", [](G &g, const QString &c, int n) { g.DeleteGetPatrolType(c, n); }},
            {"patrol for play", [](G &g, const QString &c, int n) { g.StartExecPTZPatrolCommand(c, n, false); }},
            {"patrol path", [](G &g, const QString &c, int n) { g.StartGetPatrol(c, n); }},
            {"patterns", [](G &g, const QString &c, int) { g.StartGetPatterns(c); }},
            {"lock status", [](G &g, const QString &c, int) { g.StartGetPTZLockStatus(c); }},
        };
        for (const auto &q : queries) {
            QTest::addRow("%s, known camera", q.first) << q.second << kDome << 1 << true;
            QTest::addRow("%s, unknown camera", q.first) << q.second << QStringLiteral("no-such-camera") << 1 << false;
        }
        QTest::newRow("patterns of a camera without them") << queries.at(7).second << kBasic << 1 << false;
        QTest::newRow("patrol number 9") << queries.at(6).second << kDome << 9 << false;
    }
    void queriesAnswerLaterAndOnce()
    {
        QFETCH(Query, query);
        QFETCH(QString, camera);
        QFETCH(int, number);
        QFETCH(bool, succeeds);
        seedCamera();
        using G = CPTZGetController;
        G getter;
        QSignalSpy good[] = {{&getter, &G::SignalGetPresetsSuc},
                             {&getter, &G::SignalSyncPresetsSuc},
                             {&getter, &G::SignalGetAllPatrolsSuc},
                             {&getter, &G::SignalGetPatrolTypeBeforeOpen},
                             {&getter, &G::SignalGetPatrolTypeBeforeDelete},
                             {&getter, &G::SignalGetPatrolTypeSuc},
                             {&getter, &G::SignalGetSinglePatrolSuc},
                             {&getter, &G::SignalGetAllPatternsSuc},
                             {&getter, &G::SignalGetPTZLockStatusSuc}};
        QSignalSpy bad[] = {{&getter, &G::SignalGetPresetsFailed},     {&getter, &G::SignalSyncPresetsFailed},
                            {&getter, &G::SignalGetAllPatrolsFailed},  {&getter, &G::SignalGetPatrolFailed},
                            {&getter, &G::SignalGetAllPatternsFailed}, {&getter, &G::SignalGetPTZLockStatusFailed}};
        auto goods = [&] { return std::accumulate(std::begin(good), std::end(good), 0, Count); };
        auto bads = [&] { return std::accumulate(std::begin(bad), std::end(bad), 0, Count); };
        query(getter, camera, number);
        QCOMPARE(goods() + bads(), 0);
        QTRY_COMPARE(goods() + bads(), 1);
        QTRY_COMPARE(getter.PendingQueryCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(goods(), succeeds ? 1 : 0);
        QCOMPARE(bads(), succeeds ? 0 : 1);
    }
    void presetsListDeviceThenClientPresets()
    {
        seedCamera();
        CPTZGetController getter;
        getter.SetCamera(kDome);
        QVERIFY(getter.AddOnePreset(kDome, Preset(1, PRESET_TYPE_VIRTUAL, QStringLiteral("Virtual gate"))));
        QString error;
        QVERIFY(!getter.AddOnePreset(kDome, Preset(7, PRESET_TYPE_DEVICE, QString()), error)); // through the camera
        QVERIFY(!error.isEmpty());

        QSignalSpy ok(&getter, &CPTZGetController::SignalGetPresetsSuc);
        getter.StartGetPresets(kDome);
        QTRY_VERIFY(ok.count() >= 1);
        QVector<PresetInfo> list;
        QVERIFY(getter.GetAllPresets(kDome, list));
        QCOMPARE(list.size(), 3);
        QCOMPARE(list.at(0).preset_type, int(PRESET_TYPE_DEVICE));
        QCOMPARE(QString::fromStdString(list.at(0).preset_name), QStringLiteral("Gate"));
        QCOMPARE(list.at(1).preset_index, 2);
        QCOMPARE(list.at(2).preset_type, int(PRESET_TYPE_VIRTUAL));

        // Number 1 exists twice; the type set in the record chooses.
        PresetInfo found;
        QVERIFY(CPTZGetController::GetPresetByIndexSync(kDome, found, 1));
        QCOMPARE(found.preset_type, int(PRESET_TYPE_DEVICE));
        found = PresetInfo();
        found.preset_type = PRESET_TYPE_VIRTUAL;
        QVERIFY(CPTZGetController::GetPresetByIndexSync(kDome, found, 1));
        QCOMPARE(QString::fromStdString(found.preset_name), QStringLiteral("Virtual gate"));
        QVERIFY(!CPTZGetController::GetPresetByIndexSync(kDome, found, 99));

        QVERIFY(getter.ModifyPresetName(kDome, 1, QStringLiteral("Renamed"), error));
        QCOMPARE(m_env.store()->virtualPreset(kDome, 1)->name, QStringLiteral("Renamed"));
        QVERIFY(getter.DelPreset(kDome, 1));
        QVERIFY(!getter.DelPreset(kDome, 1));
        QVERIFY(getter.GetAllPresets(kDome, list));
        QCOMPARE(list.size(), 2);
    }
    void presetChangesReachEveryGetterOfTheCamera()
    {
        CPTZGetController first;
        CPTZGetController second;
        CPTZGetController other;
        first.SetCamera(kDome);
        second.SetCamera(kDome);
        other.SetCamera(QString::fromLatin1(demo::kBoxZoom));
        QSignalSpy firstSpy(&first, &CPTZGetController::SignalGetPresetsSuc);
        first.StartGetPresets(kDome);
        QTRY_COMPARE(firstSpy.count(), 1);
        QSignalSpy secondSpy(&second, &CPTZGetController::SignalGetPresetsSuc);
        QSignalSpy otherSpy(&other, &CPTZGetController::SignalGetPresetsSuc);

        CUniversalPTZController controller;
        QSignalSpy done(&controller, &CUniversalPTZController::signalPresetFinished);
        controller.Preset(ptz_test::PresetRequest("SetPreset", 12, "Stairs"));
        QTRY_COMPARE(done.count(), 1);
        QTRY_COMPARE(secondSpy.count(), 1);
        QCOMPARE(firstSpy.count(), 2);
        QCOMPARE(otherSpy.count(), 0);
        PresetInfo stairs;
        QVERIFY(CPTZGetController::GetPresetByIndexSync(kDome, stairs, 12));
        QCOMPARE(QString::fromStdString(stairs.preset_name), QStringLiteral("Stairs"));
    }
    void patrolSlotsCarryTheirKind_data()
    {
        QTest::addColumn<int>("slot");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<int>("minDwell");
        QTest::addColumn<int>("maxDwell");
        QTest::newRow("device patrol") << 1 << int(CRUISE_TYPE_DEVICE) << QString() << 1 << 30;
        QTest::newRow("virtual patrol") << 3 << int(CRUISE_TYPE_VIRTUAL) << QStringLiteral("3") << 15 << 30;
        QTest::newRow("empty slot") << 5 << int(CRUISE_TYPE_NONE) << QString() << 1 << 30;
    }
    void patrolSlotsCarryTheirKind()
    {
        QFETCH(int, slot);
        QFETCH(int, type);
        QFETCH(QString, identifier);
        QFETCH(int, minDwell);
        QFETCH(int, maxDwell);
        seedCamera();
        CPTZGetController getter;
        QSignalSpy open(&getter, &CPTZGetController::SignalGetPatrolTypeBeforeOpen);
        QSignalSpy del(&getter, &CPTZGetController::SignalGetPatrolTypeBeforeDelete);
        getter.StartGetPatrolType(kDome, slot);
        getter.DeleteGetPatrolType(kDome, slot);
        QTRY_COMPARE(open.count(), 1);
        QTRY_COMPARE(del.count(), 1);
        QCOMPARE(open.at(0).at(0).toInt(), slot);
        QCOMPARE(int(open.at(0).at(1).value<CruiseType>()), type);
        QCOMPARE(open.at(0).at(2).toString(), identifier);
        QCOMPARE(open.at(0).at(3).toInt(), minDwell);
        QCOMPARE(open.at(0).at(4).toInt(), maxDwell);
        QCOMPARE(int(del.at(0).at(1).value<CruiseType>()), type);
        QCOMPARE(del.at(0).at(2).toString(), identifier);
    }
    void patrolPathsAreReadBack()
    {
        seedCamera();
        CPTZGetController getter;
        QSignalSpy all(&getter, &CPTZGetController::SignalGetAllPatrolsSuc);
        getter.StartGetAllPatrols(kDome);
        QTRY_COMPARE(all.count(), 1);
        const auto patrols = all.at(0).at(1).value<QVector<CruiseInfo>>();
        QCOMPARE(patrols.size(), 2);
        QCOMPARE(patrols.at(0).cruise_index, 1);
        QCOMPARE(patrols.at(0).cruise_type, int(CRUISE_TYPE_DEVICE));
        QCOMPARE(patrols.at(1).cruise_index, 3);
        QCOMPARE(patrols.at(1).cruise_type, int(CRUISE_TYPE_VIRTUAL));

        QSignalSpy single(&getter, &CPTZGetController::SignalGetSinglePatrolSuc);
        getter.StartGetPatrol(kDome, 1);
        QTRY_COMPARE(single.count(), 1);
        GetCruiseRouteResponse route;
        QVERIFY(getter.GetEditPatrol(kDome, route));
        QCOMPARE(route.cruise_index, 1);
        QCOMPARE(int(route.points.size()), 2);
        QCOMPARE(route.points.at(1).preset_index, 2u);
        QCOMPARE(QString::fromStdString(route.points.at(0).preset_name), QStringLiteral("Gate"));

        QSignalSpy exec(&getter, &CPTZGetController::SignalGetPatrolTypeSuc);
        getter.StartExecPTZPatrolCommand(kDome, 3, true);
        QTRY_COMPARE(exec.count(), 1);
        QCOMPARE(exec.at(0).at(1).toBool(), true);
        QCOMPARE(int(exec.at(0).at(2).value<CruiseType>()), int(CRUISE_TYPE_VIRTUAL));
        const auto points = exec.at(0).at(3).value<std::list<CruisePoint>>();
        QCOMPARE(int(points.size()), 2);
        QCOMPARE(points.back().dwell_time, 25);
    }
    void writingPatrolsByKind()
    {
        seedCamera();
        CPTZGetController getter;
        QSignalSpy hardware(&getter, &CPTZGetController::SignalSetHardwarePatrolFinished);
        QSignalSpy software(&getter, &CPTZGetController::SignalSetSoftwarePatrolFinished);
        QSignalSpy failed(&getter, &CPTZGetController::SignalSetPatrolFailed);
        CruisePoint p = ptz_test::CruisePoints(1, 5, 10).front();
        getter.StartSetPatrol(kDome, 2, CRUISE_TYPE_DEVICE, {p, p});
        QTRY_COMPARE(hardware.count(), 1);
        QCOMPARE(m_env.camera(demo::kSpeedDome)->patrols().size(), 2);
        p.dwell_time = 20;
        getter.StartSetPatrol(kDome, 4, CRUISE_TYPE_VIRTUAL, {p});
        QTRY_COMPARE(software.count(), 1);
        QCOMPARE(m_env.store()->patrol(kDome, 4)->type, int(CRUISE_TYPE_VIRTUAL));
        p.dwell_time = 40;
        getter.StartSetPatrol(kDome, 5, CRUISE_TYPE_SOFTWARE, {p});
        QTRY_COMPARE(failed.count(), 1);
        QVERIFY(!failed.at(0).at(1).toString().isEmpty());
        QVERIFY(!m_env.store()->patrol(kDome, 5));
    }
    void stopGettingDataDropsAnswers()
    {
        CPTZGetController getter;
        QSignalSpy presets(&getter, &CPTZGetController::SignalGetPresetsSuc);
        QSignalSpy lock(&getter, &CPTZGetController::SignalGetPTZLockStatusSuc);
        getter.StartGetPresets(kDome);
        getter.StartGetPTZLockStatus(kDome);
        getter.StopGettingData();
        QTRY_COMPARE(m_env.camera(demo::kSpeedDome)->pendingRequestCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(presets.count(), 0);
        QCOMPARE(lock.count(), 0);
        // Later queries are answered again.
        getter.StartGetPTZLockStatus(kDome);
        QTRY_COMPARE(lock.count(), 1);
    }
    void lockStatusIsReadBack()
    {
        CPTZGetController getter;
        PTZLockStatusResponse status;
        QVERIFY(!getter.GetPTZLockStatus(kDome, status));
        QVERIFY(m_env.business()->LockPTZ(kDome.toStdString(), demo::kSenior, 90));
        QSignalSpy ok(&getter, &CPTZGetController::SignalGetPTZLockStatusSuc);
        getter.StartGetPTZLockStatus(kDome);
        QTRY_COMPARE(ok.count(), 1);
        QCOMPARE(ok.at(0).at(0).toString(), kDome);
        QVERIFY(getter.GetPTZLockStatus(kDome, status));
        QCOMPARE(status.locked, 1);
        QCOMPARE(QString::fromStdString(status.user_name), QString::fromLatin1(demo::kSenior));
        QCOMPARE(status.ptz_level, demo::kSeniorLevel);
        QVERIFY(status.remaining_time > 0 && status.remaining_time <= 90);
    }

private:
    // Device presets 1 and 2, device patrol 1 over them, a virtual patrol in slot 3.
    void seedCamera()
    {
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        QVERIFY(cam);
        cam->setPreset(1, QStringLiteral("Gate"));
        cam->setPreset(2, QStringLiteral("Door"));
        cam->writePatrol(1, {PatrolPoint(1, 10, 5), PatrolPoint(2, 10, 5)});
        QTRY_COMPARE(cam->pendingRequestCount(), 0);
        site_store::PatrolRecord patrol;
        patrol.cameraId = kDome;
        patrol.number = 3;
        patrol.type = CRUISE_TYPE_VIRTUAL;
        patrol.name = QStringLiteral("cruise3");
        patrol.points = {{1, 0, 20, QString()}, {2, 0, 25, QString()}};
        QVERIFY(m_env.store()->upsertPatrol(patrol));
    }
    PtzTestEnv m_env;
};

QTEST_GUILESS_MAIN(TestPTZGetController)
#include "tst_cptzgetcontroller.moc"
