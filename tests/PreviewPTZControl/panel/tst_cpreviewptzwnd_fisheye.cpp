#include "support/panelfixture.h"

#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;
namespace demo = site_store::demo;

class TestPreviewPTZWndFishEye : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_env.setUp(true); }
    void cleanup() { m_env.tearDown(); }

    void nullControllerChangesNothing()
    {
        m_env.panel()->SetCamera(QString(), kFishEye, false, false);
        m_env.panel()->SetFishEyeController(nullptr);
        m_env.fishEye()->SetFishEyeWndOpen(true);
        emit m_env.fishEye()->SignalFishEyeWndOpen(true);
        QCOMPARE(m_env.panel()->WndType(), PTZWndSoftware); // the old controller is still the one heard

        CPreviewPTZWnd plain(1, false, false);
        plain.SetFishEyeController(m_env.fishEye()); // no software controller: nothing to attach to
        plain.SetCamera(QString(), kFishEye, false, false);
        QCOMPARE(plain.WndType(), PTZWndDevice);
    }
    void openingSwitchesToSoftwarePTZAndBack()
    {
        m_env.panel()->SetCamera(QString(), kFishEye, false, false);
        QCOMPARE(m_env.panel()->WndType(), PTZWndDevice);
        m_env.fishEye()->SetFishEyeWndOpen(true);
        emit m_env.fishEye()->SignalFishEyeWndOpen(true);
        QVERIFY(m_env.panel()->IsSoftwarePTZ());
        QCOMPARE(m_env.panel()->WndType(), PTZWndSoftware);
        QCOMPARE(m_env.panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_FISHEYE);
        QVERIFY(m_env.panel()->findChild<QWidget *>(QStringLiteral("pZoomLarge")));
        QVERIFY(!m_env.panel()->findChild<QTabWidget *>(QStringLiteral("m_pTabWidget"))->isTabVisible(2));

        emit m_env.fishEye()->SignalFishEyeWndOpen(false);
        QCOMPARE(m_env.panel()->WndType(), PTZWndDevice);
        QCOMPARE(m_env.panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_DEVICE);
        QVERIFY(m_env.panel()->findChild<QWidget *>(QStringLiteral("pZoom")));

        // Binding reads the open state; unbinding closes the fish-eye view.
        m_env.panel()->SetCamera(QString(), QString(), false, false);
        m_env.fishEye()->SetFishEyeWndOpen(true);
        m_env.panel()->SetCamera(QString(), kFishEye, false, false);
        QCOMPARE(m_env.panel()->WndType(), PTZWndSoftware);
        m_env.panel()->SetCamera(QString(), QString(), false, false);
        QVERIFY(!m_env.fishEye()->IsFishEyeWndOpen());
    }
    void padDrivesTheSelectedViewNotTheDevice()
    {
        m_env.fishEye()->SetFishEyeWndOpen(true);
        m_env.panel()->SetCamera(QString(), kFishEye, false, false);
        QCOMPARE(m_env.panel()->WndType(), PTZWndSoftware);
        QCoreApplication::processEvents();
        m_env.camera(kFishEye)->clearRequestLog();

        double pan = 0, tilt = 0, zoom = 0;
        m_env.fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
        const double start_pan = pan;
        emit cloud()->signalPressSection(nullptr, CPTZCloud::MiddleRight);
        QTRY_VERIFY([&] {
            m_env.fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
            return pan != start_pan;
        }());
        emit cloud()->signalReleaseSection(nullptr, CPTZCloud::MiddleRight);
        QSignalSpy moved(m_env.fishEye(), &zeph_ptz_controller::IPTZFishEyeController::SignalFishEyePTZPosChanged);
        QVERIFY(!moved.wait(200)); // five ticks of the software motion timer without a move
        QCoreApplication::processEvents();
        QVERIFY(m_env.operations(kFishEye).isEmpty());
    }
    void pictureSelectionMirrorsAutoPan()
    {
        m_env.fishEye()->SetFishEyeWndOpen(true);
        m_env.panel()->SetCamera(QString(), kFishEye, false, false);
        m_env.fishEye()->SetSelectedWnd(1);
        m_env.fishEye()->SetSelectedWndAutoPanning(true);
        m_env.fishEye()->SetSelectedWnd(0);
        QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
        m_env.fishEye()->SetSelectedWnd(1);
        QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 3);
        // A press on the picture ends the auto-pan display.
        m_env.panel()->OnFishEyePlayDisplayWndPress();
        QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
    }
    void pressOnPictureInDeviceModeChangesNothing()
    {
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        cloud()->SetSectionChecked(CPTZCloud::Center, true);
        m_env.panel()->OnFishEyePlayDisplayWndPress();
        QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 3);
    }

private:
    CPTZCloud *cloud() const { return m_env.cloud(); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndFishEye)
#include "tst_cpreviewptzwnd_fisheye.moc"
