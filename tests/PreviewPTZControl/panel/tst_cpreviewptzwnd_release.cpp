#include "support/panelfixture.h"

#include <QGraphicsView>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <iterator>
#include <memory>
#include <vector>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using ptz_plugin_protocol::PTZControlCommand;

namespace {
const QStringList kLensButtons{"pZoomInBtn", "pZoomOutBtn", "pFocusInBtn", "pFocusOutBtn", "pIRISInBtn", "pIRISOutBtn"};

// The lens axis a button drives, and the sign of its change while held (focus near shortens).
double LensChange(const QString &button, const ptz_devices::DeviceStatus &from, const ptz_devices::DeviceStatus &to)
{
    const int index = kLensButtons.indexOf(button);
    const double change = index < 2 ? to.zoom - from.zoom : index < 4 ? to.focus - from.focus : to.iris - from.iris;
    return index == 1 || index == 2 || index == 5 ? -change : change;
}

// The move code of each arrow of the pad.
int MoveCode(int section)
{
    const int codes[] = {25, 21, 26, 23, -1, 24, 27, 22, 28};
    return section >= 1 && section <= 9 ? codes[section - 1] : -1;
}
} // namespace

// A held motion ends with exactly one stop wherever the button goes up or whatever takes the
// mouse away: the pad reports releases only over arrows or off the pad, so the panel must not
// rely on it.
class TestPreviewPTZWndRelease : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_env.setUp();
        m_env.bind(kDome);
        m_env.panel()->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_env.panel()));
        m_otherWindow = std::make_unique<QWidget>();
        m_otherWindow->resize(100, 100);
        dome()->setPosition(100.0, -45.0, 4.0);
        m_env.settle();
        dome()->clearRequestLog();
        m_succeeded = std::make_unique<QSignalSpy>(
            m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded);
        m_failed = std::make_unique<QSignalSpy>(m_env.controller().get(),
                                                &zeph_ptz_controller::CUniversalPTZController::SignalExecutionFailed);
    }
    void cleanup()
    {
        m_succeeded.reset();
        m_failed.reset();
        m_otherWindow.reset();
        m_env.tearDown();
    }

    void arrowReleasedAnywhereStopsOnce_data()
    {
        QTest::addColumn<int>("pressed");
        QTest::addColumn<QString>("where"); // "section", "disabled", "outsidePad", "outsideWindow", "otherWindow"
        QTest::addColumn<int>("target");

        const QList<int> arrows{1, 2, 3, 4, 6, 7, 8, 9};
        for (int pressed : arrows) {
            for (int target = 1; target <= 9; ++target) {
                if (target != pressed)
                    QTest::addRow("%d released over %d", pressed, target) << pressed << "section" << target;
            }
            const int neighbour = arrows.at((arrows.indexOf(pressed) + 1) % arrows.size());
            QTest::addRow("%d released over disabled %d", pressed, neighbour) << pressed << "disabled" << neighbour;
            for (const char *where : {"outsidePad", "outsideWindow", "otherWindow"})
                QTest::addRow("%d released %s", pressed, where) << pressed << QString::fromLatin1(where) << 0;
        }
    }
    void arrowReleasedAnywhereStopsOnce()
    {
        QFETCH(int, pressed);
        QFETCH(QString, where);
        QFETCH(int, target);

        QWidget *viewport = m_env.padViewport();
        if (where == QLatin1String("disabled"))
            m_env.cloud()->SetSectionsEnabled({target}, false);
        m_env.child<QSlider>("ptr_speed_slider_")->setValue(pressed);
        const auto before = dome()->status();
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(pressed));
        QTRY_VERIFY(dome()->status().panTiltMoving);
        m_env.clock()->advance(500);
        // Each arrow moves its way, at 2 degrees a second per step of the speed slider.
        const QPoint way = PanelFixture::padPoint(pressed) - PanelFixture::padPoint(CPTZCloud::Center);
        QCOMPARE(qRound(dome()->status().pan - before.pan), pressed * qBound(-1, way.x(), 1));
        QCOMPARE(qRound(dome()->status().tilt - before.tilt), -pressed * qBound(-1, way.y(), 1));

        // The view keeps the mouse from the press on, so a release anywhere reaches it, except where
        // another window takes it.
        if (where == QLatin1String("otherWindow"))
            QTest::mouseRelease(m_otherWindow.get(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
        else if (where == QLatin1String("outsideWindow"))
            QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(-400, 700));
        else
            QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(target));

        verifyStandsStill();
        // A release the pad reports names the arrow under the cursor, and its code goes out.
        const bool reported = where == QLatin1String("section") && target != CPTZCloud::Center;
        QCOMPARE(stopCode(), MoveCode(reported ? target : pressed));
        QCOMPARE(m_env.count(kDome, DriverOperation::MovePanTilt), 1);
        QCOMPARE(m_env.count(kDome, DriverOperation::StopPanTilt), 1);
        QCOMPARE(m_env.count(kDome, DriverOperation::AutoScan), 0);
    }
    void lensButtonReleasedAnywhereStopsOnce_data()
    {
        QTest::addColumn<QString>("pressed");
        QTest::addColumn<QString>("where"); // "same", "otherLens", "pad", "outsideWindow", "otherWindow"
        for (const QString &button : kLensButtons) {
            for (const char *where : {"same", "otherLens", "pad", "outsideWindow", "otherWindow"})
                QTest::addRow("%s released %s", qPrintable(button), where) << button << QString::fromLatin1(where);
        }
    }
    void lensButtonReleasedAnywhereStopsOnce()
    {
        QFETCH(QString, pressed);
        QFETCH(QString, where);

        auto *button = m_env.panel()->findChild<QPushButton *>(pressed);
        const auto before = dome()->status();
        QTest::mousePress(button, Qt::LeftButton);
        QTRY_COMPARE(m_succeeded->count(), 1);
        m_env.clock()->advance(500);
        QVERIFY(LensChange(pressed, before, dome()->status()) > 0.01);

        if (where == QLatin1String("same")) {
            QTest::mouseRelease(button, Qt::LeftButton);
        } else if (where == QLatin1String("otherLens")) {
            const QString other = kLensButtons.at((kLensButtons.indexOf(pressed) + 1) % kLensButtons.size());
            QTest::mouseRelease(m_env.panel()->findChild<QPushButton *>(other), Qt::LeftButton);
        } else if (where == QLatin1String("pad")) {
            QTest::mouseRelease(m_env.padViewport(), Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(4));
        } else if (where == QLatin1String("outsideWindow")) {
            QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, QPoint(-400, 700));
        } else {
            QTest::mouseRelease(m_otherWindow.get(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
        }
        verifyStandsStill();
        QCOMPARE(m_succeeded->count(), 2);
        QCOMPARE(m_env.count(kDome, DriverOperation::MovePanTilt), 0);
    }
    void heldMotionStopsOnceWhenMouseIsLost_data()
    {
        QTest::addColumn<bool>("pad"); // else the zoom-in button
        QTest::addColumn<QString>("loss");
        for (bool pad : {true, false}) {
            for (const char *loss : {"hide", "rebind", "stopWork", "deactivate", "ungrab", "disable"})
                QTest::addRow("%s, %s", pad ? "pad" : "zoom", loss) << pad << QString::fromLatin1(loss);
        }
    }
    void heldMotionStopsOnceWhenMouseIsLost()
    {
        QFETCH(bool, pad);
        QFETCH(QString, loss);

        auto *zoom = m_env.child<QPushButton>("pZoomInBtn");
        if (pad)
            m_env.pressSection(CPTZCloud::TopMiddle);
        else
            PanelFixture::sendMouse(zoom, true);
        QTRY_VERIFY(pad ? dome()->status().panTiltMoving : dome()->status().zoomMoving);

        if (loss == QLatin1String("hide")) {
            m_env.panel()->hide();
        } else if (loss == QLatin1String("rebind")) {
            m_env.panel()->SetCamera(QString(), kBasic, false, false);
        } else if (loss == QLatin1String("stopWork")) {
            m_env.panel()->StopWork();
        } else if (loss == QLatin1String("deactivate")) {
            QEvent deactivate(QEvent::WindowDeactivate);
            QCoreApplication::sendEvent(m_env.panel(), &deactivate);
        } else if (loss == QLatin1String("disable")) {
            m_env.panel()->setEnabled(false);
        } else {
            // The pad's overlay view holds the mouse for the pad.
            QEvent ungrab(QEvent::UngrabMouse);
            QWidget *grabber = pad ? m_env.cloud()->findChild<QGraphicsView *>() : static_cast<QWidget *>(zoom);
            QCoreApplication::sendEvent(grabber, &ungrab);
        }
        QTRY_VERIFY(pad ? !dome()->status().panTiltMoving : !dome()->status().zoomMoving);

        // The release that finally arrives must not send a second stop.
        if (pad)
            m_env.releaseSection(CPTZCloud::TopMiddle);
        else
            PanelFixture::sendMouse(zoom, false);
        QCoreApplication::processEvents();
        QCOMPARE(m_env.count(kDome, pad ? DriverOperation::MovePanTilt : DriverOperation::Zoom), pad ? 1 : 2);
        QCOMPARE(m_env.count(kDome, DriverOperation::StopPanTilt), pad ? 1 : 0);
    }
    // The stop of a release that ended elsewhere is sent after the release; a press that follows at
    // once must not be caught by it.
    void releaseBeforeTheNextPressLeavesTheNextMotionRunning()
    {
        QWidget *viewport = m_env.padViewport();
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::MiddleRight));
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::Center));
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::TopMiddle));
        m_env.settle();
        m_env.settle();
        const double tilt = dome()->status().tilt;
        m_env.clock()->advance(500);
        QVERIFY(dome()->status().tilt > tilt);
        QCOMPARE(stopsSent(), 1);

        m_succeeded->clear();
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, PanelFixture::padPoint(CPTZCloud::Center));
        verifyStandsStill();
    }
    // Random operator input over several panels and cameras: whatever the order of presses,
    // drags, releases and screen changes, nothing moves once the button is up.
    void pressReleaseStormLeavesNothingMoving_data()
    {
        QTest::addColumn<quint32>("seed");
        QTest::newRow("seed 1") << 1u;
        QTest::newRow("seed 20261123") << 20261123u;
    }
    void pressReleaseStormLeavesNothingMoving();

private:
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    QList<PTZControlCommand> stops() const
    {
        QList<PTZControlCommand> found;
        for (const QList<QVariant> &answer : qAsConst(*m_succeeded)) {
            const auto command = answer.at(2).value<PTZControlCommand>();
            if (command.action == ptz_plugin_protocol::PTZ_ACTION_STOP)
                found << command;
        }
        return found;
    }
    int stopsSent() const { return stops().size(); }
    int stopCode() const { return stops().isEmpty() ? -1 : int(stops().first().command); }
    // Waits for the one stop the release owes, then checks that the camera holds still.
    void verifyStandsStill()
    {
        QTRY_COMPARE(stopsSent(), 1);
        verifyNothingMoves({kDome}, QStringLiteral("after the release"));
        QCOMPARE(m_failed->count(), 0);
        QCOMPARE(stopsSent(), 1);
    }
    void verifyNothingMoves(const QStringList &cameras, const QString &step);

    PanelFixture m_env;
    std::unique_ptr<QWidget> m_otherWindow;
    std::unique_ptr<QSignalSpy> m_succeeded;
    std::unique_ptr<QSignalSpy> m_failed;
};

void TestPreviewPTZWndRelease::verifyNothingMoves(const QStringList &cameras, const QString &step)
{
    QVector<ptz_devices::DeviceStatus> before;
    for (const QString &id : cameras) {
        m_env.settle(id);
        QTRY_VERIFY2(!m_env.camera(id)->status().panTiltMoving && !m_env.camera(id)->status().zoomMoving,
                     qPrintable(step + ", " + id));
        before << m_env.camera(id)->status();
    }
    m_env.clock()->advance(1000);
    for (int i = 0; i < cameras.size(); ++i) {
        const auto now = m_env.camera(cameras.at(i))->status();
        const auto &was = before.at(i);
        QVERIFY2(!now.panTiltMoving && !now.zoomMoving && now.pan == was.pan && now.tilt == was.tilt
                     && now.zoom == was.zoom && now.focus == was.focus && now.iris == was.iris,
                 qPrintable(step + ", " + cameras.at(i)));
    }
}

void TestPreviewPTZWndRelease::pressReleaseStormLeavesNothingMoving()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QStringList cameras{kDome, kBasic, kBox, kCascade};
    const QStringList lensButtons{"pZoomInBtn", "pZoomOutBtn", "pFocusInBtn", "pIRISOutBtn"};
    for (const QString &id : cameras)
        TestEnv::manager()->GetCameraByID(id);
    std::vector<std::unique_ptr<CPreviewPTZWnd>> panels;
    for (int i = 0; i < 3; ++i) {
        panels.push_back(m_env.otherPanel(cameras.at(i), unsigned(i + 1)));
        panels.back()->move(40 + 320 * i, 40);
        panels.back()->show();
    }
    auto viewport = [&panels](int panel) {
        return panels.at(size_t(panel))->findChild<QGraphicsView *>(QStringLiteral("ptr_graphics_view"))->viewport();
    };
    // Mostly on an arrow, sometimes anywhere on the pad; never on its centre, which toggles
    // auto-scan (a running function, not a held motion).
    auto padPoint = [&random] {
        const QPoint jitter(random.bounded(-6, 7), random.bounded(-6, 7));
        for (QPoint p;;) {
            p = random.bounded(4) != 0 ? PanelFixture::padPoint(1 + random.bounded(9)) + jitter
                                       : QPoint(random.bounded(174), random.bounded(174));
            if (qAbs(p.x() - 87) > 30 || qAbs(p.y() - 87) > 30)
                return p;
        }
    };
    int held = -1;              // panel whose control holds the button, -1 when the button is up
    QWidget *grabber = nullptr; // the widget the press went to, which keeps the mouse
    int releases = 0;
    for (int step = 0; step < 800 && !QTest::currentTestFailed(); ++step) {
        const int panel = random.bounded(3);
        CPreviewPTZWnd *p = panels.at(size_t(panel)).get();
        const QPoint anywhere(random.bounded(-50, 250), random.bounded(-50, 250));
        // Weights: pad press 3, lens press 1, drag 2, release 3, screen change 1, time 1.
        static const int kKinds[] = {0, 0, 0, 1, 2, 2, 3, 3, 3, 4, 5};
        const int kind = kKinds[random.bounded(int(std::size(kKinds)))];
        if (kind <= 1 && held < 0 && p->isVisible()) {
            grabber = kind == 0 ? viewport(panel)
                                : p->findChild<QPushButton *>(lensButtons.at(random.bounded(lensButtons.size())));
            QTest::mousePress(grabber, Qt::LeftButton, Qt::NoModifier, kind == 0 ? padPoint() : QPoint(4, 4));
            held = panel;
        } else if (kind == 2 && held >= 0) {
            QTest::mouseMove(grabber, anywhere);
        } else if (kind == 3 && held >= 0) {
            // Usually where the press went (it keeps the mouse), sometimes another window or pad.
            const int where = random.bounded(4);
            if (where == 0)
                QTest::mouseRelease(m_otherWindow.get(), Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
            else if (where == 1)
                QTest::mouseRelease(viewport(panel), Qt::LeftButton, Qt::NoModifier, padPoint());
            else
                QTest::mouseRelease(grabber, Qt::LeftButton, Qt::NoModifier, anywhere);
            held = -1;
            ++releases;
            verifyNothingMoves(cameras, QStringLiteral("seed %1 step %2").arg(seed).arg(step));
        } else if (kind == 4) {
            // What the host does to a screen's panel: another camera, hidden or shown again, stopped.
            const QString camera = cameras.at(random.bounded(cameras.size()));
            const int change = p->isVisible() ? random.bounded(3) : 0;
            p->show();
            if (change == 0)
                p->SetCamera(QString(), camera, false, false);
            else if (change == 1)
                p->hide();
            else
                p->StopWork();
        } else if (kind == 5) {
            m_env.clock()->advance(random.bounded(300));
            QCoreApplication::processEvents();
        }
    }
    if (held >= 0)
        QTest::mouseRelease(grabber, Qt::LeftButton);
    verifyNothingMoves(cameras, QStringLiteral("seed %1 end").arg(seed));
    QVERIFY(releases > 20);
}

QTEST_MAIN(TestPreviewPTZWndRelease)
#include "tst_cpreviewptzwnd_release.moc"
