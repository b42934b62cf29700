#include "support/paneltestenv.h"

#include "patrol/ccruisetableeditmodel.h"
#include "patrol/ccruisetableeditview.h"
#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableview.h"

#include "quillon/citemdatarole.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QtTest>

#include <cmath>
#include <functional>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using vs_ui_data_controller::CNomalMessageManager;
namespace demo = site_store::demo;

using Triples = QVector<QVector<int>>; // preset, speed, dwell per point

// Runs a helper that checks as it goes and ends the test when it failed.
#define STEP(call)                                                                                                    \
    do {                                                                                                              \
        call;                                                                                                         \
        if (QTest::currentTestFailed())                                                                               \
            return;                                                                                                   \
    } while (false)

namespace {
const QString kDome = QString::fromLatin1(demo::kSpeedDome);
constexpr double kTilt = -10.0;
const double kPans[] = {0.0, 20.0, 60.0, 100.0}; // preset n stands at kPans[n]
} // namespace

class TestPreviewPTZWndPatrols : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void devicePatrolVisitsPresetsInTurn();
    void padPressInterruptsThePatrol();
    void stopFromTheList();
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
    template <typename T>
    T *child(QWidget *parent, const char *name) const
    {
        return parent->findChild<T *>(QString::fromLatin1(name));
    }
    CCruiseTableView *list(CPreviewPTZWnd *panel = nullptr) const
    {
        return child<CCruiseTableView>(panel ? panel : m_panel, "m_pTreeViewPatrol");
    }
    CCruiseTableModel *model(CPreviewPTZWnd *panel = nullptr) const
    {
        return qobject_cast<CCruiseTableModel *>(list(panel)->model());
    }
    CCruiseTableEditView *editor() const { return child<CCruiseTableEditView>(m_panel, "m_pTreeViewPatrolEdit"); }
    // The lock strip reuses some button names: look in the patrol page.
    QPushButton *button(const char *name) const { return child<QPushButton>(patrolPage(), name); }
    QWidget *editPage() const { return child<QWidget>(m_panel, "pPatrolModifyFrame"); }
    QWidget *patrolPage() const { return child<QWidget>(m_panel, "m_pTabCruise"); }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }

    CPreviewPTZWnd *makePanel(zeph_ptz_controller::CVirtualPtzControllor *virtual_controller = nullptr);
    void addDevicePreset(int number);
    void openPatrolTab(CPreviewPTZWnd *panel);
    void openSlot(int slot);
    void fillPath(const Triples &points);
    void savePath(int slot, const Triples &points);
    void clickIcon(int row, Quillon::CItemDataRole role, CPreviewPTZWnd *panel = nullptr);
    bool running(int row, CPreviewPTZWnd *panel = nullptr) const
    {
        return model(panel)->index(row, 1).data(CCruiseTableModel::PatrolRunningRole).toBool() &&
               model(panel)->index(row, 0).data(Quillon::ItemRunningRole).toBool();
    }
    bool configured(int row) const
    {
        return model()->index(row, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool();
    }
    bool at(int preset) const
    {
        const auto status = dome()->status();
        return std::abs(status.pan - kPans[preset]) < 0.01 && !status.panTiltMoving;
    }
    // Advances the simulated time until the camera stands at the preset; the time it took, or -1.
    int advanceUntilAt(int preset, int max_ms);
    bool tipped(const QString &key, int level) const { return m_tips.contains(qMakePair(key, level)); }
    void startSavedPatrol();

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
    QList<CPreviewPTZWnd *> m_panels;
    QList<QPair<QString, int>> m_tips;
    QStringList m_asked;
    int m_answer = CNomalMessageManager::AnswerConfirm;
};

void TestPreviewPTZWndPatrols::init()
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
    for (int n = 1; n <= 3; ++n)
        addDevicePreset(n);
    dome()->setPosition(kPans[0], kTilt);
    m_panel = makePanel();
    openPatrolTab(m_panel);
}

void TestPreviewPTZWndPatrols::cleanup()
{
    CNomalMessageManager::Instance()->SetAnswerProvider({});
    qDeleteAll(m_panels);
    m_panels.clear();
    m_panel = nullptr;
    m_env.tearDown();
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
}

CPreviewPTZWnd *TestPreviewPTZWndPatrols::makePanel(zeph_ptz_controller::CVirtualPtzControllor *virtual_controller)
{
    auto *panel = new CPreviewPTZWnd(unsigned(m_panels.size()), false, false);
    m_panels << panel;
    connect(panel, &CPreviewPTZWnd::SignalMessageTipNeeded, this,
            [this](const QString &tip, int level) { m_tips << qMakePair(tip, level); });
    panel->resize(600, 900);
    panel->SetPTZController(m_env.controller(), virtual_controller);
    panel->SetCamera(QString(), kDome, false, false);
    return panel;
}

void TestPreviewPTZWndPatrols::addDevicePreset(int number)
{
    dome()->setPosition(kPans[number], kTilt);
    ptz_plugin_protocol::PresetControlRequest request;
    request.operation = "SetPreset";
    request.camera_index_code = kDome.toStdString();
    request.preset_index = number;
    request.preset_name = "P" + std::to_string(number);
    QSignalSpy done(m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::signalPresetFinished);
    m_env.controller()->Preset(request);
    QTRY_COMPARE(done.count(), 1);
    QCOMPARE(done.first().at(1).toString(), QString());
}

void TestPreviewPTZWndPatrols::openPatrolTab(CPreviewPTZWnd *panel)
{
    auto *tabs = child<QTabWidget>(panel, "m_pTabWidget");
    auto *page = child<QWidget>(panel, "m_pTabCruise");
    if (tabs->currentWidget() == page)
        panel->OnTabIndexChanged(-1);
    else
        tabs->setCurrentWidget(page);
    QTRY_COMPARE(dome()->pendingRequestCount(), 0);
    ptz_plugin_protocol::PresetInfo first;
    QTRY_VERIFY(zeph_ptz_controller::CPTZGetController::GetPresetByIndexSync(kDome, first, 1));
}

void TestPreviewPTZWndPatrols::clickIcon(int row, Quillon::CItemDataRole role, CPreviewPTZWnd *panel)
{
    emit list(panel)->signalClickedPixmap(model(panel)->index(row, 1), role);
}

void TestPreviewPTZWndPatrols::openSlot(int slot)
{
    clickIcon(slot - 1, Quillon::ItemSecondRightPixmapRole);
    QTRY_VERIFY_WITH_TIMEOUT(!editPage()->isHidden() && patrolPage()->isEnabled(), 5000);
}

void TestPreviewPTZWndPatrols::fillPath(const Triples &points)
{
    for (const auto &point : points) {
        button("pAddBtn")->click();
        const int row = editor()->GetEditModel()->PointCount() - 1;
        editor()->CellComboBox(row, 0)->SetCurrentValue(point.at(0));
        editor()->CellComboBox(row, 1)->SetCurrentValue(point.at(1));
        editor()->CellComboBox(row, 2)->SetCurrentValue(point.at(2));
    }
}

void TestPreviewPTZWndPatrols::savePath(int slot, const Triples &points)
{
    STEP(openSlot(slot));
    fillPath(points);
    button("pConfirmBtn")->click();
    QTRY_VERIFY_WITH_TIMEOUT(configured(slot - 1) && m_panel->findChild<QWidget *>(
                                 QStringLiteral("PreviewPtzControl_ptr_ptz_panel_right_"))->isEnabled(), 5000);
    QTRY_COMPARE_WITH_TIMEOUT(dome()->pendingRequestCount(), 0, 5000);
    QVERIFY(editPage()->isHidden());
}

int TestPreviewPTZWndPatrols::advanceUntilAt(int preset, int max_ms)
{
    for (int elapsed = 0; elapsed <= max_ms; elapsed += 20) {
        if (at(preset))
            return elapsed;
        m_env.clock()->advance(20);
    }
    return -1;
}

void TestPreviewPTZWndPatrols::startSavedPatrol()
{
    STEP(savePath(1, {{1, 40, 2}, {2, 40, 3}, {3, 40, 4}}));
    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY_WITH_TIMEOUT(running(0) && dome()->status().runningPatrol == 1, 5000);
}

void TestPreviewPTZWndPatrols::devicePatrolVisitsPresetsInTurn()
{
    STEP(savePath(1, {{1, 40, 2}, {2, 40, 3}, {3, 40, 4}}));
    const auto patrols = dome()->patrols();
    QCOMPARE(patrols.size(), 1);
    QCOMPARE(patrols.first().points.size(), 3);
    QCOMPARE(patrols.first().points.at(2).dwellSeconds, 4);

    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(running(0));
    QCOMPARE(dome()->status().runningPatrol, 1);

    // 80 degrees a second at speed 40: each hop takes well under a second; each dwell holds.
    QVERIFY(advanceUntilAt(1, 1000) >= 0);
    const int dwell_ms[] = {0, 2000, 3000, 4000};
    for (int preset : {1, 2, 3}) {
        m_env.clock()->advance(dwell_ms[preset] - 200);
        QVERIFY2(at(preset), qPrintable(QStringLiteral("left preset %1 early").arg(preset)));
        const int next = preset % 3 + 1;
        const int hop = advanceUntilAt(next, 2000);
        QVERIFY2(hop >= 200, qPrintable(QStringLiteral("preset %1 reached after %2 ms").arg(next).arg(hop)));
    }
    QVERIFY(running(0));
}

void TestPreviewPTZWndPatrols::padPressInterruptsThePatrol()
{
    STEP(startSavedPatrol());
    auto *cloud = child<CPTZCloud>(m_panel, "ptr_cloud_");
    emit cloud->signalPressSection(nullptr, CPTZCloud::MiddleRight);
    QTRY_VERIFY(!running(0));
    QTRY_COMPARE(dome()->status().runningPatrol, 0);
    emit cloud->signalReleaseSection(nullptr, CPTZCloud::MiddleRight);
    QTRY_COMPARE(dome()->pendingRequestCount(), 0);
    QVERIFY(!zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsCruising(kDome));
}

void TestPreviewPTZWndPatrols::stopFromTheList()
{
    STEP(startSavedPatrol());
    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(!running(0));
    QTRY_COMPARE(dome()->status().runningPatrol, 0);
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
    m_answer = confirm ? CNomalMessageManager::AnswerConfirm : CNomalMessageManager::AnswerCancel;
    button("pConfirmBtn")->click();
    QCOMPARE(m_asked, QStringList{QStringLiteral("ThisOperationWillStocdYSojGC")});
    if (!confirm) {
        QVERIFY(!editPage()->isHidden());
        QVERIFY(running(0));
        QCOMPARE(editor()->GetEditModel()->PointCount(), 3);
        QCOMPARE(dome()->patrols().first().points.at(2).dwellSeconds, 4);
        QCOMPARE(dome()->status().runningPatrol, 1);
        return;
    }
    QTRY_COMPARE(dome()->patrols().first().points.at(2).dwellSeconds, 9);
    QTRY_VERIFY(editPage()->isHidden());
    QCOMPARE(dome()->status().runningPatrol, 0);
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
    m_answer = confirm ? CNomalMessageManager::AnswerConfirm : CNomalMessageManager::AnswerCancel;
    clickIcon(0, Quillon::ItemThirdRightPixmapRole);
    QCOMPARE(m_asked, QStringList{QStringLiteral("ConfirmToDelete")});
    if (!confirm) {
        QTest::qWait(0);
        QCOMPARE(dome()->pendingRequestCount(), 0);
        QCOMPARE(dome()->patrols().size(), 1);
        QVERIFY(configured(0));
        return;
    }
    QTRY_VERIFY(dome()->patrols().isEmpty());
    QTRY_VERIFY(!configured(0) && patrolPage()->isEnabled());
    QVERIFY(!running(0));
    QCOMPARE(dome()->status().runningPatrol, 0);
    QVERIFY(!m_env.store()->patrol(kDome, 1));
}

void TestPreviewPTZWndPatrols::secondPanelShowsTheRunningRow()
{
    CPreviewPTZWnd *second = makePanel();
    openPatrolTab(second);
    STEP(startSavedPatrol());
    QTRY_VERIFY(running(0, second));
    // Stopping from the second panel clears the first.
    openPatrolTab(second);
    QTRY_VERIFY(model(second)->index(0, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool());
    clickIcon(0, Quillon::ItemFirstRightPixmapRole, second);
    QTRY_VERIFY(!running(0));
    QVERIFY(!running(0, second));
    // A panel bound later reads the state as well.
    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(running(0));
    CPreviewPTZWnd *third = makePanel();
    openPatrolTab(third);
    QTRY_VERIFY(running(0, third));
}

void TestPreviewPTZWndPatrols::refusalsAreTipsAndChangeNothing_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("tip");
    QTest::newRow("play without a row") << "play" << "PleaseSelectACruisePEPKFIMFo";
    QTest::newRow("edit without a row") << "edit" << "PleaseSelectACruisePEPKFIMFo";
    QTest::newRow("33rd point") << "add33" << "TheMaximumNumberOfCrhuRLUhpy";
    QTest::newRow("no preset of the editor's kind") << "addVirtual" << "NoPresetPointIsAvailOJPfSsBC";
    QTest::newRow("delete point without selection") << "deletePoint" << "PleaseSelectACruisePeEYjvBRk";
    QTest::newRow("move point without selection") << "movePoint" << "PleaseSelectACruisePeEYjvBRk";
}

void TestPreviewPTZWndPatrols::refusalsAreTipsAndChangeNothing()
{
    QFETCH(QString, action);
    QFETCH(QString, tip);
    int points_before = 0;
    if (action == QLatin1String("play")) {
        m_panel->OnCruisePlay(QModelIndex(), true);
    } else if (action == QLatin1String("edit")) {
        m_panel->OnCruiseEdit(QModelIndex());
    } else {
        STEP(openSlot(2));
        if (action == QLatin1String("add33")) {
            for (int i = 0; i < 32; ++i)
                button("pAddBtn")->click();
            QCOMPARE(editor()->GetEditModel()->PointCount(), 32);
            QVERIFY(m_tips.isEmpty());
        } else if (action == QLatin1String("addVirtual")) {
            button("btn_virtual_preset")->click();
            QTRY_VERIFY(patrolPage()->isEnabled());
        } else {
            fillPath({{1, 10, 10}, {2, 10, 10}});
            editor()->setCurrentIndex(QModelIndex());
        }
        points_before = editor()->GetEditModel()->PointCount();
        if (action.startsWith(QLatin1String("add")))
            button("pAddBtn")->click();
        else if (action == QLatin1String("deletePoint"))
            m_panel->OnCruiseDelPreset();
        else
            m_panel->OnCruiseUpPreset();
        QCOMPARE(editor()->GetEditModel()->PointCount(), points_before);
    }
    QCOMPARE(m_tips.size(), 1);
    QCOMPARE(m_tips.first(), qMakePair(tip, 2));
    QCOMPARE(dome()->status().runningPatrol, 0);
    QVERIFY(dome()->patrols().isEmpty());
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
    QVERIFY(m_env.store()->upsertPatrol(record));
    button("pConfirmBtn")->click();
    QCOMPARE(m_tips.size(), 1);
    QVERIFY(m_tips.first().first.startsWith(QLatin1String("FailedToModifyCruiseskhaYaoN ")));
    QVERIFY(m_tips.first().first.size() > QStringLiteral("FailedToModifyCruiseskhaYaoN ").size());
    QCOMPARE(m_tips.first().second, 2);
    QVERIFY(!editPage()->isHidden());
    QVERIFY(patrolPage()->isEnabled());
    QCOMPARE(editor()->GetPoints().size(), size_t(2));
    QCOMPARE(editor()->GetPoints().at(1).dwell_time, 6);
    QVERIFY(dome()->patrols().isEmpty());
}

void TestPreviewPTZWndPatrols::deviceRefusalKeepsTheMark()
{
    STEP(savePath(1, {{1, 40, 2}, {2, 40, 3}}));
    dome()->failOperation(DriverOperation::StartPatrol, QStringLiteral("motor fault"));
    QSignalSpy finished(m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::signalCruiseFinished);
    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(!finished.first().at(1).toString().isEmpty());
    QVERIFY(!running(0));
    QCOMPARE(dome()->status().runningPatrol, 0);

    // Running, a refused stop leaves it marked as running.
    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(running(0));
    dome()->failOperation(DriverOperation::StopPatrol, QStringLiteral("motor fault"));
    finished.clear();
    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(running(0));
}

void TestPreviewPTZWndPatrols::missingAnswerGivesTheControlsBack()
{
    STEP(openSlot(1));
    fillPath({{1, 20, 5}});
    m_env.controller()->SetRequestTimeout(100);
    dome()->setLatency(600000);
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
    ptz_plugin_protocol::PresetControlRequest remove;
    remove.operation = "DelPreset";
    remove.camera_index_code = kDome.toStdString();
    remove.preset_index = 2;
    QSignalSpy done(m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::signalPresetFinished);
    m_env.controller()->Preset(remove);
    QTRY_COMPARE(done.count(), 1);

    clickIcon(0, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(running(0));
    QVERIFY(advanceUntilAt(1, 1000) >= 0);
    // From preset 1 straight on to preset 3, never stopping at the gone one.
    for (int elapsed = 0; elapsed < 3000 && !at(3); elapsed += 20) {
        QVERIFY(!at(2));
        m_env.clock()->advance(20);
    }
    QVERIFY(at(3));

    // The editor shows the point so it can be fixed.
    openPatrolTab(m_panel);
    STEP(openSlot(1));
    QCOMPARE(editor()->GetEditModel()->PointCount(), 3);
    CCruiseComboBox *gone = editor()->CellComboBox(1, 0);
    QCOMPARE(gone->CurrentValue(), 2);
    QVERIFY(gone->currentText() != QLatin1String("P2"));
    QVERIFY(!editor()->GetEditModel()->PresetEntryOf(ptz_plugin_protocol::CruisePoint{2, 1, 1, {}}).first.isEmpty());
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
    auto *getter = new zeph_ptz_controller::CPTZGetController(this);
    for (int n : {11, 12}) {
        ptz_plugin_protocol::PresetInfo preset;
        preset.preset_index = n;
        preset.preset_type = ptz_plugin_protocol::PRESET_TYPE_VIRTUAL;
        preset.preset_name = "V" + std::to_string(n);
        preset.pan = n == 11 ? 90.0 : 270.0;
        preset.tilt = -45.0;
        preset.zoom = 4.0;
        QVERIFY(getter->AddOnePreset(kDome, preset));
    }
    delete getter;
    zeph_ptz_controller::CVirtualPtzControllor virtual_controller;
    qDeleteAll(m_panels);
    m_panels.clear();
    m_panel = makePanel(&virtual_controller);
    openPatrolTab(m_panel);

    STEP(openSlot(3));
    button("btn_virtual_preset")->click();
    QTRY_VERIFY(patrolPage()->isEnabled());
    QVERIFY(editor()->isColumnHidden(CCruiseTableEditModel::kColumnSpeed));
    QCOMPARE(editor()->GetEditModel()->GetMinDwellTime(), 15);
    fillPath({{11, 30, 15}, {12, 30, 20}});
    button("pConfirmBtn")->click();
    QTRY_VERIFY(configured(2) && editPage()->isHidden());
    QCOMPARE(m_env.store()->patrol(kDome, 3)->type, int(ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL));
    QVERIFY(dome()->patrols().isEmpty());

    QSignalSpy zoom(&virtual_controller, &zeph_ptz_controller::CVirtualPtzControllor::SignalDigitalZoomStyleChanged);
    clickIcon(2, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(running(2));
    QCOMPARE(zoom.count(), 1);
    const QRectF first = zoom.last().at(1).toRectF();
    QVERIFY(first.center().x() < 0.5); // pan 90: the left half of the picture
    // The dwell ends: the next point's area is shown.
    auto *timer = virtual_controller.findChild<QTimer *>();
    QVERIFY(timer && timer->isActive());
    QCOMPARE(timer->interval(), 15000);
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
    QTRY_COMPARE(zoom.count(), 2);
    QVERIFY(zoom.last().at(1).toRectF().center().x() > 0.5);
    QCOMPARE(timer->interval(), 20000);
    QCOMPARE(dome()->status().runningPatrol, 0);

    clickIcon(2, Quillon::ItemFirstRightPixmapRole);
    QTRY_VERIFY(!running(2));
    QVERIFY(!virtual_controller.IsRunningPatrol());
    qDeleteAll(m_panels);
    m_panels.clear();
}

QTEST_MAIN(TestPreviewPTZWndPatrols)
#include "tst_cpreviewptzwnd_patrols.moc"
