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
    // Listing both kinds is checked through the panel; number 1 exists twice, the type in the record chooses.
    void presetByNumberFollowsItsType()
    {
        seedCamera();
        CPTZGetController getter;
        getter.SetCamera(kDome);
        QVERIFY(getter.AddOnePreset(kDome, Preset(1, PRESET_TYPE_VIRTUAL, QStringLiteral("Virtual gate"))));
        QSignalSpy ok(&getter, &CPTZGetController::SignalGetPresetsSuc);
        getter.StartGetPresets(kDome);
        QTRY_VERIFY(ok.count() >= 1);
        PresetInfo found;
        QVERIFY(CPTZGetController::GetPresetByIndexSync(kDome, found, 1));
        QCOMPARE(found.preset_type, int(PRESET_TYPE_DEVICE));
        found = PresetInfo();
        found.preset_type = PRESET_TYPE_VIRTUAL;
        QVERIFY(CPTZGetController::GetPresetByIndexSync(kDome, found, 1));
        QCOMPARE(QString::fromStdString(found.preset_name), QStringLiteral("Virtual gate"));
        QVERIFY(!CPTZGetController::GetPresetByIndexSync(kDome, found, 99));
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

private:
    // Device presets 1 and 2, device patrol 1 over them, a virtual patrol in slot 3.
    void seedCamera()
    {
        ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
        cam->setPreset(1, QStringLiteral("Gate"));
        cam->setPreset(2, QStringLiteral("Door"));
        cam->writePatrol(1, {PatrolPoint(1, 10, 5), PatrolPoint(2, 10, 5)});
        QTRY_COMPARE(cam->pendingRequestCount(), 0);
        QVERIFY(m_env.store()->upsertPatrol({kDome,
                                             3,
                                             CRUISE_TYPE_VIRTUAL,
                                             QStringLiteral("cruise3"),
                                             {{1, 0, 20, QString()}, {2, 0, 25, QString()}}}));
    }
    PtzTestEnv m_env;
};

QTEST_GUILESS_MAIN(TestPTZGetController)
#include "tst_cptzgetcontroller.moc"
