#include "support/panelfixture.h"

#include "preset/cpresettableview.h"

#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using ptz_plugin_protocol::PTZControlCommand;
using zeph_ptz_controller::CUniversalPTZController;

class TestPreviewPTZWndCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_env.setUp();
        m_env.bind(kDome);
        QVERIFY(m_env.panel()->IsWorking());
        dome()->setPosition(100.0, -45.0, 2.0);
        m_env.settle();
        dome()->clearRequestLog();
    }
    void cleanup() { m_env.tearDown(); }

    void releaseReadsSpeedAgainAndStopCarriesTheOwner()
    {
        QSignalSpy succeeded(m_env.controller().get(), &CUniversalPTZController::SignalExecutionSucceeded);
        m_env.pressSection(CPTZCloud::TopLeft);
        m_env.child<QSlider>("ptr_speed_slider_")->setValue(9);
        m_env.releaseSection(CPTZCloud::TopLeft);
        m_env.panel()->StopAutoScan(QStringLiteral("operator-console"), kDome, true);
        QTRY_COMPARE(succeeded.count(), 3);
        const auto release = succeeded.at(1).at(2).value<PTZControlCommand>();
        QCOMPARE(QList<int>({int(release.command), int(release.action), release.speed, release.channel}),
                 QList<int>({25, 1, 9, 1}));
        const auto stop = succeeded.at(2).at(2).value<PTZControlCommand>();
        QCOMPARE(stop.owner_index_code, std::string("operator-console"));
        QCOMPARE(QList<int>({int(stop.command), int(stop.action)}), QList<int>({29, 1}));
    }
    void autoScanRefusedWhilePatternRecords()
    {
        m_env.storage()->SetRecordPattern(kDome, 1);
        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);
        QSignalSpy functions(m_env.panel(), &CPreviewPTZWnd::SignalFunctionEnabled);
        m_env.pressSection(CPTZCloud::Center);
        QCoreApplication::processEvents();
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.at(0), (QVariantList{QStringLiteral("TrackOperationInProgkdawnXPU"), 2}));
        QCOMPARE(functions.count(), 1);
        QCOMPARE(functions.at(0), (QVariantList{2, false}));
        QCOMPARE(m_env.cloud()->sectionStatus(CPTZCloud::Center), 0);
        QCOMPARE(count(DriverOperation::AutoScan), 0);
    }
    void lightBlinksAndWiperShowsItsRunningName()
    {
        auto *light = m_env.child<QPushButton>("m_pBtnLight");
        light->click();
        QTRY_VERIFY(dome()->status().light);
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight_open"));
        // The timer alternates the two names while the light is on.
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight_open"));
        light->click(); // off: the dark name stays
        QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QTRY_VERIFY(!dome()->status().light);

        m_env.panel()->SwitchPTZWndBgColor(true);
        auto *wiper = m_env.child<QPushButton>("m_pBtnWiper_white_");
        wiper->click();
        QTRY_COMPARE(wiper->objectName(), QStringLiteral("m_pBtnWiper_right_white_"));
        wiper->click();
        QCOMPARE(wiper->objectName(), QStringLiteral("m_pBtnWiper_white_"));
    }
    void lightOfAnotherCameraChangesNothing()
    {
        PTZControlCommand other;
        other.camera_index_code = kBasic.toStdString();
        other.command = ptz_plugin_protocol::PTZ_CMD_LIGHT;
        other.action = ptz_plugin_protocol::PTZ_ACTION_START;
        QSignalSpy succeeded(m_env.controller().get(), &CUniversalPTZController::SignalExecutionSucceeded);
        m_env.controller()->Control(other);
        QTRY_COMPARE(succeeded.count(), 1);
        auto *light = m_env.child<QPushButton>("m_pBtnLight");
        QVERIFY(!light->isChecked());
        QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
    }
    void buttonsSendTheirCommandOrAskTheHost_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("operation"); // -1: none, the host is asked instead
        QTest::addColumn<int>("function");
        QTest::newRow("one-key focus") << "m_pBtnKeyFocus" << int(DriverOperation::OneKeyFocus) << -1;
        QTest::newRow("lens initialisation") << "m_pBtnResetPos" << int(DriverOperation::LensInit) << -1;
        QTest::newRow("3D positioning") << "m_pBtn3D" << -1 << 1;
        QTest::newRow("manual tracking") << "ptr_manual_track_btn_" << -1 << 4;
        QTest::newRow("face capture") << "ptr_face_capture_btn_" << -1 << 5;
    }
    void buttonsSendTheirCommandOrAskTheHost()
    {
        QFETCH(QString, button);
        QFETCH(int, operation);
        QFETCH(int, function);
        QSignalSpy functions(m_env.panel(), &CPreviewPTZWnd::SignalFunctionEnabled);
        auto *widget = m_env.panel()->findChild<QPushButton *>(button);
        widget->click();
        QCoreApplication::processEvents();
        if (operation >= 0) {
            QCOMPARE(m_env.operations(kDome), QList<DriverOperation>{DriverOperation(operation)});
            return;
        }
        widget->click();
        QCOMPARE(functions.count(), 2);
        QCOMPARE(functions.at(0), (QVariantList{function, true}));
        QCOMPARE(functions.at(1), (QVariantList{function, false}));
        QCoreApplication::processEvents();
        QVERIFY(m_env.operations(kDome).isEmpty());
    }
    void hostReportsPictureActionState_data()
    {
        QTest::addColumn<int>("function");
        QTest::addColumn<bool>("on");
        QTest::addColumn<QString>("checked"); // 3D positioning, manual tracking, face capture
        // Every row starts with all three checked.
        QTest::newRow("0 clears all") << 0 << true << "000";
        QTest::newRow("1 off") << 1 << false << "011";
        QTest::newRow("3 on clears all") << 3 << true << "000";
        QTest::newRow("3 off keeps") << 3 << false << "111";
        QTest::newRow("4 off") << 4 << false << "101";
        QTest::newRow("2 ignored") << 2 << false << "111";
    }
    void hostReportsPictureActionState()
    {
        QFETCH(int, function);
        QFETCH(bool, on);
        QFETCH(QString, checked);
        for (int id : {1, 4, 5})
            m_env.panel()->OnWndPtzActionStateChanged(id, true);
        m_env.panel()->OnWndPtzActionStateChanged(function, on);
        QString shown;
        for (const char *name : {"m_pBtn3D", "ptr_manual_track_btn_", "ptr_face_capture_btn_"})
            shown += m_env.child<QPushButton>(name)->isChecked() ? '1' : '0';
        QCOMPARE(shown, checked);
    }
    void autoScanOverPatrolKeepsScanning()
    {
        for (int number : {1, 2})
            dome()->setPreset(number, QStringLiteral("p"));
        dome()->writePatrol(1, {PatrolPoint(1, 20, 5), PatrolPoint(2, 20, 5)});
        dome()->startPatrol(1);
        m_env.storage()->SetCruising(kDome, true, 1);
        QTRY_COMPARE(dome()->status().runningPatrol, 1);
        m_env.settle();
        dome()->clearRequestLog();

        m_env.pressSection(CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        QTRY_COMPARE(m_env.storage()->GetRunningCruise(kDome), -1);
        QCoreApplication::processEvents();
        m_env.clock()->advance(1000);
        QVERIFY(dome()->status().autoScan);
        QCOMPARE(dome()->status().runningPatrol, 0);
        QCOMPARE(count(DriverOperation::StopActivity), 0);
    }
    // A click on the centre switches auto-scan on (its release is no stop), the next click off;
    // a manual move ends auto-scan on the camera, so the panel sends no stop of its own.
    void centreTogglesAutoScanAndMoveEndsIt()
    {
        QWidget *pad = m_env.padViewport();
        QTest::mouseClick(pad, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::Center));
        QTRY_VERIFY(dome()->status().autoScan);
        m_env.settle();
        QVERIFY(dome()->status().autoScan);
        QTest::mouseClick(pad, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::Center));
        QTRY_VERIFY(!dome()->status().autoScan);
        QCOMPARE(count(DriverOperation::AutoScan), 2);
        QCOMPARE(count(DriverOperation::MovePanTilt), 0);

        QTest::mouseClick(pad, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::Center));
        QTRY_VERIFY(dome()->status().autoScan);
        QTest::mousePress(pad, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::TopMiddle));
        QTRY_COMPARE(m_env.cloud()->sectionStatus(CPTZCloud::Center), 0);
        QVERIFY(!m_env.storage()->IsAutoScan(kDome, false));
        QTest::mouseRelease(pad, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::TopMiddle));
        QTRY_VERIFY(!dome()->status().panTiltMoving);
        QVERIFY(!dome()->status().autoScan);
        QCOMPARE(count(DriverOperation::AutoScan), 3);
    }
    // Light and wiper refusals are in the next test.
    void refusalIsShownOnceInTheCameraWords_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<DriverOperation>("operation");
        QTest::newRow("preset call") << "callPreset" << DriverOperation::GotoPreset;
        QTest::newRow("update PTZ") << "update" << DriverOperation::ListPresets;
        QTest::newRow("one-key focus") << "oneKeyFocus" << DriverOperation::OneKeyFocus;
    }
    void refusalIsShownOnceInTheCameraWords()
    {
        QFETCH(QString, action);
        QFETCH(DriverOperation, operation);
        const QString words = QStringLiteral("device busy (%1)").arg(action);
        auto *view = m_env.child<CPresetTableView>("m_pTreeViewPreset");

        if (action == QLatin1String("callPreset")) {
            dome()->setPreset(1, QStringLiteral("gate"));
            m_env.panel()->OnTabIndexChanged(0);
            QTRY_COMPARE(view->model()->rowCount(), 1);
        }
        m_env.settle();
        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);

        dome()->failOperation(operation, words);
        if (action == QLatin1String("callPreset"))
            m_env.panel()->OnRunPresetBtnClicked(view->model()->index(0, 2));
        else if (action == QLatin1String("update"))
            m_env.child<QPushButton>("ptr_update_ptz_btn_")->click();
        else
            m_env.child<QPushButton>("m_pBtnKeyFocus")->click();

        QTRY_VERIFY(tips.count() >= 1);
        m_env.settle();
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.at(0), (QVariantList{words, 0}));
    }
    void auxiliaryButtonFollowsTheCameraAfterARefusal_data()
    {
        QTest::addColumn<bool>("light");    // else the wiper
        QTest::addColumn<bool>("switchOn"); // the refused switch; the camera stays at !switchOn
        QTest::newRow("light on") << true << true;
        QTest::newRow("wiper off") << false << false;
    }
    void auxiliaryButtonFollowsTheCameraAfterARefusal()
    {
        QFETCH(bool, light);
        QFETCH(bool, switchOn);
        auto cameraHas = [&] { return light ? dome()->status().light : dome()->status().wiper; };

        const auto second = m_env.otherPanel(kDome);
        // Found while off, by the dark name: it blinks between two names while on.
        const QString name = light ? QStringLiteral("m_pBtnLight") : QStringLiteral("m_pBtnWiper");
        QPushButton *mine = m_env.panel()->findChild<QPushButton *>(name);
        QPushButton *theirs = second->findChild<QPushButton *>(name);
        if (!switchOn) {
            mine->click();
            QTRY_VERIFY(cameraHas());
            QTRY_VERIFY(theirs->isChecked());
        }
        m_env.settle();

        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);
        dome()->failOperation(light ? DriverOperation::Light : DriverOperation::Wiper, QStringLiteral("relay stuck"));
        mine->click();
        QCOMPARE(mine->isChecked(), switchOn); // shown at once, before the camera answers
        m_env.settle();
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.at(0), (QVariantList{QStringLiteral("relay stuck"), 0}));

        QCOMPARE(cameraHas(), !switchOn);
        QCOMPARE(mine->isChecked(), !switchOn);
        QCOMPARE(light ? m_env.storage()->IsLight(kDome) : m_env.storage()->IsWiper(kDome), !switchOn);
        QCOMPARE(theirs->isChecked(), !switchOn);
        // A panel bound now reads the state at once.
        const auto third = m_env.otherPanel(kDome, 2);
        QCOMPARE(third->findChildren<QPushButton *>(QRegularExpression("^" + name)).value(0)->isChecked(), !switchOn);
    }
    void updateButtonComesBackWhenTheScreenStops_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("stop work") << "stopWork";
        QTest::newRow("other camera") << "rebind";
        QTest::newRow("answer") << "answer";
    }
    void updateButtonComesBackWhenTheScreenStops()
    {
        QFETCH(QString, how);
        QSignalSpy enabled(m_env.panel(), &CPreviewPTZWnd::SignalUpdatePtzInfoEnabled);
        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);
        auto *update = m_env.child<QPushButton>("ptr_update_ptz_btn_");
        update->click();
        QVERIFY(!update->isEnabled());
        QCOMPARE(enabled.count(), 1);

        if (how == QLatin1String("stopWork"))
            m_env.panel()->StopWork();
        else if (how != QLatin1String("answer"))
            m_env.panel()->SetCamera(QString(), how == QLatin1String("rebind") ? kBasic : QString(), false, false);
        QTRY_COMPARE(enabled.count(), 2);
        m_env.settle();
        QCOMPARE(enabled.count(), 2);
        QCOMPARE(enabled.at(0).at(0).toBool(), false);
        QCOMPARE(enabled.at(1).at(0).toBool(), true);
        QCOMPARE(update->isEnabled(), m_env.panel()->IsWorking());
        if (how == QLatin1String("answer")) {
            QVERIFY(m_env.operations(kDome).contains(DriverOperation::ListPresets));
            QCOMPARE(tips.count(), 1);
            QCOMPARE(tips.at(0).at(1).toInt(), 3);
        }
    }

private:
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    int count(DriverOperation op) const { return m_env.count(kDome, op); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndCommands)
#include "tst_cpreviewptzwnd_commands.moc"
