#include "support/paneltestenv.h"

#include "boundary/previewptzcontroltranslator.h"
#include "lock/caboutlockframe.h"
#include "lock/clockedframe.h"
#include "lock/clockmgrframe.h"
#include "lock/cunlockedframe.h"

#include "quillon/cfixedcontentlineedit.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_plugin_manager/ccurrentuser.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace PreviewPTZControl;
using ptz_plugin_protocol::PTZLockStatusResponse;
namespace demo = site_store::demo;

namespace {
PTZLockStatusResponse Status(int locked, int remaining, const char *holder, int level, const char *detail = "",
                             bool other_client = false)
{
    PTZLockStatusResponse status;
    status.locked = locked;
    status.remaining_time = remaining;
    status.user_name = holder;
    status.user_detail = detail;
    status.ptz_level = level;
    status.locked_by_other_client = other_client;
    return status;
}

template <typename T>
T *child(QObject *parent, const char *name)
{
    return parent->findChild<T *>(QString::fromLatin1(name));
}

auto *Messages()
{
    return vs_ui_data_controller::CNomalMessageManager::Instance();
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
    void cancelAndUnlockAreForwarded();
    void modeFollowsHolderAndLevel_data();
    void modeFollowsHolderAndLevel();
    void extensionOnlyInTheLastMinute_data();
    void extensionOnlyInTheLastMinute();
    void countdownEndsWithOneStatusRequest();
    void holderText_data();
    void holderText();
    void outOfRangeStatusChangesNothing();
    void themeNames();

private:
    PanelTestEnv m_env;
    CLockMgrFrame *m_strip = nullptr;
    QStringList m_messages;
};

void TestLockFrames::init()
{
    m_env.setUp();
    m_messages.clear();
    Messages()->SetAnswerProvider([this](const QString &text) {
        m_messages << text;
        return int(vs_ui_data_controller::CNomalMessageManager::AnswerConfirm);
    });
    m_strip = new CLockMgrFrame;
    m_strip->SetUserLevel(demo::kOperatorLevel);
    m_strip->show();
}

void TestLockFrames::cleanup()
{
    delete m_strip;
    m_strip = nullptr;
    Messages()->SetAnswerProvider({});
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
    QTest::newRow("default") << "300" << 300;
}

void TestLockFrames::durationIsChecked()
{
    QFETCH(QString, text);
    QFETCH(int, emitted);
    QSignalSpy confirmed(m_strip, &CLockMgrFrame::SignalAboutLockBtnClicked);
    QTest::mouseClick(child<QPushButton>(m_strip->UnLockedFrame(), "pLockBtn"), Qt::LeftButton);
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageLockTime));
    auto *edit = m_strip->AboutLockFrame()->LockTimeEdit();
    edit->setText(text);
    QTest::mouseClick(m_strip->AboutLockFrame()->ConfirmButton(), Qt::LeftButton);
    if (emitted == 0) {
        QCOMPARE(confirmed.count(), 0);
        QCOMPARE(m_messages.size(), 1);
        QVERIFY2(m_messages.first().contains(QLatin1String("from 1 to 3600")), qPrintable(m_messages.first()));
        QTRY_VERIFY(edit->hasFocus());
    } else {
        QCOMPARE(confirmed.count(), 1);
        QCOMPARE(confirmed.first().at(0).toInt(), emitted);
        QVERIFY(m_messages.isEmpty());
    }
}

void TestLockFrames::statusDuringLockTimeEntryKeepsThePage()
{
    QTest::mouseClick(child<QPushButton>(m_strip->UnLockedFrame(), "pLockBtn"), Qt::LeftButton);
    m_strip->SetLockStatus(Status(1, 200, "senior", demo::kSeniorLevel));
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageLockTime));
    QVERIFY(m_strip->AboutLockFrame()->isVisible());
    QVERIFY(!m_strip->LockedFrame()->isVisible());
    // After cancelling, the next status may move the strip again.
    QTest::mouseClick(m_strip->AboutLockFrame()->CancelButton(), Qt::LeftButton);
    m_strip->SetLockStatus(Status(1, 200, "senior", demo::kSeniorLevel));
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageLocked));
    QVERIFY(m_strip->LockedFrame()->isVisible());
    QVERIFY(!m_strip->UnLockedFrame()->isVisible());
    m_strip->SetLockStatus(Status(0, 0, "", -1));
    QCOMPARE(m_strip->CurrentPage(), int(CLockMgrFrame::PageUnlocked));
}

void TestLockFrames::cancelAndUnlockAreForwarded()
{
    QList<bool> pages;
    m_strip->SetPageChangedCallback([&pages](bool locked) { pages << locked; });
    QSignalSpy cancelled(m_strip, &CLockMgrFrame::SignalAboutCancelBtnClicked);
    QSignalSpy unlock(m_strip, &CLockMgrFrame::SignalUnLockBtnClicked);
    QTest::mouseClick(child<QPushButton>(m_strip->UnLockedFrame(), "pLockBtn"), Qt::LeftButton);
    QTest::mouseClick(m_strip->AboutLockFrame()->CancelButton(), Qt::LeftButton);
    QCOMPARE(cancelled.count(), 1);
    m_strip->ShowPage(CLockMgrFrame::PageLocked);
    m_strip->SetLockedMode(3);
    QTest::mouseClick(m_strip->LockedFrame()->UnLockButton(), Qt::LeftButton);
    QCOMPARE(unlock.count(), 1);
    m_strip->ShowPage(CLockMgrFrame::PageUnlocked);
    QCOMPARE(pages, (QList<bool>{true, true, false}));
}

void TestLockFrames::modeFollowsHolderAndLevel_data()
{
    QTest::addColumn<QString>("holder");
    QTest::addColumn<int>("holderLevel");
    QTest::addColumn<bool>("otherClient");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("buttons");
    QTest::addColumn<bool>("unlockShown");

    QTest::newRow("mine") << "operator" << demo::kOperatorLevel << false << 3 << true << true;
    QTest::newRow("mine on another client") << "operator" << demo::kOperatorLevel << true << 1 << false << false;
    QTest::newRow("equal level") << "viewer" << demo::kOperatorLevel << false << 1 << false << false;
    QTest::newRow("higher level") << "senior" << demo::kSeniorLevel << false << 1 << false << false;
    QTest::newRow("lower level") << "junior" << demo::kJuniorLevel << false << 2 << true << false;
}

void TestLockFrames::modeFollowsHolderAndLevel()
{
    QFETCH(QString, holder);
    QFETCH(int, holderLevel);
    QFETCH(bool, otherClient);
    QFETCH(int, mode);
    QFETCH(bool, buttons);
    QFETCH(bool, unlockShown);
    m_strip->SetLockStatus(Status(1, 120, holder.toUtf8().constData(), holderLevel, "", otherClient));
    CLockedFrame *page = m_strip->LockedFrame();
    QCOMPARE(page->Mode(), mode);
    QVERIFY(page->isVisible());
    QCOMPARE(page->LockButton()->isVisible(), buttons);
    QCOMPARE(page->UnLockButton()->isVisible(), unlockShown);
    QCOMPARE(child<QLabel>(page, "ptr_locker_info_")->isVisible(), mode != 3);
    if (mode == 2) // a lower-level holder can be overridden at once
        QVERIFY(page->LockButton()->isEnabled());
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
    page->SetRemainTime(1, true);
    QVERIFY(page->CountdownTimer()->isActive());
    QCOMPARE(page->CountdownTimer()->interval(), 1000);
    QCOMPARE(child<QLabel>(page, "pLockTimeLabel")->text(), QStringLiteral("00:00:01"));
    page->OnSelfLockTimeOut();
    QCOMPARE(child<QLabel>(page, "pLockTimeLabel")->text(), QStringLiteral("00:00:00"));
    QCOMPARE(requests.count(), 1);
    page->SetRemainTime(3725, false);
    QCOMPARE(child<QLabel>(page, "pLockTimeLabel")->text(), QStringLiteral("01:02:05"));
    QVERIFY(!page->CountdownTimer()->isActive());
}

void TestLockFrames::holderText_data()
{
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QString>("expected");
    QTest::newRow("name alone") << "" << "alice";
    QTest::newRow("with second text") << "x" << "alice(x)";
}

void TestLockFrames::holderText()
{
    QFETCH(QString, detail);
    QFETCH(QString, expected);
    CLockedFrame *page = m_strip->LockedFrame();
    page->UpdateLockTimeLabel(Status(1, 30, "alice", 10, detail.toUtf8().constData()));
    const QString shown = child<QLabel>(page, "ptr_locker_info_")->text();
    QVERIFY2(shown.contains(expected), qPrintable(shown));
    if (detail.isEmpty())
        QVERIFY(!shown.contains(QLatin1Char('(')));
}

void TestLockFrames::outOfRangeStatusChangesNothing()
{
    CLockedFrame *page = m_strip->LockedFrame();
    page->UpdateLockTimeLabel(Status(1, 90, "junior", demo::kJuniorLevel));
    QVERIFY(page->CountdownTimer()->isActive());
    for (int remaining : {3601, -1}) {
        page->UpdateLockTimeLabel(Status(0, remaining, "", -1));
        QCOMPARE(child<QLabel>(page, "pLockTimeLabel")->text(), QStringLiteral("00:01:30"));
        QVERIFY(page->CountdownTimer()->isActive());
    }
}

void TestLockFrames::themeNames()
{
    m_strip->SwitchTheme(true);
    for (const char *name : {"lock_time_edit_white", "pLockLabel_white_", "pConfirmBtn_white_", "pCancelBtn_white_",
                             "pLockTimeLabel_white_", "pBtnFrame_white_", "pUnLockBtn_white_", "pLockBtn_white_"})
        QVERIFY2(m_strip->findChild<QWidget *>(QString::fromLatin1(name)), name);
    m_strip->SwitchTheme(false);
    for (const char *name : {"lock_time_edit", "pLockLabel", "pConfirmBtn", "pCancelBtn", "pLockTimeLabel", "pBtnFrame",
                             "pUnLockBtn", "pLockBtn"})
        QVERIFY2(m_strip->findChild<QWidget *>(QString::fromLatin1(name)), name);
}

QTEST_MAIN(TestLockFrames)
#include "tst_lockframes.moc"
