// Keyboard steering as operators do it: several keys, several screens, in any order.
#include "cworkbenchwindow.h"
#include "cliveview.h"

#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"
#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Key
{
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};

const Key kKeys[] = {{Qt::Key_Up, Qt::NoModifier},   {Qt::Key_Down, Qt::NoModifier}, {Qt::Key_Left, Qt::NoModifier},
                     {Qt::Key_Right, Qt::NoModifier}, {Qt::Key_Plus, Qt::NoModifier}, {Qt::Key_Minus, Qt::NoModifier},
                     {Qt::Key_7, Qt::KeypadModifier}, {Qt::Key_3, Qt::KeypadModifier}};

ptz_devices::CSimulatedCamera *Driver(const QString &id)
{
    return qobject_cast<ptz_devices::CSimulatedCamera *>(
        ZephPluginManager::CDriverTestAccess::GetDriver(id));
}

} // namespace

class TestWorkbenchKeys : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void releaseStopsTheCameraTheKeyStarted();
    void disabledSectionsSendNothing();
    void randomKeyboardRuns_data();
    void randomKeyboardRuns();
    void deactivationStopsEveryHeldKey();

private:
    void press(CWorkbenchWindow &window, const Key &k) { QTest::keyPress(&window, k.key, k.modifiers); }
    void release(CWorkbenchWindow &window, const Key &k) { QTest::keyRelease(&window, k.key, k.modifiers); }
    // Cameras of the window's screens that are moving (pan/tilt or zoom).
    static QStringList moving(const CWorkbenchWindow &window);

    QTemporaryDir m_dir;
    ptz_devices::CSimClock *m_clock = nullptr;
};

void TestWorkbenchKeys::init()
{
    auto *cameras = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance();
    cameras->Clear();
    delete m_clock;
    m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
    cameras->SetSimClock(m_clock);
    site_store::CSiteStore::InstallCurrent(
        site_store::CSiteStore::Open(m_dir.filePath(QStringLiteral("%1.sqlite").arg(QTest::currentTestFunction()))));
}

void TestWorkbenchKeys::cleanup()
{
    Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
}

QStringList TestWorkbenchKeys::moving(const CWorkbenchWindow &window)
{
    QStringList out;
    for (int i = 0; i < window.ScreenCount(); ++i) {
        const QString id = window.View(i)->CameraId();
        ptz_devices::CSimulatedCamera *camera = Driver(id);
        if (camera && (camera->status().panTiltMoving || camera->status().zoomMoving) && !out.contains(id))
            out << id;
    }
    return out;
}

void TestWorkbenchKeys::releaseStopsTheCameraTheKeyStarted()
{
    CWorkbenchWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QString dome = QString::fromLatin1(site_store::demo::kSpeedDome);
    const QString second = window.View(1)->CameraId();
    QCOMPARE(window.View(0)->CameraId(), dome);
    window.SelectScreen(0);
    press(window, kKeys[0]); // up on the dome
    window.SelectScreen(1);
    press(window, kKeys[2]); // left on the second camera
    QTRY_COMPARE(moving(window).size(), 2);
    release(window, kKeys[0]);
    QTRY_COMPARE(moving(window), QStringList{second});
    release(window, kKeys[2]);
    QTRY_VERIFY(moving(window).isEmpty());
}

void TestWorkbenchKeys::disabledSectionsSendNothing()
{
    CWorkbenchWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QString boxId = QString::fromLatin1(site_store::demo::kBoxZoom);
    QVERIFY(window.BindCamera(0, boxId));
    window.SelectScreen(0);
    ptz_devices::CSimulatedCamera *box = Driver(boxId);
    QVERIFY(box);
    box->clearRequestLog();
    for (const Key &k : kKeys) {
        if (k.key == Qt::Key_Plus || k.key == Qt::Key_Minus)
            continue;
        press(window, k);
        release(window, k);
    }
    QCOMPARE(window.HeldKeyCount(), 0);
    // The zoom still works, so the requests above would have arrived by now.
    press(window, kKeys[4]);
    QTRY_VERIFY(box->status().zoomMoving);
    release(window, kKeys[4]);
    QTRY_VERIFY(!box->status().zoomMoving);
    for (const auto &request : box->requestLog())
        QVERIFY(request.operation == box->requestLog().constFirst().operation
                || request.operation == box->requestLog().constLast().operation);
    QCOMPARE(box->requestLog().size(), 2);
}

void TestWorkbenchKeys::randomKeyboardRuns_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed : {1u, 7u, 42u, 2026u, 90210u})
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void TestWorkbenchKeys::randomKeyboardRuns()
{
    QFETCH(quint32, seed);
    QRandomGenerator rng(seed);
    CWorkbenchWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QList<int> down; // indexes into kKeys
    for (int step = 0; step < 40; ++step) {
        const int roll = rng.bounded(10);
        if (roll == 0) {
            window.SelectScreen(rng.bounded(window.ScreenCount()));
        } else if (roll < 6 || down.isEmpty()) {
            const int k = rng.bounded(int(sizeof kKeys / sizeof kKeys[0]));
            if (!down.contains(k)) {
                press(window, kKeys[k]);
                down << k;
            }
        } else {
            release(window, kKeys[down.takeAt(rng.bounded(down.size()))]);
        }
        // Whatever is still held keeps its camera moving.
        if (window.HeldKeyCount() > 0)
            QTRY_VERIFY(!moving(window).isEmpty());
    }
    while (!down.isEmpty())
        release(window, kKeys[down.takeAt(rng.bounded(down.size()))]);
    QCOMPARE(window.HeldKeyCount(), 0);
    QTRY_VERIFY2(moving(window).isEmpty(), qPrintable(moving(window).join(QLatin1Char(' '))));
}

void TestWorkbenchKeys::deactivationStopsEveryHeldKey()
{
    CWorkbenchWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QApplication::setActiveWindow(&window);
    QTRY_VERIFY(window.isActiveWindow());
    window.SelectScreen(0);
    press(window, kKeys[0]);
    window.SelectScreen(1);
    press(window, kKeys[3]);
    press(window, kKeys[4]);
    QTRY_COMPARE(moving(window).size(), 2);
    QWidget other;
    other.show();
    QApplication::setActiveWindow(&other);
    QTRY_VERIFY(!window.isActiveWindow());
    QCOMPARE(window.HeldKeyCount(), 0);
    QTRY_VERIFY(moving(window).isEmpty());
}

QTEST_MAIN(TestWorkbenchKeys)
#include "tst_workbenchkeys.moc"
