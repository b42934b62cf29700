#include "support/paneltestenv.h"

#include "boundary/previewptzcontroltranslator.h"
#include "lock/caboutlockframe.h"
#include "lock/clockedframe.h"
#include "lock/clockmgrframe.h"
#include "lock/cunlockedframe.h"

#include "quillon/cfixedcontentlineedit.h"
#include "vs_ui_data_controller/cinformationmgr.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace PreviewPTZControl;
using namespace ptz_plugin_protocol;
using ptz_devices::DriverOperation;
namespace demo = site_store::demo;

namespace {
const QString kDome = QString::fromLatin1(demo::kSpeedDome);

auto *Business()
{
    return ZephPluginManager::CPTZBusinessInterfaceMgr::Instance();
}

PTZLockStatusResponse LockOf(const QString &camera)
{
    PTZLockStatusRequest request;
    request.camera_index_code = camera.toStdString();
    PTZLockStatusResponse status;
    Business()->GetPTZLockStatus(request, status);
    return status;
}

PTZControlCommand Move(const QString &camera, unsigned action)
{
    PTZControlCommand command;
    command.camera_index_code = camera.toStdString();
    command.command = PTZ_CMD_PAN_RIGHT;
    command.action = action;
    command.speed = 20;
    return command;
}
} // namespace

class TestPreviewPTZWndLock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(InstallTranslator(QCoreApplication::instance())); }
    void init();
    void cleanup();

    void lockCountdownExtendAndUnlock();
    void cancelReturnsToTheShownPage();
    void lowerLevelCannotMoveBelowThePanel();
    void higherLevelTakesControl();
    void detailsTextByLevel_data();
    void detailsTextByLevel();
    void statusOfAnotherCameraIsIgnored();

private:
    CLockMgrFrame *strip() const { return m_panel->findChild<CLockMgrFrame *>(QStringLiteral("pLockFrame")); }
    QTimer *pollTimer() const;
    void confirmLock(int seconds);

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
};

QTimer *TestPreviewPTZWndLock::pollTimer() const
{
    // The poll is the panel's only 3-second repeating timer.
    const auto timers = m_panel->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    for (QTimer *timer : timers)
        if (timer->interval() == 3000 && !timer->isSingleShot())
            return timer;
    return nullptr;
}

void TestPreviewPTZWndLock::init()
{
    m_env.setUp();
    ZephPluginManager::CCurrentUser::Instance()->SetUser(QString::fromLatin1(demo::kOperator));
    m_panel = new CPreviewPTZWnd(0, false, false);
    m_panel->SetPTZController(m_env.controller(), nullptr);
    m_panel->SetCamera(QString(), kDome, false, false);
    m_panel->show();
    QVERIFY(strip());
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
}

void TestPreviewPTZWndLock::cleanup()
{
    delete m_panel;
    m_panel = nullptr;
    m_env.tearDown();
}

void TestPreviewPTZWndLock::confirmLock(int seconds)
{
    strip()->AboutLockFrame()->LockTimeEdit()->setText(QString::number(seconds));
    QTest::mouseClick(strip()->AboutLockFrame()->ConfirmButton(), Qt::LeftButton);
}

void TestPreviewPTZWndLock::lockCountdownExtendAndUnlock()
{
    QTest::mouseClick(strip()->UnLockedFrame()->LockButton(), Qt::LeftButton);
    confirmLock(120);
    QTRY_COMPARE(LockOf(kDome).locked, 1);
    QCOMPARE(QString::fromStdString(LockOf(kDome).user_name), QString::fromLatin1(demo::kOperator));
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
    CLockedFrame *page = strip()->LockedFrame();
    QCOMPARE(page->Mode(), 3);
    QVERIFY(page->CountdownTimer()->isActive());
    QTRY_VERIFY(pollTimer() && pollTimer()->isActive());
    QVERIFY2(page->RemainSeconds() > 60 && page->RemainSeconds() <= 120, qPrintable(QString::number(page->RemainSeconds())));
    QVERIFY(!page->LockButton()->isEnabled());

    // In the last minute the lock can be extended.
    page->SetRemainTime(60, true);
    QVERIFY(page->LockButton()->isEnabled());
    QTest::mouseClick(page->LockButton(), Qt::LeftButton);
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLockTime));
    confirmLock(600);
    QTRY_VERIFY(LockOf(kDome).remaining_time > 500);
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));

    QTest::mouseClick(page->UnLockButton(), Qt::LeftButton);
    QTRY_COMPARE(LockOf(kDome).locked, 0);
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
    QTRY_VERIFY(!pollTimer()->isActive());
}

void TestPreviewPTZWndLock::cancelReturnsToTheShownPage()
{
    QTest::mouseClick(strip()->UnLockedFrame()->LockButton(), Qt::LeftButton);
    QTest::mouseClick(strip()->AboutLockFrame()->CancelButton(), Qt::LeftButton);
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));

    QVERIFY(Business()->LockPTZ(kDome.toStdString(), demo::kJunior, 300));
    m_panel->OnCheckPTZLockStatus();
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
    QCOMPARE(strip()->LockedFrame()->Mode(), 2);
    QTest::mouseClick(strip()->LockedFrame()->LockButton(), Qt::LeftButton);
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLockTime));
    QTest::mouseClick(strip()->AboutLockFrame()->CancelButton(), Qt::LeftButton);
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
}

void TestPreviewPTZWndLock::lowerLevelCannotMoveBelowThePanel()
{
    QVERIFY(Business()->LockPTZ(kDome.toStdString(), demo::kSenior, 300));
    ZephPluginManager::CCurrentUser::Instance()->SetUser(QString::fromLatin1(demo::kJunior));
    m_panel->OnCheckPTZLockStatus();
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
    QCOMPARE(strip()->LockedFrame()->Mode(), 1);

    m_env.camera(kDome)->clearRequestLog();
    QSignalSpy failed(m_env.controller().get(), &zeph_ptz_controller::CUniversalPTZController::SignalExecutionFailed);
    m_env.controller()->Control(Move(kDome, PTZ_ACTION_START));
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY(!m_env.operations(kDome).contains(DriverOperation::MovePanTilt));
}

void TestPreviewPTZWndLock::higherLevelTakesControl()
{
    QVERIFY(Business()->LockPTZ(kDome.toStdString(), demo::kJunior, 300));
    ZephPluginManager::CCurrentUser::Instance()->SetUser(QString::fromLatin1(demo::kSenior));
    QSignalSpy succeeded(m_env.controller().get(),
                         &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded);
    m_env.controller()->Control(Move(kDome, PTZ_ACTION_START));
    m_env.controller()->Control(Move(kDome, PTZ_ACTION_STOP));
    QTRY_COMPARE(succeeded.count(), 2);
    QVERIFY(m_env.operations(kDome).contains(DriverOperation::MovePanTilt));
}

void TestPreviewPTZWndLock::detailsTextByLevel_data()
{
    QTest::addColumn<QString>("me");
    QTest::addColumn<QString>("holder");
    QTest::addColumn<bool>("withTime");
    QTest::newRow("holder outranks") << demo::kJunior << demo::kSenior << true;
    QTest::newRow("equal level") << demo::kOperator << demo::kOperator << true;
    QTest::newRow("I outrank") << demo::kSenior << demo::kJunior << false;
}

void TestPreviewPTZWndLock::detailsTextByLevel()
{
    QFETCH(QString, me);
    QFETCH(QString, holder);
    QFETCH(bool, withTime);
    QVERIFY(Business()->LockPTZ(kDome.toStdString(), holder.toStdString(), 3599));
    ZephPluginManager::CCurrentUser::Instance()->SetUser(me);
    const QString text = CPreviewPTZWnd::GetPTZLockedDetails(kDome);
    QVERIFY2(text.contains(holder), qPrintable(text));
    QCOMPARE(text.contains(QLatin1String("00:59:5")), withTime);
}

void TestPreviewPTZWndLock::statusOfAnotherCameraIsIgnored()
{
    const QString other = QString::fromLatin1(demo::kPtzNoPattern);
    QVERIFY(Business()->LockPTZ(other.toStdString(), demo::kSenior, 300));
    m_panel->OnGetPTZLockStatusSuc(other);
    QCoreApplication::processEvents();
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
    QVERIFY(!pollTimer() || !pollTimer()->isActive());
}

QTEST_MAIN(TestPreviewPTZWndLock)
#include "tst_cpreviewptzwnd_lock.moc"
