#include "support/tabfixture.h"

#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableview.h"

#include "direction/cptzcloud.h"
#include "quillon/citemdatarole.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QSignalSpy>
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
}
} // namespace

class TestPreviewPTZWndPatterns : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fx.setUp();
        m_panel = m_fx.newPanel();
        showList(m_panel);
    }
    void cleanup() { m_fx.tearDown(); }

    // Recorded, played and stopped from the list; a second panel of the camera shows the same rows.
    void recordedMovementPlaysAndStops()
    {
        CPreviewPTZWnd *other = m_fx.newPanel();
        showList(other);
        auto *dome = m_fx.dome();
        dome->setPosition(100.0, -20.0);
        click(0, kRecord);
        QTRY_VERIFY(model()->IsRecording(0));
        // Speed 20 turns 40 degrees a second.
        pad(CPTZCloud::MiddleLeft, true);
        m_fx.clock()->advance(1000);
        pad(CPTZCloud::MiddleLeft, false);
        QVERIFY(std::abs(dome->status().pan - 60.0) < 1.0);
        click(0, kRecord);
        QTRY_VERIFY(model()->IsRecorded(0) && !model()->IsRecording(0));
        QCOMPARE(dome->recordedPatterns(), QVector<int>{1});

        click(0, kPlay);
        QTRY_VERIFY(model()->IsPlaying(0) && ModelOf(other)->IsPlaying(0));
        QCOMPARE(dome->status().runningPattern, 1);
        m_fx.clock()->advance(500);
        ViewOf(other)->OnTableViewClicked(ModelOf(other)->index(0, 1), Quillon::ItemFirstRightPixmapRole);
        QTRY_VERIFY(!model()->IsPlaying(0) && !ModelOf(other)->IsPlaying(0));
        QCOMPARE(dome->status().runningPattern, 0);
        QVERIFY(m_fx.tips.isEmpty());
        // A panel bound later reads the shared state.
        click(0, kPlay);
        QTRY_VERIFY(model()->IsPlaying(0));
        CPreviewPTZWnd *late = m_fx.newPanel();
        showList(late);
        QVERIFY(ModelOf(late)->IsPlaying(0));
    }
    void deletingAPlayingPatternStopsItFirst_data()
    {
        QTest::addColumn<bool>("confirm");
        QTest::newRow("confirmed") << true;
        QTest::newRow("declined") << false;
    }
    void deletingAPlayingPatternStopsItFirst()
    {
        QFETCH(bool, confirm);
        RecordOn(m_fx.dome(), m_fx.clock(), 3);
        enter(QStringLiteral("playing"));
        m_fx.answer = confirm ? CNomalMessageManager::AnswerConfirm : CNomalMessageManager::AnswerCancel;
        click(0, kDelete);
        QCOMPARE(m_fx.asked, QStringList{QStringLiteral("ConfirmToDelete")});
        if (!confirm) {
            QVERIFY(sentNothing());
            QVERIFY(model()->IsPlaying(0));
            return;
        }
        m_fx.settle();
        QCOMPARE(m_fx.operations(kDome).mid(0, 2),
                 (QList<DriverOperation>{DriverOperation::StopPattern, DriverOperation::RemovePattern}));
        QTRY_VERIFY(!model()->IsRecorded(0));
        QVERIFY(!model()->IsPlaying(0) && model()->IsRecorded(2));
        QCOMPARE(m_fx.dome()->recordedPatterns(), QVector<int>{3});
        QVERIFY(m_fx.tipped(QStringLiteral("TrajectoryDeletionSusDBpbcFY"), 3));
    }
    void padPressInterruptsPlayback_data()
    {
        QTest::addColumn<bool>("resume");
        QTest::newRow("no resume") << false;
        QTest::newRow("resume after the wait") << true;
    }
    void padPressInterruptsPlayback()
    {
        QFETCH(bool, resume);
        m_fx.store()->setBoolSetting(site_store::CSiteStore::kResumeCruiseAfterInterrupt, resume);
        Storage()->SetInterruptWaitTime(200);
        enter(QStringLiteral("playing"));

        pad(CPTZCloud::MiddleRight, true);
        QVERIFY(!model()->IsPlaying(0));
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
    // Refused by the panel (a tip, nothing sent) or by the camera (its message): nothing changes.
    void refusalsChangeNothing_data()
    {
        QTest::addColumn<QString>("before"); // pattern 1 "idle", "recording" or "playing"; pattern 2 recorded
        QTest::addColumn<int>("role");
        QTest::addColumn<int>("failing"); // the operation the camera refuses, -1 for a refusal by the panel
        QTest::addColumn<QString>("tip");
        const QString noRow = QStringLiteral("PleaseSelectAPresetPrknxDNBA");
        const QString fault = QStringLiteral("Motor fault");
        QTest::newRow("play while recording") << "recording" << kPlay << -1 << kRecordingTip;
        QTest::newRow("record while recording") << "recording" << kRecord << -1 << kRecordingTip;
        QTest::newRow("delete while recording") << "recording" << kDelete << -1 << kRecordingTip;
        QTest::newRow("play without a row") << "idle" << kPlay << -1 << noRow;
        QTest::newRow("record without a row") << "idle" << kRecord << -1 << noRow;
        QTest::newRow("delete without a row") << "idle" << kDelete << -1 << noRow;
        QTest::newRow("camera refuses to record")
            << "idle" << kRecord << int(DriverOperation::StartPatternRecord) << fault;
        QTest::newRow("camera refuses to end recording")
            << "recording" << kRecord << int(DriverOperation::StopPatternRecord) << fault;
        QTest::newRow("camera refuses to play") << "idle" << kPlay << int(DriverOperation::PlayPattern) << fault;
        QTest::newRow("camera refuses to stop") << "playing" << kPlay << int(DriverOperation::StopPattern) << fault;
        QTest::newRow("camera refuses to delete") << "idle" << kDelete << int(DriverOperation::RemovePattern) << fault;
    }
    void refusalsChangeNothing()
    {
        QFETCH(QString, before);
        QFETCH(int, role);
        QFETCH(int, failing);
        QFETCH(QString, tip);
        RecordOn(m_fx.dome(), m_fx.clock(), 2);
        enter(before);
        const int recordStored = Storage()->GetRecordPattern(kDome);
        const int runningStored = Storage()->GetRunningPattern(kDome);
        if (failing >= 0) {
            m_fx.dome()->failOperation(DriverOperation(failing), tip);
            click(0, role);
            m_fx.settle();
            QTRY_VERIFY(m_fx.tipped(tip, 0));
        } else {
            const QModelIndex index = before == QLatin1String("recording") ? model()->index(1, 1) : QModelIndex();
            if (role == kPlay)
                m_panel->OnPatternPlayCtl(index, true);
            else if (role == kRecord)
                m_panel->OnPatternRecordCtl(index, true);
            else
                m_panel->OnPatternDeleteControl(index);
            QCOMPARE(m_fx.tips, (QList<QPair<QString, int>>{qMakePair(tip, 2)}));
            QVERIFY(sentNothing());
            QVERIFY(m_fx.asked.isEmpty());
        }
        QCOMPARE(model()->IsRecording(0), before == QLatin1String("recording"));
        QCOMPARE(model()->IsPlaying(0), before == QLatin1String("playing"));
        QVERIFY(model()->IsRecorded(0) && !model()->IsPlaying(1));
        QCOMPARE(Storage()->GetRecordPattern(kDome), recordStored);
        QCOMPARE(Storage()->GetRunningPattern(kDome), runningStored);
    }
    // Pattern numbers run from 1 to 4: a stored 5 marks no row and stops nothing.
    void storedNumberOutsideTheSlotsMeansNone()
    {
        m_fx.dome()->clearRequestLog();
        Storage()->SetRunningPattern(kDome, 5);
        Storage()->SetRecordPattern(kDome, 5);
        for (int r = 0; r < model()->rowCount(); ++r)
            QVERIFY(!model()->IsPlaying(r) && !model()->IsRecording(r));
        m_panel->StopPatternPlaying(QString(), kDome, false, 0, true);
        m_panel->StopPatternRecording(QString(), kDome, true);
        QVERIFY(sentNothing());
    }
    void successForAnotherCameraIsIgnored_data()
    {
        QTest::addColumn<unsigned>("command");
        QTest::newRow("recording starts") << unsigned(PTZ_CMD_PATTERN_RECORD_START);
        QTest::newRow("pattern plays") << unsigned(PTZ_CMD_PATTERN_RUN);
        QTest::newRow("pattern deleted") << unsigned(PTZ_CMD_PATTERN_DELETE);
    }
    void successForAnotherCameraIsIgnored()
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
        QCoreApplication::processEvents();
        QVERIFY(!model()->IsPlaying(0) && !model()->IsRecording(0));
        QVERIFY(!Storage()->IsRunningPattern(kDome) && !Storage()->IsRecordPattern(kDome));
        QVERIFY(m_fx.tips.isEmpty());
    }
    void playStopsTheVirtualPatrolFirst()
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

private:
    CPatternTableModel *model() const { return ModelOf(m_panel); }
    void click(int row, int role)
    {
        ViewOf(m_panel)->OnTableViewClicked(model()->index(row, 1), Quillon::CItemDataRole(role));
    }
    // Shows the tab and waits for the camera's list: the rows are enabled once it has arrived.
    void showList(CPreviewPTZWnd *panel)
    {
        TabFixture::showTab(panel, "m_pTabPatten");
        QTRY_VERIFY(ModelOf(panel)->flags(ModelOf(panel)->index(0, 1)) & Qt::ItemIsEnabled);
        m_fx.settle();
    }
    // Pattern 1 recorded on the dome and shown; then, by `state`, recorded again or played from the list.
    void enter(const QString &state)
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
    void pad(CPTZCloud::enClickSection section, bool press)
    {
        auto *cloud = child<CPTZCloud>(m_panel, "ptr_cloud_");
        if (press)
            emit cloud->signalPressSection(nullptr, section);
        else
            emit cloud->signalReleaseSection(nullptr, section);
        m_fx.settle();
    }
    bool sentNothing() const
    {
        return m_fx.dome()->requestLog().isEmpty() && m_fx.controller()->PendingRequestCount() == 0;
    }

    TabFixture m_fx;
    CPreviewPTZWnd *m_panel = nullptr;
};

QTEST_MAIN(TestPreviewPTZWndPatterns)
#include "tst_cpreviewptzwnd_patterns.moc"
