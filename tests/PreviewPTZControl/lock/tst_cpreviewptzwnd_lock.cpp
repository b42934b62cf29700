#include "support/panelfixture.h"
#include "support/questions.h"

#include "boundary/previewptzcontroltranslator.h"
#include "lock/caboutlockframe.h"
#include "lock/clockedframe.h"
#include "lock/clockmgrframe.h"
#include "lock/cunlockedframe.h"

#include "quillon/cfixedcontentlineedit.h"
#include "zeph_plugin_manager/ccurrentuser.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <optional>

using namespace PreviewPTZControl;
using ptz_plugin_protocol::PTZLockStatusResponse;
namespace demo = site_store::demo;

namespace {
PTZLockStatusResponse LockOf(const QString &camera)
{
    ptz_plugin_protocol::PTZLockStatusRequest request;
    request.camera_index_code = camera.toStdString();
    PTZLockStatusResponse status;
    TestEnv::business()->GetPTZLockStatus(request, status);
    return status;
}

void SignIn(const QString &user)
{
    ZephPluginManager::CCurrentUser::Instance()->SetUser(user);
}
} // namespace

// The lock strip of a panel bound to the speed dome, the operator signed in.
class TestPreviewPTZWndLock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(InstallTranslator(QCoreApplication::instance())); }
    void init()
    {
        m_fx.setUp();
        m_questions.emplace();
        SignIn(kOperator);
        m_fx.bind(kDome);
        m_fx.panel()->show();
        QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
    }
    void cleanup()
    {
        m_questions.reset();
        m_fx.tearDown();
    }
    void lockCountdownExtendAndUnlock()
    {
        QTest::mouseClick(strip()->UnLockedFrame()->LockButton(), Qt::LeftButton);
        confirmLock(QStringLiteral("120"));
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
        confirmLock(QStringLiteral("600"));
        QTRY_VERIFY(LockOf(kDome).remaining_time > 500);
        QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));

        QTest::mouseClick(page->UnLockButton(), Qt::LeftButton);
        QTRY_COMPARE(LockOf(kDome).locked, 0);
        QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
        QTRY_VERIFY(!pollTimer()->isActive());
    }
    void cancelReturnsToTheShownPage()
    {
        QTest::mouseClick(strip()->UnLockedFrame()->LockButton(), Qt::LeftButton);
        // A status arriving while the operator enters a duration after "Lock" keeps the entry page.
        strip()->SetLockStatus({1, 200, demo::kSenior, {}, demo::kSeniorLevel, false});
        QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLockTime));
        QVERIFY(strip()->AboutLockFrame()->isVisible());
        QTest::mouseClick(strip()->AboutLockFrame()->CancelButton(), Qt::LeftButton);
        QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));

        QVERIFY(TestEnv::business()->LockPTZ(kDome.toStdString(), demo::kJunior, 300));
        m_fx.panel()->OnCheckPTZLockStatus();
        QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
        QTest::mouseClick(strip()->LockedFrame()->LockButton(), Qt::LeftButton);
        QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLockTime));
        QTest::mouseClick(strip()->AboutLockFrame()->CancelButton(), Qt::LeftButton);
        QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
        strip()->SetLockStatus({});
        QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
    }
    void durationIsChecked_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("emitted"); // 0: refused, else the lock the host gets

        QTest::newRow("zero") << "0" << 0;
        QTest::newRow("above range") << "3601" << 0;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("five digits are cut to four") << "12345" << 1234;
        QTest::newRow("lowest") << "1" << 1;
        QTest::newRow("highest") << "3600" << 3600;
    }
    void durationIsChecked()
    {
        QFETCH(QString, text);
        QFETCH(int, emitted);
        QTest::mouseClick(strip()->UnLockedFrame()->LockButton(), Qt::LeftButton);
        confirmLock(text);
        QCOMPARE(m_questions->asked.size(), emitted ? 0 : 1);
        if (emitted) {
            QTRY_VERIFY(qAbs(LockOf(kDome).remaining_time - emitted) <= 1);
            return;
        }
        QVERIFY2(m_questions->asked.first().contains(QLatin1String("from 1 to 3600")),
                 qPrintable(m_questions->asked.first()));
        QTRY_VERIFY(strip()->AboutLockFrame()->LockTimeEdit()->hasFocus());
        QCOMPARE(LockOf(kDome).locked, 0);
    }
    void modeFollowsHolderAndLevel_data()
    {
        QTest::addColumn<QString>("holder");
        QTest::addColumn<int>("holderLevel");
        QTest::addColumn<bool>("otherClient");
        QTest::addColumn<QString>("detail");
        QTest::addColumn<int>("remaining");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("lockShown");
        QTest::addColumn<bool>("unlockShown");
        QTest::addColumn<bool>("lockEnabled");

        const int op = demo::kOperatorLevel;
        QTest::newRow("mine, 61 s") << "operator" << op << false << "" << 61 << 3 << true << true << false;
        QTest::newRow("mine, 60 s") << "operator" << op << false << "" << 60 << 3 << true << true << true;
        QTest::newRow("mine on another client, 60 s")
            << "operator" << op << true << "" << 60 << 1 << false << false << true;
        QTest::newRow("equal level, 61 s") << "viewer" << op << false << "" << 61 << 1 << false << false << false;
        QTest::newRow("higher level") << "senior" << demo::kSeniorLevel << false << "desk 2" << 120 << 1 << false
                                      << false << false;
        // A lower-level holder can be overridden at once, not only in the last minute.
        QTest::newRow("lower level, 2 min")
            << "junior" << demo::kJuniorLevel << false << "" << 120 << 2 << true << false << true;
    }
    void modeFollowsHolderAndLevel()
    {
        QFETCH(QString, holder);
        QFETCH(int, holderLevel);
        QFETCH(bool, otherClient);
        QFETCH(QString, detail);
        QFETCH(int, remaining);
        QFETCH(int, mode);
        QFETCH(bool, lockShown);
        QFETCH(bool, unlockShown);
        QFETCH(bool, lockEnabled);
        strip()->SetLockStatus({1, remaining, holder.toStdString(), detail.toStdString(), holderLevel, otherClient});
        CLockedFrame *page = strip()->LockedFrame();
        QCOMPARE(page->Mode(), mode);
        QVERIFY(page->isVisible());
        QCOMPARE(page->LockButton()->isVisible(), lockShown);
        QCOMPARE(page->UnLockButton()->isVisible(), unlockShown);
        QCOMPARE(page->LockButton()->isEnabled(), lockEnabled);
        auto *holderLabel = child<QLabel>(page, "ptr_locker_info_");
        QCOMPARE(holderLabel->isVisible(), mode != 3);
        if (mode != 3) {
            const QString expected = detail.isEmpty() ? holder : holder + QLatin1Char('(') + detail + QLatin1Char(')');
            QVERIFY2(holderLabel->text().contains(expected), qPrintable(holderLabel->text()));
            QCOMPARE(holderLabel->text().contains(QLatin1Char('(')), !detail.isEmpty());
        }
    }
    void hostLockReachesTheStrip_data()
    {
        QTest::addColumn<QString>("holder");
        QTest::addColumn<QString>("me");
        QTest::addColumn<int>("mode");
        QTest::newRow("holder outranks") << demo::kSenior << demo::kJunior << 1;
        QTest::newRow("I outrank") << demo::kJunior << demo::kSenior << 2;
    }
    void hostLockReachesTheStrip()
    {
        QFETCH(QString, holder);
        QFETCH(QString, me);
        QFETCH(int, mode);
        QVERIFY(TestEnv::business()->LockPTZ(kDome.toStdString(), holder.toStdString(), 3599));
        SignIn(me);
        m_fx.panel()->OnCheckPTZLockStatus();
        QTRY_COMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageLocked));
        QCOMPARE(strip()->LockedFrame()->Mode(), mode);
        // The holder's details tell the time left only to those who cannot take over.
        const QString details = CPreviewPTZWnd::GetPTZLockedDetails(kDome);
        QVERIFY2(details.contains(holder), qPrintable(details));
        QCOMPARE(details.contains(QLatin1String("00:59:5")), mode == 1);
    }
    void countdownEndsWithOneStatusRequest()
    {
        CLockedFrame *page = strip()->LockedFrame();
        auto timeShown = [page] { return child<QLabel>(page, "pLockTimeLabel")->text(); };
        QSignalSpy requests(strip(), &CLockMgrFrame::SignalRequestLockState);
        page->UpdateLockTimeLabel({1, 2, demo::kJunior, {}, demo::kJuniorLevel, false});
        QVERIFY(page->CountdownTimer()->isActive());
        QCOMPARE(page->CountdownTimer()->interval(), 1000);
        // A remaining time outside 0..3600 is not believed: the countdown goes on.
        for (int remaining : {3601, -1})
            page->UpdateLockTimeLabel({0, remaining, {}, {}, -1, false});
        QCOMPARE(timeShown(), QStringLiteral("00:00:02"));
        page->OnSelfLockTimeOut();
        QCOMPARE(requests.count(), 0);
        page->OnSelfLockTimeOut();
        QCOMPARE(timeShown(), QStringLiteral("00:00:00"));
        QCOMPARE(requests.count(), 1);
        page->SetRemainTime(3725, false);
        QCOMPARE(timeShown(), QStringLiteral("01:02:05"));
        QVERIFY(!page->CountdownTimer()->isActive());
    }
    void statusOfAnotherCameraIsIgnored()
    {
        QVERIFY(TestEnv::business()->LockPTZ(kBasic.toStdString(), demo::kSenior, 300));
        m_fx.panel()->OnGetPTZLockStatusSuc(kBasic);
        QCoreApplication::processEvents();
        QCOMPARE(strip()->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
        QVERIFY(!pollTimer() || !pollTimer()->isActive());
    }

private:
    CLockMgrFrame *strip() const { return m_fx.child<CLockMgrFrame>("pLockFrame"); }
    // The status poll is the panel's only 3-second repeating timer.
    QTimer *pollTimer() const
    {
        const auto timers = m_fx.panel()->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        for (QTimer *timer : timers)
            if (timer->interval() == 3000 && !timer->isSingleShot())
                return timer;
        return nullptr;
    }
    void confirmLock(const QString &seconds)
    {
        strip()->AboutLockFrame()->LockTimeEdit()->setText(seconds);
        QTest::mouseClick(strip()->AboutLockFrame()->ConfirmButton(), Qt::LeftButton);
    }

    PanelFixture m_fx;
    std::optional<QuestionRecorder> m_questions;
};

QTEST_MAIN(TestPreviewPTZWndLock)
#include "tst_cpreviewptzwnd_lock.moc"
