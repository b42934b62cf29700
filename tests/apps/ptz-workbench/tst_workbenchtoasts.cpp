// What the operator reads when something fails: once, in words about the camera.
#include "cworkbenchwindow.h"
#include "ctoast.h"

#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "vs_ui_data_controller/cinformationmgr.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"
#include "ptz_devices/csimclock.h"
#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QTemporaryDir>
#include <QTest>

class TestWorkbenchToasts : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void oneFailureIsOneToast_data();
    void oneFailureIsOneToast();
    void toastFadesOnTheHostsTiming();

private:
    QTemporaryDir m_dir;
    ptz_devices::CSimClock *m_clock = nullptr;
};

void TestWorkbenchToasts::init()
{
    auto *cameras = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance();
    cameras->Clear();
    delete m_clock;
    m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
    cameras->SetSimClock(m_clock);
    site_store::CSiteStore::InstallCurrent(
        site_store::CSiteStore::Open(m_dir.filePath(QStringLiteral("%1.sqlite").arg(QTest::currentTestFunction()))));
}

void TestWorkbenchToasts::cleanup()
{
    Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
}

void TestWorkbenchToasts::oneFailureIsOneToast_data()
{
    QTest::addColumn<int>("screens");
    QTest::newRow("one screen") << 1;
    QTest::newRow("four screens") << 4;
    QTest::newRow("nine screens") << 9;
}

void TestWorkbenchToasts::oneFailureIsOneToast()
{
    QFETCH(int, screens);
    CWorkbenchWindow window;
    window.SetScreenCount(screens);
    window.resize(1400, 860);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ptz_plugin_protocol::PTZControlCommand pan;
    pan.camera_index_code = site_store::demo::kBoxZoom;
    pan.command = ptz_plugin_protocol::PTZ_CMD_PAN_LEFT;
    pan.action = 0;
    pan.speed = 20;
    auto failures = [&window] { return window.findChildren<CToast *>(QStringLiteral("ptr_toast_failure_")); };
    window.Controller()->Control(pan);
    QTRY_COMPARE(failures().size(), 1);
    CToast *toast = failures().constFirst();
    QCOMPARE(toast->Count(), 1);
    QVERIFY2(toast->text().contains(QStringLiteral("This camera cannot pan")), qPrintable(toast->text()));
    QVERIFY2(!toast->text().contains(QString::fromLatin1(site_store::demo::kBoxZoom)), qPrintable(toast->text()));
    // The same refusal again updates the toast instead of stacking another.
    window.Controller()->Control(pan);
    QTRY_COMPARE(toast->Count(), 2);
    QCOMPARE(failures().size(), 1);
    QVERIFY(toast->text().contains(QStringLiteral("2")));
}

void TestWorkbenchToasts::toastFadesOnTheHostsTiming()
{
    auto *host = Tarn::Base::CSingleton<vs_ui_data_controller::CInformationMgr>::Instance();
    host->SetDisplayDuration(50);
    host->SetFadeDuration(50);
    CWorkbenchWindow window;
    window.show();
    window.ShowTip(QStringLiteral("gone soon"), 2);
    QPointer<CToast> toast = window.findChild<CToast *>(QStringLiteral("ptr_toast_warning_"));
    QVERIFY(toast);
    QTRY_VERIFY(!toast);
    host->SetDisplayDuration(3000);
    host->SetFadeDuration(800);
}

QTEST_MAIN(TestWorkbenchToasts)
#include "tst_workbenchtoasts.moc"
