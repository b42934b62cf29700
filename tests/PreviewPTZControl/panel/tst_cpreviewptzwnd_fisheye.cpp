#include "support/panelfixture.h"

#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;
using zeph_ptz_controller::CSimpleFishEyeController;

namespace {
// A software controller that reports a patrol of a chosen path and counts the panel's questions.
class CFakeSoftwareController : public zeph_ptz_controller::CBaseSoftwarePtzControllor
{
public:
    bool IsPtzPatrolling(int &cruise_index) const override
    {
        ++questions;
        if (patrolling)
            cruise_index = path;
        return patrolling;
    }
    int GetPatrolPath() const override { return path; }

    bool patrolling = false;
    int path = 0;
    mutable int questions = 0;
};

void ShowAutoPanOf(CSimpleFishEyeController &fishEye, int picture)
{
    fishEye.SetSelectedWnd(picture);
    fishEye.SetSelectedWndAutoPanning(true);
    fishEye.SetSelectedWnd(0);
    fishEye.SetSelectedWnd(picture);
}
} // namespace

class TestPreviewPTZWndFishEye : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_env.setUp(true); }
    void cleanup() { m_env.tearDown(); }

    void openingSwitchesToSoftwarePTZAndBack()
    {
        bind(kFishEye);
        QCOMPARE(panel()->WndType(), PTZWndDevice);
        fishEye()->SetFishEyeWndOpen(true);
        QVERIFY(panel()->IsSoftwarePTZ());
        QCOMPARE(panel()->WndType(), PTZWndSoftware);
        QCOMPARE(panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_FISHEYE);
        QVERIFY(m_env.child<QWidget>("pZoomLarge"));
        QVERIFY(!m_env.child<QTabWidget>("m_pTabWidget")->isTabVisible(2));

        fishEye()->SetFishEyeWndOpen(false);
        QCOMPARE(panel()->WndType(), PTZWndDevice);
        QCOMPARE(panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_DEVICE);
        QVERIFY(m_env.child<QWidget>("pZoom"));

        // Binding reads the open state; unbinding closes the fish-eye view.
        bind(QString());
        fishEye()->SetFishEyeWndOpen(true);
        bind(kFishEye);
        QCOMPARE(panel()->WndType(), PTZWndSoftware);
        bind(QString());
        QVERIFY(!fishEye()->IsFishEyeWndOpen());
    }
    void openingHandsTheCameraToTheSoftwareController()
    {
        auto software = std::make_shared<CFakeSoftwareController>();
        panel()->SetSoftwarePTZController(software);
        panel()->SetFishEyeController(fishEye());
        bind(kFishEye);
        QVERIFY(software->GetCamera().isEmpty()); // device mode: the software controller is not involved
        fishEye()->SetFishEyeWndOpen(true);
        QCOMPARE(software->GetCamera(), kFishEye);
    }
    void switchingControllersListensToTheNewOneOnly()
    {
        CSimpleFishEyeController first(4);
        CSimpleFishEyeController second(4);
        bind(kFishEye);
        panel()->SetFishEyeController(&first);
        panel()->SetFishEyeController(&second);
        first.SetFishEyeWndOpen(true);
        fishEye()->SetFishEyeWndOpen(true);
        QCOMPARE(panel()->WndType(), PTZWndDevice);
        second.SetFishEyeWndOpen(true);
        QCOMPARE(panel()->WndType(), PTZWndSoftware);

        // Selection changes of the old controller no longer reach the pad.
        ShowAutoPanOf(first, 1);
        QCOMPARE(m_env.cloud()->sectionStatus(CPTZCloud::Center), 0);
        ShowAutoPanOf(second, 2);
        QCOMPARE(m_env.cloud()->sectionStatus(CPTZCloud::Center), 3);

        // A null controller keeps the current one.
        panel()->SetFishEyeController(nullptr);
        second.SetFishEyeWndOpen(false);
        QCOMPARE(panel()->WndType(), PTZWndDevice);

        CPreviewPTZWnd plain(1, false, false);
        plain.SetFishEyeController(&second); // no software controller: nothing to attach to
        second.SetFishEyeWndOpen(true);
        plain.SetCamera(QString(), kFishEye, false, false);
        QCOMPARE(plain.WndType(), PTZWndDevice);
    }
    void padDrivesTheSelectedViewNotTheDevice()
    {
        fishEye()->SetFishEyeWndOpen(true);
        bind(kFishEye);
        QCOMPARE(panel()->WndType(), PTZWndSoftware);

        double pan = 0, tilt = 0, zoom = 0;
        fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
        const double start_pan = pan;
        m_env.pressSection(CPTZCloud::MiddleRight);
        QTRY_VERIFY((fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom), pan != start_pan));
        m_env.releaseSection(CPTZCloud::MiddleRight);
        QSignalSpy moved(fishEye(), &zeph_ptz_controller::IPTZFishEyeController::SignalFishEyePTZPosChanged);
        QVERIFY(!moved.wait(200)); // five ticks of the software motion timer without a move
        QCoreApplication::processEvents();
        QVERIFY(m_env.operations(kFishEye).isEmpty());
    }
    void pressOnPictureEndsTheAutoPanDisplay_data()
    {
        QTest::addColumn<bool>("open");
        QTest::addColumn<bool>("patrolling");
        QTest::addColumn<int>("path");
        QTest::newRow("device mode") << false << true << 1;
        QTest::newRow("software, path 0") << true << true << 0;
        QTest::newRow("software, path 1") << true << true << 1;
        QTest::newRow("software, no patrol") << true << false << 0;
    }
    void pressOnPictureEndsTheAutoPanDisplay()
    {
        QFETCH(bool, open);
        QFETCH(bool, patrolling);
        QFETCH(int, path);
        auto software = std::make_shared<CFakeSoftwareController>();
        panel()->SetSoftwarePTZController(software);
        panel()->SetFishEyeController(fishEye());
        bind(kFishEye);
        fishEye()->SetFishEyeWndOpen(open);
        ShowAutoPanOf(*fishEye(), 1);
        m_env.cloud()->SetSectionChecked(CPTZCloud::Center, true);
        software->patrolling = patrolling;
        software->path = path;
        software->questions = 0;

        panel()->OnFishEyePlayDisplayWndPress();
        QCOMPARE(software->questions, open ? 1 : 0);
        QCOMPARE(m_env.cloud()->sectionStatus(CPTZCloud::Center), open ? 0 : 3);
    }

private:
    CPreviewPTZWnd *panel() const { return m_env.panel(); }
    CSimpleFishEyeController *fishEye() const { return m_env.fishEye(); }
    void bind(const QString &camera)
    {
        panel()->SetCamera(QString(), camera, false, false);
        QCoreApplication::processEvents();
    }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndFishEye)
#include "tst_cpreviewptzwnd_fisheye.moc"
