#include "support/paneltestenv.h"

#include "boundary/previewptzcontroltranslator.h"
#include "patrol/ccruiserecoverconfigdlg.h"
#include "patrol/cparkactiondlg.h"

#include "quillon/cswitchcontrol.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

using namespace PreviewPTZControl;
using namespace ptz_plugin_protocol;
namespace demo = site_store::demo;

namespace {
const QString kDome = QString::fromLatin1(demo::kSpeedDome);

PresetInfo DevicePreset(int index, const char *name)
{
    PresetInfo preset;
    preset.preset_index = index;
    preset.preset_type = PRESET_TYPE_DEVICE;
    preset.preset_name = name;
    return preset;
}

template <typename T>
T *child(QObject *parent, const char *name)
{
    T *found = parent->findChild<T *>(QString::fromLatin1(name));
    Q_ASSERT(found);
    return found;
}

CruiseInfo DevicePatrol(int index)
{
    CruiseInfo patrol;
    patrol.cruise_index = index;
    patrol.cruise_type = CRUISE_TYPE_DEVICE;
    patrol.points.resize(2);
    return patrol;
}
} // namespace

class TestParkRecoverDialogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(InstallTranslator(QCoreApplication::instance())); }
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void recoverSelectsOnlyOfferedTimes_data();
    void recoverSelectsOnlyOfferedTimes();
    void recoverSaveReachesTheCamera_data();
    void recoverSaveReachesTheCamera();
    void recoverWithoutControllerOnlyHides();

    void parkWaitTimeIsChecked_data();
    void parkWaitTimeIsChecked();
    void parkChoiceDecidesTypeAndTarget_data();
    void parkChoiceDecidesTypeAndTarget();
    void parkTypingMarksTheField();
    void parkMissingTargetShowsConflict();
    void parkEmptyListsOfferNone();

private:
    std::unique_ptr<CParkActionDlg> openParkDialog();

    PanelTestEnv m_env;
};

void TestParkRecoverDialogs::recoverSelectsOnlyOfferedTimes_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("row");
    QTest::newRow("offered") << true << 60 << 3;
    QTest::newRow("first") << true << 15 << 0;
    QTest::newRow("not offered") << true << 37 << -1;
}

void TestParkRecoverDialogs::recoverSelectsOnlyOfferedTimes()
{
    QFETCH(bool, enabled);
    QFETCH(int, seconds);
    QFETCH(int, row);
    CCruiseRecoverConfigDlg dialog(m_env.controller());
    dialog.SetConfig(enabled, seconds);
    QCOMPARE(dialog.Switch()->IsToggled(), enabled);
    QCOMPARE(dialog.TimeCombo()->currentIndex(), row);
    QCOMPARE(dialog.TimeCombo()->count(), 6);
}

void TestParkRecoverDialogs::recoverSaveReachesTheCamera_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("sent");
    QTest::newRow("on, 90 s") << true << 90 << 90;
    QTest::newRow("off sends no waiting time") << false << 90 << 0;
}

void TestParkRecoverDialogs::recoverSaveReachesTheCamera()
{
    QFETCH(bool, enabled);
    QFETCH(int, seconds);
    QFETCH(int, sent);
    CCruiseRecoverConfigDlg dialog(m_env.controller());
    dialog.SetCamera(kDome);
    dialog.SetConfig(true, seconds);
    dialog.Switch()->SetToggle(enabled);
    dialog.show();
    QTRY_COMPARE(dialog.height(), enabled ? 194 : 120);
    QCOMPARE(dialog.TimeRow()->isVisible(), enabled);
    QSignalSpy hidden(&dialog, &CCruiseRecoverConfigDlg::SignalCruiseRecoverConfigHide);
    QTest::mouseClick(dialog.SaveButton(), Qt::LeftButton);
    QCOMPARE(hidden.count(), 1);
    QTRY_COMPARE(m_env.camera(kDome)->patrolRecovery().enabled, enabled);
    QCOMPARE(m_env.camera(kDome)->patrolRecovery().waitingSeconds, sent);
}

void TestParkRecoverDialogs::recoverWithoutControllerOnlyHides()
{
    CCruiseRecoverConfigDlg dialog(nullptr);
    dialog.SetCamera(kDome);
    dialog.SetConfig(true, 30);
    dialog.show();
    QTest::mouseClick(dialog.SaveButton(), Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QCoreApplication::processEvents();
    QVERIFY(m_env.operations(kDome).isEmpty());
}

std::unique_ptr<CParkActionDlg> TestParkRecoverDialogs::openParkDialog()
{
    auto dialog = std::make_unique<CParkActionDlg>();
    dialog->SetController(m_env.controller());
    dialog->SetCamera(kDome);
    dialog->SetPresets({DevicePreset(1, "Gate"), DevicePreset(2, "Lobby")});
    dialog->SetPatrols({DevicePatrol(3)});
    dialog->SetParkAction(true, CParkActionDlg::kActionPreset, 10, 0);
    dialog->show();
    return dialog;
}

void TestParkRecoverDialogs::parkWaitTimeIsChecked_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    for (const char *bad : {"4", "721", "", "-5", "abc"})
        QTest::newRow(bad[0] ? bad : "empty") << QString::fromLatin1(bad) << false;
    QTest::newRow("5") << "5" << true;
    QTest::newRow("720") << "720" << true;
}

void TestParkRecoverDialogs::parkWaitTimeIsChecked()
{
    QFETCH(QString, text);
    QFETCH(bool, accepted);
    auto dialog = openParkDialog();
    QSignalSpy tips(dialog.get(), &CParkActionDlg::SignalMessageTipNeeded);
    child<QLineEdit>(dialog.get(), "ptr_wait_time_lineedit_")->setText(text);
    QTest::mouseClick(child<QPushButton>(dialog.get(), "ptr_confirm_btn_"), Qt::LeftButton);
    QCOMPARE(dialog->isVisible(), !accepted);
    if (!accepted) {
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.first().at(1).toInt(), 0);
        QCoreApplication::processEvents();
        QVERIFY(!m_env.operations(kDome).contains(ptz_devices::DriverOperation::SetParkAction));
    } else {
        QTRY_COMPARE(m_env.camera(kDome)->parkAction().waitingSeconds, text.toInt());
    }
}

void TestParkRecoverDialogs::parkChoiceDecidesTypeAndTarget_data()
{
    QTest::addColumn<int>("choice"); // 0 current view, 1 preset, 2 patrol
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("target");
    QTest::newRow("current view") << 0 << int(ptz_devices::ParkActionType::Preset) << 0;
    QTest::newRow("preset Lobby") << 1 << int(ptz_devices::ParkActionType::Preset) << 2;
    QTest::newRow("patrol 3") << 2 << int(ptz_devices::ParkActionType::Patrol) << 3;
}

void TestParkRecoverDialogs::parkChoiceDecidesTypeAndTarget()
{
    QFETCH(int, choice);
    QFETCH(int, type);
    QFETCH(int, target);
    auto dialog = openParkDialog();
    QWidget *form = dialog.get();
    QRadioButton *radios[] = {child<QRadioButton>(form, "ptr_current_view_radio_"), child<QRadioButton>(form, "ptr_preset_radio_"), child<QRadioButton>(form, "ptr_patrol_radio_")};
    radios[choice]->click();
    QCOMPARE(child<QFrame>(form, "ptr_preset_frame_")->isVisible(), choice == 1);
    QCOMPARE(child<QFrame>(form, "ptr_patrol_frame_")->isVisible(), choice == 2);
    child<QComboBox>(form, "ptr_preset_combo_")->setCurrentIndex(1);
    QTest::mouseClick(child<QPushButton>(form, "ptr_confirm_btn_"), Qt::LeftButton);
    QTRY_VERIFY(m_env.camera(kDome)->parkAction().enabled);
    QCOMPARE(int(m_env.camera(kDome)->parkAction().type), type);
    QCOMPARE(m_env.camera(kDome)->parkAction().target, target);
}

void TestParkRecoverDialogs::parkTypingMarksTheField()
{
    auto dialog = openParkDialog();
    auto *edit = child<QLineEdit>(dialog.get(), "ptr_wait_time_lineedit_");
    auto *range = child<QLabel>(dialog.get(), "ptr_range_label_");
    edit->setText(QStringLiteral("3"));
    QCOMPARE(edit->objectName(), QStringLiteral("ptr_wait_time_lineedit_red"));
    QVERIFY(range->isVisible());
    QVERIFY(range->text().contains(QLatin1String("5 - 720")));
    edit->setText(QStringLiteral("30"));
    QCOMPARE(edit->objectName(), QStringLiteral("ptr_wait_time_lineedit_"));
    QVERIFY(!range->isVisible());
}

void TestParkRecoverDialogs::parkMissingTargetShowsConflict()
{
    auto dialog = openParkDialog();
    dialog->SetParkAction(true, CParkActionDlg::kActionPreset, 10, 9);
    QVERIFY(child<QLabel>(dialog.get(), "ptr_conflict_tips_")->isVisible());
    QVERIFY(!child<QLabel>(dialog.get(), "ptr_conflict_tips_")->toolTip().isEmpty());
    dialog->SetParkAction(true, CParkActionDlg::kActionPatrol, 10, 3);
    QVERIFY(!child<QLabel>(dialog.get(), "ptr_conflict_tips_")->isVisible());
    QVERIFY(child<QFrame>(dialog.get(), "ptr_patrol_frame_")->isVisible());
    QVERIFY(!child<QFrame>(dialog.get(), "ptr_preset_frame_")->isVisible());
}

void TestParkRecoverDialogs::parkEmptyListsOfferNone()
{
    auto dialog = openParkDialog();
    dialog->SetPresets({});
    dialog->SetPatrols({});
    QCOMPARE(child<QComboBox>(dialog.get(), "ptr_preset_combo_")->count(), 1);
    QCOMPARE(child<QComboBox>(dialog.get(), "ptr_patrol_combo_")->itemText(0), QStringLiteral("None"));
}

QTEST_MAIN(TestParkRecoverDialogs)
#include "tst_parkrecoverdialogs.moc"
