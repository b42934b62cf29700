#include "paneltestenv.h"

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
const QString kDome = QString::fromLatin1(demo::kSpeedDome);
const QString kBasic = QString::fromLatin1(demo::kPtzNoPattern);

double PanDelta(double before, double after)
{
    return std::fmod(after - before + 540.0, 360.0) - 180.0;
}

void SendMouse(QWidget *widget, QEvent::Type type)
{
    QMouseEvent event(type, QPointF(4, 4), Qt::LeftButton, type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}
} // namespace

class TestPreviewPTZWndCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void padPressMovesAtSliderSpeedAndReleaseStops_data();
    void padPressMovesAtSliderSpeedAndReleaseStops();
    void commandRecordCarriesSpeedOwnerAndFlags();
    void centreTogglesAutoScanWithoutMove();
    void autoScanRefusedWhilePatternRecords();
    void lensButtonsSendOnlyWhenEnabled_data();
    void lensButtonsSendOnlyWhenEnabled();
    void lightOnBlinksAndFailureRollsBack();
    void wiperOnShowsItsRunningName();
    void successForAnotherCameraChangesNothing();
    void oneShotButtonsSendTheirCommand_data();
    void oneShotButtonsSendTheirCommand();
    void pictureFunctionsGoToTheHost_data();
    void pictureFunctionsGoToTheHost();
    void hostReportsPictureActionState_data();
    void hostReportsPictureActionState();
    void refreshReadsPresetsFromTheCamera();
    void autoScanOverPatrolKeepsScanning();
    void manualMoveEndsAutoScanWithoutSecondStop();
    void secondPanelOfTheCameraShowsItsState();
    void heldMotionStopsOnceWhenMouseIsLost_data();
    void heldMotionStopsOnceWhenMouseIsLost();

private:
    template <typename T>
    T *child(const char *name) const
    {
        return m_panel->findChild<T *>(QString::fromLatin1(name));
    }
    CPTZCloud *cloud() const { return child<CPTZCloud>("ptr_cloud_"); }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    int count(DriverOperation op) const { return m_env.operations(kDome).count(op); }

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
};

void TestPreviewPTZWndCommands::init()
{
    m_env.setUp();
    m_panel = new CPreviewPTZWnd(0, false, false);
    m_panel->SetPTZController(m_env.controller(), nullptr);
    m_panel->SetCamera(QString(), kDome, false, false);
    QVERIFY(m_panel->IsWorking());
    QVERIFY(dome());
    dome()->setPosition(100.0, -45.0, 2.0);
    QCoreApplication::processEvents();
    dome()->clearRequestLog();
}

void TestPreviewPTZWndCommands::cleanup()
{
    delete m_panel;
    m_panel = nullptr;
    m_env.tearDown();
}

void TestPreviewPTZWndCommands::padPressMovesAtSliderSpeedAndReleaseStops_data()
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

void TestPreviewPTZWndCommands::padPressMovesAtSliderSpeedAndReleaseStops()
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

void TestPreviewPTZWndCommands::commandRecordCarriesSpeedOwnerAndFlags()
{
    using ptz_plugin_protocol::PTZControlCommand;
    QSignalSpy succeeded(m_env.controller().get(),
                         &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded);
    child<QSlider>("ptr_speed_slider_")->setValue(7);
    emit cloud()->signalPressSection(nullptr, CPTZCloud::TopLeft);
    child<QSlider>("ptr_speed_slider_")->setValue(9); // read again for the release
    emit cloud()->signalReleaseSection(nullptr, CPTZCloud::TopLeft);
    m_panel->StopAutoScan(QStringLiteral("operator-console"), kDome, true);
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

void TestPreviewPTZWndCommands::centreTogglesAutoScanWithoutMove()
{
    emit cloud()->signalPressSection(nullptr, CPTZCloud::Center);
    QTRY_VERIFY(dome()->status().autoScan);
    emit cloud()->signalReleaseSection(nullptr, CPTZCloud::Center);
    QTRY_VERIFY(!dome()->status().autoScan);
    QCOMPARE(count(DriverOperation::AutoScan), 2);
    QCOMPARE(count(DriverOperation::MovePanTilt), 0);
}

void TestPreviewPTZWndCommands::autoScanRefusedWhilePatternRecords()
{
    zeph_ptz_controller::CPTZStateStorageManager::Instance()->SetRecordPattern(kDome, 1);
    QSignalSpy tips(m_panel, &CPreviewPTZWnd::SignalMessageTipNeeded);
    QSignalSpy functions(m_panel, &CPreviewPTZWnd::SignalFunctionEnabled);
    emit cloud()->signalPressSection(nullptr, CPTZCloud::Center);
    QCoreApplication::processEvents();
    QCOMPARE(tips.count(), 1);
    QCOMPARE(tips.at(0).at(0).toString(), QStringLiteral("TrackOperationInProgkdawnXPU"));
    QCOMPARE(tips.at(0).at(1).toInt(), 2);
    QCOMPARE(functions.count(), 1);
    QCOMPARE(functions.at(0), (QVariantList{2, false}));
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
    QCOMPARE(count(DriverOperation::AutoScan), 0);
}

void TestPreviewPTZWndCommands::lensButtonsSendOnlyWhenEnabled_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("zoomAbility");
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("expected");

    QTest::newRow("zoom in") << "pZoomInBtn" << true << int(DriverOperation::Zoom) << 2;
    QTest::newRow("zoom out") << "pZoomOutBtn" << true << int(DriverOperation::Zoom) << 2;
    QTest::newRow("zoom in disabled") << "pZoomInBtn" << false << int(DriverOperation::Zoom) << 0;
    QTest::newRow("zoom out disabled") << "pZoomOutBtn" << false << int(DriverOperation::Zoom) << 0;
    QTest::newRow("focus in") << "pFocusInBtn" << true << int(DriverOperation::Focus) << 2;
    QTest::newRow("iris out") << "pIRISOutBtn" << true << int(DriverOperation::Iris) << 2;
}

void TestPreviewPTZWndCommands::lensButtonsSendOnlyWhenEnabled()
{
    QFETCH(QString, button);
    QFETCH(bool, zoomAbility);
    QFETCH(int, operation);
    QFETCH(int, expected);

    if (!zoomAbility) {
        m_panel->SetCamera(QString(), QString(), false, false);
        m_env.setAbilities(kDome, {1, 46, 48, 49});
        m_panel->SetCamera(QString(), kDome, false, false);
        QCoreApplication::processEvents();
        dome()->clearRequestLog();
    }
    auto *widget = m_panel->findChild<QPushButton *>(button);
    QVERIFY(widget);
    QCOMPARE(widget->isEnabled(), zoomAbility || !button.startsWith(QLatin1String("pZoom")));
    SendMouse(widget, QEvent::MouseButtonPress);
    SendMouse(widget, QEvent::MouseButtonRelease);
    QCoreApplication::processEvents();
    QCOMPARE(count(DriverOperation(operation)), expected);
}

void TestPreviewPTZWndCommands::lightOnBlinksAndFailureRollsBack()
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

void TestPreviewPTZWndCommands::wiperOnShowsItsRunningName()
{
    m_panel->SwitchPTZWndBgColor(true);
    auto *wiper = child<QPushButton>("m_pBtnWiper_white_");
    QVERIFY(wiper);
    wiper->click();
    QTRY_VERIFY(dome()->status().wiper);
    QTRY_COMPARE(wiper->objectName(), QStringLiteral("m_pBtnWiper_right_white_"));
    wiper->click();
    QCOMPARE(wiper->objectName(), QStringLiteral("m_pBtnWiper_white_"));
    QTRY_VERIFY(!dome()->status().wiper);
}

void TestPreviewPTZWndCommands::successForAnotherCameraChangesNothing()
{
    auto *light = child<QPushButton>("m_pBtnLight");
    PanelTestEnv::manager()->GetCameraByID(kBasic.toStdString());
    ptz_plugin_protocol::PTZControlCommand command;
    command.camera_index_code = kBasic.toStdString();
    command.command = ptz_plugin_protocol::PTZ_CMD_LIGHT;
    command.action = ptz_plugin_protocol::PTZ_ACTION_START;
    QSignalSpy succeeded(m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded);
    m_env.controller()->Control(command);
    QTRY_COMPARE(succeeded.count(), 1);
    QVERIFY(zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsLight(kBasic));
    QVERIFY(!light->isChecked());
    QCOMPARE(light->objectName(), QStringLiteral("m_pBtnLight"));
}

void TestPreviewPTZWndCommands::oneShotButtonsSendTheirCommand_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("operation");
    QTest::newRow("one-key focus") << "m_pBtnKeyFocus" << int(DriverOperation::OneKeyFocus);
    QTest::newRow("lens initialisation") << "m_pBtnResetPos" << int(DriverOperation::LensInit);
}

void TestPreviewPTZWndCommands::oneShotButtonsSendTheirCommand()
{
    QFETCH(QString, button);
    QFETCH(int, operation);
    m_panel->findChild<QPushButton *>(button)->click();
    QCoreApplication::processEvents();
    QCOMPARE(m_env.operations(kDome), QList<DriverOperation>{DriverOperation(operation)});
}

void TestPreviewPTZWndCommands::pictureFunctionsGoToTheHost_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("function");
    QTest::newRow("3D positioning") << "m_pBtn3D" << 1;
    QTest::newRow("manual tracking") << "ptr_manual_track_btn_" << 4;
    QTest::newRow("face capture") << "ptr_face_capture_btn_" << 5;
}

void TestPreviewPTZWndCommands::pictureFunctionsGoToTheHost()
{
    QFETCH(QString, button);
    QFETCH(int, function);
    QSignalSpy functions(m_panel, &CPreviewPTZWnd::SignalFunctionEnabled);
    auto *widget = m_panel->findChild<QPushButton *>(button);
    widget->click();
    widget->click();
    QCOMPARE(functions.count(), 2);
    QCOMPARE(functions.at(0), (QVariantList{function, true}));
    QCOMPARE(functions.at(1), (QVariantList{function, false}));
    QCoreApplication::processEvents();
    QVERIFY(m_env.operations(kDome).isEmpty());
}

void TestPreviewPTZWndCommands::hostReportsPictureActionState_data()
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

void TestPreviewPTZWndCommands::hostReportsPictureActionState()
{
    QFETCH(int, function);
    QFETCH(bool, on);
    QFETCH(bool, threeD);
    QFETCH(bool, manual);
    QFETCH(bool, face);
    for (int id : {1, 4, 5})
        m_panel->OnWndPtzActionStateChanged(id, true);
    m_panel->OnWndPtzActionStateChanged(function, on);
    QCOMPARE(child<QPushButton>("m_pBtn3D")->isChecked(), threeD);
    QCOMPARE(child<QPushButton>("ptr_manual_track_btn_")->isChecked(), manual);
    QCOMPARE(child<QPushButton>("ptr_face_capture_btn_")->isChecked(), face);
}

void TestPreviewPTZWndCommands::heldMotionStopsOnceWhenMouseIsLost_data()
{
    QTest::addColumn<QString>("held"); // "pad" or a lens button
    QTest::addColumn<QString>("loss");

    for (const char *held : {"pad", "pZoomInBtn"}) {
        for (const char *loss : {"hide", "rebind", "stopWork", "deactivate", "ungrab", "disable"})
            QTest::addRow("%s, %s", held, loss) << QString::fromLatin1(held) << QString::fromLatin1(loss);
    }
}

void TestPreviewPTZWndCommands::heldMotionStopsOnceWhenMouseIsLost()
{
    QFETCH(QString, held);
    QFETCH(QString, loss);

    m_panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_panel));
    const bool pad = held == QLatin1String("pad");
    auto *zoom = child<QPushButton>("pZoomInBtn");
    if (pad)
        emit cloud()->signalPressSection(nullptr, CPTZCloud::TopMiddle);
    else
        SendMouse(zoom, QEvent::MouseButtonPress);
    QTRY_VERIFY(pad ? dome()->status().panTiltMoving : dome()->status().zoomMoving);

    if (loss == QLatin1String("hide")) {
        m_panel->hide();
    } else if (loss == QLatin1String("rebind")) {
        m_panel->SetCamera(QString(), kBasic, false, false);
    } else if (loss == QLatin1String("stopWork")) {
        m_panel->StopWork();
    } else if (loss == QLatin1String("deactivate")) {
        QEvent deactivate(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(m_panel, &deactivate);
    } else if (loss == QLatin1String("disable")) {
        m_panel->setEnabled(false);
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
        SendMouse(zoom, QEvent::MouseButtonRelease);
    QCoreApplication::processEvents();
    if (pad) {
        QCOMPARE(count(DriverOperation::MovePanTilt), 1);
        QCOMPARE(count(DriverOperation::StopPanTilt), 1);
    } else {
        QCOMPARE(count(DriverOperation::Zoom), 2);
    }
}

void TestPreviewPTZWndCommands::autoScanOverPatrolKeepsScanning()
{
    using namespace ptz_plugin_protocol;
    auto controller = m_env.controller();
    QSignalSpy presets(controller.get(), &zeph_ptz_controller::CUniversalPTZController::signalPresetFinished);
    QSignalSpy cruises(controller.get(), &zeph_ptz_controller::CUniversalPTZController::signalCruiseFinished);
    for (int number : {1, 2}) {
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

    emit cloud()->signalPressSection(nullptr, CPTZCloud::Center);
    QTRY_VERIFY(dome()->status().autoScan);
    QTRY_COMPARE(zeph_ptz_controller::CPTZStateStorageManager::Instance()->GetRunningCruise(kDome), -1);
    QCoreApplication::processEvents();
    m_env.clock()->advance(1000);
    QVERIFY(dome()->status().autoScan);
    QCOMPARE(dome()->status().runningPatrol, 0);
    QCOMPARE(count(DriverOperation::StopActivity), 0);
}

void TestPreviewPTZWndCommands::refreshReadsPresetsFromTheCamera()
{
    QSignalSpy enabled(m_panel, &CPreviewPTZWnd::SignalUpdatePtzInfoEnabled);
    QSignalSpy tips(m_panel, &CPreviewPTZWnd::SignalMessageTipNeeded);
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

void TestPreviewPTZWndCommands::manualMoveEndsAutoScanWithoutSecondStop()
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

void TestPreviewPTZWndCommands::secondPanelOfTheCameraShowsItsState()
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

QTEST_MAIN(TestPreviewPTZWndCommands)
#include "tst_cpreviewptzwnd_commands.moc"
