#include "cfisheyeview.h"
#include "cliveview.h"
#include "cworkbenchscript.h"
#include "cworkbenchwindow.h"

#include "direction/cptzcloud.h"
#include "panel/cpreviewptzwnd.h"
#include "ptz_devices/csimclock.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"
#include "ptz_devices/csimulatedcamera.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QTemporaryDir>
#include <QTest>

using PreviewPTZControl::CPreviewPTZWnd;
using PreviewPTZControl::CPTZCloud;

namespace {
const QString kFishEye = QString::fromLatin1(site_store::demo::kFishEye);
const QString kDome = QString::fromLatin1(site_store::demo::kSpeedDome);

struct Pos
{
    double pan = 0, tilt = 0, zoom = 0;
};

Pos SubViewPos(CFishEyeView *view, int index)
{
    Pos p;
    view->Controller()->GetWndPTZPos(index, p.pan, p.tilt, p.zoom);
    return p;
}
} // namespace

class TestFishEyeView : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void scriptOpensAndClosesTheViewAndThePanelFollows();
    void padSteersTheSelectedSubView_data();
    void padSteersTheSelectedSubView();
    void keysSteerTheSubViewNotTheDevice();
    void autoPanStaysWithItsSubView();
    void clickSelectsASubViewAndEndsTheAutoPanMark();
    void anotherPictureClosesTheView();

private:
    // A window whose first screen shows the fish-eye camera with its fish-eye view open.
    CFishEyeView *openOnFirstScreen(CWorkbenchWindow &window);

    QTemporaryDir m_dir;
    ptz_devices::CSimClock *m_clock = nullptr;
};

void TestFishEyeView::init()
{
    auto *cameras = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance();
    cameras->Clear();
    delete m_clock;
    m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
    cameras->SetSimClock(m_clock);
    site_store::CSiteStore::InstallCurrent(
        site_store::CSiteStore::Open(m_dir.filePath(QStringLiteral("%1.sqlite").arg(QTest::currentTestFunction()))));
}

void TestFishEyeView::cleanup()
{
    Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
}

CFishEyeView *TestFishEyeView::openOnFirstScreen(CWorkbenchWindow &window)
{
    window.BindCamera(0, kFishEye);
    if (!window.SetFishEyeOpen(0, true))
        return nullptr;
    return CFishEyeView::Of(window.View(0));
}

void TestFishEyeView::scriptOpensAndClosesTheViewAndThePanelFollows()
{
    CWorkbenchWindow window;
    window.resize(1400, 800);
    CWorkbenchScript script;
    QString error;
    QVERIFY2(script.Parse(QStringLiteral("bind 1 %1\nfisheye 1 open\n").arg(kFishEye), &error), qPrintable(error));
    QVERIFY2(script.Run(&window, &error, [](int) {}), qPrintable(error));
    QVERIFY(CFishEyeView::Of(window.View(0)));
    QCOMPARE(window.Panel(0)->WndType(), PreviewPTZControl::PTZWndSoftware);

    // A camera without a fish-eye lens has no fish-eye view.
    window.BindCamera(1, kDome);
    QVERIFY(script.Parse(QStringLiteral("fisheye 2 open\n"), &error));
    QVERIFY(!script.Run(&window, &error, [](int) {}));
    QVERIFY(error.contains(QLatin1String("line 1")));
    QCOMPARE(window.Panel(1)->WndType(), PreviewPTZControl::PTZWndDevice);

    QVERIFY(script.Parse(QStringLiteral("fisheye 1 close\n"), &error));
    QVERIFY2(script.Run(&window, &error, [](int) {}), qPrintable(error));
    QVERIFY(!CFishEyeView::Of(window.View(0)));
    QCOMPARE(window.Panel(0)->WndType(), PreviewPTZControl::PTZWndDevice);
    QVERIFY(!script.Parse(QStringLiteral("fisheye 1 half\n"), &error));
}

void TestFishEyeView::padSteersTheSelectedSubView_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<double>("minPan");
    QTest::addColumn<double>("maxPan");
    QTest::addColumn<bool>("tiltChanges");

    // Sub-view 1 starts at pan 0: a move to the left wraps past 360.
    QTest::newRow("right") << int(CPTZCloud::MiddleRight) << 0.1 << 180.0 << false;
    QTest::newRow("left wraps") << int(CPTZCloud::MiddleLeft) << 180.0 << 359.99 << false;
    QTest::newRow("up") << int(CPTZCloud::TopMiddle) << 0.0 << 0.0 << true;
}

void TestFishEyeView::padSteersTheSelectedSubView()
{
    QFETCH(int, section);
    QFETCH(double, minPan);
    QFETCH(double, maxPan);
    QFETCH(bool, tiltChanges);

    CWorkbenchWindow window;
    window.resize(1400, 800);
    CFishEyeView *fishEye = openOnFirstScreen(window);
    QVERIFY(fishEye);
    fishEye->resize(800, 450);
    QCOMPARE(fishEye->SelectedSubView(), 0);
    const Pos start = SubViewPos(fishEye, 0);
    const Pos other = SubViewPos(fishEye, 1);
    const QImage before = fishEye->SubViewImage(0);

    auto *cloud = window.Panel(0)->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_"));
    QVERIFY(cloud);
    emit cloud->signalPressSection(nullptr, CPTZCloud::enClickSection(section));
    QTRY_VERIFY(SubViewPos(fishEye, 0).pan != start.pan || SubViewPos(fishEye, 0).tilt != start.tilt);
    emit cloud->signalReleaseSection(nullptr, CPTZCloud::enClickSection(section));

    const Pos moved = SubViewPos(fishEye, 0);
    QVERIFY2(moved.pan >= minPan && moved.pan <= maxPan, qPrintable(QString::number(moved.pan)));
    QCOMPARE(moved.tilt != start.tilt, tiltChanges);
    QVERIFY(moved.tilt <= 0.0);
    QCOMPARE(fishEye->SubViewImage(0) == before, false);
    // Only the selected sub-view moves.
    QCOMPARE(SubViewPos(fishEye, 1).pan, other.pan);
    QCOMPARE(SubViewPos(fishEye, 1).tilt, other.tilt);
}

void TestFishEyeView::keysSteerTheSubViewNotTheDevice()
{
    CWorkbenchWindow window;
    window.resize(1400, 800);
    CFishEyeView *fishEye = openOnFirstScreen(window);
    QVERIFY(fishEye);
    auto *device = qobject_cast<ptz_devices::CSimulatedCamera *>(
        ZephPluginManager::CDriverTestAccess::GetDriver(kFishEye));
    QVERIFY(device);
    device->clearRequestLog();
    const Pos start = SubViewPos(fishEye, 0);
    QTest::keyPress(&window, Qt::Key_Right);
    QTRY_VERIFY(SubViewPos(fishEye, 0).pan != start.pan);
    QTest::keyRelease(&window, Qt::Key_Right);
    // While the next key tilts the sub-view, its pan must stand where the release left it.
    const Pos stopped = SubViewPos(fishEye, 0);
    QTest::keyPress(&window, Qt::Key_Up);
    QTRY_VERIFY(SubViewPos(fishEye, 0).tilt != stopped.tilt);
    QTest::keyRelease(&window, Qt::Key_Up);
    QCOMPARE(SubViewPos(fishEye, 0).pan, stopped.pan);
    QVERIFY(device->requestLog().isEmpty());
}

void TestFishEyeView::autoPanStaysWithItsSubView()
{
    CWorkbenchWindow window;
    window.resize(1400, 800);
    CFishEyeView *fishEye = openOnFirstScreen(window);
    QVERIFY(fishEye);
    auto *cloud = window.Panel(0)->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_"));
    const Pos start = SubViewPos(fishEye, 0);
    emit cloud->signalPressSection(nullptr, CPTZCloud::Center); // the pad's auto-pan toggle turned on
    QTRY_VERIFY(SubViewPos(fishEye, 0).pan != start.pan);
    auto *state = zeph_ptz_controller::CPTZStateStorageManager::Instance();
    QVERIFY(state->IsAutoScan(kFishEye, true));

    // Selected from the host (no press on the picture): sub-view 3 does not take over the auto-pan,
    // and sub-view 1 carries on with it once selected again.
    fishEye->Controller()->SetSelectedWnd(2);
    QVERIFY(!state->IsAutoScan(kFishEye, true));
    QCOMPARE(cloud->sectionStatus(CPTZCloud::Center), 0);
    fishEye->Controller()->SetSelectedWnd(0);
    QVERIFY(state->IsAutoScan(kFishEye, true));
    const Pos resumed = SubViewPos(fishEye, 0);
    QTRY_VERIFY(SubViewPos(fishEye, 0).pan != resumed.pan);
}

void TestFishEyeView::clickSelectsASubViewAndEndsTheAutoPanMark()
{
    CWorkbenchWindow window;
    window.resize(1400, 800);
    CFishEyeView *fishEye = openOnFirstScreen(window);
    QVERIFY(fishEye);
    fishEye->resize(800, 450);
    auto *cloud = window.Panel(0)->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_"));
    cloud->SetSectionChecked(CPTZCloud::Center, true);

    QTest::mouseClick(fishEye, Qt::LeftButton, Qt::NoModifier, fishEye->SubViewRect(2).center());
    QCOMPARE(fishEye->SelectedSubView(), 2);
    QCOMPARE(cloud->sectionStatus(CPTZCloud::Center), 0);

    // The pad now steers the newly selected sub-view.
    const Pos start = SubViewPos(fishEye, 2);
    const Pos first = SubViewPos(fishEye, 0);
    emit cloud->signalPressSection(nullptr, CPTZCloud::MiddleRight);
    QTRY_VERIFY(SubViewPos(fishEye, 2).pan != start.pan);
    emit cloud->signalReleaseSection(nullptr, CPTZCloud::MiddleRight);
    QCOMPARE(SubViewPos(fishEye, 0).pan, first.pan);
}

void TestFishEyeView::anotherPictureClosesTheView()
{
    CWorkbenchWindow window;
    QVERIFY(openOnFirstScreen(window));
    window.BindCamera(0, kDome);
    QVERIFY(!CFishEyeView::Of(window.View(0)));
    QCOMPARE(window.Panel(0)->WndType(), PreviewPTZControl::PTZWndDevice);
    QVERIFY(!window.SetFishEyeOpen(0, true));
}

QTEST_MAIN(TestFishEyeView)
#include "tst_cfisheyeview.moc"
