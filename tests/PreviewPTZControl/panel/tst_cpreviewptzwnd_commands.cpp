#include "support/panelfixture.h"

#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include <QGraphicsView>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <cmath>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
namespace demo = site_store::demo;

namespace {

double PanDelta(double before, double after)
{
    return std::fmod(after - before + 540.0, 360.0) - 180.0;
}
} // namespace

class TestPreviewPTZWndCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_env.setUp();
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(m_env.panel()->IsWorking());
        QVERIFY(dome());
        dome()->setPosition(100.0, -45.0, 2.0);
        QCoreApplication::processEvents();
        dome()->clearRequestLog();
    }
    void cleanup() { m_env.tearDown(); }

    void padPressMovesAtSliderSpeedAndReleaseStops_data()
    {
        QTest::addColumn<int>("section");
        QTest::addColumn<int>("speed");
        QTest::addColumn<double>("panPerSecond");
        QTest::addColumn<double>("tiltPerSecond");

        QTest::newRow("2 up at 10") << int(CPTZCloud::TopMiddle) << 10 << 0.0 << 20.0;
        QTest::newRow("8 down at 5") << int(CPTZCloud::BottomMiddle) << 5 << 0.0 << -10.0;
        QTest::newRow("4 left at 20") << int(CPTZCloud::MiddleLeft) << 20 << -40.0 << 0.0;
        QTest::newRow("6 right at 1") << int(CPTZCloud::MiddleRight) << 1 << 2.0 << 0.0;
        QTest::newRow("9 down-right at 4") << int(CPTZCloud::BottomRight) << 4 << 8.0 << -8.0;
    }
    void padPressMovesAtSliderSpeedAndReleaseStops()
    {
        QFETCH(int, section);
        QFETCH(int, speed);
        QFETCH(double, panPerSecond);
        QFETCH(double, tiltPerSecond);

        child<QSlider>("ptr_speed_slider_")->setValue(speed);
        const auto before = dome()->status();
        emit cloud()->signalPressSection(nullptr, CPTZCloud::enClickSection(section));
        QTRY_VERIFY(dome()->status().panTiltMoving);
        m_env.clock()->advance(1000);
        const auto moved = dome()->status();
        QVERIFY(qAbs(PanDelta(before.pan, moved.pan) - panPerSecond) < 0.5);
        QVERIFY(qAbs(moved.tilt - before.tilt - tiltPerSecond) < 0.5);

        emit cloud()->signalReleaseSection(nullptr, CPTZCloud::enClickSection(section));
        QTRY_VERIFY(!dome()->status().panTiltMoving);
        const auto stopped = dome()->status();
        m_env.clock()->advance(1000);
        QCOMPARE(dome()->status().pan, stopped.pan);
        QCOMPARE(dome()->status().tilt, stopped.tilt);
        QCOMPARE(count(DriverOperation::MovePanTilt), 1);
        QCOMPARE(count(DriverOperation::StopPanTilt), 1);
    }
    void commandRecordCarriesSpeedOwnerAndFlags()
    {
        using ptz_plugin_protocol::PTZControlCommand;
        QSignalSpy succeeded(
            m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded);
        child<QSlider>("ptr_speed_slider_")->setValue(7);
        emit cloud()->signalPressSection(nullptr, CPTZCloud::TopLeft);
        child<QSlider>("ptr_speed_slider_")->setValue(9); // read again for the release
        emit cloud()->signalReleaseSection(nullptr, CPTZCloud::TopLeft);
        m_env.panel()->StopAutoScan(QStringLiteral("operator-console"), kDome, true);
        QTRY_COMPARE(succeeded.count(), 3);

        const auto press = succeeded.at(0).at(2).value<PTZControlCommand>();
        QCOMPARE(press.camera_index_code, kDome.toStdString());
        QVERIFY(press.owner_index_code.empty());
        QCOMPARE(press.command, 25u);
        QCOMPARE(press.action, 0u);
        QCOMPARE(press.speed, 7);
        QCOMPARE(press.param, 0);
        QCOMPARE(press.channel, 1);
        QCOMPARE(press.extra, 0);
        const auto release = succeeded.at(1).at(2).value<PTZControlCommand>();
        QCOMPARE(release.command, 25u);
        QCOMPARE(release.action, 1u);
        QCOMPARE(release.speed, 9);
        const auto stop = succeeded.at(2).at(2).value<PTZControlCommand>();
        QCOMPARE(stop.owner_index_code, std::string("operator-console"));
        QCOMPARE(stop.command, 29u);
        QCOMPARE(stop.action, 1u);
    }
    void centreTogglesAutoScanWithoutMove()
    {
        emit cloud()->signalPressSection(nullptr, CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        emit cloud()->signalReleaseSection(nullptr, CPTZCloud::Center);
        QTRY_VERIFY(!dome()->status().autoScan);
        QCOMPARE(count(DriverOperation::AutoScan), 2);
        QCOMPARE(count(DriverOperation::MovePanTilt), 0);
    }
    void autoScanRefusedWhilePatternRecords()
    {
        zeph_ptz_controller::CPTZStateStorageManager::Instance()->SetRecordPattern(kDome, 1);
        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);
        QSignalSpy functions(m_env.panel(), &CPreviewPTZWnd::SignalFunctionEnabled);
        emit cloud()->signalPressSection(nullptr, CPTZCloud::Center);
        QCoreApplication::processEvents();
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.at(0).at(0).toString(), QStringLiteral("TrackOperationInProgkdawnXPU"));
        QCOMPARE(tips.at(0).at(1).toInt(), 2);
        QCOMPARE(functions.count(), 1);
        QCOMPARE(functions.at(0), (QVariantList { 2, false }));
        QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
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
        QTest::newRow("zoom out disabled") << "pZoomOutBtn" << false << DriverOperation::Zoom << 0 << 0;
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
            m_env.setAbilities(kDome, { 1, 46, 48, 49 });
            m_env.bind(kDome);
        }
        auto axis = [this, operation] {
            const auto status = dome()->status();
            return operation == DriverOperation::Zoom ? status.zoom
                : operation == DriverOperation::Focus ? status.focus
                                                      : status.iris;
        };
        const double before = axis();
        auto *widget = m_env.panel()->findChild<QPushButton *>(button);
        QVERIFY(widget);
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
    void lightOnBlinksAndFailureRollsBack()
    {
        auto *light = child<QPushButton>("m_pBtnLight");
        light->click();
        QTRY_VERIFY(dome()->status().light);
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight_open"));
        QVERIFY(light->isChecked());
        // The 500 ms timer alternates the two names while the light is on.
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QTRY_COMPARE(light->objectName(), QStringLiteral("m_pBtnLight_open"));

        light->click(); // off
        QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QTRY_VERIFY(!dome()->status().light);

        dome()->failOperation(DriverOperation::Light, QStringLiteral("lamp broken"));
        light->click();
        QVERIFY(light->isChecked());
        QTRY_VERIFY(!light->isChecked());
        QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QVERIFY(!zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsLight(kDome));
        QVERIFY(!dome()->status().light);
    }
    void wiperOnShowsItsRunningName()
    {
        m_env.panel()->SwitchPTZWndBgColor(true);
        auto *wiper = child<QPushButton>("m_pBtnWiper_white_");
        QVERIFY(wiper);
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
        auto *light = child<QPushButton>("m_pBtnLight");
        ptz_plugin_protocol::PTZControlCommand other;
        other.camera_index_code = camera.toStdString();
        other.command = quint32(command);
        other.action = ptz_plugin_protocol::PTZ_ACTION_START;
        other.param = param;
        QSignalSpy succeeded(
            m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded);
        m_env.controller()->Control(other);
        QTRY_COMPARE(succeeded.count(), 1);
        QVERIFY(!light->isChecked());
        QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
        QVERIFY(!zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsRecordPattern(kDome));
    }
    void oneShotButtonsSendTheirCommand_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("operation");
        QTest::newRow("one-key focus") << "m_pBtnKeyFocus" << int(DriverOperation::OneKeyFocus);
        QTest::newRow("lens initialisation") << "m_pBtnResetPos" << int(DriverOperation::LensInit);
    }
    void oneShotButtonsSendTheirCommand()
    {
        QFETCH(QString, button);
        QFETCH(int, operation);
        m_env.panel()->findChild<QPushButton *>(button)->click();
        QCoreApplication::processEvents();
        QCOMPARE(m_env.operations(kDome), QList<DriverOperation> { DriverOperation(operation) });
    }
    void pictureFunctionsGoToTheHost_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("function");
        QTest::newRow("3D positioning") << "m_pBtn3D" << 1;
        QTest::newRow("manual tracking") << "ptr_manual_track_btn_" << 4;
        QTest::newRow("face capture") << "ptr_face_capture_btn_" << 5;
    }
    void pictureFunctionsGoToTheHost()
    {
        QFETCH(QString, button);
        QFETCH(int, function);
        QSignalSpy functions(m_env.panel(), &CPreviewPTZWnd::SignalFunctionEnabled);
        auto *widget = m_env.panel()->findChild<QPushButton *>(button);
        widget->click();
        widget->click();
        QCOMPARE(functions.count(), 2);
        QCOMPARE(functions.at(0), (QVariantList { function, true }));
        QCOMPARE(functions.at(1), (QVariantList { function, false }));
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
        for (int id : { 1, 4, 5 })
            m_env.panel()->OnWndPtzActionStateChanged(id, true);
        m_env.panel()->OnWndPtzActionStateChanged(function, on);
        QCOMPARE(child<QPushButton>("m_pBtn3D")->isChecked(), threeD);
        QCOMPARE(child<QPushButton>("ptr_manual_track_btn_")->isChecked(), manual);
        QCOMPARE(child<QPushButton>("ptr_face_capture_btn_")->isChecked(), face);
    }
    void refreshReadsPresetsFromTheCamera()
    {
        QSignalSpy enabled(m_env.panel(), &CPreviewPTZWnd::SignalUpdatePtzInfoEnabled);
        QSignalSpy tips(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);
        auto *refresh = child<QPushButton>("ptr_update_ptz_btn_");
        QVERIFY(refresh->isEnabled());
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
        QSignalSpy presets(controller.get(), &zeph_ptz_controller::CUniversalPTZController::signalPresetFinished);
        QSignalSpy cruises(controller.get(), &zeph_ptz_controller::CUniversalPTZController::signalCruiseFinished);
        for (int number : { 1, 2 }) {
            PresetControlRequest set;
            set.operation = "SetPreset";
            set.camera_index_code = kDome.toStdString();
            set.preset_index = number;
            set.preset_name = "p";
            controller->Preset(set);
        }
        QTRY_COMPARE(presets.count(), 2);
        CruiseControlRequest patrol;
        patrol.camera_index_code = kDome.toStdString();
        patrol.operation = "ModifyCruiseRoute";
        patrol.cruise_index = 1;
        patrol.action = CRUISE_TYPE_DEVICE;
        for (uint32_t preset : { 1u, 2u }) {
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

        emit cloud()->signalPressSection(nullptr, CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        QTRY_COMPARE(zeph_ptz_controller::CPTZStateStorageManager::Instance()->GetRunningCruise(kDome), -1);
        QCoreApplication::processEvents();
        m_env.clock()->advance(1000);
        QVERIFY(dome()->status().autoScan);
        QCOMPARE(dome()->status().runningPatrol, 0);
        QCOMPARE(count(DriverOperation::StopActivity), 0);
    }
    void manualMoveEndsAutoScanWithoutSecondStop()
    {
        emit cloud()->signalPressSection(nullptr, CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        cloud()->SetSectionChecked(CPTZCloud::Center, true); // as the pad shows a switched-on centre

        emit cloud()->signalPressSection(nullptr, CPTZCloud::TopMiddle);
        QTRY_COMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
        QVERIFY(!zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsAutoScan(kDome, false));
        emit cloud()->signalReleaseSection(nullptr, CPTZCloud::TopMiddle);
        QTRY_VERIFY(!dome()->status().panTiltMoving);
        QVERIFY(!dome()->status().autoScan);
        QCOMPARE(count(DriverOperation::AutoScan), 1); // the panel sent no stop of its own
    }
    void secondPanelOfTheCameraShowsItsState()
    {
        child<QPushButton>("m_pBtnLight")->click();
        child<QPushButton>("m_pBtnWiper")->click();
        QTRY_VERIFY(dome()->status().light && dome()->status().wiper);
        QTRY_VERIFY(zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsLight(kDome));

        CPreviewPTZWnd second(1, false, false);
        second.SetPTZController(m_env.controller(), nullptr);
        second.SetCamera(QString(), kDome, false, false);
        auto *light = second.findChild<QPushButton *>(QStringLiteral("m_pBtnLight_open"));
        QVERIFY(light);
        QVERIFY(light->isChecked());
        QVERIFY(second.findChild<QPushButton *>(QStringLiteral("m_pBtnWiper_right")));
    }
    void heldMotionStopsOnceWhenMouseIsLost_data()
    {
        QTest::addColumn<QString>("held"); // "pad" or a lens button
        QTest::addColumn<QString>("loss");

        for (const char *held : { "pad", "pZoomInBtn" }) {
            for (const char *loss : { "hide", "rebind", "stopWork", "deactivate", "ungrab", "disable" })
                QTest::addRow("%s, %s", held, loss) << QString::fromLatin1(held) << QString::fromLatin1(loss);
        }
    }
    void heldMotionStopsOnceWhenMouseIsLost()
    {
        QFETCH(QString, held);
        QFETCH(QString, loss);

        m_env.panel()->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_env.panel()));
        const bool pad = held == QLatin1String("pad");
        auto *zoom = child<QPushButton>("pZoomInBtn");
        if (pad)
            emit cloud()->signalPressSection(nullptr, CPTZCloud::TopMiddle);
        else
            PanelFixture::sendMouse(zoom, true);
        QTRY_VERIFY(pad ? dome()->status().panTiltMoving : dome()->status().zoomMoving);

        if (loss == QLatin1String("hide")) {
            m_env.panel()->hide();
        } else if (loss == QLatin1String("rebind")) {
            m_env.panel()->SetCamera(QString(), kBasic, false, false);
        } else if (loss == QLatin1String("stopWork")) {
            m_env.panel()->StopWork();
        } else if (loss == QLatin1String("deactivate")) {
            QEvent deactivate(QEvent::WindowDeactivate);
            QCoreApplication::sendEvent(m_env.panel(), &deactivate);
        } else if (loss == QLatin1String("disable")) {
            m_env.panel()->setEnabled(false);
        } else {
            // The pad's overlay view holds the mouse for the pad.
            QWidget *grabber = pad ? static_cast<QWidget *>(cloud()->findChild<QGraphicsView *>()) : zoom;
            QVERIFY(grabber);
            QEvent ungrab(QEvent::UngrabMouse);
            QCoreApplication::sendEvent(grabber, &ungrab);
        }
        QTRY_VERIFY(pad ? !dome()->status().panTiltMoving : !dome()->status().zoomMoving);

        // The release that finally arrives must not send a second stop.
        if (pad)
            emit cloud()->signalReleaseSection(nullptr, CPTZCloud::TopMiddle);
        else
            PanelFixture::sendMouse(zoom, false);
        QCoreApplication::processEvents();
        if (pad) {
            QCOMPARE(count(DriverOperation::MovePanTilt), 1);
            QCOMPARE(count(DriverOperation::StopPanTilt), 1);
        } else {
            QCOMPARE(count(DriverOperation::Zoom), 2);
        }
    }

private:
    template <typename T> T *child(const char *name) const { return m_env.child<T>(name); }
    CPTZCloud *cloud() const { return m_env.cloud(); }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    int count(DriverOperation op) const { return m_env.operations(kDome).count(op); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndCommands)
#include "tst_cpreviewptzwnd_commands.moc"
