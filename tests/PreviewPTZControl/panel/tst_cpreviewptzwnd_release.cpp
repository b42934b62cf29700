#include "support/paneltestenv.h"

#include <QGraphicsView>
#include <QHash>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using ptz_plugin_protocol::PTZControlCommand;

namespace {
const QString kDome = QString::fromLatin1(site_store::demo::kSpeedDome);
const QStringList kLensButtons{QStringLiteral("pZoomInBtn"), QStringLiteral("pZoomOutBtn"),
                               QStringLiteral("pFocusInBtn"), QStringLiteral("pFocusOutBtn"),
                               QStringLiteral("pIRISInBtn"), QStringLiteral("pIRISOutBtn")};

// A point well inside each section, in pad coordinates (origin at the centre).
QPoint SectionPoint(int section)
{
    switch (section) {
    case CPTZCloud::TopLeft:
        return {-45, -45};
    case CPTZCloud::TopMiddle:
        return {0, -50};
    case CPTZCloud::TopRight:
        return {45, -45};
    case CPTZCloud::MiddleLeft:
        return {-50, 0};
    case CPTZCloud::MiddleRight:
        return {50, 0};
    case CPTZCloud::BottomLeft:
        return {-45, 45};
    case CPTZCloud::BottomMiddle:
        return {0, 50};
    case CPTZCloud::BottomRight:
        return {45, 45};
    default:
        return {0, 0};
    }
}

// The pad's arrows and their move codes.
int MoveCode(int section)
{
    static const QHash<int, int> codes{{1, 25}, {2, 21}, {3, 26}, {4, 23}, {6, 24}, {7, 27}, {8, 22}, {9, 28}};
    return codes.value(section, -1);
}

QPoint ToViewport(const QPoint &pad)
{
    return pad + QPoint(87, 87);
}
} // namespace

// A held motion ends with exactly one stop wherever the button goes up: the pad reports
// releases only over arrows or off the pad, so the panel must not rely on it.
class TestPreviewPTZWndRelease : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void arrowReleasedAnywhereStopsOnce_data();
    void arrowReleasedAnywhereStopsOnce();
    void lensButtonReleasedAnywhereStopsOnce_data();
    void lensButtonReleasedAnywhereStopsOnce();
    void releaseBeforeTheNextPressLeavesTheNextMotionRunning();
    void stopOfAnyDirectionStopsPanTilt_data();
    void stopOfAnyDirectionStopsPanTilt();

private:
    CPTZCloud *cloud() const { return m_panel->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_")); }
    QWidget *padViewport() const
    {
        auto *view = cloud()->findChild<QGraphicsView *>(QStringLiteral("ptr_graphics_view"));
        return view ? view->viewport() : nullptr;
    }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    int stopsSent() const;
    int stopCode() const;
    void verifyStandsStill();

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
    QWidget *m_otherWindow = nullptr;
    QSignalSpy *m_succeeded = nullptr;
    QSignalSpy *m_failed = nullptr;
};

void TestPreviewPTZWndRelease::init()
{
    m_env.setUp();
    m_panel = new CPreviewPTZWnd(0, false, false);
    m_panel->SetPTZController(m_env.controller(), nullptr);
    m_panel->SetCamera(QString(), kDome, false, false);
    m_panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_panel));
    m_otherWindow = new QWidget;
    m_otherWindow->resize(100, 100);
    QVERIFY(dome());
    dome()->setPosition(100.0, -45.0, 4.0);
    QCoreApplication::processEvents();
    dome()->clearRequestLog();
    m_succeeded = new QSignalSpy(m_env.controller().get(),
                                 &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded);
    m_failed = new QSignalSpy(m_env.controller().get(),
                              &zeph_ptz_controller::CUniversalPTZController::SignalExecutionFailed);
}

void TestPreviewPTZWndRelease::cleanup()
{
    delete m_succeeded;
    delete m_failed;
    delete m_otherWindow;
    delete m_panel;
    m_panel = nullptr;
    m_env.tearDown();
}

int TestPreviewPTZWndRelease::stopsSent() const
{
    int stops = 0;
    for (const QList<QVariant> &answer : qAsConst(*m_succeeded))
        stops += answer.at(2).value<PTZControlCommand>().action == ptz_plugin_protocol::PTZ_ACTION_STOP ? 1 : 0;
    return stops;
}

// Waits for the one stop the release owes, then checks that the camera holds still.
int TestPreviewPTZWndRelease::stopCode() const
{
    for (const QList<QVariant> &answer : qAsConst(*m_succeeded)) {
        const auto command = answer.at(2).value<PTZControlCommand>();
        if (command.action == ptz_plugin_protocol::PTZ_ACTION_STOP)
            return int(command.command);
    }
    return -1;
}

void TestPreviewPTZWndRelease::verifyStandsStill()
{
    QTRY_COMPARE(stopsSent(), 1);
    QTRY_VERIFY(m_env.controller()->PendingRequestCount() == 0 && dome()->pendingRequestCount() == 0);
    QCoreApplication::processEvents();
    const auto before = dome()->status();
    QVERIFY(!before.panTiltMoving);
    QVERIFY(!before.zoomMoving);
    m_env.clock()->advance(2000);
    const auto after = dome()->status();
    QCOMPARE(after.pan, before.pan);
    QCOMPARE(after.tilt, before.tilt);
    QCOMPARE(after.zoom, before.zoom);
    QCOMPARE(after.focus, before.focus);
    QCOMPARE(after.iris, before.iris);
    QCOMPARE(m_failed->count(), 0);
}

void TestPreviewPTZWndRelease::arrowReleasedAnywhereStopsOnce_data()
{
    QTest::addColumn<int>("pressed");
    QTest::addColumn<QString>("where"); // "section", "disabled", "outsidePad", "outsideWindow", "otherWindow"
    QTest::addColumn<int>("target");

    const QList<int> arrows{1, 2, 3, 4, 6, 7, 8, 9};
    for (int pressed : arrows) {
        for (int target : {1, 2, 3, 4, 5, 6, 7, 8, 9}) {
            if (target != pressed)
                QTest::addRow("%d released over %d", pressed, target) << pressed << QStringLiteral("section") << target;
        }
        const int neighbour = arrows.at((arrows.indexOf(pressed) + 1) % arrows.size());
        QTest::addRow("%d released over disabled %d", pressed, neighbour)
            << pressed << QStringLiteral("disabled") << neighbour;
        for (const char *where : {"outsidePad", "outsideWindow", "otherWindow"})
            QTest::addRow("%d released %s", pressed, where) << pressed << QString::fromLatin1(where) << -1;
    }
}

void TestPreviewPTZWndRelease::arrowReleasedAnywhereStopsOnce()
{
    QFETCH(int, pressed);
    QFETCH(QString, where);
    QFETCH(int, target);

    QWidget *viewport = padViewport();
    QVERIFY(viewport);
    if (where == QLatin1String("disabled"))
        cloud()->SetSectionsEnabled({target}, false);

    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, ToViewport(SectionPoint(pressed)));
    QTRY_VERIFY(dome()->status().panTiltMoving);
    m_env.clock()->advance(500);

    // The view keeps the mouse from the press on, so a release anywhere reaches it, except where
    // another window takes it.
    if (where == QLatin1String("section") || where == QLatin1String("disabled"))
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, ToViewport(SectionPoint(target)));
    else if (where == QLatin1String("outsidePad"))
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(190, 20));
    else if (where == QLatin1String("outsideWindow"))
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(-400, 700));
    else
        QTest::mouseRelease(m_otherWindow, Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));

    verifyStandsStill();
    QCOMPARE(stopsSent(), 1);
    // A release the pad reports names the arrow under the cursor, and its code goes out.
    const bool reported = where == QLatin1String("section") && target != CPTZCloud::Center;
    QCOMPARE(stopCode(), MoveCode(reported ? target : pressed));
    QCOMPARE(m_env.operations(kDome).count(DriverOperation::MovePanTilt), 1);
    QCOMPARE(m_env.operations(kDome).count(DriverOperation::StopPanTilt), 1);
    QCOMPARE(m_env.operations(kDome).count(DriverOperation::AutoScan), 0);
}

void TestPreviewPTZWndRelease::lensButtonReleasedAnywhereStopsOnce_data()
{
    QTest::addColumn<QString>("pressed");
    QTest::addColumn<QString>("where"); // "same", "otherLens", "pad", "outsideWindow", "otherWindow"

    for (const QString &button : kLensButtons) {
        for (const char *where : {"same", "otherLens", "pad", "outsideWindow", "otherWindow"})
            QTest::addRow("%s released %s", qPrintable(button), where) << button << QString::fromLatin1(where);
    }
}

void TestPreviewPTZWndRelease::lensButtonReleasedAnywhereStopsOnce()
{
    QFETCH(QString, pressed);
    QFETCH(QString, where);

    auto *button = m_panel->findChild<QPushButton *>(pressed);
    QVERIFY(button && button->isEnabled());
    const auto before = dome()->status();
    QTest::mousePress(button, Qt::LeftButton);
    QTRY_VERIFY(m_succeeded->count() == 1);
    m_env.clock()->advance(500);
    const auto moved = dome()->status();
    QVERIFY(moved.zoom != before.zoom || moved.focus != before.focus || moved.iris != before.iris);

    if (where == QLatin1String("same")) {
        QTest::mouseRelease(button, Qt::LeftButton);
    } else if (where == QLatin1String("otherLens")) {
        const QString other = kLensButtons.at((kLensButtons.indexOf(pressed) + 1) % kLensButtons.size());
        QTest::mouseRelease(m_panel->findChild<QPushButton *>(other), Qt::LeftButton);
    } else if (where == QLatin1String("pad")) {
        QTest::mouseRelease(padViewport(), Qt::LeftButton, Qt::NoModifier, ToViewport(SectionPoint(4)));
    } else if (where == QLatin1String("outsideWindow")) {
        QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, QPoint(-400, 700));
    } else {
        QTest::mouseRelease(m_otherWindow, Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    }

    verifyStandsStill();
    QCOMPARE(stopsSent(), 1);
    QCOMPARE(m_succeeded->count(), 2);
    QCOMPARE(m_env.operations(kDome).count(DriverOperation::MovePanTilt), 0);
}

// The stop of a release that ended elsewhere is sent after the release; a press that follows at
// once must not be caught by it.
void TestPreviewPTZWndRelease::releaseBeforeTheNextPressLeavesTheNextMotionRunning()
{
    QWidget *viewport = padViewport();
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, ToViewport(SectionPoint(CPTZCloud::MiddleRight)));
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, ToViewport(QPoint(0, 0)));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, ToViewport(SectionPoint(CPTZCloud::TopMiddle)));
    for (int pass = 0; pass < 2; ++pass) {
        QCoreApplication::processEvents();
        QTRY_VERIFY(m_env.controller()->PendingRequestCount() == 0 && dome()->pendingRequestCount() == 0);
    }
    const double tilt = dome()->status().tilt;
    m_env.clock()->advance(500);
    QVERIFY(dome()->status().tilt > tilt);
    QCOMPARE(stopsSent(), 1);

    m_succeeded->clear();
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, ToViewport(QPoint(0, 0)));
    verifyStandsStill();
    QCOMPARE(stopsSent(), 1);
}

void TestPreviewPTZWndRelease::stopOfAnyDirectionStopsPanTilt_data()
{
    QTest::addColumn<int>("moveCommand");
    QTest::addColumn<int>("stopCommand");
    QTest::newRow("right stopped as left") << 24 << 23;
    QTest::newRow("up stopped as down-right") << 21 << 28;
    QTest::newRow("down-left stopped as up") << 27 << 21;
}

// What the panel relies on when a release names another arrow than the one pressed.
void TestPreviewPTZWndRelease::stopOfAnyDirectionStopsPanTilt()
{
    QFETCH(int, moveCommand);
    QFETCH(int, stopCommand);
    PTZControlCommand command;
    command.camera_index_code = kDome.toStdString();
    command.command = quint32(moveCommand);
    command.speed = 20;
    m_env.controller()->Control(command);
    QTRY_VERIFY(dome()->status().panTiltMoving);
    command.command = quint32(stopCommand);
    command.action = ptz_plugin_protocol::PTZ_ACTION_STOP;
    m_env.controller()->Control(command);
    verifyStandsStill();
    QCOMPARE(m_env.operations(kDome).count(ptz_devices::DriverOperation::StopPanTilt), 1);
}

QTEST_MAIN(TestPreviewPTZWndRelease)
#include "tst_cpreviewptzwnd_release.moc"
