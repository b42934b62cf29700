#include "support/panelfixture.h"

#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;
namespace demo = site_store::demo;

namespace {
const QList<int> kAllSections { 1, 2, 3, 4, 5, 6, 7, 8, 9 };

QList<int> EnabledSections(const CPTZCloud *cloud)
{
    QList<int> enabled;
    for (int section : kAllSections)
        if (cloud->sectionStatus(section) != 4)
            enabled << section;
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
        QTest::addColumn<bool>("working");
        QTest::addColumn<QList<int>>("enabledSections");
        QTest::addColumn<bool>("zoomEnabled");
        QTest::addColumn<bool>("lightEnabled");
        QTest::addColumn<bool>("parkEnabled");
        QTest::addColumn<bool>("patternTabVisible");

        const QString op = QString::fromLatin1(demo::kOperator);
        QTest::newRow("full speed dome") << kDome << QList<int>() << false << op << false << true << kAllSections
                                         << true << true << true << true;
        QTest::newRow("no patterns: two tabs")
            << kBasic << QList<int>() << false << op << false << true << kAllSections << true << true << true << false;
        QTest::newRow("no PTZ control permission: idle")
            << kDome << QList<int>() << false << op << true << false << QList<int>() << true << true << true << true;
        QTest::newRow("no PTZ ability: idle") << kDome << QList<int> { 48, 49, 50 } << false << op << false << false
                                              << QList<int>() << true << true << true << true;
        QTest::newRow("cascade without PTZ ability: bound, restricted")
            << kDome << QList<int> { 46, 48, 49, 50 } << true << op << false << true << kAllSections << true << false
            << false << true;
        QTest::newRow("neither pan nor tilt: centre only") << kBox << QList<int>() << false << op << false << true
                                                           << QList<int> { 5 } << true << true << false << false;
        QTest::newRow("no pan") << kDome << QList<int> { 1, 33, 46, 49, 50 } << false << op << false << true
                                << QList<int> { 2, 5, 8 } << true << true << true << true;
        QTest::newRow("no tilt") << kDome << QList<int> { 1, 33, 46, 48, 50 } << false << op << false << true
                                 << QList<int> { 4, 5, 6 } << true << true << true << true;
        QTest::newRow("no zoom") << kDome << QList<int> { 1, 33, 46, 48, 49 } << false << op << false << true
                                 << kAllSections << false << true << true << true;
        QTest::newRow("no park-action permission")
            << kDome << QList<int>() << false << QString::fromLatin1(demo::kNoPark) << false << true << kAllSections
            << true << true << false << true;
        QTest::newRow("no park-action ability") << kDome << QList<int> { 1, 46, 48, 49, 50 } << false << op << false
                                                << true << kAllSections << true << true << false << true;
    }
    void bindingFollowsCameraAndUser()
    {
        QFETCH(QString, camera);
        QFETCH(QList<int>, abilities);
        QFETCH(bool, cascade);
        QFETCH(QString, user);
        QFETCH(bool, revokePtzControl);
        QFETCH(bool, working);
        QFETCH(QList<int>, enabledSections);
        QFETCH(bool, zoomEnabled);
        QFETCH(bool, lightEnabled);
        QFETCH(bool, parkEnabled);
        QFETCH(bool, patternTabVisible);

        if (!abilities.isEmpty() || cascade)
            m_env.setAbilities(camera, abilities, cascade);
        QVERIFY(PanelTestEnv::store()->setCurrentUser(user));
        if (revokePtzControl)
            QVERIFY(PanelTestEnv::store()->revokePermission(user, site_store::CSiteStore::kAllCameras, 15));

        m_env.panel()->SetCamera(QString(), camera, false, false);

        QCOMPARE(m_env.panel()->IsWorking(), working);
        QCOMPARE(m_env.panel()->CameraIndexCode(), working ? camera : QString());
        QCOMPARE(m_env.panel()->WndType(), working ? PTZWndDevice : PTZWndNone);
        QCOMPARE(EnabledSections(child<CPTZCloud>("ptr_cloud_")), enabledSections);
        if (!working)
            return;
        QCOMPARE(m_env.panel()->IsCascade(), cascade);
        QCOMPARE(child<QPushButton>("pZoomInBtn")->isEnabled(), zoomEnabled);
        QCOMPARE(child<QPushButton>("pZoomOutBtn")->isEnabled(), zoomEnabled);
        QCOMPARE(child<QPushButton>("m_pBtnLight")->isEnabled(), lightEnabled);
        QCOMPARE(child<QPushButton>("m_pBtnKeyFocus")->isEnabled(), lightEnabled);
        QCOMPARE(child<QWidget>("m_pTabCruise")->isEnabled(), !cascade);
        QCOMPARE(child<QPushButton>("ptr_park_action_btn_")->isEnabled(), parkEnabled);
        auto *tabs = child<QTabWidget>("m_pTabWidget");
        QCOMPARE(tabs->isTabVisible(2), patternTabVisible);
        QCOMPARE(tabs->property("tabstyle").toString(),
            patternTabVisible ? QStringLiteral("Three_tab") : QStringLiteral("Two_tab"));
        QCOMPARE(child<QWidget>("m_pTabCruise")->toolTip().isEmpty(), !cascade);
        QCOMPARE(child<QWidget>("m_pTabPatten")->toolTip().isEmpty(), !cascade);
    }
    void sameIdentifiersTwiceDoNothing()
    {
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        auto *zoom_in = child<QPushButton>("pZoomInBtn");
        zoom_in->setEnabled(false); // a second binding would enable it again
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(!zoom_in->isEnabled());
        QVERIFY(m_env.panel()->IsWorking());
    }
    void unbindingLeavesEverythingOff()
    {
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(m_env.panel()->IsWorking());
        m_env.panel()->SetCamera(QString(), QString(), false, false);
        QVERIFY(!m_env.panel()->IsWorking());
        QCOMPARE(m_env.panel()->WndType(), PTZWndNone);
        QCOMPARE(EnabledSections(child<CPTZCloud>("ptr_cloud_")), QList<int>());
        QVERIFY(!child<QWidget>("m_pAppendFunFrame")->isEnabled());
        QVERIFY(!child<QPushButton>("ptr_update_ptz_btn_")->isEnabled());
    }
    void stopWorkOnIdlePanelSendsNothing()
    {
        PanelTestEnv::manager()->GetCameraByID(kDome.toStdString()); // open the driver before counting
        auto *camera = m_env.camera(kDome);
        QVERIFY(camera);
        camera->clearRequestLog();
        m_env.panel()->StopWork();
        QCoreApplication::processEvents();
        QVERIFY(!m_env.panel()->IsWorking());
        QCOMPARE(camera->requestLog().size(), 0);
    }
    void userLevelComesFromHost()
    {
        QVERIFY(PanelTestEnv::store()->setCurrentUser(QString::fromLatin1(demo::kSenior)));
        QCOMPARE(CPreviewPTZWnd::GetUserPTZPerm(""), demo::kSeniorLevel);
        QCOMPARE(CPreviewPTZWnd::CurrentUserPTZPerm(), demo::kSeniorLevel);
        QCOMPARE(CPreviewPTZWnd::GetUserPTZPerm("nobody-of-this-site"), -1);
        QCOMPARE(CPreviewPTZWnd::CurrentUserPTZPerm(), demo::kSeniorLevel);
    }
    void cascadeRestrictionsAreLiftedForNextCamera()
    {
        m_env.panel()->SetCamera(QString(), kCascade, false, false);
        QVERIFY(m_env.panel()->IsCascade());
        QVERIFY(!child<QPushButton>("m_pBtnWiper")->isEnabled());
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(!m_env.panel()->IsCascade());
        QVERIFY(child<QPushButton>("m_pBtnWiper")->isEnabled());
        QVERIFY(child<QWidget>("m_pTabPatten")->toolTip().isEmpty());
    }
    void presetPageWaitsForTheList()
    {
        QSignalSpy arrived(m_env.panel()->findChild<zeph_ptz_controller::CPTZGetController *>(),
            &zeph_ptz_controller::CPTZGetController::SignalGetPresetsSuc);
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        auto *page = child<QWidget>("m_pTabPreset");
        auto *add = child<QPushButton>("ptz_add_preset_btn_");
        QVERIFY(!page->isEnabled());
        QVERIFY(!add->isEnabled());
        QTRY_COMPARE(arrived.count(), 1);
        QVERIFY(page->isEnabled());
        QVERIFY(add->isEnabled());
    }
    void virtualControllerMayGoAway()
    {
        auto *virtual_controller = new zeph_ptz_controller::CVirtualPtzControllor;
        m_env.panel()->SetPTZController(m_env.controller(), virtual_controller);
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        delete virtual_controller;
        m_env.panel()->SetCamera(QString(), kBasic, false, false); // reads the running state again
        QVERIFY(m_env.panel()->IsWorking());
    }
    void tabInFrontIsFetched_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("tab");
        QTest::addColumn<int>("operation");
        QTest::addColumn<bool>("sent");
        QTest::newRow("patrols") << kDome << 1 << int(ptz_devices::DriverOperation::ListPatrols) << true;
        QTest::newRow("patterns") << kDome << 2 << int(ptz_devices::DriverOperation::ListPatterns) << true;
        QTest::newRow("patrols of a cascaded camera")
            << kCascade << 1 << int(ptz_devices::DriverOperation::ListPatrols) << false;
    }
    void tabInFrontIsFetched()
    {
        QFETCH(QString, camera);
        QFETCH(int, tab);
        QFETCH(int, operation);
        QFETCH(bool, sent);
        m_env.panel()->SetCamera(QString(), camera, false, false);
        QCoreApplication::processEvents();
        m_env.camera(camera)->clearRequestLog();
        auto *tabs = child<QTabWidget>("m_pTabWidget");
        tabs->setCurrentIndex(tab);
        QCoreApplication::processEvents();
        QCOMPARE(m_env.operations(camera).contains(ptz_devices::DriverOperation(operation)), sent);
    }

private:
    template <typename T> T *child(const char *name) const { return m_env.child<T>(name); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndBinding)
#include "tst_cpreviewptzwnd_binding.moc"
