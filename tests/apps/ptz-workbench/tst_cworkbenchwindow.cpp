#include "cliveview.h"
#include "ctoast.h"
#include "cworkbenchwindow.h"

#include "boundary/cpreviewptzwndmanager.h"
#include "boundary/previewptzcontroltranslator.h"
#include "panel/cpreviewptzwnd.h"
#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using PreviewPTZControl::CPreviewPTZWnd;
using PreviewPTZControl::CPreviewPTZWndManager;

static QSet<QString> StyledNames(const QString &qss)
{
    QSet<QString> names;
    QRegularExpressionMatchIterator it = QRegularExpression(QStringLiteral("#([A-Za-z0-9_]+)")).globalMatch(qss);
    while (it.hasNext())
        names.insert(it.next().captured(1));
    return names;
}

class TestWorkbenchWindow : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
        delete m_clock;
        m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
        Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->SetSimClock(m_clock);
        site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::Open(
            m_dir.filePath(QStringLiteral("%1.sqlite").arg(QTest::currentTestFunction()))));
    }
    void cleanup() { Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear(); }
    void startsWithFourBoundScreens()
    {
        CWorkbenchWindow window;
        QCOMPARE(window.ScreenCount(), 4);
        QCOMPARE(window.View(0)->CameraId(), QString::fromLatin1(site_store::demo::kSpeedDome));
        for (int i = 0; i < 4; ++i) {
            QVERIFY(window.Panel(i)->IsWorking());
            QVERIFY(!window.View(i)->CameraId().isEmpty());
        }
    }
    void screenCountKeepsTheRegistry_data()
    {
        QTest::addColumn<QList<int>>("counts");
        QTest::newRow("4 to 9 to 1") << QList<int> { 9, 1 };
        QTest::newRow("4 to 1 to 9 to 4") << QList<int> { 1, 9, 4 };
        QTest::newRow("invalid counts change nothing") << QList<int> { 0, 5 };
    }
    void screenCountKeepsTheRegistry()
    {
        QFETCH(QList<int>, counts);
        CWorkbenchWindow window;
        CPreviewPTZWndManager *registry = Tarn::Base::CSingleton<CPreviewPTZWndManager>::Instance();
        int expected = 4;
        for (int count : counts) {
            window.SetScreenCount(count);
            if (count == 1 || count == 4 || count == 9)
                expected = count;
            QCOMPARE(window.ScreenCount(), expected);
            QCOMPARE(registry->GetAllPreviewPTZWnd().size(), expected);
            for (int i = 0; i < expected; ++i)
                QCOMPARE(registry->GetPreviewPTZWndByScreenIndex(unsigned(i)), window.Panel(i));
            QVERIFY(!registry->GetPreviewPTZWndByScreenIndex(unsigned(expected)));
            QVERIFY(window.SelectedScreen() < expected);
        }
    }
    void toastsByLevel_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("name");
        QTest::newRow("failure") << 0 << "ptr_toast_failure_";
        QTest::newRow("warning") << 2 << "ptr_toast_warning_";
        QTest::newRow("success") << 3 << "ptr_toast_success_";
        QTest::newRow("other") << 1 << "ptr_toast_info_";
    }
    void toastsByLevel()
    {
        QFETCH(int, level);
        QFETCH(QString, name);
        CWorkbenchWindow window;
        window.resize(1200, 800);
        window.show();
        const int before = window.findChildren<CToast *>().size();
        window.ShowTip(QStringLiteral("first"), level);
        window.ShowTip(QStringLiteral("second"), level);
        const QList<CToast *> toasts = window.findChildren<CToast *>(name);
        QCOMPARE(toasts.size() - before >= 2, true);
        // Stacked, not on top of each other.
        QVERIFY(toasts.at(toasts.size() - 1)->y() != toasts.at(toasts.size() - 2)->y());
        QTRY_VERIFY_WITH_TIMEOUT(window.findChildren<CToast *>(name).isEmpty(), 8000);
    }
    void unknownCameraIsRefusedWithATip()
    {
        CWorkbenchWindow window;
        const QString before = window.View(1)->CameraId();
        QVERIFY(!window.BindCamera(1, QStringLiteral("no-such-camera")));
        QCOMPARE(window.View(1)->CameraId(), before);
        QCOMPARE(window.findChildren<CToast *>(CToast::ObjectNameForLevel(0)).size(), 1);
        QVERIFY(!window.BindCamera(7, QString::fromLatin1(site_store::demo::kSpeedDome)));
    }
    void closingAScreenStopsItsPanel()
    {
        CWorkbenchWindow window;
        QVERIFY(window.Panel(1)->IsWorking());
        window.CloseScreen(1);
        QVERIFY(!window.Panel(1)->IsWorking());
        QVERIFY(window.View(1)->CameraId().isEmpty());
        QVERIFY(window.Panel(0)->IsWorking());
        // The panel stays registered for the screen; a new camera binds again.
        QCOMPARE(Tarn::Base::CSingleton<CPreviewPTZWndManager>::Instance()->GetPreviewPTZWndByScreenIndex(1),
            window.Panel(1));
        QVERIFY(window.BindCamera(1, QString::fromLatin1(site_store::demo::kBoxZoom)));
        QVERIFY(window.Panel(1)->IsWorking());
    }
    void themeSwitchRenamesThePanels()
    {
        const QSet<QString> dark = StyledNames(CWorkbenchWindow::StyleSheet(false));
        const QSet<QString> white = StyledNames(CWorkbenchWindow::StyleSheet(true));
        QVERIFY(dark.contains(QStringLiteral("m_pBtnLight_open")));
        QVERIFY(dark.contains(QStringLiteral("m_pBtnWiper_right")));
        QVERIFY(white.contains(QStringLiteral("m_pBtnLight_open_white_")));
        QVERIFY(white.contains(QStringLiteral("ptr_label_fast_white_")));
        QVERIFY(CWorkbenchWindow::StyleSheet(true).contains(QLatin1String(":/Images/PTZWhite/Buttons/light_on.svg")));
        QVERIFY(CWorkbenchWindow::StyleSheet(false).contains(QLatin1String(":/Images/PTZ/Buttons/light_off.svg")));

        CWorkbenchWindow window;
        // Every panel widget the dark sheet styles must carry a name the white sheet styles after the switch.
        QList<QPair<QWidget *, QString>> styled;
        for (int i = 0; i < window.ScreenCount(); ++i) {
            const QList<QWidget *> widgets = window.Panel(i)->findChildren<QWidget *>();
            for (QWidget *w : widgets)
                if (dark.contains(w->objectName()))
                    styled.append({ w, w->objectName() });
        }
        QVERIFY(styled.size() > 20);
        window.SetWhiteTheme(true);
        for (int i = 0; i < window.ScreenCount(); ++i)
            QCOMPARE(window.Panel(i)->objectName(), QStringLiteral("CPreviewPTZWnd_white_"));
        for (const auto &entry : qAsConst(styled))
            QVERIFY2(white.contains(entry.first->objectName()),
                qPrintable(entry.second + QStringLiteral(" became ") + entry.first->objectName()));
        // Back to dark: the panels are built again, with dark names, on the same cameras.
        const QString camera = window.View(0)->CameraId();
        window.SetWhiteTheme(false);
        for (int i = 0; i < window.ScreenCount(); ++i) {
            QCOMPARE(window.Panel(i)->objectName(), QStringLiteral("CPreviewPTZWnd"));
            QVERIFY(!window.Panel(i)->findChild<QWidget *>(QStringLiteral("ptr_scroll_content_white_")));
            QCOMPARE(
                Tarn::Base::CSingleton<CPreviewPTZWndManager>::Instance()->GetPreviewPTZWndByScreenIndex(unsigned(i)),
                window.Panel(i));
        }
        QCOMPARE(window.View(0)->CameraId(), camera);
        QVERIFY(window.Panel(0)->IsWorking());
    }
    void keysMapToCommands_data()
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
    void keysMapToCommands()
    {
        QFETCH(int, key);
        QFETCH(bool, keypad);
        QFETCH(int, command);
        QCOMPARE(CWorkbenchWindow::CommandForKey(key, keypad ? Qt::KeypadModifier : Qt::NoModifier), command);
    }
    void heldKeySendsOnePressAndOneRelease_data()
    {
        using ptz_devices::DriverOperation;
        QTest::addColumn<int>("key");
        QTest::addColumn<DriverOperation>("start");
        QTest::addColumn<DriverOperation>("stop");
        QTest::addColumn<bool>("deactivate"); // the release happens in another window
        QTest::newRow("arrow up: move, then stop")
            << int(Qt::Key_Up) << DriverOperation::MovePanTilt << DriverOperation::StopPanTilt << false;
        QTest::newRow("plus: zoom, then zoom stop")
            << int(Qt::Key_Plus) << DriverOperation::Zoom << DriverOperation::Zoom << false;
        QTest::newRow("arrow up, window deactivated")
            << int(Qt::Key_Up) << DriverOperation::MovePanTilt << DriverOperation::StopPanTilt << true;
    }
    void heldKeySendsOnePressAndOneRelease()
    {
        QFETCH(int, key);
        QFETCH(ptz_devices::DriverOperation, start);
        QFETCH(ptz_devices::DriverOperation, stop);
        QFETCH(bool, deactivate);
        CWorkbenchWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QApplication::setActiveWindow(&window);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.SelectScreen(0);
        QVERIFY(dome());
        dome()->clearRequestLog();
        const double tiltBefore = dome()->status().tilt;

        QTest::keyPress(&window, Qt::Key(key));
        // Auto-repeat of a held key must not start the move again.
        QKeyEvent repeat(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(&window, &repeat);
        QTRY_COMPARE(dome()->requestLog().size(), 1);
        QCOMPARE(dome()->requestLog().at(0).operation, start);
        if (key == Qt::Key_Up)
            QTRY_VERIFY(dome()->status().panTiltMoving);
        else
            QTRY_VERIFY(dome()->status().zoomMoving);
        m_clock->advance(500);
        QWidget other;
        if (deactivate) {
            other.show();
            QApplication::setActiveWindow(&other);
            QTRY_VERIFY(!window.isActiveWindow());
        } else {
            QTest::keyRelease(&window, Qt::Key(key));
        }
        QTRY_COMPARE(dome()->requestLog().size(), 2);
        QCOMPARE(dome()->requestLog().at(1).operation, stop);
        if (key == Qt::Key_Up) {
            QVERIFY(dome()->status().tilt > tiltBefore);
            QTRY_VERIFY(!dome()->status().panTiltMoving);
        } else {
            QTRY_VERIFY(!dome()->status().zoomMoving);
        }
    }
    void boxOnThePictureZoomsTheCamera()
    {
        CWorkbenchWindow window;
        window.resize(1200, 800);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        CLiveView *view = window.View(0);
        QVERIFY(dome());
        const double zoomBefore = dome()->status().zoom;
        // The panel's 3D button asks the host for the picture action.
        emit window.Panel(0)->SignalFunctionEnabled(1, true);
        QCOMPARE(view->PictureAction(), 1);
        const QPoint a(view->width() / 4, view->height() / 4);
        const QPoint b(view->width() / 2, view->height() / 2);
        QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, a);
        QTest::mouseMove(view, b);
        QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, b);
        QTRY_VERIFY(!dome()->requestLog().isEmpty()
            && dome()->requestLog().last().operation == ptz_devices::DriverOperation::Position3D);
        for (int i = 0; i < 50 && !(dome()->status().zoom > zoomBefore); ++i) {
            QCoreApplication::processEvents();
            m_clock->advance(200);
        }
        QVERIFY(dome()->status().zoom > zoomBefore);
        emit window.Panel(0)->SignalFunctionEnabled(1, false);
        QCOMPARE(view->PictureAction(), 0);
    }
    void rawKeysRebuildPanelsOnTheirCameras()
    {
        QVERIFY(PreviewPTZControl::InstallTranslator(qApp));
        CWorkbenchWindow window;
        auto tip = [&window] {
            return window.Panel(0)->findChild<QPushButton *>(QStringLiteral("m_pBtnKeyFocus"))->toolTip();
        };
        QVERIFY(tip() != QLatin1String("AuxiliaryFocus"));
        window.SetRawTranslationKeys(true);
        QCOMPARE(tip(), QStringLiteral("AuxiliaryFocus"));
        CPreviewPTZWndManager *registry = Tarn::Base::CSingleton<CPreviewPTZWndManager>::Instance();
        for (int i = 0; i < window.ScreenCount(); ++i) {
            QCOMPARE(registry->GetPreviewPTZWndByScreenIndex(unsigned(i)), window.Panel(i));
            QVERIFY(window.Panel(i)->IsWorking());
        }
        window.SetRawTranslationKeys(false);
        QVERIFY(tip() != QLatin1String("AuxiliaryFocus"));
    }

private:
    ptz_devices::CSimulatedCamera *dome() const
    {
        return qobject_cast<ptz_devices::CSimulatedCamera *>(
            ZephPluginManager::CDriverTestAccess::GetDriver(
                QString::fromLatin1(site_store::demo::kSpeedDome)));
    }

    QTemporaryDir m_dir;
    ptz_devices::CSimClock *m_clock = nullptr;
};

QTEST_MAIN(TestWorkbenchWindow)
#include "tst_cworkbenchwindow.moc"
