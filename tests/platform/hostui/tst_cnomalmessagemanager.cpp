#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using vs_ui_data_controller::CNomalMessageManager;

namespace {
CNomalMessageManager *Mgr()
{
    return CNomalMessageManager::Instance();
}

// Clicks a button of the next modal box once it is up.
void ClickInModalBox(const QString &buttonName, QString *seenText)
{
    QTimer::singleShot(0, qApp, [buttonName, seenText] {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal) {
            ClickInModalBox(buttonName, seenText);
            return;
        }
        if (auto *box = qobject_cast<QMessageBox *>(modal))
            *seenText = box->text();
        if (auto *button = modal->findChild<QPushButton *>(buttonName))
            button->click();
    });
}
} // namespace

class TestCNomalMessageManager : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { CNomalMessageManager::DestroyInstance(); }

    void providerAnswersTheTip_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("confirmed");
        QTest::newRow("confirm") << 1 << true;
        QTest::newRow("cancel") << 0 << false;
        QTest::newRow("closed") << -1 << false;
    }
    void providerAnswersTheTip()
    {
        QFETCH(int, answer);
        QFETCH(bool, confirmed);
        QStringList asked;
        Mgr()->SetAnswerProvider([&asked, answer](const QString &text) {
            asked << text;
            return answer;
        });
        QVERIFY(Mgr()->HasAnswerProvider());
        QSignalSpy spy(Mgr(), &CNomalMessageManager::SignalMessageTipAsked);
        const int result = Mgr()->ShowMessageTip(QStringLiteral("ConfirmToDelete"));
        QCOMPARE(result == CNomalMessageManager::AnswerConfirm, confirmed);
        QCOMPARE(asked, QStringList{QStringLiteral("ConfirmToDelete")});
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("ConfirmToDelete"));
    }
    void modalBoxWithoutProvider_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("question");
        QTest::newRow("question confirmed") << "ptr_message_confirm_btn_" << 1 << true;
        QTest::newRow("question cancelled") << "ptr_message_cancel_btn_" << 0 << true;
        QTest::newRow("message") << "ptr_message_confirm_btn_" << 1 << false;
    }
    void modalBoxWithoutProvider()
    {
        QFETCH(QString, button);
        QFETCH(int, answer);
        QFETCH(bool, question);
        QWidget parent;
        parent.show();
        QString seen;
        ClickInModalBox(button, &seen);
        QCOMPARE(question ? Mgr()->ShowMessageTip(QStringLiteral("Really?"), &parent)
                          : Mgr()->ShowMessage(QStringLiteral("Really?"), CNomalMessageManager::LevelSuccess),
                 answer);
        QCOMPARE(seen, QStringLiteral("Really?"));
    }
};

QTEST_MAIN(TestCNomalMessageManager)
#include "tst_cnomalmessagemanager.moc"
