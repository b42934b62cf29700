#include "support/child.h"
#include "support/records.h"
#include "support/testenv.h"

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
using ptz_devices::ParkActionType;

class TestParkRecoverDialogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(InstallTranslator(QCoreApplication::instance())); }
    void init() { m_env.setUp(); }
    void cleanup()
    {
        m_park.reset();
        m_env.tearDown();
    }

    void recoverSaveReachesTheCamera_data()
    {
        QTest::addColumn<bool>("withController");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<int>("sent");
        QTest::newRow("on, 90 s") << true << true << 90;
        QTest::newRow("off sends no waiting time") << true << false << 0;
        QTest::newRow("without a controller it only hides") << false << true << -1;
    }
    void recoverSaveReachesTheCamera()
    {
        QFETCH(bool, withController);
        QFETCH(bool, enabled);
        QFETCH(int, sent);
        CCruiseRecoverConfigDlg dialog(withController ? m_env.controller() : nullptr);
        dialog.SetCamera(kDome);
        // Only the offered waiting times can be selected.
        dialog.SetConfig(true, 37);
        QCOMPARE(dialog.TimeCombo()->currentIndex(), -1);
        dialog.SetConfig(true, 90);
        QVERIFY(dialog.TimeCombo()->currentIndex() >= 0);
        dialog.Switch()->SetToggle(enabled);
        dialog.show();
        QTRY_COMPARE(dialog.TimeRow()->isVisible(), enabled);
        QSignalSpy hidden(&dialog, &CCruiseRecoverConfigDlg::SignalCruiseRecoverConfigHide);
        QTest::mouseClick(dialog.SaveButton(), Qt::LeftButton);
        QCOMPARE(hidden.count(), 1);
        QVERIFY(!dialog.isVisible());
        if (sent < 0) {
            QCoreApplication::processEvents();
            QVERIFY(m_env.operations(kDome).isEmpty());
            return;
        }
        QTRY_COMPARE(m_env.camera(kDome)->patrolRecovery().enabled, enabled);
        QCOMPARE(m_env.camera(kDome)->patrolRecovery().waitingSeconds, sent);
    }
    void parkWaitTimeIsChecked_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        for (const char *bad : {"4", "721", "abc"})
            QTest::newRow(bad[0] ? bad : "empty") << QString::fromLatin1(bad) << false;
        QTest::newRow("5") << "5" << true;
        QTest::newRow("720") << "720" << true;
    }
    void parkWaitTimeIsChecked()
    {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        CParkActionDlg *dialog = openParkDialog();
        QSignalSpy tips(dialog, &CParkActionDlg::SignalMessageTipNeeded);
        auto *edit = child<QLineEdit>(m_park.get(), "ptr_wait_time_lineedit_");
        edit->setText(text);
        // While typing, a value out of range marks the field and shows the range.
        QCOMPARE(edit->objectName().endsWith(QLatin1String("_red")), !accepted);
        QCOMPARE(child<QLabel>(m_park.get(), "ptr_range_label_")->isVisible(), !accepted);
        QTest::mouseClick(child<QPushButton>(m_park.get(), "ptr_confirm_btn_"), Qt::LeftButton);
        QCOMPARE(dialog->isVisible(), !accepted);
        if (accepted) {
            QTRY_COMPARE(m_env.camera(kDome)->parkAction().waitingSeconds, text.toInt());
            return;
        }
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.first().at(1).toInt(), 0);
        QCoreApplication::processEvents();
        QVERIFY(!m_env.operations(kDome).contains(ptz_devices::DriverOperation::SetParkAction));
    }
    void parkChoiceDecidesTypeAndTarget_data()
    {
        QTest::addColumn<QString>("radio");
        QTest::addColumn<ParkActionType>("type");
        QTest::addColumn<int>("target");
        QTest::newRow("current view") << "ptr_current_view_radio_" << ParkActionType::Preset << 0;
        QTest::newRow("preset Lobby") << "ptr_preset_radio_" << ParkActionType::Preset << 2;
        QTest::newRow("patrol 3") << "ptr_patrol_radio_" << ParkActionType::Patrol << 3;
    }
    void parkChoiceDecidesTypeAndTarget()
    {
        QFETCH(QString, radio);
        QFETCH(ParkActionType, type);
        QFETCH(int, target);
        openParkDialog();
        child<QRadioButton>(m_park.get(), qPrintable(radio))->click();
        QCOMPARE(child<QFrame>(m_park.get(), "ptr_preset_frame_")->isVisible(),
                 radio == QLatin1String("ptr_preset_radio_"));
        QCOMPARE(child<QFrame>(m_park.get(), "ptr_patrol_frame_")->isVisible(),
                 radio == QLatin1String("ptr_patrol_radio_"));
        child<QComboBox>(m_park.get(), "ptr_preset_combo_")->setCurrentIndex(1);
        QTest::mouseClick(child<QPushButton>(m_park.get(), "ptr_confirm_btn_"), Qt::LeftButton);
        QTRY_VERIFY(m_env.camera(kDome)->parkAction().enabled);
        QCOMPARE(m_env.camera(kDome)->parkAction().type, type);
        QCOMPARE(m_env.camera(kDome)->parkAction().target, target);
    }
    void parkMissingTargetShowsConflict()
    {
        CParkActionDlg *dialog = openParkDialog();
        dialog->SetParkAction(true, CParkActionDlg::kActionPreset, 10, 9);
        QVERIFY(child<QLabel>(m_park.get(), "ptr_conflict_tips_")->isVisible());
        QVERIFY(!child<QLabel>(m_park.get(), "ptr_conflict_tips_")->toolTip().isEmpty());
        dialog->SetParkAction(true, CParkActionDlg::kActionPatrol, 10, 3);
        QVERIFY(!child<QLabel>(m_park.get(), "ptr_conflict_tips_")->isVisible());
        QVERIFY(child<QFrame>(m_park.get(), "ptr_patrol_frame_")->isVisible());
        // Empty lists offer "None".
        dialog->SetPresets({});
        dialog->SetPatrols({});
        QCOMPARE(child<QComboBox>(m_park.get(), "ptr_preset_combo_")->count(), 1);
        QCOMPARE(child<QComboBox>(m_park.get(), "ptr_patrol_combo_")->itemText(0), QStringLiteral("None"));
    }

private:
    // The park dialog of the dome, offering presets Gate (1) and Lobby (2) and patrol 3.
    CParkActionDlg *openParkDialog()
    {
        m_park = std::make_unique<CParkActionDlg>();
        m_park->SetController(m_env.controller());
        m_park->SetCamera(kDome);
        m_park->SetPresets({Preset(1, PRESET_TYPE_DEVICE, QStringLiteral("Gate")),
                            Preset(2, PRESET_TYPE_DEVICE, QStringLiteral("Lobby"))});
        CruiseInfo patrol;
        patrol.cruise_index = 3;
        patrol.cruise_type = CRUISE_TYPE_DEVICE;
        patrol.points.resize(2);
        m_park->SetPatrols({patrol});
        m_park->SetParkAction(true, CParkActionDlg::kActionPreset, 10, 0);
        m_park->show();
        return m_park.get();
    }

    TestEnv m_env;
    std::unique_ptr<CParkActionDlg> m_park;
};

QTEST_MAIN(TestParkRecoverDialogs)
#include "tst_parkrecoverdialogs.moc"
