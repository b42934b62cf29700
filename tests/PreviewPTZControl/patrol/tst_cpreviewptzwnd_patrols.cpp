#include "support/tabfixture.h"

#include "patrol/ccruisetableeditmodel.h"
#include "patrol/ccruisetableeditview.h"
#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableview.h"

#include "direction/cptzcloud.h"
#include "quillon/citemdatarole.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using vs_ui_data_controller::CNomalMessageManager;
using zeph_ptz_controller::CUniversalPTZController;

using Triples = QVector<QVector<int>>; // preset, speed, dwell per point

// Runs a helper that checks as it goes and ends the test when it failed.
#define STEP(call)                                                                                                     \
    do {                                                                                                               \
        call;                                                                                                          \
        if (QTest::currentTestFailed())                                                                                \
            return;                                                                                                    \
    } while (false)

namespace {
constexpr auto kPlay = Quillon::ItemFirstRightPixmapRole;
constexpr auto kEdit = Quillon::ItemSecondRightPixmapRole;
constexpr auto kDelete = Quillon::ItemThirdRightPixmapRole;

CCruiseTableModel *ModelOf(CPreviewPTZWnd *panel)
{
    return qobject_cast<CCruiseTableModel *>(child<CCruiseTableView>(panel, "m_pTreeViewPatrol")->model());
}

// Running shows in the action cell's role and as the name cell's mark; both must agree.
bool Running(CPreviewPTZWnd *panel, int row)
{
    const CCruiseTableModel *model = ModelOf(panel);
    return model->index(row, 1).data(CCruiseTableModel::PatrolRunningRole).toBool()
           && model->index(row, 0).data(Quillon::ItemRunningRole).toBool();
}
} // namespace

class TestPreviewPTZWndPatrols : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fx.setUp();
        for (int n = 1; n <= 3; ++n) {
            m_fx.dome()->setPosition(40.0 * n, -10.0);
            m_fx.dome()->setPreset(n, QStringLiteral("P%1").arg(n));
        }
        m_fx.settle();
        m_panel = m_fx.newPanel();
        showList(m_panel);
    }
    void cleanup() { m_fx.tearDown(); }
    void runningPatrolEnds_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("question");
        QTest::addColumn<bool>("confirm");
        const QString stops = QStringLiteral("ThisOperationWillStocdYSojGC");
        const QString remove = QStringLiteral("ConfirmToDelete");
        QTest::newRow("pad press interrupts") << "pad" << QString() << true;
        QTest::newRow("play icon stops") << "play" << QString() << true;
        QTest::newRow("edit confirmed: saved and stopped") << "edit" << stops << true;
        QTest::newRow("edit declined: runs on, editor stays") << "edit" << stops << false;
        QTest::newRow("delete confirmed") << "delete" << remove << true;
        QTest::newRow("delete declined") << "delete" << remove << false;
    }
    void runningPatrolEnds()
    {
        QFETCH(QString, action);
        QFETCH(QString, question);
        QFETCH(bool, confirm);
        // Every panel of the camera shows the running row.
        CPreviewPTZWnd *second = m_fx.newPanel();
        showList(second);
        STEP(startSavedPatrol());
        QTRY_VERIFY(Running(second, 0));
        m_fx.answer = confirm ? CNomalMessageManager::AnswerConfirm : CNomalMessageManager::AnswerCancel;
        auto *cloud = child<CPTZCloud>(m_panel, "ptr_cloud_");
        if (action == QLatin1String("pad")) {
            emit cloud->signalPressSection(nullptr, CPTZCloud::MiddleRight);
        } else if (action == QLatin1String("play")) {
            clickIcon(0, kPlay);
        } else if (action == QLatin1String("delete")) {
            clickIcon(0, kDelete);
        } else {
            STEP(openSlot(1));
            QCOMPARE(editor()->CellComboBox(2, 2)->CurrentValue(), 4);
            editor()->CellComboBox(2, 2)->SetCurrentValue(9);
            button("pConfirmBtn")->click();
        }
        QCOMPARE(m_fx.asked, question.isEmpty() ? QStringList() : QStringList{question});
        if (!confirm) {
            QCoreApplication::processEvents();
            QCOMPARE(m_fx.dome()->pendingRequestCount(), 0);
            QVERIFY(running(0));
            QCOMPARE(m_fx.dome()->status().runningPatrol, 1);
            QCOMPARE(m_fx.dome()->patrols().first().points.at(2).dwellSeconds, 4);
            QCOMPARE(editPage()->isHidden(), action != QLatin1String("edit"));
            // A panel bound later reads the running state as well.
            CPreviewPTZWnd *late = m_fx.newPanel();
            showList(late);
            QTRY_VERIFY(Running(late, 0));
            return;
        }
        QTRY_VERIFY(!running(0) && !Running(second, 0));
        QTRY_COMPARE(m_fx.dome()->status().runningPatrol, 0);
        if (action == QLatin1String("pad"))
            emit cloud->signalReleaseSection(nullptr, CPTZCloud::MiddleRight);
        m_fx.settle();
        QVERIFY(!zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsCruising(kDome));
        QTRY_VERIFY(editPage()->isHidden() && patrolPage()->isEnabled());
        if (action == QLatin1String("delete")) {
            QTRY_VERIFY(m_fx.dome()->patrols().isEmpty() && !configured(0));
            QVERIFY(!m_fx.store()->patrol(kDome, 1));
            return;
        }
        QVERIFY(configured(0));
        if (action == QLatin1String("edit"))
            QTRY_COMPARE(m_fx.dome()->patrols().first().points.at(2).dwellSeconds, 9);
    }
    void refusalsAreTipsAndChangeNothing_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("tip");
        const QString noPatrol = QStringLiteral("PleaseSelectACruisePEPKFIMFo");
        const QString noPoint = QStringLiteral("PleaseSelectACruisePeEYjvBRk");
        QTest::newRow("play without a row") << "play" << noPatrol;
        QTest::newRow("edit without a row") << "edit" << noPatrol;
        QTest::newRow("33rd point") << "add33" << QStringLiteral("TheMaximumNumberOfCrhuRLUhpy");
        QTest::newRow("no preset of the editor's kind")
            << "addVirtual" << QStringLiteral("NoPresetPointIsAvailOJPfSsBC");
        QTest::newRow("delete point without selection") << "deletePoint" << noPoint;
    }
    void refusalsAreTipsAndChangeNothing()
    {
        QFETCH(QString, action);
        QFETCH(QString, tip);
        if (action == QLatin1String("play")) {
            m_panel->OnCruisePlay(QModelIndex(), true);
        } else if (action == QLatin1String("edit")) {
            m_panel->OnCruiseEdit(QModelIndex());
        } else {
            STEP(openSlot(2));
            if (action == QLatin1String("add33")) {
                for (int i = 0; i < 32; ++i)
                    button("pAddBtn")->click();
                QVERIFY(m_fx.tips.isEmpty());
            } else if (action == QLatin1String("addVirtual")) {
                button("btn_virtual_preset")->click();
                QTRY_VERIFY(patrolPage()->isEnabled());
            } else {
                fillPath({{1, 10, 10}, {2, 10, 10}});
                editor()->setCurrentIndex(QModelIndex());
            }
            const int pointsBefore = editor()->GetEditModel()->PointCount();
            if (action.startsWith(QLatin1String("add")))
                button("pAddBtn")->click();
            else if (action == QLatin1String("deletePoint"))
                m_panel->OnCruiseDelPreset();
            else
                m_panel->OnCruiseUpPreset();
            QCOMPARE(editor()->GetEditModel()->PointCount(), pointsBefore);
        }
        QCOMPARE(m_fx.tips, (QList<QPair<QString, int>>{qMakePair(tip, 2)}));
        QCOMPARE(m_fx.dome()->status().runningPatrol, 0);
        QVERIFY(m_fx.dome()->patrols().isEmpty());
    }
    void hostFailureKeepsTheEditorOpen()
    {
        STEP(openSlot(1));
        fillPath({{2, 20, 5}, {3, 20, 6}});
        // Meanwhile someone else stores a path in that slot: adding now fails in the host.
        site_store::PatrolRecord record;
        record.cameraId = kDome;
        record.number = 1;
        record.type = ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL;
        QVERIFY(m_fx.store()->upsertPatrol(record));
        button("pConfirmBtn")->click();
        const QString prefix = QStringLiteral("FailedToModifyCruiseskhaYaoN ");
        QCOMPARE(m_fx.tips.size(), 1);
        QVERIFY(m_fx.tips.first().first.startsWith(prefix) && m_fx.tips.first().first.size() > prefix.size()
                && m_fx.tips.first().second == 2);
        QVERIFY(!editPage()->isHidden() && patrolPage()->isEnabled());
        QCOMPARE(editor()->GetPoints().at(1).dwell_time, 6);
        QVERIFY(m_fx.dome()->patrols().isEmpty());
    }
    void deviceRefusalKeepsTheMark()
    {
        STEP(savePath(1, {{1, 40, 2}, {2, 40, 3}}));
        m_fx.dome()->failOperation(DriverOperation::StartPatrol, QStringLiteral("motor fault"));
        QSignalSpy finished(m_fx.controller().get(), &CUniversalPTZController::signalCruiseFinished);
        clickIcon(0, kPlay);
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY(!running(0));
        // Running, a refused stop leaves it marked as running.
        clickIcon(0, kPlay);
        QTRY_VERIFY(running(0));
        m_fx.dome()->failOperation(DriverOperation::StopPatrol, QStringLiteral("motor fault"));
        finished.clear();
        clickIcon(0, kPlay);
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY(running(0));
    }
    void missingAnswerGivesTheControlsBack()
    {
        STEP(openSlot(1));
        fillPath({{1, 20, 5}});
        m_fx.controller()->SetRequestTimeout(100);
        m_fx.dome()->setLatency(600000);
        QWidget *right = child<QWidget>(m_panel, "PreviewPtzControl_ptr_ptz_panel_right_");
        button("pConfirmBtn")->click();
        QVERIFY(!right->isEnabled());
        QTRY_VERIFY(right->isEnabled());
        QVERIFY(child<QWidget>(m_panel, "PreviewPtzControl_ptr_ptz_panel_left_")->isEnabled());
        QVERIFY(editPage()->isHidden() && patrolPage()->isEnabled());
    }
    // The camera skips a point whose preset is gone; the editor keeps it so it can be fixed.
    void deletedPresetStaysInThePath()
    {
        STEP(savePath(1, {{1, 40, 1}, {2, 40, 1}, {3, 40, 1}}));
        m_fx.dome()->removePreset(2);
        m_fx.settle();
        showList(m_panel);
        STEP(openSlot(1));
        QCOMPARE(editor()->GetEditModel()->PointCount(), 3);
        QCOMPARE(editor()->CellComboBox(1, 0)->CurrentValue(), 2);
        QCOMPARE(editor()->CellComboBox(1, 0)->currentText(), QStringLiteral("PatrolPointPresetMissing2"));
    }
    void answersForAnotherCameraOrPatrolAreIgnored()
    {
        STEP(startSavedPatrol());
        ptz_plugin_protocol::CruiseControlRequest request;
        request.camera_index_code = "another-camera";
        request.operation = "CruiseRouteControl";
        request.cruise_index = 2;
        request.action = 0;
        m_panel->OnCruiseControlFinish(request, QString());
        QVERIFY(!running(1));
        // For this camera, a stop of another patrol or of patrol 0 leaves the running row.
        request.camera_index_code = kDome.toStdString();
        request.operation = "CruiseRouteControl";
        request.action = 1;
        for (int number : {2, 0}) {
            request.cruise_index = number;
            m_panel->OnCruiseControlFinish(request, QString());
            QVERIFY(running(0));
        }
    }
    // Virtual presets are parts of the picture kept by the client; their patrol zooms the picture.
    void virtualPatrolShowsTheFirstArea()
    {
        ptz_plugin_protocol::PresetInfo preset = Preset(11, ptz_plugin_protocol::PRESET_TYPE_VIRTUAL, QString());
        preset.pan = 90.0;
        preset.tilt = -45.0;
        preset.zoom = 4.0;
        QVERIFY(zeph_ptz_controller::CPTZGetController().AddOnePreset(kDome, preset));
        zeph_ptz_controller::CVirtualPtzControllor virtualController;
        m_fx.dropPanels();
        m_panel = m_fx.newPanel(&virtualController);
        showList(m_panel);

        STEP(openSlot(3));
        button("btn_virtual_preset")->click();
        QTRY_VERIFY(patrolPage()->isEnabled());
        QCOMPARE(editor()->GetEditModel()->GetMinDwellTime(), 15);
        fillPath({{11, 30, 20}});
        button("pConfirmBtn")->click();
        QTRY_VERIFY(configured(2) && editPage()->isHidden());

        QSignalSpy zoom(&virtualController, &zeph_ptz_controller::CVirtualPtzControllor::SignalDigitalZoomStyleChanged);
        clickIcon(2, kPlay);
        QTRY_VERIFY(running(2));
        QCOMPARE(zoom.count(), 1);
        QVERIFY(zoom.last().at(1).toRectF().center().x() < 0.5); // pan 90: the left half of the picture
        QVERIFY(m_fx.dome()->patrols().isEmpty() && m_fx.dome()->status().runningPatrol == 0);
        clickIcon(2, kPlay);
        QTRY_VERIFY(!running(2));
        QVERIFY(!virtualController.IsRunningPatrol());
        m_fx.dropPanels();
    }

private:
    CCruiseTableEditView *editor() const { return child<CCruiseTableEditView>(m_panel, "m_pTreeViewPatrolEdit"); }
    // The lock strip reuses some button names: look in the patrol page.
    QPushButton *button(const char *name) const { return child<QPushButton>(patrolPage(), name); }
    QWidget *editPage() const { return child<QWidget>(m_panel, "pPatrolModifyFrame"); }
    QWidget *patrolPage() const { return child<QWidget>(m_panel, "m_pTabCruise"); }
    bool running(int row) const { return Running(m_panel, row); }
    bool configured(int row) const
    {
        return ModelOf(m_panel)->index(row, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool();
    }
    // The list is read again whenever the tab is entered; the editor needs the presets.
    void showList(CPreviewPTZWnd *panel)
    {
        TabFixture::showTab(panel, "m_pTabCruise");
        QTRY_COMPARE(m_fx.dome()->pendingRequestCount(), 0);
        ptz_plugin_protocol::PresetInfo first;
        QTRY_VERIFY(zeph_ptz_controller::CPTZGetController::GetPresetByIndexSync(kDome, first, 1));
    }
    void clickIcon(int row, Quillon::CItemDataRole role)
    {
        emit child<CCruiseTableView>(m_panel, "m_pTreeViewPatrol")
            ->signalClickedPixmap(ModelOf(m_panel)->index(row, 1), role);
    }
    void openSlot(int slot)
    {
        clickIcon(slot - 1, kEdit);
        QTRY_VERIFY(!editPage()->isHidden() && patrolPage()->isEnabled());
    }
    void fillPath(const Triples &points)
    {
        for (const auto &point : points) {
            button("pAddBtn")->click();
            const int row = editor()->GetEditModel()->PointCount() - 1;
            for (int column = 0; column < 3; ++column)
                editor()->CellComboBox(row, column)->SetCurrentValue(point.at(column));
        }
    }
    void savePath(int slot, const Triples &points)
    {
        STEP(openSlot(slot));
        fillPath(points);
        button("pConfirmBtn")->click();
        QTRY_VERIFY(configured(slot - 1)
                    && child<QWidget>(m_panel, "PreviewPtzControl_ptr_ptz_panel_right_")->isEnabled());
        QTRY_COMPARE(m_fx.dome()->pendingRequestCount(), 0);
        QVERIFY(editPage()->isHidden());
    }
    // The path entered in the editor is the one the camera runs.
    void startSavedPatrol()
    {
        const Triples path{{1, 40, 2}, {2, 40, 3}, {3, 40, 4}};
        STEP(savePath(1, path));
        Triples onDome;
        const auto patrols = m_fx.dome()->patrols();
        for (const auto &point : patrols.value(0).points)
            onDome << QVector<int>{point.preset, point.speed, point.dwellSeconds};
        QCOMPARE(onDome, path);
        clickIcon(0, kPlay);
        QTRY_VERIFY(running(0) && m_fx.dome()->status().runningPatrol == 1);
    }

    TabFixture m_fx;
    CPreviewPTZWnd *m_panel = nullptr;
};

QTEST_MAIN(TestPreviewPTZWndPatrols)
#include "tst_cpreviewptzwnd_patrols.moc"
