// Changing the grid and the status bar, as an operator goes about the day.
#include "cliveview.h"
#include "cworkbenchwindow.h"

#include "panel/cpreviewptzwnd.h"

#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "ptz_devices/csimclock.h"

#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>

class TestWorkbenchScreens : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void gridChangesKeepTheCameras_data();
    void gridChangesKeepTheCameras();
    void operatorLineOutlivesMenuHints();

private:
    QTemporaryDir m_dir;
    ptz_devices::CSimClock *m_clock = nullptr;
};

void TestWorkbenchScreens::init()
{
    auto *cameras = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance();
    cameras->Clear();
    delete m_clock;
    m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
    cameras->SetSimClock(m_clock);
    site_store::CSiteStore::InstallCurrent(
        site_store::CSiteStore::Open(m_dir.filePath(QStringLiteral("%1.sqlite").arg(QTest::currentTestFunction()))));
}

void TestWorkbenchScreens::cleanup()
{
    Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
}

void TestWorkbenchScreens::gridChangesKeepTheCameras_data()
{
    QTest::addColumn<QList<int>>("counts");
    QTest::addColumn<int>("closed"); // screen closed before the changes, -1 for none
    QTest::newRow("4 to 1 to 4") << QList<int>{1, 4} << -1;
    QTest::newRow("4 to 1 to 9 to 4") << QList<int>{1, 9, 4} << -1;
    QTest::newRow("a closed screen stays closed") << QList<int>{1, 4} << 2;
}

void TestWorkbenchScreens::gridChangesKeepTheCameras()
{
    QFETCH(QList<int>, counts);
    QFETCH(int, closed);
    CWorkbenchWindow window;
    if (closed >= 0)
        window.CloseScreen(closed);
    QStringList before;
    for (int i = 0; i < window.ScreenCount(); ++i)
        before << window.View(i)->CameraId();
    for (int count : counts)
        window.SetScreenCount(count);
    for (int i = 0; i < before.size(); ++i) {
        QCOMPARE(window.View(i)->CameraId(), before.at(i));
        QCOMPARE(window.Panel(i)->IsWorking(), !before.at(i).isEmpty());
    }
}

void TestWorkbenchScreens::operatorLineOutlivesMenuHints()
{
    CWorkbenchWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto operatorLine = [&window] {
        for (QLabel *label : window.statusBar()->findChildren<QLabel *>())
            if (label->isVisible() && label->text().contains(QStringLiteral("operator")))
                return true;
        return false;
    };
    QVERIFY(operatorLine());
    // Hovering a menu entry shows its hint in the status bar, then clears it.
    window.statusBar()->showMessage(QStringLiteral("a menu hint"));
    window.statusBar()->clearMessage();
    QVERIFY(operatorLine());
}

QTEST_MAIN(TestWorkbenchScreens)
#include "tst_workbenchscreens.moc"
