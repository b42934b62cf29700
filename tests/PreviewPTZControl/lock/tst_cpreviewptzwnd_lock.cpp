#include "support/panelfixture.h"

#include "boundary/previewptzcontroltranslator.h"
#include "lock/caboutlockframe.h"
#include "lock/clockedframe.h"
#include "lock/clockmgrframe.h"
#include "lock/cunlockedframe.h"

#include "quillon/cfixedcontentlineedit.h"
#include "zeph_plugin_manager/ccurrentuser.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace PreviewPTZControl;
using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CUniversalPTZController;
namespace demo = site_store::demo;

namespace {
PTZLockStatusResponse LockOf(const QString &camera)
{
    PTZLockStatusRequest request;
    request.camera_index_code = camera.toStdString();
    PTZLockStatusResponse status;
    TestEnv::business()->GetPTZLockStatus(request, status);
    return status;
}

void SignIn(const char *user)
{
    ZephPluginManager::CCurrentUser::Instance()->SetUser(QString::fromLatin1(user));
}
} // namespace

class TestPreviewPTZWndLock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(InstallTranslator(QCoreApplication::instance())); }
    void init();
    void cleanup() { m_fx.tearDown(); }

    void lockCountdownExtendAndUnlock();
    void cancelReturnsToTheShownPage();
    void holderLevelDecidesWhoMoves_data();
    void holderLevelDecidesWhoMoves();
    void statusOfAnotherCameraIsIgnored();

private:
    CLockMgrFrame *strip() const { return m_fx.child<CLockMgrFrame>("pLockFrame"); }
    QTimer *pollTimer() const;
    void confirmLock(int seconds);

    PanelFixture m_fx;
};

// The status poll is the panel's only 3-second repeating timer.
QTimer *TestPreviewPTZWndLock::pollTimer() const
{
    const auto timers = m_fx.panel()->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    for (QTimer *timer : timers)
        if (timer->interval() == 3000 && !timer->isSingleShot())
            return timer;
    return nullptr;
}

void TestPreviewPTZWndLock::init()
{
    m_fx.setUp();
    SignIn(demo::kOperator);
    m_fx.bind(kDome);
    m_fx.panel()->show();
    QVERIFY(strip());
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
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
    QCOMPARE(QString::fromStdString(LockOf(kDome).user_name), kOperator);
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
    CLockedFrame *page = strip()->LockedFrame();
    QCOMPARE(page->Mode(), 3);
    QVERIFY(page->CountdownTimer()->isActive());
    QTRY_VERIFY(pollTimer() && pollTimer()->isActive());
    QVERIFY2(page->RemainSeconds() > 60 && page->RemainSeconds() <= 120,
             qPrintable(QString::number(page->RemainSeconds())));
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

    QVERIFY(TestEnv::business()->LockPTZ(kDome.toStdString(), demo::kJunior, 300));
    m_fx.panel()->OnCheckPTZLockStatus();
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
    QTest::mouseClick(strip()->LockedFrame()->LockButton(), Qt::LeftButton);
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLockTime));
    QTest::mouseClick(strip()->AboutLockFrame()->CancelButton(), Qt::LeftButton);
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
}

void TestPreviewPTZWndLock::holderLevelDecidesWhoMoves_data()
{
    QTest::addColumn<QString>("holder");
    QTest::addColumn<QString>("me");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("moves");
    QTest::newRow("holder outranks") << demo::kSenior << demo::kJunior << 1 << false;
    QTest::newRow("equal level") << demo::kNoPark << demo::kOperator << 1 << false;
    QTest::newRow("I outrank") << demo::kJunior << demo::kSenior << 2 << true;
}

void TestPreviewPTZWndLock::holderLevelDecidesWhoMoves()
{
    QFETCH(QString, holder);
    QFETCH(QString, me);
    QFETCH(int, mode);
    QFETCH(bool, moves);
    QVERIFY(TestEnv::business()->LockPTZ(kDome.toStdString(), holder.toStdString(), 3599));
    SignIn(qPrintable(me));
    m_fx.panel()->OnCheckPTZLockStatus();
    QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
    QCOMPARE(strip()->LockedFrame()->Mode(), mode);
    // The holder's details tell the time left only to those who cannot take over.
    const QString details = CPreviewPTZWnd::GetPTZLockedDetails(kDome);
    QVERIFY2(details.contains(holder), qPrintable(details));
    QCOMPARE(details.contains(QLatin1String("00:59:5")), !moves);

    m_fx.camera(kDome)->clearRequestLog();
    QSignalSpy failed(m_fx.controller().get(), &CUniversalPTZController::SignalExecutionFailed);
    QSignalSpy succeeded(m_fx.controller().get(), &CUniversalPTZController::SignalExecutionSucceeded);
    PTZControlCommand move;
    move.camera_index_code = kDome.toStdString();
    move.command = PTZ_CMD_PAN_RIGHT;
    move.speed = 20;
    move.action = PTZ_ACTION_START;
    m_fx.controller()->Control(move);
    if (moves) {
        move.action = PTZ_ACTION_STOP;
        m_fx.controller()->Control(move);
        QTRY_COMPARE(succeeded.count(), 2);
    } else {
        QTRY_COMPARE(failed.count(), 1);
        QCOMPARE(succeeded.count(), 0);
    }
    QCOMPARE(m_fx.count(kDome, ptz_devices::DriverOperation::MovePanTilt) > 0, moves);
}

void TestPreviewPTZWndLock::statusOfAnotherCameraIsIgnored()
{
    QVERIFY(TestEnv::business()->LockPTZ(kBasic.toStdString(), demo::kSenior, 300));
    m_fx.panel()->OnGetPTZLockStatusSuc(kBasic);
    QCoreApplication::processEvents();
    QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
    QVERIFY(!pollTimer() || !pollTimer()->isActive());
}

QTEST_MAIN(TestPreviewPTZWndLock)
#include "tst_cpreviewptzwnd_lock.moc"
