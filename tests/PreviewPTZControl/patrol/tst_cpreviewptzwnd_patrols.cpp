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

#include <cmath>

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
constexpr double kTilt = -10.0;
const double kPans[] = {0.0, 20.0, 60.0, 100.0}; // preset n stands at kPans[n]
constexpr auto kPlay = Quillon::ItemFirstRightPixmapRole;
constexpr auto kEdit = Quillon::ItemSecondRightPixmapRole;
constexpr auto kDelete = Quillon::ItemThirdRightPixmapRole;

CCruiseTableModel *ModelOf(CPreviewPTZWnd *panel)
{
    return qobject_cast<CCruiseTableModel *>(child<CCruiseTableView>(panel, "m_pTreeViewPatrol")->model());
}

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
    void init();
    void cleanup() { m_fx.tearDown(); }

    void devicePatrolVisitsPresetsInTurn();
    void stopByPadOrList_data();
    void stopByPadOrList();
    void editingTheRunningPatrolAsksFirst_data();
    void editingTheRunningPatrolAsksFirst();
    void deleteAfterConfirmation_data();
    void deleteAfterConfirmation();
    void secondPanelShowsTheRunningRow();
    void refusalsAreTipsAndChangeNothing_data();
    void refusalsAreTipsAndChangeNothing();
    void hostFailureKeepsTheEditorOpen();
    void deviceRefusalKeepsTheMark();
    void missingAnswerGivesTheControlsBack();
    void deletedPresetIsSkippedAndShown();
    void answersForAnotherCameraAreIgnored();
    void virtualPatrolShowsTheAreasInOrder();

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
    bool at(int preset) const
    {
        const auto status = m_fx.dome()->status();
        return std::abs(status.pan - kPans[preset]) < 0.01 && !status.panTiltMoving;
    }
    void presetRequest(const char *operation, int number);
    void showList(CPreviewPTZWnd *panel);
    void clickIcon(int row, Quillon::CItemDataRole role, CPreviewPTZWnd *panel = nullptr);
    void openSlot(int slot);
    void fillPath(const Triples &points);
    void savePath(int slot, const Triples &points);
    void startSavedPatrol();
    // Advances the simulated time until the camera stands at the preset; the time it took, or -1.
    int advanceUntilAt(int preset, int maxMs);

    TabFixture m_fx;
    CPreviewPTZWnd *m_panel = nullptr;
};

void TestPreviewPTZWndPatrols::init()
{
    m_fx.setUp();
    for (int n = 1; n <= 3; ++n) {
        m_fx.dome()->setPosition(kPans[n], kTilt);
        presetRequest("SetPreset", n);
    }
    m_fx.dome()->setPosition(kPans[0], kTilt);
    m_panel = m_fx.newPanel();
    showList(m_panel);
}

void TestPreviewPTZWndPatrols::presetRequest(const char *operation, int number)
{
    ptz_plugin_protocol::PresetControlRequest request;
    request.operation = operation;
    request.camera_index_code = kDome.toStdString();
    request.preset_index = number;
    request.preset_name = "P" + std::to_string(number);
    QSignalSpy done(m_fx.controller().get(), &CUniversalPTZController::signalPresetFinished);
    m_fx.controller()->Preset(request);
    QTRY_COMPARE(done.count(), 1);
    QCOMPARE(done.first().at(1).toString(), QString());
}

// The list is read again whenever the tab is entered; the editor needs the presets.
void TestPreviewPTZWndPatrols::showList(CPreviewPTZWnd *panel)
{
    TabFixture::showTab(panel, "m_pTabCruise");
    QTRY_COMPARE(m_fx.dome()->pendingRequestCount(), 0);
    ptz_plugin_protocol::PresetInfo first;
    QTRY_VERIFY(zeph_ptz_controller::CPTZGetController::GetPresetByIndexSync(kDome, first, 1));
}

void TestPreviewPTZWndPatrols::clickIcon(int row, Quillon::CItemDataRole role, CPreviewPTZWnd *panel)
{
    panel = panel ? panel : m_panel;
    emit child<CCruiseTableView>(panel, "m_pTreeViewPatrol")->signalClickedPixmap(ModelOf(panel)->index(row, 1), role);
}

void TestPreviewPTZWndPatrols::openSlot(int slot)
{
    clickIcon(slot - 1, kEdit);
    QTRY_VERIFY(!editPage()->isHidden() && patrolPage()->isEnabled());
}

void TestPreviewPTZWndPatrols::fillPath(const Triples &points)
{
    for (const auto &point : points) {
        button("pAddBtn")->click();
        const int row = editor()->GetEditModel()->PointCount() - 1;
        for (int column = 0; column < 3; ++column)
            editor()->CellComboBox(row, column)->SetCurrentValue(point.at(column));
    }
}

void TestPreviewPTZWndPatrols::savePath(int slot, const Triples &points)
{
    STEP(openSlot(slot));
    fillPath(points);
    button("pConfirmBtn")->click();
    QTRY_VERIFY(configured(slot - 1) && child<QWidget>(m_panel, "PreviewPtzControl_ptr_ptz_panel_right_")->isEnabled());
    QTRY_COMPARE(m_fx.dome()->pendingRequestCount(), 0);
    QVERIFY(editPage()->isHidden());
}

void TestPreviewPTZWndPatrols::startSavedPatrol()
{
    STEP(savePath(1, {{1, 40, 2}, {2, 40, 3}, {3, 40, 4}}));
    clickIcon(0, kPlay);
    QTRY_VERIFY(running(0) && m_fx.dome()->status().runningPatrol == 1);
}

int TestPreviewPTZWndPatrols::advanceUntilAt(int preset, int maxMs)
{
    for (int elapsed = 0; elapsed <= maxMs; elapsed += 20) {
        if (at(preset))
            return elapsed;
        m_fx.clock()->advance(20);
    }
    return -1;
}

void TestPreviewPTZWndPatrols::devicePatrolVisitsPresetsInTurn()
{
    STEP(startSavedPatrol());
    const auto patrols = m_fx.dome()->patrols();
    QCOMPARE(patrols.size(), 1);
    QCOMPARE(patrols.first().points.size(), 3);
    QCOMPARE(patrols.first().points.at(2).dwellSeconds, 4);

    // 80 degrees a second at speed 40: each hop takes well under a second; each dwell holds.
    QVERIFY(advanceUntilAt(1, 1000) >= 0);
    const int dwellMs[] = {0, 2000, 3000, 4000};
    for (int preset : {1, 2, 3}) {
        m_fx.clock()->advance(dwellMs[preset] - 200);
        QVERIFY2(at(preset), qPrintable(QStringLiteral("left preset %1 early").arg(preset)));
        const int next = preset % 3 + 1;
        const int hop = advanceUntilAt(next, 2000);
        QVERIFY2(hop >= 200, qPrintable(QStringLiteral("preset %1 reached after %2 ms").arg(next).arg(hop)));
    }
    QVERIFY(running(0));
}

void TestPreviewPTZWndPatrols::stopByPadOrList_data()
{
    QTest::addColumn<bool>("pad");
    QTest::newRow("pad press interrupts") << true;
    QTest::newRow("play icon stops") << false;
}

void TestPreviewPTZWndPatrols::stopByPadOrList()
{
    QFETCH(bool, pad);
    STEP(startSavedPatrol());
    auto *cloud = child<CPTZCloud>(m_panel, "ptr_cloud_");
    if (pad)
        emit cloud->signalPressSection(nullptr, CPTZCloud::MiddleRight);
    else
        clickIcon(0, kPlay);
    QTRY_VERIFY(!running(0));
    QTRY_COMPARE(m_fx.dome()->status().runningPatrol, 0);
    if (pad)
        emit cloud->signalReleaseSection(nullptr, CPTZCloud::MiddleRight);
    m_fx.settle();
    QVERIFY(!zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsCruising(kDome));
    QVERIFY(configured(0));
}

void TestPreviewPTZWndPatrols::editingTheRunningPatrolAsksFirst_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::newRow("declined: keeps running, editor stays") << false;
    QTest::newRow("confirmed: saved and stopped") << true;
}

void TestPreviewPTZWndPatrols::editingTheRunningPatrolAsksFirst()
{
    QFETCH(bool, confirm);
    STEP(startSavedPatrol());
    STEP(openSlot(1));
    QCOMPARE(editor()->GetEditModel()->PointCount(), 3);
    QCOMPARE(editor()->CellComboBox(2, 2)->CurrentValue(), 4);
    editor()->CellComboBox(2, 2)->SetCurrentValue(9);
    m_fx.answer = confirm ? CNomalMessageManager::AnswerConfirm : CNomalMessageManager::AnswerCancel;
    button("pConfirmBtn")->click();
    QCOMPARE(m_fx.asked, QStringList{QStringLiteral("ThisOperationWillStocdYSojGC")});
    if (!confirm) {
        QVERIFY(!editPage()->isHidden());
        QVERIFY(running(0));
        QCOMPARE(editor()->GetEditModel()->PointCount(), 3);
        QCOMPARE(m_fx.dome()->patrols().first().points.at(2).dwellSeconds, 4);
        QCOMPARE(m_fx.dome()->status().runningPatrol, 1);
        return;
    }
    QTRY_COMPARE(m_fx.dome()->patrols().first().points.at(2).dwellSeconds, 9);
    QTRY_VERIFY(editPage()->isHidden());
    QCOMPARE(m_fx.dome()->status().runningPatrol, 0);
    QVERIFY(!running(0));
}

void TestPreviewPTZWndPatrols::deleteAfterConfirmation_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::addColumn<bool>("wasRunning");
    QTest::newRow("declined") << false << false;
    QTest::newRow("confirmed") << true << false;
    QTest::newRow("confirmed while running") << true << true;
}

void TestPreviewPTZWndPatrols::deleteAfterConfirmation()
{
    QFETCH(bool, confirm);
    QFETCH(bool, wasRunning);
    if (wasRunning)
        STEP(startSavedPatrol());
    else
        STEP(savePath(1, {{1, 40, 2}, {2, 40, 3}}));
    m_fx.answer = confirm ? CNomalMessageManager::AnswerConfirm : CNomalMessageManager::AnswerCancel;
    clickIcon(0, kDelete);
    QCOMPARE(m_fx.asked, QStringList{QStringLiteral("ConfirmToDelete")});
    if (!confirm) {
        QCoreApplication::processEvents();
        QCOMPARE(m_fx.dome()->pendingRequestCount(), 0);
        QCOMPARE(m_fx.dome()->patrols().size(), 1);
        QVERIFY(configured(0));
        return;
    }
    QTRY_VERIFY(m_fx.dome()->patrols().isEmpty());
    QTRY_VERIFY(!configured(0) && patrolPage()->isEnabled());
    QVERIFY(!running(0));
    QCOMPARE(m_fx.dome()->status().runningPatrol, 0);
    QVERIFY(!m_fx.store()->patrol(kDome, 1));
}

void TestPreviewPTZWndPatrols::secondPanelShowsTheRunningRow()
{
    CPreviewPTZWnd *second = m_fx.newPanel();
    showList(second);
    STEP(startSavedPatrol());
    QTRY_VERIFY(Running(second, 0));
    // Stopping from the second panel clears the first.
    showList(second);
    QTRY_VERIFY(ModelOf(second)->index(0, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool());
    clickIcon(0, kPlay, second);
    QTRY_VERIFY(!running(0));
    QVERIFY(!Running(second, 0));
    // A panel bound later reads the state as well.
    clickIcon(0, kPlay);
    QTRY_VERIFY(running(0));
    CPreviewPTZWnd *third = m_fx.newPanel();
    showList(third);
    QTRY_VERIFY(Running(third, 0));
}

void TestPreviewPTZWndPatrols::refusalsAreTipsAndChangeNothing_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("tip");
    QTest::newRow("play without a row") << "play"
                                        << "PleaseSelectACruisePEPKFIMFo";
    QTest::newRow("edit without a row") << "edit"
                                        << "PleaseSelectACruisePEPKFIMFo";
    QTest::newRow("33rd point") << "add33"
                                << "TheMaximumNumberOfCrhuRLUhpy";
    QTest::newRow("no preset of the editor's kind") << "addVirtual"
                                                    << "NoPresetPointIsAvailOJPfSsBC";
    QTest::newRow("delete point without selection") << "deletePoint"
                                                    << "PleaseSelectACruisePeEYjvBRk";
    QTest::newRow("move point without selection") << "movePoint"
                                                  << "PleaseSelectACruisePeEYjvBRk";
}

void TestPreviewPTZWndPatrols::refusalsAreTipsAndChangeNothing()
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

void TestPreviewPTZWndPatrols::hostFailureKeepsTheEditorOpen()
{
    STEP(openSlot(1));
    fillPath({{2, 20, 5}, {3, 20, 6}});
    // Meanwhile someone else stores a path in that slot: adding now fails in the host.
    site_store::PatrolRecord record;
    record.cameraId = kDome;
    record.number = 1;
    record.type = ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL;
    record.name = QStringLiteral("elsewhere");
    QVERIFY(m_fx.store()->upsertPatrol(record));
    button("pConfirmBtn")->click();
    const QString prefix = QStringLiteral("FailedToModifyCruiseskhaYaoN ");
    QCOMPARE(m_fx.tips.size(), 1);
    QVERIFY(m_fx.tips.first().first.startsWith(prefix) && m_fx.tips.first().first.size() > prefix.size());
    QCOMPARE(m_fx.tips.first().second, 2);
    QVERIFY(!editPage()->isHidden());
    QVERIFY(patrolPage()->isEnabled());
    QCOMPARE(editor()->GetPoints().size(), size_t(2));
    QCOMPARE(editor()->GetPoints().at(1).dwell_time, 6);
    QVERIFY(m_fx.dome()->patrols().isEmpty());
}

void TestPreviewPTZWndPatrols::deviceRefusalKeepsTheMark()
{
    STEP(savePath(1, {{1, 40, 2}, {2, 40, 3}}));
    m_fx.dome()->failOperation(DriverOperation::StartPatrol, QStringLiteral("motor fault"));
    QSignalSpy finished(m_fx.controller().get(), &CUniversalPTZController::signalCruiseFinished);
    clickIcon(0, kPlay);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(!finished.first().at(1).toString().isEmpty());
    QVERIFY(!running(0));
    QCOMPARE(m_fx.dome()->status().runningPatrol, 0);

    // Running, a refused stop leaves it marked as running.
    clickIcon(0, kPlay);
    QTRY_VERIFY(running(0));
    m_fx.dome()->failOperation(DriverOperation::StopPatrol, QStringLiteral("motor fault"));
    finished.clear();
    clickIcon(0, kPlay);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(running(0));
}

void TestPreviewPTZWndPatrols::missingAnswerGivesTheControlsBack()
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
    QVERIFY(editPage()->isHidden());
    QVERIFY(patrolPage()->isEnabled());
}

void TestPreviewPTZWndPatrols::deletedPresetIsSkippedAndShown()
{
    STEP(savePath(1, {{1, 40, 1}, {2, 40, 1}, {3, 40, 1}}));
    presetRequest("DelPreset", 2);
    clickIcon(0, kPlay);
    QTRY_VERIFY(running(0));
    QVERIFY(advanceUntilAt(1, 1000) >= 0);
    // From preset 1 straight on to preset 3, never stopping at the gone one.
    for (int elapsed = 0; elapsed < 3000 && !at(3); elapsed += 20) {
        QVERIFY(!at(2));
        m_fx.clock()->advance(20);
    }
    QVERIFY(at(3));

    // The editor shows the point so it can be fixed.
    showList(m_panel);
    STEP(openSlot(1));
    QCOMPARE(editor()->GetEditModel()->PointCount(), 3);
    CCruiseComboBox *gone = editor()->CellComboBox(1, 0);
    QCOMPARE(gone->CurrentValue(), 2);
    QVERIFY(gone->currentText() != QLatin1String("P2"));
}

void TestPreviewPTZWndPatrols::answersForAnotherCameraAreIgnored()
{
    STEP(savePath(1, {{1, 40, 2}}));
    ptz_plugin_protocol::CruiseControlRequest request;
    request.camera_index_code = "another-camera";
    request.operation = "CruiseRouteControl";
    request.cruise_index = 1;
    request.action = 0;
    m_panel->OnCruiseControlFinish(request, QString());
    QVERIFY(!running(0));
    request.operation = "DelCruiseRoute";
    m_panel->OnCruiseControlFinish(request, QString());
    QVERIFY(configured(0));
    // Patrol number 0 changes no row.
    request.camera_index_code = kDome.toStdString();
    request.operation = "CruiseRouteControl";
    request.cruise_index = 0;
    m_panel->OnCruiseControlFinish(request, QString());
    for (int row = 0; row < CCruiseTableModel::kRowCount; ++row)
        QVERIFY(!running(row));
}

void TestPreviewPTZWndPatrols::virtualPatrolShowsTheAreasInOrder()
{
    // Two virtual presets: parts of the picture kept by the client.
    zeph_ptz_controller::CPTZGetController getter;
    for (int n : {11, 12}) {
        ptz_plugin_protocol::PresetInfo preset = Preset(n, ptz_plugin_protocol::PRESET_TYPE_VIRTUAL, QString());
        preset.pan = n == 11 ? 90.0 : 270.0;
        preset.tilt = -45.0;
        preset.zoom = 4.0;
        QVERIFY(getter.AddOnePreset(kDome, preset));
    }
    zeph_ptz_controller::CVirtualPtzControllor virtualController;
    m_fx.dropPanels();
    m_panel = m_fx.newPanel(&virtualController);
    showList(m_panel);

    STEP(openSlot(3));
    button("btn_virtual_preset")->click();
    QTRY_VERIFY(patrolPage()->isEnabled());
    QVERIFY(editor()->isColumnHidden(CCruiseTableEditModel::kColumnSpeed));
    QCOMPARE(editor()->GetEditModel()->GetMinDwellTime(), 15);
    fillPath({{11, 30, 15}, {12, 30, 20}});
    button("pConfirmBtn")->click();
    QTRY_VERIFY(configured(2) && editPage()->isHidden());
    QCOMPARE(m_fx.store()->patrol(kDome, 3)->type, int(ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL));
    QVERIFY(m_fx.dome()->patrols().isEmpty());

    QSignalSpy zoom(&virtualController, &zeph_ptz_controller::CVirtualPtzControllor::SignalDigitalZoomStyleChanged);
    clickIcon(2, kPlay);
    QTRY_VERIFY(running(2));
    QCOMPARE(zoom.count(), 1);
    QVERIFY(zoom.last().at(1).toRectF().center().x() < 0.5); // pan 90: the left half of the picture
    // The dwell ends: the next point's area is shown.
    auto *timer = virtualController.findChild<QTimer *>();
    QVERIFY(timer && timer->isActive());
    QCOMPARE(timer->interval(), 15000);
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
    QTRY_COMPARE(zoom.count(), 2);
    QVERIFY(zoom.last().at(1).toRectF().center().x() > 0.5);
    QCOMPARE(timer->interval(), 20000);
    QCOMPARE(m_fx.dome()->status().runningPatrol, 0);

    clickIcon(2, kPlay);
    QTRY_VERIFY(!running(2));
    QVERIFY(!virtualController.IsRunningPatrol());
    m_fx.dropPanels();
}

QTEST_MAIN(TestPreviewPTZWndPatrols)
#include "tst_cpreviewptzwnd_patrols.moc"
