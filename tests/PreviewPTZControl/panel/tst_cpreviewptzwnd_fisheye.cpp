#include "paneltestenv.h"

#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;
namespace demo = site_store::demo;

namespace {
const QString kFishEye = QString::fromLatin1(demo::kFishEye);
const QString kDome = QString::fromLatin1(demo::kSpeedDome);
} // namespace

class TestPreviewPTZWndFishEye : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nullControllerChangesNothing();
    void openingSwitchesToSoftwarePTZAndBack();
    void padDrivesTheSelectedViewNotTheDevice();
    void pictureSelectionMirrorsAutoPan();
    void pressOnPictureInDeviceModeChangesNothing();

private:
    CPTZCloud *cloud() const { return m_panel->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_")); }

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
    zeph_ptz_controller::CSimpleFishEyeController *m_fishEye = nullptr;
};

void TestPreviewPTZWndFishEye::init()
{
    m_env.setUp();
    m_panel = new CPreviewPTZWnd(0, true, false);
    m_panel->SetPTZController(m_env.controller(), nullptr);
    m_fishEye = new zeph_ptz_controller::CSimpleFishEyeController(4);
    m_panel->SetFishEyeController(m_fishEye);
}

void TestPreviewPTZWndFishEye::cleanup()
{
    delete m_panel;
    m_panel = nullptr;
    delete m_fishEye;
    m_fishEye = nullptr;
    m_env.tearDown();
}

void TestPreviewPTZWndFishEye::nullControllerChangesNothing()
{
    m_panel->SetCamera(QString(), kFishEye, false, false);
    m_panel->SetFishEyeController(nullptr);
    m_fishEye->SetFishEyeWndOpen(true);
    emit m_fishEye->SignalFishEyeWndOpen(true);
    QCOMPARE(m_panel->WndType(), PTZWndSoftware); // the old controller is still the one heard

    CPreviewPTZWnd plain(1, false, false);
    plain.SetFishEyeController(m_fishEye); // no software controller: nothing to attach to
    plain.SetCamera(QString(), kFishEye, false, false);
    QCOMPARE(plain.WndType(), PTZWndDevice);
}

void TestPreviewPTZWndFishEye::openingSwitchesToSoftwarePTZAndBack()
{
    m_panel->SetCamera(QString(), kFishEye, false, false);
    QCOMPARE(m_panel->WndType(), PTZWndDevice);
    m_fishEye->SetFishEyeWndOpen(true);
    emit m_fishEye->SignalFishEyeWndOpen(true);
    QVERIFY(m_panel->IsSoftwarePTZ());
    QCOMPARE(m_panel->WndType(), PTZWndSoftware);
    QCOMPARE(m_panel->PresetType(), ptz_plugin_protocol::PRESET_TYPE_FISHEYE);
    QVERIFY(m_panel->findChild<QWidget *>(QStringLiteral("pZoomLarge")));
    QVERIFY(!m_panel->findChild<QTabWidget *>(QStringLiteral("m_pTabWidget"))->isTabVisible(2));

    emit m_fishEye->SignalFishEyeWndOpen(false);
    QCOMPARE(m_panel->WndType(), PTZWndDevice);
    QCOMPARE(m_panel->PresetType(), ptz_plugin_protocol::PRESET_TYPE_DEVICE);
    QVERIFY(m_panel->findChild<QWidget *>(QStringLiteral("pZoom")));

    // Binding reads the open state; unbinding closes the fish-eye view.
    m_panel->SetCamera(QString(), QString(), false, false);
    m_fishEye->SetFishEyeWndOpen(true);
    m_panel->SetCamera(QString(), kFishEye, false, false);
    QCOMPARE(m_panel->WndType(), PTZWndSoftware);
    m_panel->SetCamera(QString(), QString(), false, false);
    QVERIFY(!m_fishEye->IsFishEyeWndOpen());
}

void TestPreviewPTZWndFishEye::padDrivesTheSelectedViewNotTheDevice()
{
    m_fishEye->SetFishEyeWndOpen(true);
    m_panel->SetCamera(QString(), kFishEye, false, false);
    QCOMPARE(m_panel->WndType(), PTZWndSoftware);
    QCoreApplication::processEvents();
    m_env.camera(kFishEye)->clearRequestLog();

    double pan = 0, tilt = 0, zoom = 0;
    m_fishEye->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
    const double start_pan = pan;
    emit cloud()->signalPressSection(nullptr, CPTZCloud::MiddleRight);
    QTRY_VERIFY([&] {
        m_fishEye->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
        return pan != start_pan;
    }());
    emit cloud()->signalReleaseSection(nullptr, CPTZCloud::MiddleRight);
    QSignalSpy moved(m_fishEye, &zeph_ptz_controller::IPTZFishEyeController::SignalFishEyePTZPosChanged);
    QVERIFY(!moved.wait(200)); // five ticks of the software motion timer without a move
    QCoreApplication::processEvents();
    QVERIFY(m_env.operations(kFishEye).isEmpty());
}

void TestPreviewPTZWndFishEye::pictureSelectionMirrorsAutoPan()
{
    m_fishEye->SetFishEyeWndOpen(true);
    m_panel->SetCamera(QString(), kFishEye, false, false);
    m_fishEye->SetSelectedWnd(1);
    m_fishEye->SetSelectedWndAutoPanning(true);
    m_fishEye->SetSelectedWnd(0);
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
    m_fishEye->SetSelectedWnd(1);
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 3);
    // A press on the picture ends the auto-pan display.
    m_panel->OnFishEyePlayDisplayWndPress();
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
}

void TestPreviewPTZWndFishEye::pressOnPictureInDeviceModeChangesNothing()
{
    m_panel->SetCamera(QString(), kDome, false, false);
    cloud()->SetSectionChecked(CPTZCloud::Center, true);
    m_panel->OnFishEyePlayDisplayWndPress();
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 3);
}

QTEST_MAIN(TestPreviewPTZWndFishEye)
#include "tst_cpreviewptzwnd_fisheye.moc"
