#include "support/panelfixture.h"

#include "preset/cpresettableview.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <cmath>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using ptz_plugin_protocol::PTZControlCommand;
using zeph_ptz_controller::CUniversalPTZController;

namespace {
zeph_ptz_controller::CPTZStateStorageManager *Storage()
{
    return zeph_ptz_controller::CPTZStateStorageManager::Instance();
}
} // namespace

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

    void padPressMovesAtSliderSpeedAndReleaseStops_data()
    {
        QTest::addColumn<int>("section");
        QTest::addColumn<int>("speed");
        QTest::addColumn<double>("panPerSecond");
        QTest::addColumn<double>("tiltPerSecond");
        QTest::newRow("1 up-left at 3") << int(CPTZCloud::TopLeft) << 3 << -6.0 << 6.0;
        QTest::newRow("2 up at 10") << int(CPTZCloud::TopMiddle) << 10 << 0.0 << 20.0;
        QTest::newRow("3 up-right at 2") << int(CPTZCloud::TopRight) << 2 << 4.0 << 4.0;
        QTest::newRow("4 left at 20") << int(CPTZCloud::MiddleLeft) << 20 << -40.0 << 0.0;
        QTest::newRow("6 right at 1") << int(CPTZCloud::MiddleRight) << 1 << 2.0 << 0.0;
        QTest::newRow("7 down-left at 6") << int(CPTZCloud::BottomLeft) << 6 << -12.0 << -12.0;
        QTest::newRow("8 down at 5") << int(CPTZCloud::BottomMiddle) << 5 << 0.0 << -10.0;
        QTest::newRow("9 down-right at 4") << int(CPTZCloud::BottomRight) << 4 << 8.0 << -8.0;
    }
    void padPressMovesAtSliderSpeedAndReleaseStops()
    {
        QFETCH(int, section);
        QFETCH(int, speed);
        QFETCH(double, panPerSecond);
        QFETCH(double, tiltPerSecond);

        m_env.child<QSlider>("ptr_speed_slider_")->setValue(speed);
        const auto before = dome()->status();
        m_env.pressSection(section);
        QTRY_VERIFY(dome()->status().panTiltMoving);
        m_env.clock()->advance(1000);
        const auto moved = dome()->status();
        QVERIFY(qAbs(std::fmod(moved.pan - before.pan + 540.0, 360.0) - 180.0 - panPerSecond) < 0.5);
        QVERIFY(qAbs(moved.tilt - before.tilt - tiltPerSecond) < 0.5);

        m_env.releaseSection(section);
        QTRY_VERIFY(!dome()->status().panTiltMoving);
        const auto stopped = dome()->status();
        m_env.clock()->advance(1000);
        QCOMPARE(dome()->status().pan, stopped.pan);
        QCOMPARE(dome()->status().tilt, stopped.tilt);
        QCOMPARE(count(DriverOperation::MovePanTilt), 1);
        QCOMPARE(count(DriverOperation::StopPanTilt), 1);
    }
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
    void centreTogglesAutoScanWithoutMove()
    {
        m_env.pressSection(CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        m_env.releaseSection(CPTZCloud::Center);
        QTRY_VERIFY(!dome()->status().autoScan);
        QCOMPARE(count(DriverOperation::AutoScan), 2);
        QCOMPARE(count(DriverOperation::MovePanTilt), 0);
    }
    void autoScanRefusedWhilePatternRecords()
    {
        Storage()->SetRecordPattern(kDome, 1);
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
    void lensButtonsSendOnlyWhenEnabled_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("zoomAbility");
        QTest::addColumn<DriverOperation>("operation");
        QTest::addColumn<int>("expected");
        QTest::addColumn<int>("direction"); // sign of the change of the lens axis while held

        QTest::newRow("zoom in") << "pZoomInBtn" << true << DriverOperation::Zoom << 2 << 1;
        QTest::newRow("zoom out") << "pZoomOutBtn" << true << DriverOperation::Zoom << 2 << -1;
        QTest::newRow("zoom in disabled") << "pZoomInBtn" << false << DriverOperation::Zoom << 0 << 0;
        QTest::newRow("focus near") << "pFocusInBtn" << true << DriverOperation::Focus << 2 << -1;
        QTest::newRow("focus far") << "pFocusOutBtn" << true << DriverOperation::Focus << 2 << 1;
        QTest::newRow("iris open") << "pIRISInBtn" << true << DriverOperation::Iris << 2 << 1;
        QTest::newRow("iris close") << "pIRISOutBtn" << true << DriverOperation::Iris << 2 << -1;
    }
    void lensButtonsSendOnlyWhenEnabled()
    {
        QFETCH(QString, button);
        QFETCH(bool, zoomAbility);
        QFETCH(DriverOperation, operation);
        QFETCH(int, expected);
        QFETCH(int, direction);

        if (!zoomAbility) {
            m_env.bind(QString());
            m_env.setAbilities(kDome, {1, 46, 48, 49});
            m_env.bind(kDome);
        }
        auto axis = [this, operation] {
            const auto status = dome()->status();
            return operation == DriverOperation::Zoom    ? status.zoom
                   : operation == DriverOperation::Focus ? status.focus
                                                         : status.iris;
        };
        const double before = axis();
        auto *widget = m_env.panel()->findChild<QPushButton *>(button);
        QCOMPARE(widget->isEnabled(), zoomAbility || !button.startsWith(QLatin1String("pZoom")));
        PanelFixture::sendMouse(widget, true);
        QTRY_COMPARE(count(operation), expected / 2);
        // The camera starts once the request is answered; let the clock run until it has.
        if (direction != 0)
            QTRY_VERIFY((m_env.clock()->advance(100), std::abs(axis() - before) > 0.01));
        PanelFixture::sendMouse(widget, false);
        QTRY_COMPARE(count(operation), expected);
        const double change = axis() - before;
        QCOMPARE(change > 0.01 ? 1 : change < -0.01 ? -1 : 0, direction);
    }
    void lightBlinksAndWiperShowsItsRunningName()
    {
        auto *light = m_env.child<QPushButton>("m_pBtnLight");
        light->click();
        QTRY_VERIFY(dome()->status().light);
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight_open"));
        QVERIFY(light->isChecked());
        // The timer alternates the two names while the light is on.
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight_open"));
        light->click(); // off
        QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QTRY_VERIFY(!dome()->status().light);

        m_env.panel()->SwitchPTZWndBgColor(true);
        auto *wiper = m_env.child<QPushButton>("m_pBtnWiper_white_");
        wiper->click();
        QTRY_VERIFY(dome()->status().wiper);
        QTRY_COMPARE(wiper->objectName(), QStringLiteral("m_pBtnWiper_right_white_"));
        wiper->click();
        QCOMPARE(wiper->objectName(), QStringLiteral("m_pBtnWiper_white_"));
        QTRY_VERIFY(!dome()->status().wiper);
    }
    void successForAnotherCameraChangesNothing_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("command");
        QTest::addColumn<int>("param");
        QTest::newRow("light") << kBasic << int(ptz_plugin_protocol::PTZ_CMD_LIGHT) << 0;
        // Its handler writes the state of the panel's own camera: only the camera check keeps it out.
        QTest::newRow("pattern record") << kCascade << int(ptz_plugin_protocol::PTZ_CMD_PATTERN_RECORD_START) << 1;
    }
    void successForAnotherCameraChangesNothing()
    {
        QFETCH(QString, camera);
        QFETCH(int, command);
        QFETCH(int, param);
        PTZControlCommand other;
        other.camera_index_code = camera.toStdString();
        other.command = quint32(command);
        other.action = ptz_plugin_protocol::PTZ_ACTION_START;
        other.param = param;
        QSignalSpy succeeded(m_env.controller().get(), &CUniversalPTZController::SignalExecutionSucceeded);
        m_env.controller()->Control(other);
        QTRY_COMPARE(succeeded.count(), 1);
        auto *light = m_env.child<QPushButton>("m_pBtnLight");
        QVERIFY(!light->isChecked());
        QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QVERIFY(!Storage()->IsRecordPattern(kDome));
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
        QTest::addColumn<bool>("threeD");
        QTest::addColumn<bool>("manual");
        QTest::addColumn<bool>("face");
        // Every row starts with all three checked.
        QTest::newRow("0 clears all") << 0 << true << false << false << false;
        QTest::newRow("1 off") << 1 << false << false << true << true;
        QTest::newRow("3 on clears all") << 3 << true << false << false << false;
        QTest::newRow("3 off keeps") << 3 << false << true << true << true;
        QTest::newRow("4 off") << 4 << false << true << false << true;
        QTest::newRow("5 off") << 5 << false << true << true << false;
        QTest::newRow("2 ignored") << 2 << false << true << true << true;
    }
    void hostReportsPictureActionState()
    {
        QFETCH(int, function);
        QFETCH(bool, on);
        QFETCH(bool, threeD);
        QFETCH(bool, manual);
        QFETCH(bool, face);
        for (int id : {1, 4, 5})
            m_env.panel()->OnWndPtzActionStateChanged(id, true);
        m_env.panel()->OnWndPtzActionStateChanged(function, on);
        QCOMPARE(m_env.child<QPushButton>("m_pBtn3D")->isChecked(), threeD);
        QCOMPARE(m_env.child<QPushButton>("ptr_manual_track_btn_")->isChecked(), manual);
        QCOMPARE(m_env.child<QPushButton>("ptr_face_capture_btn_")->isChecked(), face);
    }
    void refreshReadsPresetsFromTheCamera()
    {
        QSignalSpy enabled(m_env.panel(), &CPreviewPTZWnd::SignalUpdatePtzInfoEnabled);
        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);
        auto *refresh = m_env.child<QPushButton>("ptr_update_ptz_btn_");
        refresh->click();
        QVERIFY(!refresh->isEnabled());
        QCOMPARE(enabled.count(), 1);
        QCOMPARE(enabled.at(0).at(0).toBool(), false);
        QTRY_COMPARE(enabled.count(), 2);
        QCOMPARE(enabled.at(1).at(0).toBool(), true);
        QVERIFY(refresh->isEnabled());
        QVERIFY(m_env.operations(kDome).contains(DriverOperation::ListPresets));
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.at(0).at(1).toInt(), 3);
    }
    void autoScanOverPatrolKeepsScanning()
    {
        using namespace ptz_plugin_protocol;
        auto controller = m_env.controller();
        QSignalSpy cruises(controller.get(), &CUniversalPTZController::signalCruiseFinished);
        for (int number : {1, 2})
            dome()->setPreset(number, QStringLiteral("p"));
        CruiseControlRequest patrol;
        patrol.camera_index_code = kDome.toStdString();
        patrol.operation = "ModifyCruiseRoute";
        patrol.cruise_index = 1;
        patrol.action = CRUISE_TYPE_DEVICE;
        for (uint32_t preset : {1u, 2u}) {
            CruisePoint point;
            point.preset_index = preset;
            point.speed = 20;
            point.dwell_time = 5;
            patrol.points.push_back(point);
        }
        controller->Cruise(patrol);
        patrol.operation = "CruiseRouteControl";
        patrol.action = 0;
        patrol.points.clear();
        controller->Cruise(patrol);
        QTRY_COMPARE(cruises.count(), 2);
        QTRY_COMPARE(dome()->status().runningPatrol, 1);
        dome()->clearRequestLog();

        m_env.pressSection(CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        QTRY_COMPARE(Storage()->GetRunningCruise(kDome), -1);
        QCoreApplication::processEvents();
        m_env.clock()->advance(1000);
        QVERIFY(dome()->status().autoScan);
        QCOMPARE(dome()->status().runningPatrol, 0);
        QCOMPARE(count(DriverOperation::StopActivity), 0);
    }
    void manualMoveEndsAutoScanWithoutSecondStop()
    {
        m_env.pressSection(CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        m_env.cloud()->SetSectionChecked(CPTZCloud::Center, true); // as the pad shows a switched-on centre

        m_env.pressSection(CPTZCloud::TopMiddle);
        QTRY_COMPARE(m_env.cloud()->sectionStatus(CPTZCloud::Center), 0);
        QVERIFY(!Storage()->IsAutoScan(kDome, false));
        m_env.releaseSection(CPTZCloud::TopMiddle);
        QTRY_VERIFY(!dome()->status().panTiltMoving);
        QVERIFY(!dome()->status().autoScan);
        QCOMPARE(count(DriverOperation::AutoScan), 1); // the panel sent no stop of its own
    }
    void secondPanelOfTheCameraShowsItsState()
    {
        m_env.child<QPushButton>("m_pBtnLight")->click();
        m_env.child<QPushButton>("m_pBtnWiper")->click();
        QTRY_VERIFY(Storage()->IsLight(kDome) && Storage()->IsWiper(kDome));
        CPreviewPTZWnd second(1, false, false);
        second.SetPTZController(m_env.controller(), nullptr);
        second.SetCamera(QString(), kDome, false, false);
        auto *light = second.findChild<QPushButton *>(QStringLiteral("m_pBtnLight_open"));
        QVERIFY(light && light->isChecked());
        QVERIFY(second.findChild<QPushButton *>(QStringLiteral("m_pBtnWiper_right")));
    }

    void refusalIsShownOnceInTheCameraWords_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<DriverOperation>("operation");
        QTest::newRow("preset call") << "callPreset" << DriverOperation::GotoPreset;
        QTest::newRow("update PTZ") << "update" << DriverOperation::ListPresets;
        QTest::newRow("light on") << "lightOn" << DriverOperation::Light;
        QTest::newRow("light off") << "lightOff" << DriverOperation::Light;
        QTest::newRow("wiper off") << "wiperOff" << DriverOperation::Wiper;
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
        } else if (action == QLatin1String("lightOff")) {
            m_env.child<QPushButton>("m_pBtnLight")->click();
            QTRY_VERIFY(dome()->status().light);
        } else if (action == QLatin1String("wiperOff")) {
            m_env.child<QPushButton>("m_pBtnWiper")->click();
            QTRY_VERIFY(dome()->status().wiper);
        }
        m_env.settle();
        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);

        dome()->failOperation(operation, words);
        if (action == QLatin1String("callPreset"))
            m_env.panel()->OnRunPresetBtnClicked(view->model()->index(0, 2));
        else if (action == QLatin1String("update"))
            m_env.child<QPushButton>("ptr_update_ptz_btn_")->click();
        else if (action.startsWith(QLatin1String("light")))
            m_env.panel()->OnLight(action == QLatin1String("lightOn"));
        else if (action == QLatin1String("wiperOff"))
            m_env.panel()->OnWiper(false);
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
        QTest::newRow("light off") << true << false;
        QTest::newRow("wiper on") << false << true;
        QTest::newRow("wiper off") << false << false;
    }
    void auxiliaryButtonFollowsTheCameraAfterARefusal()
    {
        QFETCH(bool, light);
        QFETCH(bool, switchOn);
        auto cameraHas = [&] { return light ? dome()->status().light : dome()->status().wiper; };

        CPreviewPTZWnd second(1, false, false);
        second.SetPTZController(m_env.controller(), nullptr);
        second.SetCamera(QString(), kDome, false, false);
        // Found while off, by the dark name: it blinks between two names while on.
        const QString name = light ? QStringLiteral("m_pBtnLight") : QStringLiteral("m_pBtnWiper");
        QPushButton *mine = m_env.panel()->findChild<QPushButton *>(name);
        QPushButton *theirs = second.findChild<QPushButton *>(name);
        if (!switchOn) {
            mine->click();
            QTRY_VERIFY(cameraHas());
            QTRY_VERIFY(theirs->isChecked());
        }
        m_env.settle();

        dome()->failOperation(light ? DriverOperation::Light : DriverOperation::Wiper, QStringLiteral("relay stuck"));
        mine->click();
        QCOMPARE(mine->isChecked(), switchOn); // shown at once, before the camera answers
        m_env.settle();

        QCOMPARE(cameraHas(), !switchOn);
        QCOMPARE(mine->isChecked(), !switchOn);
        auto *storage = Storage();
        QCOMPARE(light ? storage->IsLight(kDome) : storage->IsWiper(kDome), !switchOn);
        QCOMPARE(theirs->isChecked(), !switchOn);
    }
    void updateButtonComesBackWhenTheScreenStops_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("stop work") << "stopWork";
        QTest::newRow("unbind") << "unbind";
        QTest::newRow("other camera") << "rebind";
        QTest::newRow("answer") << "answer";
    }
    void updateButtonComesBackWhenTheScreenStops()
    {
        QFETCH(QString, how);
        QSignalSpy enabled(m_env.panel(), &CPreviewPTZWnd::SignalUpdatePtzInfoEnabled);
        auto *update = m_env.child<QPushButton>("ptr_update_ptz_btn_");
        update->click();
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
    }

private:
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    int count(DriverOperation op) const { return m_env.count(kDome, op); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndCommands)
#include "tst_cpreviewptzwnd_commands.moc"
