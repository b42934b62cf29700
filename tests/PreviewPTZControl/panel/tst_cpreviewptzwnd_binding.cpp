#include "support/panelfixture.h"

#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
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
    }
    void cascadeRestrictionsAreLiftedForNextCamera()
    {
        panel()->SetCamera(QString(), kCascade, false, false);
        QVERIFY(panel()->IsCascade());
        QVERIFY(!button("m_pBtnWiper")->isEnabled());
        panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(!panel()->IsCascade());
        QVERIFY(button("m_pBtnWiper")->isEnabled());
        QVERIFY(m_env.child<QWidget>("m_pTabPatten")->toolTip().isEmpty());
        // The same identifiers again do nothing: a second binding would enable the button again.
        button("pZoomInBtn")->setEnabled(false);
        panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(!button("pZoomInBtn")->isEnabled());
    }
    void unbindingLeavesEverythingOff()
    {
        panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(panel()->IsWorking());
        panel()->SetCamera(QString(), QString(), false, false);
        QVERIFY(!panel()->IsWorking());
        QCOMPARE(panel()->WndType(), PTZWndNone);
        QCOMPARE(EnabledSections(m_env.cloud()), QList<int>());
        QVERIFY(!m_env.child<QWidget>("m_pAppendFunFrame")->isEnabled());
        QVERIFY(!button("ptr_update_ptz_btn_")->isEnabled());
    }
    void stopWorkOnIdlePanelSendsNothing()
    {
        TestEnv::manager()->GetCameraByID(kDome.toStdString()); // open the driver before counting
        m_env.camera(kDome)->clearRequestLog();
        panel()->StopWork();
        QCoreApplication::processEvents();
        QVERIFY(!panel()->IsWorking());
        QVERIFY(m_env.operations(kDome).isEmpty());
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
    void tabInFrontIsFetched_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("tab");
        QTest::addColumn<DriverOperation>("operation");
        QTest::addColumn<bool>("sent");
        QTest::newRow("patrols") << kDome << 1 << DriverOperation::ListPatrols << true;
        QTest::newRow("patterns") << kDome << 2 << DriverOperation::ListPatterns << true;
        QTest::newRow("patrols of a cascaded camera") << kCascade << 1 << DriverOperation::ListPatrols << false;
    }
    void tabInFrontIsFetched()
    {
        QFETCH(QString, camera);
        QFETCH(int, tab);
        QFETCH(DriverOperation, operation);
        QFETCH(bool, sent);
        m_env.bind(camera);
        m_env.child<QTabWidget>("m_pTabWidget")->setCurrentIndex(tab);
        QCoreApplication::processEvents();
        QCOMPARE(m_env.operations(camera).contains(operation), sent);
    }

    void tabWidthFollowsVisibleTabs_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("tabWidth");
        QTest::newRow("three tabs at 300 px") << kDome << 77;
        QTest::newRow("two tabs at 300 px") << kBasic << 116;
    }
    void tabWidthFollowsVisibleTabs()
    {
        QFETCH(QString, camera);
        QFETCH(int, tabWidth);
        auto *tabs = m_env.child<QTabWidget>("m_pTabWidget");
        tabs->setFixedWidth(300);
        m_env.panel()->SetCamera(QString(), camera, false, false);
        m_env.panel()->resize(560, 700); // the resize re-applies the rule with the width the tab widget has
        QTRY_COMPARE(tabs->width(), 300);
        m_env.panel()->resize(561, 700);
        QCOMPARE(tabs->styleSheet(), QStringLiteral("QTabBar::tab {width: %1px}").arg(tabWidth));
    }
    void whiteThemeRenamesOnceAndStays()
    {
        auto *presets = m_env.child<QAbstractItemView>("m_pTreeViewPreset");
        m_env.panel()->SwitchPTZWndBgColor(false);
        QVERIFY(m_env.child<QWidget>("pZoomInBtn"));
        QVERIFY(!presets->alternatingRowColors());

        m_env.panel()->SwitchPTZWndBgColor(true);
        QVERIFY(m_env.panel()->IsWhiteTheme());
        QCOMPARE(m_env.panel()->objectName(), QStringLiteral("CPreviewPTZWnd_white_"));
        for (const char *name :
             {"PreviewPTZControl_ptr_ptz_panel_left_white_", "ptr_scroll_content_white_", "m_pTabWidget_white_",
              "ptr_speed_slider_white_", "m_pBtnWiper_white_", "label_7_white_"})
            QVERIFY2(m_env.child<QWidget>(name), name);
        // The list keeps its own theme: light rows alternate and rows are not selectable.
        QVERIFY(presets->alternatingRowColors());
        QCOMPARE(presets->selectionMode(), QAbstractItemView::NoSelection);

        // A second switch must not stack suffixes; the switch back is one-way on purpose.
        m_env.panel()->SwitchPTZWndBgColor(true);
        m_env.panel()->SwitchPTZWndBgColor(false);
        QVERIFY(!m_env.panel()->IsWhiteTheme());
        QVERIFY(m_env.child<QWidget>("pZoomInBtn_white_"));
    }
    void layoutSwitchStacksOrPlacesSideBySide()
    {
        auto *left = m_env.child<QWidget>("PreviewPtzControl_ptr_ptz_panel_left_");
        auto *content = m_env.child<QWidget>("ptr_scroll_content");
        QVERIFY(qobject_cast<QHBoxLayout *>(content->layout()));
        QCOMPARE(left->minimumWidth(), 230);
        QCOMPARE(left->maximumWidth(), 230);

        m_env.panel()->SwitchPTZWndLayout(true);
        QVERIFY(m_env.panel()->IsStackedLayout());
        auto *stacked = qobject_cast<QVBoxLayout *>(content->layout());
        QVERIFY(stacked);
        QCOMPARE(stacked->itemAt(0)->widget(), left);
        QCOMPARE(left->minimumWidth(), 0);
        QCOMPARE(left->maximumWidth(), QWIDGETSIZE_MAX);

        m_env.panel()->SwitchPTZWndLayout(false);
        QVERIFY(qobject_cast<QHBoxLayout *>(content->layout()));
        QCOMPARE(left->width(), 230);

        m_env.panel()->show();
        auto *right = m_env.child<QWidget>("PreviewPtzControl_ptr_ptz_panel_right_");
        m_env.panel()->SetBottomHalfVisible(false);
        QVERIFY(!right->isVisible());
        m_env.panel()->SetBottomHalfVisible(true);
        QVERIFY(right->isVisible());
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

private:
    CPreviewPTZWnd *panel() const { return m_env.panel(); }
    QPushButton *button(const char *name) const { return m_env.child<QPushButton>(name); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndBinding)
#include "tst_cpreviewptzwnd_binding.moc"
