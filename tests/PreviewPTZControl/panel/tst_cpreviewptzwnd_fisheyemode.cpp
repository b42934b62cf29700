#include "support/paneltestenv.h"

#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QTest>

using namespace PreviewPTZControl;
using zeph_ptz_controller::CSimpleFishEyeController;

namespace {
const QString kFishEye = QString::fromLatin1(site_store::demo::kFishEye);

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
} // namespace

class TestPreviewPTZWndFishEyeMode : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void switchingControllersListensToTheNewOneOnly();
    void openingHandsTheCameraToTheSoftwareController();
    void pressConsultsTheSoftwarePatrolOnlyInSoftwareMode_data();
    void pressConsultsTheSoftwarePatrolOnlyInSoftwareMode();

private:
    CPTZCloud *cloud() const { return m_panel->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_")); }

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
    std::shared_ptr<CFakeSoftwareController> m_software;
};

void TestPreviewPTZWndFishEyeMode::init()
{
    m_env.setUp();
    m_panel = new CPreviewPTZWnd(0, false, false);
    m_panel->SetPTZController(m_env.controller(), nullptr);
    m_software = std::make_shared<CFakeSoftwareController>();
    m_panel->SetSoftwarePTZController(m_software);
}

void TestPreviewPTZWndFishEyeMode::cleanup()
{
    delete m_panel;
    m_panel = nullptr;
    m_software.reset();
    m_env.tearDown();
}

void TestPreviewPTZWndFishEyeMode::switchingControllersListensToTheNewOneOnly()
{
    CSimpleFishEyeController first(4);
    CSimpleFishEyeController second(4);
    m_panel->SetCamera(QString(), kFishEye, false, false);
    m_panel->SetFishEyeController(&first);
    m_panel->SetFishEyeController(&second);
    QCOMPARE(m_software->GetSoftwareControllor(), &second);

    first.SetFishEyeWndOpen(true);
    QCOMPARE(m_panel->WndType(), PTZWndDevice);
    second.SetFishEyeWndOpen(true);
    QCOMPARE(m_panel->WndType(), PTZWndSoftware);

    // Selection changes of the old controller no longer reach the pad.
    first.SetSelectedWnd(1);
    first.SetSelectedWndAutoPanning(true);
    first.SetSelectedWnd(0);
    first.SetSelectedWnd(1);
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
    second.SetSelectedWnd(2);
    second.SetSelectedWndAutoPanning(true);
    second.SetSelectedWnd(0);
    second.SetSelectedWnd(2);
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 3);

    // A null controller keeps the current one.
    m_panel->SetFishEyeController(nullptr);
    QCOMPARE(m_software->GetSoftwareControllor(), &second);
    second.SetFishEyeWndOpen(false);
    QCOMPARE(m_panel->WndType(), PTZWndDevice);
}

void TestPreviewPTZWndFishEyeMode::openingHandsTheCameraToTheSoftwareController()
{
    CSimpleFishEyeController fishEye(4);
    m_panel->SetFishEyeController(&fishEye);
    m_panel->SetCamera(QString(), kFishEye, false, false);
    QVERIFY(m_software->GetCamera().isEmpty()); // device mode: the software controller is not involved
    fishEye.SetFishEyeWndOpen(true);
    QCOMPARE(m_software->GetCamera(), kFishEye);
    QVERIFY(m_panel->IsSoftwarePTZ());
    fishEye.SetFishEyeWndOpen(false);
    QVERIFY(!m_panel->IsSoftwarePTZ());
    QCOMPARE(m_panel->PresetType(), ptz_plugin_protocol::PRESET_TYPE_DEVICE);
}

void TestPreviewPTZWndFishEyeMode::pressConsultsTheSoftwarePatrolOnlyInSoftwareMode_data()
{
    QTest::addColumn<bool>("open");
    QTest::addColumn<bool>("patrolling");
    QTest::addColumn<int>("path");

    QTest::newRow("device mode") << false << true << 1;
    QTest::newRow("software, path 0") << true << true << 0;
    QTest::newRow("software, path 1") << true << true << 1;
    QTest::newRow("software, no patrol") << true << false << 0;
}

void TestPreviewPTZWndFishEyeMode::pressConsultsTheSoftwarePatrolOnlyInSoftwareMode()
{
    QFETCH(bool, open);
    QFETCH(bool, patrolling);
    QFETCH(int, path);

    CSimpleFishEyeController fishEye(4);
    m_panel->SetFishEyeController(&fishEye);
    m_panel->SetCamera(QString(), kFishEye, false, false);
    fishEye.SetFishEyeWndOpen(open);
    m_software->patrolling = patrolling;
    m_software->path = path;
    cloud()->SetSectionChecked(CPTZCloud::Center, true);
    m_software->questions = 0;

    m_panel->OnFishEyePlayDisplayWndPress();
    QCOMPARE(m_software->questions, open ? 1 : 0);
    QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), open ? 0 : 3);
}

QTEST_MAIN(TestPreviewPTZWndFishEyeMode)
#include "tst_cpreviewptzwnd_fisheyemode.moc"
