#include "support/child.h"
#include "support/testenv.h"

#include "boundary/previewptzcontroltranslator.h"
#include "lock/caboutlockframe.h"
#include "lock/clockedframe.h"
#include "lock/clockmgrframe.h"
#include "lock/cunlockedframe.h"

#include "quillon/cfixedcontentlineedit.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace PreviewPTZControl;
using ptz_plugin_protocol::PTZLockStatusResponse;
using vs_ui_data_controller::CNomalMessageManager;
namespace demo = site_store::demo;

namespace {
PTZLockStatusResponse Status(int locked, int remaining, const QString &holder, int level,
                             const QString &detail = QString(), bool otherClient = false)
{
    PTZLockStatusResponse status;
    status.locked = locked;
    status.remaining_time = remaining;
    status.user_name = holder.toStdString();
    status.user_detail = detail.toStdString();
    status.ptz_level = level;
    status.locked_by_other_client = otherClient;
    return status;
}

QString TimeShown(const CLockedFrame *page)
{
    return child<QLabel>(page, "pLockTimeLabel")->text();
}
} // namespace

class TestLockFrames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(InstallTranslator(QCoreApplication::instance())); }
    void init();
    void cleanup();

    void durationIsChecked_data();
    void durationIsChecked();
    void statusDuringLockTimeEntryKeepsThePage();
    void modeFollowsHolderAndLevel_data();
    void modeFollowsHolderAndLevel();
    void extensionOnlyInTheLastMinute_data();
    void extensionOnlyInTheLastMinute();
    void countdownEndsWithOneStatusRequest();

private:
    TestEnv m_env;
    CLockMgrFrame *m_strip = nullptr;
    QStringList m_messages;
};

void TestLockFrames::init()
{
    m_env.setUp();
    m_messages.clear();
    CNomalMessageManager::Instance()->SetAnswerProvider([this](const QString &text) {
        m_messages << text;
        return int(CNomalMessageManager::AnswerConfirm);
    });
    m_strip = new CLockMgrFrame;
    m_strip->SetUserLevel(demo::kOperatorLevel);
    m_strip->show();
}

void TestLockFrames::cleanup()
{
    delete m_strip;
    CNomalMessageManager::Instance()->SetAnswerProvider({});
    m_env.tearDown();
}

void TestLockFrames::durationIsChecked_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("emitted"); // 0: refused

    QTest::newRow("zero") << "0" << 0;
    QTest::newRow("above range") << "3601" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("letters") << "abc" << 0;
    QTest::newRow("five digits are cut to four") << "12345" << 1234;
    QTest::newRow("lowest") << "1" << 1;
    QTest::newRow("highest") << "3600" << 3600;
}

void TestLockFrames::durationIsChecked()
{
    QFETCH(QString, text);
    QFETCH(int, emitted);
    QSignalSpy confirmed(m_strip, &CLockMgrFrame::SignalAboutLockBtnClicked);
    QTest::mouseClick(m_strip->UnLockedFrame()->findChild<QPushButton *>(QStringLiteral("pLockBtn")), Qt::LeftButton);
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageLockTime));
    auto *edit = m_strip->AboutLockFrame()->LockTimeEdit();
    edit->setText(text);
    QTest::mouseClick(m_strip->AboutLockFrame()->ConfirmButton(), Qt::LeftButton);
    QCOMPARE(confirmed.count(), emitted ? 1 : 0);
    if (emitted) {
        QCOMPARE(confirmed.first().at(0).toInt(), emitted);
        QVERIFY(m_messages.isEmpty());
    } else {
        QCOMPARE(m_messages.size(), 1);
        QVERIFY2(m_messages.first().contains(QLatin1String("from 1 to 3600")), qPrintable(m_messages.first()));
        QTRY_VERIFY(edit->hasFocus());
    }
}

void TestLockFrames::statusDuringLockTimeEntryKeepsThePage()
{
    QTest::mouseClick(m_strip->UnLockedFrame()->findChild<QPushButton *>(QStringLiteral("pLockBtn")), Qt::LeftButton);
    m_strip->SetLockStatus(Status(1, 200, demo::kSenior, demo::kSeniorLevel));
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageLockTime));
    QVERIFY(m_strip->AboutLockFrame()->isVisible());
    // After cancelling, the next status moves the strip again.
    QTest::mouseClick(m_strip->AboutLockFrame()->CancelButton(), Qt::LeftButton);
    m_strip->SetLockStatus(Status(1, 200, demo::kSenior, demo::kSeniorLevel));
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageLocked));
    QVERIFY(m_strip->LockedFrame()->isVisible());
    m_strip->SetLockStatus(Status(0, 0, QString(), -1));
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
}

void TestLockFrames::modeFollowsHolderAndLevel_data()
{
    QTest::addColumn<QString>("holder");
    QTest::addColumn<int>("holderLevel");
    QTest::addColumn<bool>("otherClient");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("lockShown");
    QTest::addColumn<bool>("unlockShown");

    QTest::newRow("mine") << "operator" << demo::kOperatorLevel << false << "" << 3 << true << true;
    QTest::newRow("mine on another client") << "operator" << demo::kOperatorLevel << true << "" << 1 << false << false;
    QTest::newRow("equal level") << "viewer" << demo::kOperatorLevel << false << "" << 1 << false << false;
    QTest::newRow("higher level") << "senior" << demo::kSeniorLevel << false << "desk 2" << 1 << false << false;
    QTest::newRow("lower level") << "junior" << demo::kJuniorLevel << false << "" << 2 << true << false;
}

void TestLockFrames::modeFollowsHolderAndLevel()
{
    QFETCH(QString, holder);
    QFETCH(int, holderLevel);
    QFETCH(bool, otherClient);
    QFETCH(QString, detail);
    QFETCH(int, mode);
    QFETCH(bool, lockShown);
    QFETCH(bool, unlockShown);
    m_strip->SetLockStatus(Status(1, 120, holder, holderLevel, detail, otherClient));
    CLockedFrame *page = m_strip->LockedFrame();
    QCOMPARE(page->Mode(), mode);
    QVERIFY(page->isVisible());
    QCOMPARE(page->LockButton()->isVisible(), lockShown);
    QCOMPARE(page->UnLockButton()->isVisible(), unlockShown);
    // A lower-level holder can be overridden at once, not only in the last minute.
    QCOMPARE(page->LockButton()->isEnabled(), mode == 2);
    auto *holderLabel = child<QLabel>(page, "ptr_locker_info_");
    QCOMPARE(holderLabel->isVisible(), mode != 3);
    if (mode != 3) {
        const QString expected = detail.isEmpty() ? holder : holder + QLatin1Char('(') + detail + QLatin1Char(')');
        QVERIFY2(holderLabel->text().contains(expected), qPrintable(holderLabel->text()));
        QCOMPARE(holderLabel->text().contains(QLatin1Char('(')), !detail.isEmpty());
    }
}

void TestLockFrames::extensionOnlyInTheLastMinute_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("remaining");
    QTest::addColumn<bool>("enabled");

    for (int mode : {0, 1, 3}) {
        QTest::addRow("mode %d, 61 s", mode) << mode << 61 << false;
        QTest::addRow("mode %d, 60 s", mode) << mode << 60 << true;
    }
    QTest::newRow("mode 2, 61 s") << 2 << 61 << true;
}

void TestLockFrames::extensionOnlyInTheLastMinute()
{
    QFETCH(int, mode);
    QFETCH(int, remaining);
    QFETCH(bool, enabled);
    CLockedFrame *page = m_strip->LockedFrame();
    page->SetMode(mode);
    page->SetRemainTime(remaining, false);
    QCOMPARE(page->LockButton()->isEnabled(), enabled);
}

void TestLockFrames::countdownEndsWithOneStatusRequest()
{
    CLockedFrame *page = m_strip->LockedFrame();
    QSignalSpy requests(m_strip, &CLockMgrFrame::SignalRequestLockState);
    page->UpdateLockTimeLabel(Status(1, 2, demo::kJunior, demo::kJuniorLevel));
    QVERIFY(page->CountdownTimer()->isActive());
    QCOMPARE(page->CountdownTimer()->interval(), 1000);
    // A remaining time outside 0..3600 is not believed: the countdown goes on.
    for (int remaining : {3601, -1})
        page->UpdateLockTimeLabel(Status(0, remaining, QString(), -1));
    QCOMPARE(TimeShown(page), QStringLiteral("00:00:02"));
    page->OnSelfLockTimeOut();
    QCOMPARE(requests.count(), 0);
    page->OnSelfLockTimeOut();
    QCOMPARE(TimeShown(page), QStringLiteral("00:00:00"));
    QCOMPARE(requests.count(), 1);
    page->SetRemainTime(3725, false);
    QCOMPARE(TimeShown(page), QStringLiteral("01:02:05"));
    QVERIFY(!page->CountdownTimer()->isActive());
}

QTEST_MAIN(TestLockFrames)
#include "tst_lockframes.moc"
