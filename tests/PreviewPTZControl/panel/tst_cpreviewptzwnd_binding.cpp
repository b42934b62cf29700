#include "support/panelfixture.h"

#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using zeph_ptz_controller::CSimpleFishEyeController;
namespace demo = site_store::demo;

namespace {
const QList<int> kAllSections{1, 2, 3, 4, 5, 6, 7, 8, 9};

QList<int> EnabledSections(const CPTZCloud *cloud)
{
    QList<int> enabled;
    for (int section : kAllSections) {
        if (cloud->sectionStatus(section) != 4)
            enabled << section;
    }
    return enabled;
}
// A software controller that reports a patrol of a chosen path.
class CFakeSoftwareController : public zeph_ptz_controller::CBaseSoftwarePtzControllor
{
public:
    bool IsPtzPatrolling(int &cruise_index) const override
    {
        if (patrolling)
            cruise_index = path;
        return patrolling;
    }
    int GetPatrolPath() const override { return path; }

    bool patrolling = false;
    int path = 0;
};

void ShowAutoPanOf(CSimpleFishEyeController &fishEye, int picture)
{
    fishEye.SetSelectedWnd(picture);
    fishEye.SetSelectedWndAutoPanning(true);
    fishEye.SetSelectedWnd(0);
    fishEye.SetSelectedWnd(picture);
}
} // namespace

class TestPreviewPTZWndBinding : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void bindingFollowsCameraAndUser_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<QList<int>>("abilities"); // empty: the demo camera's own
        QTest::addColumn<bool>("cascade");
        QTest::addColumn<QString>("user");
        QTest::addColumn<bool>("revokePtzControl");
        QTest::addColumn<QList<int>>("enabledSections"); // none: the panel stays idle
        QTest::addColumn<QStringList>("off");            // of "zoom", "light", "park", "patterns"

        const QString op = kOperator;
        const QList<int> none;
        QTest::newRow("full speed dome") << kDome << none << false << op << false << kAllSections << QStringList();
        QTest::newRow("no patterns: two tabs")
            << kBasic << none << false << op << false << kAllSections << QStringList{"patterns"};
        QTest::newRow("no PTZ control permission: idle")
            << kDome << none << false << op << true << none << QStringList();
        QTest::newRow("no PTZ ability: idle")
            << kDome << QList<int>{48, 49, 50} << false << op << false << none << QStringList();
        QTest::newRow("cascade without PTZ ability: bound, restricted")
            << kDome << QList<int>{46, 48, 49, 50} << true << op << false << kAllSections
            << QStringList{"light", "park"};
        QTest::newRow("neither pan nor tilt: centre only")
            << kBox << none << false << op << false << QList<int>{5} << QStringList{"park", "patterns"};
        QTest::newRow("no pan") << kDome << QList<int>{1, 33, 46, 49, 50} << false << op << false << QList<int>{2, 5, 8}
                                << QStringList();
        QTest::newRow("no tilt") << kDome << QList<int>{1, 33, 46, 48, 50} << false << op << false
                                 << QList<int>{4, 5, 6} << QStringList();
        QTest::newRow("no zoom") << kDome << QList<int>{1, 33, 46, 48, 49} << false << op << false << kAllSections
                                 << QStringList{"zoom"};
        QTest::newRow("no park-action permission") << kDome << none << false << QString::fromLatin1(demo::kNoPark)
                                                   << false << kAllSections << QStringList{"park"};
        QTest::newRow("no park-action ability")
            << kDome << QList<int>{1, 46, 48, 49, 50} << false << op << false << kAllSections << QStringList{"park"};
    }
    void bindingFollowsCameraAndUser()
    {
        QFETCH(QString, camera);
        QFETCH(QList<int>, abilities);
        QFETCH(bool, cascade);
        QFETCH(QString, user);
        QFETCH(bool, revokePtzControl);
        QFETCH(QList<int>, enabledSections);
        QFETCH(QStringList, off);

        if (!abilities.isEmpty() || cascade)
            m_env.setAbilities(camera, abilities, cascade);
        QVERIFY(TestEnv::store()->setCurrentUser(user));
        if (revokePtzControl)
            QVERIFY(TestEnv::store()->revokePermission(user, site_store::CSiteStore::kAllCameras, 15));

        panel()->SetCamera(QString(), camera, false, false);

        const bool working = !enabledSections.isEmpty();
        QCOMPARE(panel()->IsWorking(), working);
        QCOMPARE(panel()->CameraIndexCode(), working ? camera : QString());
        QCOMPARE(panel()->WndType(), working ? PTZWndDevice : PTZWndNone);
        QCOMPARE(EnabledSections(m_env.cloud()), enabledSections);
        if (!working)
            return;
        QCOMPARE(panel()->IsCascade(), cascade);
        QCOMPARE(button("pZoomInBtn")->isEnabled(), !off.contains("zoom"));
        QCOMPARE(button("pZoomOutBtn")->isEnabled(), !off.contains("zoom"));
        QCOMPARE(button("m_pBtnLight")->isEnabled(), !off.contains("light"));
        QCOMPARE(button("m_pBtnKeyFocus")->isEnabled(), !off.contains("light"));
        QCOMPARE(button("ptr_park_action_btn_")->isEnabled(), !off.contains("park"));
        auto *tabs = m_env.child<QTabWidget>("m_pTabWidget");
        QCOMPARE(tabs->isTabVisible(2), !off.contains("patterns"));
        QCOMPARE(tabs->property("tabstyle").toString(), QString(off.contains("patterns") ? "Two_tab" : "Three_tab"));
        QCOMPARE(m_env.child<QWidget>("m_pTabCruise")->isEnabled(), !cascade);
        QCOMPARE(m_env.child<QWidget>("m_pTabCruise")->toolTip().isEmpty(), !cascade);
        QCOMPARE(m_env.child<QWidget>("m_pTabPatten")->toolTip().isEmpty(), !cascade);
        // A tab brought to the front fetches its list, but a cascaded camera has no patrols here.
        tabs->setCurrentIndex(1);
        if (tabs->isTabVisible(2))
            tabs->setCurrentIndex(2);
        QCoreApplication::processEvents();
        QCOMPARE(m_env.operations(camera).contains(DriverOperation::ListPatrols), !cascade);
        QCOMPARE(m_env.operations(camera).contains(DriverOperation::ListPatterns), tabs->isTabVisible(2));
        // A press on a disabled zoom button reaches the panel's filter but sends nothing.
        PanelFixture::sendMouse(button("pZoomInBtn"), true);
        QCoreApplication::processEvents();
        QCOMPARE(m_env.operations(camera).contains(DriverOperation::Zoom), !off.contains("zoom"));
    }
    void rebindLiftsRestrictionsAndUnbindTurnsAllOff()
    {
        TestEnv::manager()->GetCameraByID(kDome.toStdString()); // open the driver before counting
        m_env.camera(kDome)->clearRequestLog();
        panel()->StopWork(); // idle: nothing to stop
        QCoreApplication::processEvents();
        QVERIFY(m_env.operations(kDome).isEmpty());

        panel()->SetCamera(QString(), kCascade, false, false);
        QVERIFY(!button("m_pBtnWiper")->isEnabled());
        panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(!panel()->IsCascade());
        QVERIFY(button("m_pBtnWiper")->isEnabled());
        QVERIFY(m_env.child<QWidget>("m_pTabPatten")->toolTip().isEmpty());
        // The same identifiers again do nothing: a second binding would enable the button again.
        button("pZoomInBtn")->setEnabled(false);
        panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(!button("pZoomInBtn")->isEnabled());

        panel()->SetCamera(QString(), QString(), false, false);
        QVERIFY(!panel()->IsWorking());
        QCOMPARE(panel()->WndType(), PTZWndNone);
        QCOMPARE(EnabledSections(m_env.cloud()), QList<int>());
        QVERIFY(!m_env.child<QWidget>("m_pAppendFunFrame")->isEnabled());
        QVERIFY(!button("ptr_update_ptz_btn_")->isEnabled());
    }
    void presetPageWaitsForTheList()
    {
        QSignalSpy arrived(panel()->findChild<zeph_ptz_controller::CPTZGetController *>(),
                           &zeph_ptz_controller::CPTZGetController::SignalGetPresetsSuc);
        panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(!m_env.child<QWidget>("m_pTabPreset")->isEnabled());
        QVERIFY(!button("ptz_add_preset_btn_")->isEnabled());
        QTRY_COMPARE(arrived.count(), 1);
        QVERIFY(m_env.child<QWidget>("m_pTabPreset")->isEnabled());
        QVERIFY(button("ptz_add_preset_btn_")->isEnabled());
    }
    void virtualControllerMayGoAway()
    {
        auto *virtual_controller = new zeph_ptz_controller::CVirtualPtzControllor;
        panel()->SetPTZController(m_env.controller(), virtual_controller);
        panel()->SetCamera(QString(), kDome, false, false);
        delete virtual_controller;
        panel()->SetCamera(QString(), kBasic, false, false); // reads the running state again
        QVERIFY(panel()->IsWorking());
    }
    void whiteThemeRenamesOnceAndLayoutSwitches()
    {
        auto *presets = m_env.child<QAbstractItemView>("m_pTreeViewPreset");
        m_env.panel()->SwitchPTZWndBgColor(true);
        QCOMPARE(m_env.panel()->objectName(), QStringLiteral("CPreviewPTZWnd_white_"));
        // The list keeps its own theme: light rows alternate and rows are not selectable.
        QVERIFY(presets->alternatingRowColors());
        QCOMPARE(presets->selectionMode(), QAbstractItemView::NoSelection);
        // A second switch must not stack suffixes; the switch back is one-way on purpose.
        m_env.panel()->SwitchPTZWndBgColor(true);
        m_env.panel()->SwitchPTZWndBgColor(false);
        QVERIFY(m_env.child<QWidget>("pZoomInBtn_white_"));

        auto *left = m_env.child<QWidget>("PreviewPTZControl_ptr_ptz_panel_left_white_");
        auto *content = m_env.child<QWidget>("ptr_scroll_content_white_");
        m_env.panel()->SwitchPTZWndLayout(true);
        QCOMPARE(qobject_cast<QVBoxLayout *>(content->layout())->itemAt(0)->widget(), left);
        m_env.panel()->SwitchPTZWndLayout(false);
        QVERIFY(qobject_cast<QHBoxLayout *>(content->layout()));
        m_env.panel()->show();
        m_env.panel()->SetBottomHalfVisible(false);
        QVERIFY(!m_env.child<QWidget>("PreviewPTZControl_ptr_ptz_panel_right_white_")->isVisible());
    }
    void switchesReadAtConstruction_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QStringList>("hidden");

        using site_store::CSiteStore;
        QTest::newRow("no PTZ info refresh")
            << CSiteStore::kIsSupportUpdatePTZInfo << QString() << QStringList{"ptr_update_ptz_btn_"};
        QTest::newRow("no extra buttons") << CSiteStore::kShowExtraButton << QString()
                                          << QStringList{"ptr_manual_track_btn_", "ptr_face_capture_btn_"};
        QTest::newRow("compact product without preset row")
            << CSiteStore::kShowPreSetTabWidget << "ZephViewLite" << QStringList{"widget"};
        QTest::newRow("other product keeps preset row")
            << CSiteStore::kShowPreSetTabWidget << "ZephViewPro" << QStringList();
    }
    void switchesReadAtConstruction()
    {
        QFETCH(QString, key);
        QFETCH(QString, product);
        QFETCH(QStringList, hidden);

        QVERIFY(TestEnv::store()->setBoolSetting(key, false));
        if (!product.isEmpty())
            QVERIFY(TestEnv::store()->setSetting(site_store::CSiteStore::kProductType, product));
        CPreviewPTZWnd panel(1, false, false);
        // The right half holds the named widgets (the lock strip's pages reuse "widget").
        auto *right = panel.findChild<QWidget *>("PreviewPtzControl_ptr_ptz_panel_right_");
        for (const char *name : {"ptr_update_ptz_btn_", "ptr_manual_track_btn_", "ptr_face_capture_btn_", "widget"}) {
            auto *widget = (qstrcmp(name, "widget") == 0 ? right : &panel)->findChild<QWidget *>(name);
            QVERIFY2(widget, name);
            QCOMPARE(widget->isHidden(), hidden.contains(name));
        }
    }

    // Fish-eye cameras: a software-PTZ panel with a fish-eye controller of four pictures.
    void openingSwitchesToSoftwarePTZAndBack()
    {
        m_env.newPanel(true);
        m_env.bind(kFishEye);
        QCOMPARE(panel()->WndType(), PTZWndDevice);
        m_env.fishEye()->SetFishEyeWndOpen(true);
        QVERIFY(panel()->IsSoftwarePTZ());
        QCOMPARE(panel()->WndType(), PTZWndSoftware);
        QCOMPARE(panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_FISHEYE);
        QVERIFY(m_env.child<QWidget>("pZoomLarge"));
        QVERIFY(!m_env.child<QTabWidget>("m_pTabWidget")->isTabVisible(2));

        m_env.fishEye()->SetFishEyeWndOpen(false);
        QCOMPARE(panel()->WndType(), PTZWndDevice);
        QCOMPARE(panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_DEVICE);
        QVERIFY(m_env.child<QWidget>("pZoom"));

        // Binding reads the open state; unbinding closes the fish-eye view.
        m_env.bind(QString());
        m_env.fishEye()->SetFishEyeWndOpen(true);
        m_env.bind(kFishEye);
        QCOMPARE(panel()->WndType(), PTZWndSoftware);
        m_env.bind(QString());
        QVERIFY(!m_env.fishEye()->IsFishEyeWndOpen());
    }
    void switchingControllersListensToTheNewOneOnly()
    {
        m_env.newPanel(true);
        CSimpleFishEyeController first(4);
        CSimpleFishEyeController second(4);
        m_env.bind(kFishEye);
        panel()->SetFishEyeController(&first);
        panel()->SetFishEyeController(&second);
        first.SetFishEyeWndOpen(true);
        m_env.fishEye()->SetFishEyeWndOpen(true);
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
        m_env.newPanel(true);
        m_env.fishEye()->SetFishEyeWndOpen(true);
        m_env.bind(kFishEye);
        QCOMPARE(panel()->WndType(), PTZWndSoftware);

        double pan = 0, tilt = 0, zoom = 0;
        m_env.fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
        const double start_pan = pan;
        m_env.pressSection(CPTZCloud::MiddleRight);
        QTRY_VERIFY((m_env.fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom), pan != start_pan));
        m_env.releaseSection(CPTZCloud::MiddleRight);
        QSignalSpy moved(m_env.fishEye(), &zeph_ptz_controller::IPTZFishEyeController::SignalFishEyePTZPosChanged);
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
        QTest::newRow("software, path 1") << true << true << 1;
        QTest::newRow("software, no patrol") << true << false << 0;
    }
    void pressOnPictureEndsTheAutoPanDisplay()
    {
        m_env.newPanel(true);
        QFETCH(bool, open);
        QFETCH(bool, patrolling);
        QFETCH(int, path);
        auto software = std::make_shared<CFakeSoftwareController>();
        panel()->SetSoftwarePTZController(software);
        panel()->SetFishEyeController(m_env.fishEye());
        m_env.bind(kFishEye);
        QVERIFY(software->GetCamera().isEmpty()); // device mode: the software controller is not involved
        m_env.fishEye()->SetFishEyeWndOpen(open);
        QCOMPARE(software->GetCamera(), open ? kFishEye : QString());
        ShowAutoPanOf(*m_env.fishEye(), 1);
        m_env.cloud()->SetSectionChecked(CPTZCloud::Center, true);
        software->patrolling = patrolling;
        software->path = path;

        panel()->OnFishEyePlayDisplayWndPress();
        QCOMPARE(m_env.cloud()->sectionStatus(CPTZCloud::Center), open ? 0 : 3);
    }

private:
    CPreviewPTZWnd *panel() const { return m_env.panel(); }
    QPushButton *button(const char *name) const { return m_env.child<QPushButton>(name); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndBinding)
#include "tst_cpreviewptzwnd_binding.moc"
