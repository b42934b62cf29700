#include "support/workbenchfixture.h"

#include "cliveview.h"
#include "ctoast.h"

#include "boundary/cpreviewptzwndmanager.h"
#include "boundary/previewptzcontroltranslator.h"
#include "panel/cpreviewptzwnd.h"
#include "vs_ui_data_controller/cinformationmgr.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using PreviewPTZControl::CPreviewPTZWnd;
using PreviewPTZControl::CPreviewPTZWndManager;

namespace {
QSet<QString> StyledNames(const QString &qss)
{
    QSet<QString> names;
    QRegularExpressionMatchIterator it = QRegularExpression(QStringLiteral("#([A-Za-z0-9_]+)")).globalMatch(qss);
    while (it.hasNext())
        names.insert(it.next().captured(1));
    return names;
}

CPreviewPTZWndManager *Registry()
{
    return CPreviewPTZWndManager::Instance();
}

// Every screen has its panel registered, working on the screen's camera.
bool PanelsFollowScreens(const CWorkbenchWindow &window)
{
    for (int i = 0; i < window.ScreenCount(); ++i) {
        if (Registry()->GetPreviewPTZWndByScreenIndex(unsigned(i)) != window.Panel(i)
            || window.Panel(i)->IsWorking() == window.View(i)->CameraId().isEmpty())
            return false;
    }
    return Registry()->GetAllPreviewPTZWnd().size() == window.ScreenCount()
           && !Registry()->GetPreviewPTZWndByScreenIndex(unsigned(window.ScreenCount()));
}
} // namespace

class TestWorkbenchWindow : public QObject
{
    Q_OBJECT
private slots:
    // Panels built from here on show English texts.
    void initTestCase() { QVERIFY(PreviewPTZControl::InstallTranslator(qApp)); }
    void init() { m_fx.setUp(); }
    void cleanup() { m_fx.tearDown(); }
    void gridChangesKeepTheCameras_data();
    void gridChangesKeepTheCameras();
    void unknownCameraIsRefusedWithATip();
    void toastsByLevel_data();
    void toastsByLevel();
    void oneFailureIsOneToast_data();
    void oneFailureIsOneToast();
    void themeSwitchRenamesThePanels();
    void rawKeysRebuildPanelsOnTheirCameras();
    void boxOnThePictureZoomsTheCamera();
    void operatorLineOutlivesMenuHints();

private:
    WorkbenchFixture m_fx;
};

void TestWorkbenchWindow::gridChangesKeepTheCameras_data()
{
    QTest::addColumn<QList<int>>("counts");
    QTest::addColumn<int>("closed"); // screen closed before the changes, -1 for none
    QTest::newRow("4 to 9 to 1") << QList<int>{9, 1} << -1;
    QTest::newRow("4 to 1 to 9 to 4") << QList<int>{1, 9, 4} << -1;
    QTest::newRow("invalid counts change nothing") << QList<int>{0, 5} << -1;
    QTest::newRow("a closed screen stays closed") << QList<int>{1, 4} << 2;
}

void TestWorkbenchWindow::gridChangesKeepTheCameras()
{
    QFETCH(QList<int>, counts);
    QFETCH(int, closed);
    CWorkbenchWindow *window = m_fx.window();
    QCOMPARE(window->ScreenCount(), 4);
    QCOMPARE(window->View(0)->CameraId(), kDome);
    if (closed >= 0)
        window->CloseScreen(closed);
    QVERIFY(PanelsFollowScreens(*window));
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

void TestWorkbenchWindow::unknownCameraIsRefusedWithATip()
{
    CWorkbenchWindow *window = m_fx.window();
    const QString before = window->View(1)->CameraId();
    QVERIFY(!window->BindCamera(1, QStringLiteral("no-such-camera")));
    QCOMPARE(window->View(1)->CameraId(), before);
    QCOMPARE(window->findChildren<CToast *>(CToast::ObjectNameForLevel(0)).size(), 1);
    QVERIFY(!window->BindCamera(7, kDome));
}

void TestWorkbenchWindow::toastsByLevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("name");
    QTest::newRow("failure") << 0 << "ptr_toast_failure_";
    QTest::newRow("warning") << 2 << "ptr_toast_warning_";
    QTest::newRow("success") << 3 << "ptr_toast_success_";
    QTest::newRow("other") << 1 << "ptr_toast_info_";
}

void TestWorkbenchWindow::toastsByLevel()
{
    QFETCH(int, level);
    QFETCH(QString, name);
    // Toasts fade on the host's timing.
    auto *host = vs_ui_data_controller::CInformationMgr::Instance();
    host->SetDisplayDuration(50);
    host->SetFadeDuration(50);
    CWorkbenchWindow *window = m_fx.window();
    window->show();
    window->ShowTip(QStringLiteral("first"), level);
    window->ShowTip(QStringLiteral("second"), level);
    const QList<CToast *> toasts = window->findChildren<CToast *>(name);
    QVERIFY(toasts.size() >= 2);
    // Stacked, not on top of each other.
    QVERIFY(toasts.at(toasts.size() - 1)->y() != toasts.at(toasts.size() - 2)->y());
    QTRY_VERIFY(window->findChildren<CToast *>(name).isEmpty());
    host->SetDisplayDuration(3000);
    host->SetFadeDuration(800);
}

void TestWorkbenchWindow::oneFailureIsOneToast_data()
{
    QTest::addColumn<int>("screens");
    QTest::newRow("one screen") << 1;
    QTest::newRow("four screens") << 4;
    QTest::newRow("nine screens") << 9;
}

void TestWorkbenchWindow::oneFailureIsOneToast()
{
    QFETCH(int, screens);
    CWorkbenchWindow *window = m_fx.window();
    window->SetScreenCount(screens);
    QVERIFY(m_fx.showActive());
    ptz_plugin_protocol::PTZControlCommand pan;
    pan.camera_index_code = kBox.toStdString();
    pan.command = ptz_plugin_protocol::PTZ_CMD_PAN_LEFT;
    pan.speed = 20;
    const auto failures = [window] { return window->findChildren<CToast *>(QStringLiteral("ptr_toast_failure_")); };
    window->Controller()->Control(pan);
    QTRY_COMPARE(failures().size(), 1);
    CToast *toast = failures().constFirst();
    QCOMPARE(toast->Count(), 1);
    // In words about the camera, not its identifier.
    QVERIFY2(toast->text().contains(QStringLiteral("This camera cannot pan")), qPrintable(toast->text()));
    QVERIFY2(!toast->text().contains(kBox), qPrintable(toast->text()));
    // The same refusal again updates the toast instead of stacking another.
    window->Controller()->Control(pan);
    QTRY_COMPARE(toast->Count(), 2);
    QCOMPARE(failures().size(), 1);
    QVERIFY(toast->text().contains(QStringLiteral("2")));
}

void TestWorkbenchWindow::themeSwitchRenamesThePanels()
{
    const QSet<QString> dark = StyledNames(CWorkbenchWindow::StyleSheet(false));
    const QSet<QString> white = StyledNames(CWorkbenchWindow::StyleSheet(true));
    QVERIFY(CWorkbenchWindow::StyleSheet(true).contains(QLatin1String(":/Images/PTZWhite/Buttons/light_on.svg")));
    QVERIFY(CWorkbenchWindow::StyleSheet(false).contains(QLatin1String(":/Images/PTZ/Buttons/light_off.svg")));

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
    for (int i = 0; i < window->ScreenCount(); ++i)
        QCOMPARE(window->Panel(i)->objectName(), QStringLiteral("CPreviewPTZWnd_white_"));
    for (const auto &entry : qAsConst(styled))
        QVERIFY2(white.contains(entry.first->objectName()),
                 qPrintable(entry.second + QStringLiteral(" became ") + entry.first->objectName()));
    // Back to dark: the panels are built again, with dark names, on the same cameras.
    const QString camera = window->View(0)->CameraId();
    window->SetWhiteTheme(false);
    for (int i = 0; i < window->ScreenCount(); ++i) {
        QCOMPARE(window->Panel(i)->objectName(), QStringLiteral("CPreviewPTZWnd"));
        QVERIFY(!window->Panel(i)->findChild<QWidget *>(QStringLiteral("ptr_scroll_content_white_")));
    }
    QVERIFY(PanelsFollowScreens(*window));
    QCOMPARE(window->View(0)->CameraId(), camera);
}

void TestWorkbenchWindow::rawKeysRebuildPanelsOnTheirCameras()
{
    CWorkbenchWindow *window = m_fx.window();
    const auto tip = [window] {
        return window->Panel(0)->findChild<QPushButton *>(QStringLiteral("m_pBtnKeyFocus"))->toolTip();
    };
    QVERIFY(tip() != QLatin1String("AuxiliaryFocus"));
    window->SetRawTranslationKeys(true);
    QCOMPARE(tip(), QStringLiteral("AuxiliaryFocus"));
    QVERIFY(PanelsFollowScreens(*window));
    window->SetRawTranslationKeys(false);
    QVERIFY(tip() != QLatin1String("AuxiliaryFocus"));
}

void TestWorkbenchWindow::boxOnThePictureZoomsTheCamera()
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
    QVERIFY(m_fx.advanceUntil([this, zoomBefore] { return m_fx.camera(kDome)->status().zoom > zoomBefore; }, 10000));
    emit window->Panel(0)->SignalFunctionEnabled(1, false);
    QCOMPARE(view->PictureAction(), 0);
}

void TestWorkbenchWindow::operatorLineOutlivesMenuHints()
{
    CWorkbenchWindow *window = m_fx.window();
    QVERIFY(m_fx.showActive());
    const auto operatorLine = [window] {
        for (QLabel *label : window->statusBar()->findChildren<QLabel *>())
            if (label->isVisible() && label->text().contains(kOperator))
                return true;
        return false;
    };
    QVERIFY(operatorLine());
    // Hovering a menu entry shows its hint in the status bar, then clears it.
    window->statusBar()->showMessage(QStringLiteral("a menu hint"));
    window->statusBar()->clearMessage();
    QVERIFY(operatorLine());
}

QTEST_MAIN(TestWorkbenchWindow)
#include "tst_cworkbenchwindow.moc"
