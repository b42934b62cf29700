#include "support/ptztestenv.h"
#include "support/workbenchfixture.h"

#include "cliveview.h"
#include "ctoast.h"

#include "boundary/cpreviewptzwndmanager.h"
#include "boundary/previewptzcontroltranslator.h"
#include "panel/cpreviewptzwnd.h"
#include "vs_ui_data_controller/cinformationmgr.h"

#include <QKeyEvent>
#include <QLabel>
#include <QRegularExpression>
#include <QSet>
#include <QStatusBar>
#include <QTest>

using PreviewPTZControl::CPreviewPTZWnd;
using PreviewPTZControl::CPreviewPTZWndManager;
using ptz_devices::DriverOperation;

namespace {
QSet<QString> StyledNames(const QString &qss)
{
    QSet<QString> names;
    QRegularExpressionMatchIterator it = QRegularExpression(QStringLiteral("#([A-Za-z0-9_]+)")).globalMatch(qss);
    while (it.hasNext())
        names.insert(it.next().captured(1));
    return names;
}

// Every screen has its panel registered, working on the screen's camera.
bool PanelsFollowScreens(const CWorkbenchWindow &window)
{
    CPreviewPTZWndManager *registry = CPreviewPTZWndManager::Instance();
    for (int i = 0; i < window.ScreenCount(); ++i) {
        if (registry->GetPreviewPTZWndByScreenIndex(unsigned(i)) != window.Panel(i)
            || window.Panel(i)->IsWorking() == window.View(i)->CameraId().isEmpty())
            return false;
    }
    return registry->GetAllPreviewPTZWnd().size() == window.ScreenCount()
           && !registry->GetPreviewPTZWndByScreenIndex(unsigned(window.ScreenCount()));
}

// Keys the tests hold down, as operators do: several keys, several screens, in any order.
const std::pair<Qt::Key, Qt::KeyboardModifiers> kKeys[] = {
    {Qt::Key_Up, Qt::NoModifier},    {Qt::Key_Down, Qt::NoModifier}, {Qt::Key_Left, Qt::NoModifier},
    {Qt::Key_Right, Qt::NoModifier}, {Qt::Key_Plus, Qt::NoModifier}, {Qt::Key_Minus, Qt::NoModifier},
    {Qt::Key_7, Qt::KeypadModifier}, {Qt::Key_3, Qt::KeypadModifier}};
constexpr int kUp = 0, kLeft = 2, kZoomIn = 4;
} // namespace

class TestWorkbenchWindow : public QObject
{
    Q_OBJECT
private slots:
    // Panels built from here on show English texts.
    void initTestCase() { QVERIFY(PreviewPTZControl::InstallTranslator(qApp)); }
    void init() { m_fx.setUp(); }
    void cleanup() { m_fx.tearDown(); }
    void gridChangesKeepTheCameras_data()
    {
        QTest::addColumn<QList<int>>("counts");
        QTest::addColumn<int>("closed"); // screen closed before the changes, -1 for none
        QTest::newRow("4 to 9 to 1") << QList<int>{9, 1} << -1;
        QTest::newRow("invalid counts change nothing") << QList<int>{0, 5} << -1;
        QTest::newRow("a closed screen stays closed") << QList<int>{1, 4} << 2;
    }
    void gridChangesKeepTheCameras()
    {
        QFETCH(QList<int>, counts);
        QFETCH(int, closed);
        CWorkbenchWindow *window = m_fx.window();
        if (closed >= 0)
            window->CloseScreen(closed);
        QStringList before;
        for (int i = 0; i < 4; ++i)
            before << window->View(i)->CameraId();
        QCOMPARE(before.count(QString()), closed >= 0 ? 1 : 0);
        int expected = 4;
        for (int count : counts) {
            window->SetScreenCount(count);
            if (count == 1 || count == 4 || count == 9)
                expected = count;
            QCOMPARE(window->ScreenCount(), expected);
            QVERIFY(PanelsFollowScreens(*window));
            QVERIFY(window->SelectedScreen() < expected);
        }
        for (int i = 0; i < qMin(expected, 4); ++i)
            QCOMPARE(window->View(i)->CameraId(), before.at(i));
        // A closed screen takes a camera again.
        if (closed >= 0) {
            QVERIFY(window->BindCamera(closed, kBox));
            QVERIFY(window->Panel(closed)->IsWorking());
        }
    }
    void unknownCameraIsRefusedWithATip()
    {
        CWorkbenchWindow *window = m_fx.window();
        const QString before = window->View(1)->CameraId();
        QVERIFY(!window->BindCamera(1, QStringLiteral("no-such-camera")));
        QCOMPARE(window->View(1)->CameraId(), before);
        QCOMPARE(window->findChildren<CToast *>(CToast::ObjectNameForLevel(0)).size(), 1);
        QVERIFY(!window->BindCamera(7, kDome));
    }
    void toastsStackAndFade()
    {
        // Toasts fade on the host's timing.
        auto *host = vs_ui_data_controller::CInformationMgr::Instance();
        host->SetDisplayDuration(50);
        host->SetFadeDuration(50);
        CWorkbenchWindow *window = m_fx.window();
        window->show();
        window->ShowTip(QStringLiteral("first"), 2);
        window->ShowTip(QStringLiteral("second"), 2);
        const QList<CToast *> toasts = window->findChildren<CToast *>(QStringLiteral("ptr_toast_warning_"));
        QCOMPARE(toasts.size(), 2);
        QVERIFY(toasts.at(0)->y() != toasts.at(1)->y());
        QTRY_VERIFY(window->findChildren<CToast *>().isEmpty());
        host->SetDisplayDuration(3000);
        host->SetFadeDuration(800);
    }
    void oneFailureIsOneToast()
    {
        // Every panel hears the controller's failure: still one toast.
        CWorkbenchWindow *window = m_fx.window();
        window->SetScreenCount(9);
        QVERIFY(m_fx.showActive());
        const auto pan = ptz_test::Cmd(kBox, ptz_plugin_protocol::PTZ_CMD_PAN_LEFT, 0);
        const auto failures = [window] { return window->findChildren<CToast *>(QStringLiteral("ptr_toast_failure_")); };
        window->Controller()->Control(pan);
        QTRY_COMPARE(failures().size(), 1);
        CToast *toast = failures().constFirst();
        // In words about the camera, not its identifier.
        QVERIFY2(toast->text().contains("This camera cannot pan") && !toast->text().contains(kBox),
                 qPrintable(toast->text()));
        // The same refusal again updates the toast instead of stacking another.
        window->Controller()->Control(pan);
        QTRY_COMPARE(toast->Count(), 2);
        QCOMPARE(failures().size(), 1);
    }
    void themeSwitchRenamesThePanels()
    {
        const QSet<QString> dark = StyledNames(CWorkbenchWindow::StyleSheet(false));
        const QSet<QString> white = StyledNames(CWorkbenchWindow::StyleSheet(true));

        CWorkbenchWindow *window = m_fx.window();
        // Every panel widget the dark sheet styles must carry a name the white sheet styles after the switch.
        QList<QPair<QWidget *, QString>> styled;
        for (int i = 0; i < window->ScreenCount(); ++i) {
            for (QWidget *w : window->Panel(i)->findChildren<QWidget *>())
                if (dark.contains(w->objectName()))
                    styled.append({w, w->objectName()});
        }
        QVERIFY(styled.size() > 20);
        window->SetWhiteTheme(true);
        for (const auto &entry : qAsConst(styled))
            QVERIFY2(white.contains(entry.first->objectName()),
                     qPrintable(entry.second + QStringLiteral(" became ") + entry.first->objectName()));
        // Back to dark: the panels are built again, with dark names, on the same cameras.
        const QString camera = window->View(0)->CameraId();
        window->SetWhiteTheme(false);
        QCOMPARE(window->Panel(0)->objectName(), QStringLiteral("CPreviewPTZWnd"));
        QVERIFY(PanelsFollowScreens(*window));
        QCOMPARE(window->View(0)->CameraId(), camera);
    }
    void boxOnThePictureZoomsTheCamera()
    {
        CWorkbenchWindow *window = m_fx.window();
        QVERIFY(m_fx.showActive());
        CLiveView *view = window->View(0);
        const double zoomBefore = m_fx.camera(kDome)->status().zoom;
        // The panel's 3D button asks the host for the picture action.
        emit window->Panel(0)->SignalFunctionEnabled(1, true);
        QCOMPARE(view->PictureAction(), 1);
        const QPoint a(view->width() / 4, view->height() / 4);
        const QPoint b(view->width() / 2, view->height() / 2);
        QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, a);
        QTest::mouseMove(view, b);
        QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, b);
        QTRY_VERIFY(m_fx.operations(kDome).contains(ptz_devices::DriverOperation::Position3D));
        for (int ms = 0; ms < 10000 && m_fx.camera(kDome)->status().zoom <= zoomBefore; ms += 200) {
            QCoreApplication::processEvents();
            m_fx.clock()->advance(200);
        }
        QVERIFY(m_fx.camera(kDome)->status().zoom > zoomBefore);
        emit window->Panel(0)->SignalFunctionEnabled(1, false);
        QCOMPARE(view->PictureAction(), 0);
    }
    void operatorLineOutlivesMenuHints()
    {
        QVERIFY(m_fx.showActive());
        // Hovering a menu entry shows its hint in the status bar, then clears it.
        QStatusBar *bar = m_fx.window()->statusBar();
        bar->showMessage(QStringLiteral("a menu hint"));
        bar->clearMessage();
        const QList<QLabel *> labels = bar->findChildren<QLabel *>();
        QVERIFY(std::any_of(labels.begin(), labels.end(),
                            [](QLabel *label) { return label->isVisible() && label->text().contains(kOperator); }));
    }
    void keysMapToCommands_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("keypad");
        QTest::addColumn<int>("command");
        QTest::newRow("right") << int(Qt::Key_Right) << false << 24;
        QTest::newRow("keypad 8") << int(Qt::Key_8) << true << 21;
        QTest::newRow("keypad 7") << int(Qt::Key_7) << true << 25;
        QTest::newRow("keypad 3") << int(Qt::Key_3) << true << 28;
        QTest::newRow("plus zooms in") << int(Qt::Key_Plus) << false << 11;
        QTest::newRow("minus zooms out") << int(Qt::Key_Minus) << false << 12;
        QTest::newRow("digit row 8 is no move") << int(Qt::Key_8) << false << 0;
    }
    void keysMapToCommands()
    {
        QFETCH(int, key);
        QFETCH(bool, keypad);
        QFETCH(int, command);
        QCOMPARE(CWorkbenchWindow::CommandForKey(key, keypad ? Qt::KeypadModifier : Qt::NoModifier), command);
    }
    void heldKeysStartOnceAndStopTheirCamera()
    {
        QVERIFY(m_fx.showActive());
        CWorkbenchWindow *window = m_fx.window();
        ptz_devices::CSimulatedCamera *dome = m_fx.camera(kDome);
        dome->clearRequestLog();
        const double tiltBefore = dome->status().tilt;
        press(kUp); // on the dome
        // Auto-repeat of a held key must not start the move again.
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(window, &repeat);
        QTRY_COMPARE(m_fx.operations(kDome), QList<DriverOperation>{DriverOperation::MovePanTilt});
        QTRY_COMPARE(m_fx.moving(), QStringList{kDome});
        m_fx.clock()->advance(500);
        QVERIFY(dome->status().tilt > tiltBefore);
        press(kLeft);
        window->SelectScreen(1);
        press(kZoomIn);
        QTRY_COMPARE(m_fx.moving().size(), 2);
        // A stop ends all of the camera's pan and tilt: the key still held on it starts again.
        dome->clearRequestLog();
        release(kUp);
        QTRY_COMPARE(m_fx.operations(kDome),
                     (QList<DriverOperation>{DriverOperation::StopPanTilt, DriverOperation::MovePanTilt}));
        release(kLeft);
        QTRY_COMPARE(m_fx.moving(), QStringList{window->View(1)->CameraId()});
        QCOMPARE(m_fx.operations(kDome).count(DriverOperation::StopPanTilt), 2);
        // Switching to another program stops every key still held.
        QVERIFY(m_fx.switchAway());
        QCOMPARE(window->HeldKeyCount(), 0);
        QTRY_VERIFY(m_fx.moving().isEmpty());
    }
    void disabledSectionsSendNothing()
    {
        QVERIFY(m_fx.showActive());
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

private:
    void press(int k) { QTest::keyPress(m_fx.window(), kKeys[k].first, kKeys[k].second); }
    void release(int k) { QTest::keyRelease(m_fx.window(), kKeys[k].first, kKeys[k].second); }

    WorkbenchFixture m_fx;
};

QTEST_MAIN(TestWorkbenchWindow)
#include "tst_cworkbenchwindow.moc"
