#include "support/tabfixture.h"

#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableview.h"

#include "direction/cptzcloud.h"
#include "quillon/citemdatarole.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

using namespace PreviewPTZControl;
using namespace ptz_plugin_protocol;
using ptz_devices::DriverOperation;
using vs_ui_data_controller::CNomalMessageManager;
using zeph_ptz_controller::CUniversalPTZController;

namespace {
const QString kRecordingTip = QStringLiteral("Corvo-ControlClient.e7fc316a038f48f2a6cbcab348cb9a1b.msg");
constexpr int kPlay = Quillon::ItemFirstRightPixmapRole;
constexpr int kRecord = Quillon::ItemSecondRightPixmapRole;
constexpr int kDelete = Quillon::ItemThirdRightPixmapRole;

bool Near(double a, double b)
{
    return std::abs(a - b) < 1.0;
}

zeph_ptz_controller::CPTZStateStorageManager *Storage()
{
    return zeph_ptz_controller::CPTZStateStorageManager::Instance();
}

CPatternTableView *ViewOf(CPreviewPTZWnd *panel)
{
    return child<CPatternTableView>(panel, "m_pTreeViewPatten");
}

CPatternTableModel *ModelOf(CPreviewPTZWnd *panel)
{
    return qobject_cast<CPatternTableModel *>(ViewOf(panel)->model());
}

// Records a 0.5 s pan to the right straight on a camera, as another client would.
void RecordOn(ptz_devices::CSimulatedCamera *camera, ptz_devices::CSimClock *clock, int pattern)
{
    camera->startPatternRecord(pattern);
    camera->movePanTilt(1, 0, 20);
    QTRY_COMPARE(camera->pendingRequestCount(), 0);
    clock->advance(500);
    camera->stopPanTilt();
    camera->stopPatternRecord(pattern);
    QTRY_COMPARE(camera->pendingRequestCount(), 0);
    QVERIFY(camera->recordedPatterns().contains(pattern));
}
} // namespace

class TestPreviewPTZWndPatterns : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_fx.tearDown(); }

    void recordedMovementReplaysAndStops();
    void tabOnlyForCamerasWithPatterns_data();
    void tabOnlyForCamerasWithPatterns();
    void secondPanelShowsTheSameRows();
    void deletingAPlayingPatternStopsItFirst_data();
    void deletingAPlayingPatternStopsItFirst();
    void padPressInterruptsPlayback_data();
    void padPressInterruptsPlayback();
    void refusalsAreTipsAndSendNothing_data();
    void refusalsAreTipsAndSendNothing();
    void refusedCommandKeepsRowAndState_data();
    void refusedCommandKeepsRowAndState();
    void storedNumbersOutsideTheSlotsMeanNone_data();
    void storedNumbersOutsideTheSlotsMeanNone();
    void successForAnotherCameraIsIgnored_data();
    void successForAnotherCameraIsIgnored();
    void playStopsTheVirtualPatrolFirst();
    void patternsSurviveRestart();

private:
    CPatternTableModel *model() const { return ModelOf(m_panel); }
    void click(int row, int role)
    {
        ViewOf(m_panel)->OnTableViewClicked(model()->index(row, 1), Quillon::CItemDataRole(role));
    }
    // Shows the tab and waits for the camera's list: the rows are enabled once it has arrived.
    void showList(CPreviewPTZWnd *panel);
    // Pattern 1 recorded on the dome and shown; then, by `state`, recorded again or played from the list.
    void enter(const QString &state);
    void pad(CPTZCloud::enClickSection section, bool press);
    bool sentNothing() const
    {
        return m_fx.dome()->requestLog().isEmpty() && m_fx.controller()->PendingRequestCount() == 0;
    }

    TabFixture m_fx;
    CPreviewPTZWnd *m_panel = nullptr;
};

void TestPreviewPTZWndPatterns::init()
{
    m_fx.setUp();
    m_panel = m_fx.newPanel();
    showList(m_panel);
}

void TestPreviewPTZWndPatterns::showList(CPreviewPTZWnd *panel)
{
    TabFixture::showTab(panel, "m_pTabPatten");
    QTRY_VERIFY(ModelOf(panel)->flags(ModelOf(panel)->index(0, 1)) & Qt::ItemIsEnabled);
    m_fx.settle();
}

void TestPreviewPTZWndPatterns::enter(const QString &state)
{
    RecordOn(m_fx.dome(), m_fx.clock(), 1);
    showList(m_panel);
    QTRY_VERIFY(model()->IsRecorded(0));
    if (state == QLatin1String("recording")) {
        click(0, kRecord);
        QTRY_VERIFY(model()->IsRecording(0));
    } else if (state == QLatin1String("playing")) {
        click(0, kPlay);
        QTRY_VERIFY(model()->IsPlaying(0));
    }
    m_fx.settle();
    m_fx.dome()->clearRequestLog();
    m_fx.tips.clear();
}

void TestPreviewPTZWndPatterns::pad(CPTZCloud::enClickSection section, bool press)
{
    auto *cloud = child<CPTZCloud>(m_panel, "ptr_cloud_");
    if (press)
        emit cloud->signalPressSection(nullptr, section);
    else
        emit cloud->signalReleaseSection(nullptr, section);
    m_fx.settle();
}

void TestPreviewPTZWndPatterns::recordedMovementReplaysAndStops()
{
    auto *dome = m_fx.dome();
    dome->setPosition(100.0, -20.0);
    click(0, kRecord);
    QTRY_VERIFY(model()->IsRecording(0));
    QCOMPARE(Storage()->GetRecordPattern(kDome), 1);

    // Speed 20 turns 40 degrees a second: one second left, half a second up.
    pad(CPTZCloud::MiddleLeft, true);
    m_fx.clock()->advance(1000);
    pad(CPTZCloud::MiddleLeft, false);
    pad(CPTZCloud::TopMiddle, true);
    m_fx.clock()->advance(500);
    pad(CPTZCloud::TopMiddle, false);
    QVERIFY(Near(dome->status().pan, 60.0) && Near(dome->status().tilt, 0.0));

    click(0, kRecord);
    QTRY_VERIFY(model()->IsRecorded(0));
    QVERIFY(!model()->IsRecording(0));
    QCOMPARE(Storage()->GetRecordPattern(kDome), -1);
    QCOMPARE(dome->recordedPatterns(), QVector<int>{1});

    dome->setPosition(200.0, -45.0);
    click(0, kPlay);
    QTRY_VERIFY(model()->IsPlaying(0));
    QCOMPARE(Storage()->GetRunningPattern(kDome), 1);
    QCOMPARE(dome->status().runningPattern, 1);

    // The camera goes back to where recording began, then left, then up.
    const QVector<QPointF> waypoints{{100.0, -20.0}, {60.0, -20.0}, {60.0, 0.0}};
    int reached = 0;
    for (int step = 0; step < 80 && reached < waypoints.size(); ++step) {
        m_fx.clock()->advance(50);
        if (Near(dome->status().pan, waypoints.at(reached).x()) && Near(dome->status().tilt, waypoints.at(reached).y()))
            ++reached;
    }
    QCOMPARE(reached, waypoints.size());

    click(0, kPlay);
    QTRY_VERIFY(!model()->IsPlaying(0));
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QCOMPARE(dome->status().runningPattern, 0);
    const auto stopped = dome->status();
    m_fx.clock()->advance(2000);
    QCOMPARE(dome->status().pan, stopped.pan);
    QCOMPARE(dome->status().tilt, stopped.tilt);
    QVERIFY(m_fx.tips.isEmpty());
}

void TestPreviewPTZWndPatterns::tabOnlyForCamerasWithPatterns_data()
{
    QTest::addColumn<QString>("camera");
    QTest::addColumn<bool>("visible");
    QTest::newRow("speed dome") << kDome << true;
    QTest::newRow("dome without patterns") << kBasic << false;
}

void TestPreviewPTZWndPatterns::tabOnlyForCamerasWithPatterns()
{
    QFETCH(QString, camera);
    QFETCH(bool, visible);
    auto *tabs = child<QTabWidget>(m_panel, "m_pTabWidget");
    tabs->setCurrentIndex(0);
    m_panel->SetCamera(QString(), camera, false, false);
    m_fx.settle();
    m_fx.camera(camera)->clearRequestLog();
    const int page = tabs->indexOf(child<QWidget>(m_panel, "m_pTabPatten"));
    QCOMPARE(tabs->isTabVisible(page), visible);
    if (visible) {
        tabs->setCurrentIndex(page);
        QTRY_VERIFY(model()->flags(model()->index(0, 1)) & Qt::ItemIsEnabled);
        QVERIFY(m_fx.operations(camera).contains(DriverOperation::ListPatterns));
    }
}

void TestPreviewPTZWndPatterns::secondPanelShowsTheSameRows()
{
    RecordOn(m_fx.dome(), m_fx.clock(), 2);
    showList(m_panel);
    QVERIFY(model()->IsRecorded(1));
    CPreviewPTZWnd *other = m_fx.newPanel();
    showList(other);
    QVERIFY(ModelOf(other)->IsRecorded(1));

    click(1, kPlay);
    QTRY_VERIFY(ModelOf(other)->IsPlaying(1));
    QVERIFY(model()->IsPlaying(1));

    // Stopping from the other panel stops the row here as well.
    ViewOf(other)->OnTableViewClicked(ModelOf(other)->index(1, 1), Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(!model()->IsPlaying(1));
    QVERIFY(!ModelOf(other)->IsPlaying(1));
    QCOMPARE(m_fx.dome()->status().runningPattern, 0);

    // A panel bound later reads the shared state.
    click(1, kPlay);
    QTRY_VERIFY(model()->IsPlaying(1));
    CPreviewPTZWnd *late = m_fx.newPanel();
    showList(late);
    QVERIFY(ModelOf(late)->IsPlaying(1));
}

void TestPreviewPTZWndPatterns::deletingAPlayingPatternStopsItFirst_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::newRow("confirmed") << true;
    QTest::newRow("declined") << false;
}

void TestPreviewPTZWndPatterns::deletingAPlayingPatternStopsItFirst()
{
    QFETCH(bool, confirm);
    RecordOn(m_fx.dome(), m_fx.clock(), 3);
    enter(QStringLiteral("idle"));
    click(2, kPlay);
    QTRY_VERIFY(model()->IsPlaying(2));
    m_fx.settle();
    m_fx.dome()->clearRequestLog();

    m_fx.answer = confirm ? CNomalMessageManager::AnswerConfirm : CNomalMessageManager::AnswerCancel;
    click(2, kDelete);
    QCOMPARE(m_fx.asked, QStringList{QStringLiteral("ConfirmToDelete")});
    if (!confirm) {
        QVERIFY(sentNothing());
        QVERIFY(model()->IsPlaying(2));
        return;
    }
    m_fx.settle();
    QCOMPARE(m_fx.operations(kDome).mid(0, 2),
             (QList<DriverOperation>{DriverOperation::StopPattern, DriverOperation::RemovePattern}));
    QTRY_VERIFY(!model()->IsRecorded(2));
    QVERIFY(!model()->IsPlaying(2));
    QVERIFY(model()->IsRecorded(0));
    QCOMPARE(m_fx.dome()->recordedPatterns(), QVector<int>{1});
    QCOMPARE(m_fx.dome()->status().runningPattern, 0);
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QVERIFY(m_fx.tipped(QStringLiteral("TrajectoryDeletionSusDBpbcFY"), 3));
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
    m_fx.store()->setBoolSetting(site_store::CSiteStore::kResumeCruiseAfterInterrupt, resume);
    Storage()->SetInterruptWaitTime(200);
    enter(QStringLiteral("playing"));

    QSignalSpy notices(m_fx.controller().get(), &CUniversalPTZController::SignalPTZPanelInterrupt);
    pad(CPTZCloud::MiddleRight, true);
    QCOMPARE(notices.count(), 1);
    QCOMPARE(notices.first().at(1).toString(), kDome);
    QCOMPARE(notices.first().at(2).toBool(), false);
    QVERIFY(!model()->IsPlaying(0));
    QCOMPARE(model()->index(0, 1).data(Quillon::ItemFirstRightPixmapTipRole).toString(),
             QStringLiteral("CallBQA8YLFY"));
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QCOMPARE(m_fx.dome()->status().runningPattern, 0);
    pad(CPTZCloud::MiddleRight, false);

    if (resume) {
        QTRY_VERIFY(model()->IsPlaying(0));
        QTRY_COMPARE(m_fx.dome()->status().runningPattern, 1);
    } else {
        int pending = 0;
        QVERIFY(!Storage()->IsInterruptPattern(kDome, pending));
        QCOMPARE(m_fx.dome()->status().runningPattern, 0);
        QVERIFY(!model()->IsPlaying(0));
    }
}

void TestPreviewPTZWndPatterns::refusalsAreTipsAndSendNothing_data()
{
    QTest::addColumn<bool>("recording"); // pattern 1 being recorded, the action on recorded pattern 2
    QTest::addColumn<int>("role");
    QTest::addColumn<QString>("tip");
    const QString noRow = QStringLiteral("PleaseSelectAPresetPrknxDNBA");
    QTest::newRow("play while recording") << true << kPlay << kRecordingTip;
    QTest::newRow("record while recording") << true << kRecord << kRecordingTip;
    QTest::newRow("delete while recording") << true << kDelete << kRecordingTip;
    QTest::newRow("play without a row") << false << kPlay << noRow;
    QTest::newRow("record without a row") << false << kRecord << noRow;
    QTest::newRow("delete without a row") << false << kDelete << noRow;
}

void TestPreviewPTZWndPatterns::refusalsAreTipsAndSendNothing()
{
    QFETCH(bool, recording);
    QFETCH(int, role);
    QFETCH(QString, tip);
    RecordOn(m_fx.dome(), m_fx.clock(), 2);
    enter(recording ? QStringLiteral("recording") : QStringLiteral("idle"));
    const QModelIndex index = recording ? model()->index(1, 1) : QModelIndex();
    if (role == kPlay)
        m_panel->OnPatternPlayCtl(index, true);
    else if (role == kRecord)
        m_panel->OnPatternRecordCtl(index, true);
    else
        m_panel->OnPatternDeleteControl(index);
    QCOMPARE(m_fx.tips, (QList<QPair<QString, int>>{qMakePair(tip, 2)}));
    QVERIFY(sentNothing());
    QVERIFY(m_fx.asked.isEmpty());
    QVERIFY(!model()->IsPlaying(1));
    QCOMPARE(m_fx.dome()->status().recordingPattern, recording ? 1 : 0);
}

void TestPreviewPTZWndPatterns::refusedCommandKeepsRowAndState_data()
{
    QTest::addColumn<QString>("before"); // "idle", "recording" or "playing" pattern 1
    QTest::addColumn<int>("role");
    QTest::addColumn<DriverOperation>("failing");

    QTest::newRow("start recording") << "idle" << kRecord << DriverOperation::StartPatternRecord;
    QTest::newRow("stop recording") << "recording" << kRecord << DriverOperation::StopPatternRecord;
    QTest::newRow("play") << "idle" << kPlay << DriverOperation::PlayPattern;
    QTest::newRow("stop playing") << "playing" << kPlay << DriverOperation::StopPattern;
    QTest::newRow("delete") << "idle" << kDelete << DriverOperation::RemovePattern;
}

void TestPreviewPTZWndPatterns::refusedCommandKeepsRowAndState()
{
    QFETCH(QString, before);
    QFETCH(int, role);
    QFETCH(DriverOperation, failing);
    enter(before);
    const int recordStored = Storage()->GetRecordPattern(kDome);
    const int runningStored = Storage()->GetRunningPattern(kDome);

    m_fx.dome()->failOperation(failing, QStringLiteral("Motor fault"));
    click(0, role);
    m_fx.settle();
    QTRY_VERIFY(m_fx.tipped(QStringLiteral("Motor fault"), 0));
    QCOMPARE(model()->IsRecording(0), before == QLatin1String("recording"));
    QCOMPARE(model()->IsPlaying(0), before == QLatin1String("playing"));
    QVERIFY(model()->IsRecorded(0));
    QCOMPARE(Storage()->GetRecordPattern(kDome), recordStored);
    QCOMPARE(Storage()->GetRunningPattern(kDome), runningStored);
}

void TestPreviewPTZWndPatterns::storedNumbersOutsideTheSlotsMeanNone_data()
{
    QTest::addColumn<int>("stored");
    QTest::newRow("0") << 0;
    QTest::newRow("5") << 5;
    QTest::newRow("-1") << -1;
    QTest::newRow("3") << 3;
}

void TestPreviewPTZWndPatterns::storedNumbersOutsideTheSlotsMeanNone()
{
    QFETCH(int, stored);
    const bool inSlots = stored >= 1 && stored <= 4;
    m_fx.dome()->clearRequestLog();
    Storage()->SetRunningPattern(kDome, stored);
    Storage()->SetRecordPattern(kDome, stored);
    const int kept = Storage()->GetRunningPattern(kDome);
    for (int r = 0; r < model()->rowCount(); ++r)
        QCOMPARE(model()->IsPlaying(r) || model()->IsRecording(r), inSlots && r == stored - 1);

    m_panel->StopPatternPlaying(QString(), kDome, false, 0, true);
    m_panel->StopPatternRecording(QString(), kDome, true);
    if (!inSlots) {
        QVERIFY(sentNothing());
        QCOMPARE(Storage()->GetRunningPattern(kDome), kept);
        QCOMPARE(Storage()->GetRecordPattern(kDome), kept);
        return;
    }
    QCOMPARE(m_fx.operations(kDome),
             (QList<DriverOperation>{DriverOperation::StopPattern, DriverOperation::StopPatternRecord}));
    QCOMPARE(Storage()->GetRunningPattern(kDome), -1);
    QCOMPARE(Storage()->GetRecordPattern(kDome), -1);
    QVERIFY(!model()->IsPlaying(2) && !model()->IsRecording(2));
    m_fx.settle();
}

void TestPreviewPTZWndPatterns::successForAnotherCameraIsIgnored_data()
{
    QTest::addColumn<unsigned>("command");
    QTest::newRow("recording starts") << unsigned(PTZ_CMD_PATTERN_RECORD_START);
    QTest::newRow("pattern plays") << unsigned(PTZ_CMD_PATTERN_RUN);
    QTest::newRow("pattern deleted") << unsigned(PTZ_CMD_PATTERN_DELETE);
}

void TestPreviewPTZWndPatterns::successForAnotherCameraIsIgnored()
{
    QFETCH(unsigned, command);
    RecordOn(m_fx.camera(kCascade), m_fx.clock(), 1);
    QSignalSpy done(m_fx.controller().get(), &CUniversalPTZController::SignalExecutionSucceeded);
    PTZControlCommand sent;
    sent.camera_index_code = kCascade.toStdString();
    sent.command = command;
    sent.param = 1;
    m_fx.controller()->Control(sent);
    QTRY_COMPARE(done.count(), 1);
    QCOMPARE(done.first().at(0).toString(), kCascade);
    QCoreApplication::processEvents();
    QVERIFY(!model()->IsPlaying(0) && !model()->IsRecording(0));
    QVERIFY(!Storage()->IsRunningPattern(kDome) && !Storage()->IsRecordPattern(kDome));
    QVERIFY(m_fx.tips.isEmpty());
}

void TestPreviewPTZWndPatterns::playStopsTheVirtualPatrolFirst()
{
    zeph_ptz_controller::CVirtualPtzControllor virtualController;
    virtualController.SetCamera(kDome);
    virtualController.SetDigitalZoomStyle(1, 0.2, 0.2, 0.6, 0.6);
    m_panel->SetPTZController(m_fx.controller(), &virtualController);
    enter(QStringLiteral("idle"));
    click(0, kPlay);
    QCOMPARE(virtualController.GetDigitalZoomStyle(), 0);
    QTRY_VERIFY(model()->IsPlaying(0));
    m_panel->SetPTZController(m_fx.controller(), nullptr);
}

void TestPreviewPTZWndPatterns::patternsSurviveRestart()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("site.sqlite"));
    auto reopen = [this, &path]() {
        m_fx.dropPanels();
        m_fx.manager()->Clear();
        site_store::CSiteStore::InstallCurrent(nullptr);
        zeph_ptz_controller::CPTZGetController::ClearCachedData();
        Storage()->Clear();
        site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::Open(path));
        m_fx.store()->setCurrentUser(kOperator);
        m_fx.manager()->Reload();
        m_panel = m_fx.newPanel();
        showList(m_panel);
    };
    reopen();
    QVERIFY(!model()->IsRecorded(2));
    m_fx.dome()->setPosition(30.0, -10.0);
    click(2, kRecord);
    QTRY_VERIFY(model()->IsRecording(2));
    pad(CPTZCloud::MiddleRight, true);
    m_fx.clock()->advance(500);
    pad(CPTZCloud::MiddleRight, false);
    click(2, kRecord);
    QTRY_VERIFY(model()->IsRecorded(2));

    reopen();
    QVERIFY(model()->IsRecorded(2));
    QVERIFY(!model()->IsRecorded(0));
    m_fx.dome()->setPosition(0.0, -10.0);
    click(2, kPlay);
    QTRY_VERIFY(model()->IsPlaying(2));
    // Back to 30 degrees at full speed, then the recorded half second to the right.
    m_fx.clock()->advance(375 + 500);
    QVERIFY(Near(m_fx.dome()->status().pan, 50.0));
}

QTEST_MAIN(TestPreviewPTZWndPatterns)
#include "tst_cpreviewptzwnd_patterns.moc"
