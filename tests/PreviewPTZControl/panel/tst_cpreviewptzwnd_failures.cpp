#include "support/paneltestenv.h"

#include "preset/cpresettableview.h"
#include "quillon/citemdatarole.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using zeph_ptz_controller::CPTZStateStorageManager;

namespace {
const QString kDome = QString::fromLatin1(site_store::demo::kSpeedDome);
const QString kBasic = QString::fromLatin1(site_store::demo::kPtzNoPattern);
} // namespace

// Refusals of the camera reach the operator once, in the camera's words, and leave the
// buttons showing what the camera has.
class TestPreviewPTZWndFailures : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void refusalIsShownOnceInTheCameraWords_data();
    void refusalIsShownOnceInTheCameraWords();
    void auxiliaryButtonFollowsTheCameraAfterARefusal_data();
    void auxiliaryButtonFollowsTheCameraAfterARefusal();
    void updateButtonComesBackWhenTheScreenStops_data();
    void updateButtonComesBackWhenTheScreenStops();

private:
    QPushButton *button(const QString &name) const { return m_panel->findChild<QPushButton *>(name); }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    QModelIndex presetRow(int number) const;
    void settle();

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
    QSignalSpy *m_tips = nullptr;
};

void TestPreviewPTZWndFailures::init()
{
    m_env.setUp();
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
    m_panel = new CPreviewPTZWnd(0, false, false);
    m_panel->SetPTZController(m_env.controller(), nullptr);
    m_panel->SetCamera(QString(), kDome, false, false);
    QVERIFY(dome());
    settle();
    m_tips = new QSignalSpy(m_panel, &CPreviewPTZWnd::SignalMessageTipNeeded);
}

void TestPreviewPTZWndFailures::cleanup()
{
    delete m_tips;
    delete m_panel;
    m_panel = nullptr;
    m_env.tearDown();
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
}

void TestPreviewPTZWndFailures::settle()
{
    QTRY_VERIFY(m_env.controller()->PendingRequestCount() == 0 && dome()->pendingRequestCount() == 0);
    QCoreApplication::processEvents();
}

QModelIndex TestPreviewPTZWndFailures::presetRow(int number) const
{
    auto *view = m_panel->findChild<CPresetTableView *>(QStringLiteral("m_pTreeViewPreset"));
    const QAbstractItemModel *list = view->model();
    for (int r = 0; r < list->rowCount(); ++r) {
        if (list->index(r, 0).data(Quillon::ItemNumberRole).toInt() == number)
            return list->index(r, 2);
    }
    return QModelIndex();
}

void TestPreviewPTZWndFailures::refusalIsShownOnceInTheCameraWords_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("operation");

    QTest::newRow("preset call") << "callPreset" << int(DriverOperation::GotoPreset);
    QTest::newRow("update PTZ") << "update" << int(DriverOperation::ListPresets);
    QTest::newRow("light on") << "lightOn" << int(DriverOperation::Light);
    QTest::newRow("light off") << "lightOff" << int(DriverOperation::Light);
    QTest::newRow("wiper off") << "wiperOff" << int(DriverOperation::Wiper);
    QTest::newRow("one-key focus") << "oneKeyFocus" << int(DriverOperation::OneKeyFocus);
}

void TestPreviewPTZWndFailures::refusalIsShownOnceInTheCameraWords()
{
    QFETCH(QString, action);
    QFETCH(int, operation);
    const QString words = QStringLiteral("device busy (%1)").arg(action);

    if (action == QLatin1String("callPreset")) {
        dome()->setPosition(10.0, -10.0, 1.0);
        ptz_plugin_protocol::PresetControlRequest set;
        set.operation = "SetPreset";
        set.camera_index_code = kDome.toStdString();
        set.preset_index = 1;
        set.preset_name = "gate";
        m_env.controller()->Preset(set);
        QTRY_VERIFY(presetRow(1).isValid());
    } else if (action == QLatin1String("lightOff")) {
        button(QStringLiteral("m_pBtnLight"))->click();
        QTRY_VERIFY(dome()->status().light);
    } else if (action == QLatin1String("wiperOff")) {
        button(QStringLiteral("m_pBtnWiper"))->click();
        QTRY_VERIFY(dome()->status().wiper);
    }
    settle();
    m_tips->clear();

    dome()->failOperation(DriverOperation(operation), words);
    if (action == QLatin1String("callPreset"))
        m_panel->OnRunPresetBtnClicked(presetRow(1));
    else if (action == QLatin1String("update"))
        button(QStringLiteral("ptr_update_ptz_btn_"))->click();
    else if (action == QLatin1String("lightOn") || action == QLatin1String("lightOff"))
        m_panel->OnLight(action == QLatin1String("lightOn"));
    else if (action == QLatin1String("wiperOff"))
        m_panel->OnWiper(false);
    else if (action == QLatin1String("oneKeyFocus"))
        button(QStringLiteral("m_pBtnKeyFocus"))->click();

    QTRY_VERIFY(m_tips->count() >= 1);
    settle();
    QCOMPARE(m_tips->count(), 1);
    QCOMPARE(m_tips->at(0).at(0).toString(), words);
    QCOMPARE(m_tips->at(0).at(1).toInt(), 0);
}

void TestPreviewPTZWndFailures::auxiliaryButtonFollowsTheCameraAfterARefusal_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("operation");
    QTest::addColumn<bool>("switchOn"); // the refused switch; the camera stays at !switchOn

    QTest::newRow("light on") << "m_pBtnLight" << int(DriverOperation::Light) << true;
    QTest::newRow("light off") << "m_pBtnLight" << int(DriverOperation::Light) << false;
    QTest::newRow("wiper on") << "m_pBtnWiper" << int(DriverOperation::Wiper) << true;
    QTest::newRow("wiper off") << "m_pBtnWiper" << int(DriverOperation::Wiper) << false;
}

void TestPreviewPTZWndFailures::auxiliaryButtonFollowsTheCameraAfterARefusal()
{
    QFETCH(QString, name);
    QFETCH(int, operation);
    QFETCH(bool, switchOn);
    const bool light = operation == int(DriverOperation::Light);
    auto cameraHas = [&] { return light ? dome()->status().light : dome()->status().wiper; };

    CPreviewPTZWnd second(1, false, false);
    second.SetPTZController(m_env.controller(), nullptr);
    second.SetCamera(QString(), kDome, false, false);
    // Found while off, by the dark name: it blinks between two names while on.
    QPushButton *mine = button(name);
    QPushButton *theirs = second.findChild<QPushButton *>(name);
    QVERIFY(mine && theirs);

    if (!switchOn) {
        mine->click();
        QTRY_VERIFY(cameraHas());
        QTRY_VERIFY(theirs->isChecked());
    }
    settle();

    dome()->failOperation(DriverOperation(operation), QStringLiteral("relay stuck"));
    mine->click();
    QCOMPARE(mine->isChecked(), switchOn); // shown at once, before the camera answers
    settle();

    QCOMPARE(cameraHas(), !switchOn);
    QCOMPARE(mine->isChecked(), !switchOn);
    auto *storage = CPTZStateStorageManager::Instance();
    QCOMPARE(light ? storage->IsLight(kDome) : storage->IsWiper(kDome), !switchOn);
    QCOMPARE(theirs->isChecked(), !switchOn);
}

void TestPreviewPTZWndFailures::updateButtonComesBackWhenTheScreenStops_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("stop work") << "stopWork";
    QTest::newRow("unbind") << "unbind";
    QTest::newRow("other camera") << "rebind";
    QTest::newRow("answer") << "answer";
}

void TestPreviewPTZWndFailures::updateButtonComesBackWhenTheScreenStops()
{
    QFETCH(QString, how);
    QSignalSpy enabled(m_panel, &CPreviewPTZWnd::SignalUpdatePtzInfoEnabled);
    QPushButton *update = button(QStringLiteral("ptr_update_ptz_btn_"));
    update->click();
    QCOMPARE(enabled.count(), 1);

    if (how == QLatin1String("stopWork"))
        m_panel->StopWork();
    else if (how == QLatin1String("unbind"))
        m_panel->SetCamera(QString(), QString(), false, false);
    else if (how == QLatin1String("rebind"))
        m_panel->SetCamera(QString(), kBasic, false, false);
    QTRY_COMPARE(enabled.count(), 2);
    settle();
    QCOMPARE(enabled.count(), 2);
    QCOMPARE(enabled.at(0).at(0).toBool(), false);
    QCOMPARE(enabled.at(1).at(0).toBool(), true);
    QCOMPARE(update->isEnabled(), m_panel->IsWorking());
}

QTEST_MAIN(TestPreviewPTZWndFailures)
#include "tst_cpreviewptzwnd_failures.moc"
