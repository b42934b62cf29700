// Keyboard steering as operators do it: several keys, several screens, in any order.
#include "support/workbenchfixture.h"

#include "cliveview.h"

#include <QKeyEvent>
#include <QRandomGenerator>
#include <QTest>

using ptz_devices::DriverOperation;

namespace {
struct Key
{
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};

const Key kKeys[] = {{Qt::Key_Up, Qt::NoModifier},    {Qt::Key_Down, Qt::NoModifier}, {Qt::Key_Left, Qt::NoModifier},
                     {Qt::Key_Right, Qt::NoModifier}, {Qt::Key_Plus, Qt::NoModifier}, {Qt::Key_Minus, Qt::NoModifier},
                     {Qt::Key_7, Qt::KeypadModifier}, {Qt::Key_3, Qt::KeypadModifier}};
constexpr int kUp = 0, kLeft = 2, kZoomIn = 4;
} // namespace

class TestWorkbenchKeys : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_fx.tearDown(); }
    void keysMapToCommands_data();
    void keysMapToCommands();
    void heldKeySendsOneStartAndOneStop_data();
    void heldKeySendsOneStartAndOneStop();
    void releaseStopsTheCameraTheKeyStarted();
    void disabledSectionsSendNothing();
    void randomKeyboardRuns_data();
    void randomKeyboardRuns();

private:
    void press(int k) { QTest::keyPress(m_fx.window(), kKeys[k].key, kKeys[k].modifiers); }
    void release(int k) { QTest::keyRelease(m_fx.window(), kKeys[k].key, kKeys[k].modifiers); }

    WorkbenchFixture m_fx;
};

void TestWorkbenchKeys::init()
{
    m_fx.setUp();
    QVERIFY(m_fx.showActive());
    m_fx.window()->SelectScreen(0);
    QCOMPARE(m_fx.window()->View(0)->CameraId(), kDome);
}

void TestWorkbenchKeys::keysMapToCommands_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("keypad");
    QTest::addColumn<int>("command");
    QTest::newRow("up") << int(Qt::Key_Up) << false << 21;
    QTest::newRow("down") << int(Qt::Key_Down) << false << 22;
    QTest::newRow("left") << int(Qt::Key_Left) << false << 23;
    QTest::newRow("right") << int(Qt::Key_Right) << false << 24;
    QTest::newRow("keypad 8") << int(Qt::Key_8) << true << 21;
    QTest::newRow("keypad 7") << int(Qt::Key_7) << true << 25;
    QTest::newRow("keypad 9") << int(Qt::Key_9) << true << 26;
    QTest::newRow("keypad 1") << int(Qt::Key_1) << true << 27;
    QTest::newRow("keypad 3") << int(Qt::Key_3) << true << 28;
    QTest::newRow("plus zooms in") << int(Qt::Key_Plus) << false << 11;
    QTest::newRow("minus zooms out") << int(Qt::Key_Minus) << false << 12;
    QTest::newRow("digit row 8 is no move") << int(Qt::Key_8) << false << 0;
    QTest::newRow("a letter") << int(Qt::Key_A) << false << 0;
}

void TestWorkbenchKeys::keysMapToCommands()
{
    QFETCH(int, key);
    QFETCH(bool, keypad);
    QFETCH(int, command);
    QCOMPARE(CWorkbenchWindow::CommandForKey(key, keypad ? Qt::KeypadModifier : Qt::NoModifier), command);
}

void TestWorkbenchKeys::heldKeySendsOneStartAndOneStop_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<DriverOperation>("start");
    QTest::addColumn<DriverOperation>("stop");
    QTest::addColumn<bool>("switchAway"); // the release happens in another window
    QTest::newRow("arrow up: move, then stop")
        << kUp << DriverOperation::MovePanTilt << DriverOperation::StopPanTilt << false;
    QTest::newRow("plus: zoom, then zoom stop") << kZoomIn << DriverOperation::Zoom << DriverOperation::Zoom << false;
    QTest::newRow("arrow up, window deactivated")
        << kUp << DriverOperation::MovePanTilt << DriverOperation::StopPanTilt << true;
}

void TestWorkbenchKeys::heldKeySendsOneStartAndOneStop()
{
    QFETCH(int, key);
    QFETCH(DriverOperation, start);
    QFETCH(DriverOperation, stop);
    QFETCH(bool, switchAway);
    ptz_devices::CSimulatedCamera *dome = m_fx.camera(kDome);
    dome->clearRequestLog();
    const double tiltBefore = dome->status().tilt;

    press(key);
    // Auto-repeat of a held key must not start the move again.
    QKeyEvent repeat(QEvent::KeyPress, kKeys[key].key, kKeys[key].modifiers, QString(), true);
    QApplication::sendEvent(m_fx.window(), &repeat);
    QTRY_COMPARE(m_fx.operations(kDome), QList<DriverOperation>{start});
    QTRY_COMPARE(m_fx.moving(), QStringList{kDome});
    m_fx.clock()->advance(500);
    if (switchAway) {
        QVERIFY(m_fx.switchAway());
        QCOMPARE(m_fx.window()->HeldKeyCount(), 0);
    } else {
        release(key);
    }
    QTRY_COMPARE(m_fx.operations(kDome), (QList<DriverOperation>{start, stop}));
    QTRY_VERIFY(m_fx.moving().isEmpty());
    if (key == kUp)
        QVERIFY(dome->status().tilt > tiltBefore);
}

void TestWorkbenchKeys::releaseStopsTheCameraTheKeyStarted()
{
    CWorkbenchWindow *window = m_fx.window();
    const QString second = window->View(1)->CameraId();
    press(kUp); // on the dome
    window->SelectScreen(1);
    press(kLeft);
    press(kZoomIn);
    QTRY_COMPARE(m_fx.moving().size(), 2);
    release(kUp);
    QTRY_COMPARE(m_fx.moving(), QStringList{second});
    // Switching to another program stops every key still held.
    QVERIFY(m_fx.switchAway());
    QCOMPARE(window->HeldKeyCount(), 0);
    QTRY_VERIFY(m_fx.moving().isEmpty());
}

void TestWorkbenchKeys::disabledSectionsSendNothing()
{
    QVERIFY(m_fx.window()->BindCamera(0, kBox));
    ptz_devices::CSimulatedCamera *box = m_fx.camera(kBox);
    box->clearRequestLog();
    for (int k = 0; k < int(std::size(kKeys)); ++k) {
        if (k != kZoomIn && k != kZoomIn + 1) {
            press(k);
            release(k);
        }
    }
    QCOMPARE(m_fx.window()->HeldKeyCount(), 0);
    // The zoom still works, so the requests above would have arrived by now.
    press(kZoomIn);
    QTRY_VERIFY(box->status().zoomMoving);
    release(kZoomIn);
    QTRY_VERIFY(!box->status().zoomMoving);
    QCOMPARE(m_fx.operations(kBox), (QList<DriverOperation>{DriverOperation::Zoom, DriverOperation::Zoom}));
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
    CWorkbenchWindow *window = m_fx.window();
    QList<int> down; // indexes into kKeys
    for (int step = 0; step < 40; ++step) {
        const int roll = rng.bounded(10);
        if (roll == 0) {
            window->SelectScreen(rng.bounded(window->ScreenCount()));
        } else if (roll < 6 || down.isEmpty()) {
            const int k = rng.bounded(int(std::size(kKeys)));
            if (!down.contains(k)) {
                press(k);
                down << k;
            }
        } else {
            release(down.takeAt(rng.bounded(down.size())));
        }
        // Whatever is still held keeps its camera moving.
        if (window->HeldKeyCount() > 0)
            QTRY_VERIFY(!m_fx.moving().isEmpty());
    }
    while (!down.isEmpty())
        release(down.takeAt(rng.bounded(down.size())));
    QCOMPARE(window->HeldKeyCount(), 0);
    QTRY_VERIFY2(m_fx.moving().isEmpty(), qPrintable(m_fx.moving().join(QLatin1Char(' '))));
}

QTEST_MAIN(TestWorkbenchKeys)
#include "tst_workbenchkeys.moc"
