#include "support/paneltestenv.h"

#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableview.h"

#include "quillon/citemdatarole.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using vs_ui_data_controller::CNomalMessageManager;
namespace demo = site_store::demo;

namespace {
const QString kDome = QString::fromLatin1(demo::kSpeedDome);
const QString kRecordingTip = QStringLiteral("Corvo-ControlClient.e7fc316a038f48f2a6cbcab348cb9a1b.msg");
constexpr int kAction = CPatternTableModel::kColumnAction;

bool Near(double a, double b)
{
    return std::abs(a - b) < 1.0;
}

zeph_ptz_controller::CPTZStateStorageManager *Storage()
{
    return zeph_ptz_controller::CPTZStateStorageManager::Instance();
}
} // namespace

class TestPreviewPTZWndPatterns : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void recordedMovementReplaysAndStops();
    void tabOnlyForCamerasWithPatterns_data();
    void tabOnlyForCamerasWithPatterns();
    void secondPanelShowsTheSameRows();
    void deletingAPlayingPatternStopsItFirst_data();
    void deletingAPlayingPatternStopsItFirst();
    void padPressInterruptsPlayback_data();
    void padPressInterruptsPlayback();
    void recordingBlocksEveryOtherAction_data();
    void recordingBlocksEveryOtherAction();
    void refusedCommandKeepsRowAndState_data();
    void refusedCommandKeepsRowAndState();
    void storedNumbersOutsideTheSlotsMeanNone_data();
    void storedNumbersOutsideTheSlotsMeanNone();
    void playStopsTheVirtualPatrolFirst();
    void rowWithoutSelectionAsksForOne();
    void patternsSurviveRestart();

private:
    CPreviewPTZWnd *newPanel(unsigned screen);
    void showPatternTab(CPreviewPTZWnd *panel);
    void refreshList(CPreviewPTZWnd *panel);
    static CPatternTableView *viewOf(CPreviewPTZWnd *panel)
    {
        return panel->findChild<CPatternTableView *>(QStringLiteral("m_pTreeViewPatten"));
    }
    static CPatternTableModel *modelOf(CPreviewPTZWnd *panel)
    {
        return qobject_cast<CPatternTableModel *>(viewOf(panel)->model());
    }
    CPatternTableModel *model() const { return modelOf(m_panel); }
    QModelIndex row(int r) const { return model()->index(r, kAction); }
    void click(int r, Quillon::CItemDataRole role) { viewOf(m_panel)->OnTableViewClicked(row(r), role); }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    void settle();
    void recordOnCamera(int pattern);
    void pressPad(CPTZCloud::enClickSection section, bool press);
    bool sentNothing() const;

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
    QList<QPair<QString, int>> m_tips;
    QStringList m_asked;
    int m_answer = CNomalMessageManager::AnswerConfirm;
};

void TestPreviewPTZWndPatterns::init()
{
    m_env.setUp();
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
    m_tips.clear();
    m_asked.clear();
    m_answer = CNomalMessageManager::AnswerConfirm;
    CNomalMessageManager::Instance()->SetAnswerProvider([this](const QString &text) {
        m_asked << text;
        return m_answer;
    });
    m_panel = newPanel(0);
    showPatternTab(m_panel);
}

void TestPreviewPTZWndPatterns::cleanup()
{
    CNomalMessageManager::Instance()->SetAnswerProvider({});
    Storage()->SetInterruptWaitTime(zeph_ptz_controller::CPTZStateStorageManager::kDefaultInterruptWaitMs);
    delete m_panel;
    m_panel = nullptr;
    m_env.tearDown();
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
}

CPreviewPTZWnd *TestPreviewPTZWndPatterns::newPanel(unsigned screen)
{
    auto *panel = new CPreviewPTZWnd(screen, false, false);
    connect(panel, &CPreviewPTZWnd::SignalMessageTipNeeded, this,
            [this](const QString &tip, int level) { m_tips << qMakePair(tip, level); });
    panel->resize(600, 800);
    panel->SetPTZController(m_env.controller(), nullptr);
    panel->SetCamera(QString(), kDome, false, false);
    return panel;
}

void TestPreviewPTZWndPatterns::showPatternTab(CPreviewPTZWnd *panel)
{
    auto *tabs = panel->findChild<QTabWidget *>(QStringLiteral("m_pTabWidget"));
    tabs->setCurrentWidget(panel->findChild<QWidget *>(QStringLiteral("m_pTabPatten")));
    // The rows are enabled once the camera's list has arrived.
    QTRY_VERIFY(modelOf(panel)->flags(modelOf(panel)->index(0, kAction)) & Qt::ItemIsEnabled);
}

// Leaving the tab and coming back reads the camera's list again.
void TestPreviewPTZWndPatterns::refreshList(CPreviewPTZWnd *panel)
{
    panel->findChild<QTabWidget *>(QStringLiteral("m_pTabWidget"))->setCurrentIndex(0);
    showPatternTab(panel);
    settle();
}

void TestPreviewPTZWndPatterns::settle()
{
    QTRY_COMPARE(m_env.controller()->PendingRequestCount(), 0);
    QTRY_COMPARE(dome()->pendingRequestCount(), 0);
}

// Records a 0.5 s pan to the right straight on the camera, as another client would.
void TestPreviewPTZWndPatterns::recordOnCamera(int pattern)
{
    dome()->startPatternRecord(pattern);
    dome()->movePanTilt(1, 0, 20);
    QTRY_COMPARE(dome()->pendingRequestCount(), 0);
    m_env.clock()->advance(500);
    dome()->stopPanTilt();
    dome()->stopPatternRecord(pattern);
    QTRY_COMPARE(dome()->pendingRequestCount(), 0);
    QVERIFY(dome()->recordedPatterns().contains(pattern));
}

void TestPreviewPTZWndPatterns::pressPad(CPTZCloud::enClickSection section, bool press)
{
    auto *cloud = m_panel->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_"));
    if (press)
        emit cloud->signalPressSection(nullptr, section);
    else
        emit cloud->signalReleaseSection(nullptr, section);
    settle();
}

bool TestPreviewPTZWndPatterns::sentNothing() const
{
    return dome()->requestLog().isEmpty() && m_env.controller()->PendingRequestCount() == 0;
}

void TestPreviewPTZWndPatterns::recordedMovementReplaysAndStops()
{
    dome()->setPosition(100.0, -20.0);
    click(0, Quillon::ItemSecondRightPixmapRole);
    QTRY_VERIFY(model()->IsRecording(0));
    QCOMPARE(Storage()->GetRecordPattern(kDome), 1);

    // Speed 20 turns 40 degrees a second: one second left, half a second up.
    pressPad(CPTZCloud::MiddleLeft, true);
    m_env.clock()->advance(1000);
    pressPad(CPTZCloud::MiddleLeft, false);
    pressPad(CPTZCloud::TopMiddle, true);
    m_env.clock()->advance(500);
    pressPad(CPTZCloud::TopMiddle, false);
    QVERIFY(Near(dome()->status().pan, 60.0));
    QVERIFY(Near(dome()->status().tilt, 0.0));

    click(0, Quillon::ItemSecondRightPixmapRole);
    QTRY_VERIFY(model()->IsRecorded(0));
    QVERIFY(!model()->IsRecording(0));
    QCOMPARE(Storage()->GetRecordPattern(kDome), -1);
    QCOMPARE(dome()->recordedPatterns(), QVector<int>{1});

    dome()->setPosition(200.0, -45.0);
    click(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(model()->IsPlaying(0));
    QCOMPARE(Storage()->GetRunningPattern(kDome), 1);
    QCOMPARE(dome()->status().runningPattern, 1);

    // The camera goes back to where recording began, then left, then up.
    const QVector<QPointF> waypoints{{100.0, -20.0}, {60.0, -20.0}, {60.0, 0.0}};
    int reached = 0;
    for (int step = 0; step < 80 && reached < waypoints.size(); ++step) {
        m_env.clock()->advance(50);
        const auto status = dome()->status();
        if (Near(status.pan, waypoints.at(reached).x()) && Near(status.tilt, waypoints.at(reached).y()))
            ++reached;
    }
    QCOMPARE(reached, waypoints.size());

    click(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(!model()->IsPlaying(0));
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QCOMPARE(dome()->status().runningPattern, 0);
    const auto stopped = dome()->status();
    m_env.clock()->advance(2000);
    QCOMPARE(dome()->status().pan, stopped.pan);
    QCOMPARE(dome()->status().tilt, stopped.tilt);
    QVERIFY(m_tips.isEmpty());
}

void TestPreviewPTZWndPatterns::tabOnlyForCamerasWithPatterns_data()
{
    QTest::addColumn<QString>("camera");
    QTest::addColumn<bool>("visible");
    QTest::newRow("speed dome") << kDome << true;
    QTest::newRow("dome without patterns") << QString::fromLatin1(demo::kPtzNoPattern) << false;
}

void TestPreviewPTZWndPatterns::tabOnlyForCamerasWithPatterns()
{
    QFETCH(QString, camera);
    QFETCH(bool, visible);
    auto *tabs = m_panel->findChild<QTabWidget *>(QStringLiteral("m_pTabWidget"));
    tabs->setCurrentIndex(0);
    m_panel->SetCamera(QString(), camera, false, false);
    settle();
    auto *driver = m_env.camera(camera);
    driver->clearRequestLog();
    const int page = tabs->indexOf(m_panel->findChild<QWidget *>(QStringLiteral("m_pTabPatten")));
    QCOMPARE(tabs->isTabVisible(page), visible);
    if (!visible)
        return;
    tabs->setCurrentIndex(page);
    QTRY_VERIFY(model()->flags(row(0)) & Qt::ItemIsEnabled);
    QVERIFY(m_env.operations(camera).contains(DriverOperation::ListPatterns));
}

void TestPreviewPTZWndPatterns::secondPanelShowsTheSameRows()
{
    recordOnCamera(2);
    refreshList(m_panel);
    QVERIFY(model()->IsRecorded(1));
    auto *other = newPanel(1);
    showPatternTab(other);
    CPatternTableModel *otherModel = modelOf(other);
    QVERIFY(otherModel->IsRecorded(1));

    click(1, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(otherModel->IsPlaying(1));
    QVERIFY(model()->IsPlaying(1));

    // Stopping from the other panel stops the row here as well.
    viewOf(other)->OnTableViewClicked(otherModel->index(1, kAction), Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(!model()->IsPlaying(1));
    QVERIFY(!otherModel->IsPlaying(1));
    QCOMPARE(dome()->status().runningPattern, 0);

    // A panel bound later reads the shared state.
    click(1, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(model()->IsPlaying(1));
    auto *late = newPanel(2);
    showPatternTab(late);
    QVERIFY(modelOf(late)->IsPlaying(1));
    delete late;
    delete other;
}

void TestPreviewPTZWndPatterns::deletingAPlayingPatternStopsItFirst_data()
{
    QTest::addColumn<int>("answer");
    QTest::newRow("confirmed") << int(CNomalMessageManager::AnswerConfirm);
    QTest::newRow("declined") << int(CNomalMessageManager::AnswerCancel);
}

void TestPreviewPTZWndPatterns::deletingAPlayingPatternStopsItFirst()
{
    QFETCH(int, answer);
    recordOnCamera(1);
    recordOnCamera(3);
    refreshList(m_panel);
    QTRY_VERIFY(model()->IsRecorded(2));
    click(2, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(model()->IsPlaying(2));
    dome()->clearRequestLog();

    m_answer = answer;
    click(2, Quillon::ItemThirdRightPixmapRole);
    QCOMPARE(m_asked, QStringList{QStringLiteral("ConfirmToDelete")});
    if (answer != CNomalMessageManager::AnswerConfirm) {
        QVERIFY(sentNothing());
        QVERIFY(model()->IsPlaying(2));
        return;
    }
    settle();
    const QList<DriverOperation> sent = m_env.operations(kDome);
    QVERIFY(sent.size() >= 2);
    QCOMPARE(sent.mid(0, 2), (QList<DriverOperation>{DriverOperation::StopPattern, DriverOperation::RemovePattern}));
    QTRY_VERIFY(!model()->IsRecorded(2));
    QVERIFY(!model()->IsPlaying(2));
    QVERIFY(model()->IsRecorded(0));
    QCOMPARE(dome()->recordedPatterns(), QVector<int>{1});
    QCOMPARE(dome()->status().runningPattern, 0);
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QVERIFY(m_tips.contains(qMakePair(QStringLiteral("TrajectoryDeletionSusDBpbcFY"), 3)));
}

void TestPreviewPTZWndPatterns::padPressInterruptsPlayback_data()
{
    QTest::addColumn<bool>("resume");
    QTest::newRow("no resume") << false;
    QTest::newRow("resume after the wait") << true;
}

void TestPreviewPTZWndPatterns::padPressInterruptsPlayback()
{
    QFETCH(bool, resume);
    m_env.store()->setBoolSetting(site_store::CSiteStore::kResumeCruiseAfterInterrupt, resume);
    Storage()->SetInterruptWaitTime(200);
    recordOnCamera(1);
    refreshList(m_panel);
    QTRY_VERIFY(model()->IsRecorded(0));
    click(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(model()->IsPlaying(0));

    QSignalSpy notices(m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::SignalPTZPanelInterrupt);
    pressPad(CPTZCloud::MiddleRight, true);
    QCOMPARE(notices.count(), 1);
    QCOMPARE(notices.first().at(1).toString(), kDome);
    QCOMPARE(notices.first().at(2).toBool(), false);
    QVERIFY(!model()->IsPlaying(0));
    QCOMPARE(row(0).data(Quillon::ItemFirstRightPixmapTipRole).toString(), QStringLiteral("CallBQA8YLFY"));
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QCOMPARE(dome()->status().runningPattern, 0);
    pressPad(CPTZCloud::MiddleRight, false);

    if (resume) {
        QTRY_VERIFY(model()->IsPlaying(0));
        QTRY_COMPARE(dome()->status().runningPattern, 1);
    } else {
        int pending = 0;
        QVERIFY(!Storage()->IsInterruptPattern(kDome, pending));
        QCOMPARE(dome()->status().runningPattern, 0);
        QVERIFY(!model()->IsPlaying(0));
    }
}

void TestPreviewPTZWndPatterns::recordingBlocksEveryOtherAction_data()
{
    QTest::addColumn<int>("role");
    QTest::newRow("play") << int(Quillon::ItemFirstRightPixmapRole);
    QTest::newRow("record") << int(Quillon::ItemSecondRightPixmapRole);
    QTest::newRow("delete") << int(Quillon::ItemThirdRightPixmapRole);
}

void TestPreviewPTZWndPatterns::recordingBlocksEveryOtherAction()
{
    QFETCH(int, role);
    recordOnCamera(2);
    refreshList(m_panel);
    QTRY_VERIFY(model()->IsRecorded(1));
    click(0, Quillon::ItemSecondRightPixmapRole);
    QTRY_VERIFY(model()->IsRecording(0));
    settle();
    dome()->clearRequestLog();
    m_tips.clear();

    click(1, Quillon::CItemDataRole(role));
    QCOMPARE(m_tips, (QList<QPair<QString, int>>{qMakePair(kRecordingTip, 2)}));
    QVERIFY(sentNothing());
    QVERIFY(m_asked.isEmpty());
    QVERIFY(model()->IsRecording(0));
    QVERIFY(!model()->IsPlaying(1));
    QCOMPARE(dome()->status().recordingPattern, 1);
}

void TestPreviewPTZWndPatterns::refusedCommandKeepsRowAndState_data()
{
    QTest::addColumn<QString>("before"); // "idle", "recording" or "playing" pattern 1
    QTest::addColumn<int>("role");
    QTest::addColumn<DriverOperation>("failing");

    QTest::newRow("start recording") << "idle" << int(Quillon::ItemSecondRightPixmapRole)
                                     << DriverOperation::StartPatternRecord;
    QTest::newRow("stop recording") << "recording" << int(Quillon::ItemSecondRightPixmapRole)
                                    << DriverOperation::StopPatternRecord;
    QTest::newRow("play") << "idle" << int(Quillon::ItemFirstRightPixmapRole) << DriverOperation::PlayPattern;
    QTest::newRow("stop playing") << "playing" << int(Quillon::ItemFirstRightPixmapRole)
                                  << DriverOperation::StopPattern;
    QTest::newRow("delete") << "idle" << int(Quillon::ItemThirdRightPixmapRole) << DriverOperation::RemovePattern;
}

void TestPreviewPTZWndPatterns::refusedCommandKeepsRowAndState()
{
    QFETCH(QString, before);
    QFETCH(int, role);
    QFETCH(DriverOperation, failing);
    recordOnCamera(1);
    refreshList(m_panel);
    QTRY_VERIFY(model()->IsRecorded(0));
    if (before == QLatin1String("recording")) {
        click(0, Quillon::ItemSecondRightPixmapRole);
        QTRY_VERIFY(model()->IsRecording(0));
    } else if (before == QLatin1String("playing")) {
        click(0, Quillon::ItemFirstRightPixmapRole);
        QTRY_VERIFY(model()->IsPlaying(0));
    }
    settle();
    const int recordStored = Storage()->GetRecordPattern(kDome);
    const int runningStored = Storage()->GetRunningPattern(kDome);
    m_tips.clear();

    dome()->failOperation(failing, QStringLiteral("Motor fault"));
    click(0, Quillon::CItemDataRole(role));
    settle();
    QTRY_VERIFY(m_tips.contains(qMakePair(QStringLiteral("Motor fault"), 0)));
    QCOMPARE(model()->IsRecording(0), before == QLatin1String("recording"));
    QCOMPARE(model()->IsPlaying(0), before == QLatin1String("playing"));
    QVERIFY(model()->IsRecorded(0));
    QCOMPARE(Storage()->GetRecordPattern(kDome), recordStored);
    QCOMPARE(Storage()->GetRunningPattern(kDome), runningStored);
}

void TestPreviewPTZWndPatterns::storedNumbersOutsideTheSlotsMeanNone_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<bool>("sends");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("5") << 5 << false;
    QTest::newRow("-1") << -1 << false;
    QTest::newRow("3") << 3 << true;
}

void TestPreviewPTZWndPatterns::storedNumbersOutsideTheSlotsMeanNone()
{
    QFETCH(int, stored);
    QFETCH(bool, sends);
    settle();
    dome()->clearRequestLog();
    Storage()->SetRunningPattern(kDome, stored);
    Storage()->SetRecordPattern(kDome, stored);
    const int kept = Storage()->GetRunningPattern(kDome);
    for (int r = 0; r < model()->rowCount(); ++r)
        QCOMPARE(model()->IsPlaying(r) || model()->IsRecording(r), sends && r == stored - 1);

    m_panel->StopPatternPlaying(QString(), kDome, false, 0, true);
    m_panel->StopPatternRecording(QString(), kDome, true);
    if (!sends) {
        QVERIFY(sentNothing());
        QCOMPARE(Storage()->GetRunningPattern(kDome), kept);
        QCOMPARE(Storage()->GetRecordPattern(kDome), kept);
        return;
    }
    QCOMPARE(m_env.operations(kDome),
             (QList<DriverOperation>{DriverOperation::StopPattern, DriverOperation::StopPatternRecord}));
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QCOMPARE(Storage()->GetRecordPattern(kDome), -1);
    QVERIFY(!model()->IsPlaying(2));
    QVERIFY(!model()->IsRecording(2));
    settle();
}

void TestPreviewPTZWndPatterns::playStopsTheVirtualPatrolFirst()
{
    recordOnCamera(1);
    zeph_ptz_controller::CVirtualPtzControllor virtualController;
    virtualController.SetCamera(kDome);
    virtualController.SetDigitalZoomStyle(1, 0.2, 0.2, 0.6, 0.6);
    m_panel->SetPTZController(m_env.controller(), &virtualController);
    refreshList(m_panel);
    QTRY_VERIFY(model()->IsRecorded(0));
    click(0, Quillon::ItemFirstRightPixmapRole);
    QCOMPARE(virtualController.GetDigitalZoomStyle(), 0);
    QTRY_VERIFY(model()->IsPlaying(0));
    m_panel->SetPTZController(m_env.controller(), nullptr);
}

void TestPreviewPTZWndPatterns::rowWithoutSelectionAsksForOne()
{
    settle();
    dome()->clearRequestLog();
    m_panel->OnPatternPlayCtl(QModelIndex(), true);
    m_panel->OnPatternRecordCtl(QModelIndex(), true);
    m_panel->OnPatternDeleteControl(QModelIndex());
    QCOMPARE(m_tips.size(), 3);
    for (const auto &tip : qAsConst(m_tips))
        QCOMPARE(tip, qMakePair(QStringLiteral("PleaseSelectAPresetPrknxDNBA"), 2));
    QVERIFY(sentNothing());
    QVERIFY(m_asked.isEmpty());
}

void TestPreviewPTZWndPatterns::patternsSurviveRestart()
{
    delete m_panel;
    m_panel = nullptr;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("site.sqlite"));
    auto reopen = [this, &path]() {
        m_env.manager()->Clear();
        site_store::CSiteStore::InstallCurrent(nullptr);
        zeph_ptz_controller::CPTZGetController::ClearCachedData();
        Storage()->Clear();
        site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::Open(path));
        m_env.store()->setCurrentUser(QString::fromLatin1(demo::kOperator));
        m_env.manager()->Reload();
        m_panel = newPanel(0);
        showPatternTab(m_panel);
    };
    reopen();
    QVERIFY(!model()->IsRecorded(2));
    dome()->setPosition(30.0, -10.0);
    click(2, Quillon::ItemSecondRightPixmapRole);
    QTRY_VERIFY(model()->IsRecording(2));
    pressPad(CPTZCloud::MiddleRight, true);
    m_env.clock()->advance(500);
    pressPad(CPTZCloud::MiddleRight, false);
    click(2, Quillon::ItemSecondRightPixmapRole);
    QTRY_VERIFY(model()->IsRecorded(2));

    delete m_panel;
    m_panel = nullptr;
    reopen();
    QVERIFY(model()->IsRecorded(2));
    QVERIFY(!model()->IsRecorded(0));
    dome()->setPosition(0.0, -10.0);
    click(2, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(model()->IsPlaying(2));
    // Back to 30 degrees at full speed, then the recorded half second to the right.
    m_env.clock()->advance(375 + 500);
    QVERIFY(Near(dome()->status().pan, 50.0));
}

QTEST_MAIN(TestPreviewPTZWndPatterns)
#include "tst_cpreviewptzwnd_patterns.moc"
