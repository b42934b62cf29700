#include "cliveview.h"
#include "ctoast.h"
#include "cworkbenchwindow.h"

#include "boundary/cpreviewptzwndmanager.h"
#include "panel/cpreviewptzwnd.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"

#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using PreviewPTZControl::CPreviewPTZWnd;
using PreviewPTZControl::CPreviewPTZWndManager;

class TestWorkbenchWindow : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void startsWithFourBoundScreens();
    void screenCountKeepsTheRegistry_data();
    void screenCountKeepsTheRegistry();
    void toastsByLevel_data();
    void toastsByLevel();
    void unknownCameraIsRefusedWithATip();
    void themeSwitchRenamesThePanels();

private:
    QTemporaryDir m_dir;
};

void TestWorkbenchWindow::init()
{
    Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
    site_store::CSiteStore::InstallCurrent(
        site_store::CSiteStore::Open(m_dir.filePath(QStringLiteral("%1.sqlite").arg(QTest::currentTestFunction()))));
}

void TestWorkbenchWindow::cleanup()
{
    Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
}

void TestWorkbenchWindow::startsWithFourBoundScreens()
{
    CWorkbenchWindow window;
    QCOMPARE(window.ScreenCount(), 4);
    QCOMPARE(window.View(0)->CameraId(), QString::fromLatin1(site_store::demo::kSpeedDome));
    for (int i = 0; i < 4; ++i) {
        QVERIFY(window.Panel(i)->IsWorking());
        QVERIFY(!window.View(i)->CameraId().isEmpty());
    }
}

void TestWorkbenchWindow::screenCountKeepsTheRegistry_data()
{
    QTest::addColumn<QList<int>>("counts");
    QTest::newRow("4 to 9 to 1") << QList<int>{9, 1};
    QTest::newRow("4 to 1 to 9 to 4") << QList<int>{1, 9, 4};
    QTest::newRow("invalid counts change nothing") << QList<int>{0, 5};
}

void TestWorkbenchWindow::screenCountKeepsTheRegistry()
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

void TestWorkbenchWindow::unknownCameraIsRefusedWithATip()
{
    CWorkbenchWindow window;
    const QString before = window.View(1)->CameraId();
    QVERIFY(!window.BindCamera(1, QStringLiteral("no-such-camera")));
    QCOMPARE(window.View(1)->CameraId(), before);
    QCOMPARE(window.findChildren<CToast *>(CToast::ObjectNameForLevel(0)).size(), 1);
    QVERIFY(!window.BindCamera(7, QString::fromLatin1(site_store::demo::kSpeedDome)));
}

void TestWorkbenchWindow::themeSwitchRenamesThePanels()
{
    CWorkbenchWindow window;
    window.SetWhiteTheme(true);
    for (int i = 0; i < window.ScreenCount(); ++i) {
        QCOMPARE(window.Panel(i)->objectName(), QStringLiteral("CPreviewPTZWnd_white_"));
        QVERIFY(window.Panel(i)->findChild<QPushButton *>(QStringLiteral("pZoomInBtn_white_")));
    }
    QVERIFY(CWorkbenchWindow::StyleSheet(true).contains(QLatin1String(":/Images/PTZWhite/Buttons/")));
    QVERIFY(CWorkbenchWindow::StyleSheet(false).contains(QLatin1String("#m_pBtnLight_open ")) ||
            CWorkbenchWindow::StyleSheet(false).contains(QLatin1String("#m_pBtnLight_open,")));
}

QTEST_MAIN(TestWorkbenchWindow)
#include "tst_cworkbenchwindow.moc"
