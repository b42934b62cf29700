#include "quillon/csearchlineedit.h"

#include <QSignalSpy>
#include <QTest>

using namespace Quillon;

class TestCSearchLineEdit : public QObject
{
    Q_OBJECT

private slots:
    void typingIsReportedOnceItPauses()
    {
        CSearchLineEdit edit;
        edit.SetSearchDelay(50);
        QSignalSpy spy(&edit, &CSearchLineEdit::SignalSearchTextChanged);
        QTest::keyClicks(&edit, QStringLiteral("pre"));
        QCOMPARE(spy.count(), 0);
        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("pre"));
        // Keys typed without a pause make one report, of the final text.
        QTest::keyClick(&edit, Qt::Key_A);
        QTest::keyClick(&edit, Qt::Key_Backspace);
        QTest::keyClick(&edit, Qt::Key_X);
        QTRY_COMPARE(spy.count(), 2);
        QCOMPARE(spy.at(1).at(0).toString(), QStringLiteral("prex"));
    }
    void zeroDelayReportsEveryChangeAndClearing()
    {
        CSearchLineEdit edit;
        edit.SetSearchDelay(0);
        QSignalSpy spy(&edit, &CSearchLineEdit::SignalSearchTextChanged);
        QTest::keyClicks(&edit, QStringLiteral("ab"));
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.at(1).at(0).toString(), QStringLiteral("ab"));
        edit.clear();
        QCOMPARE(spy.count(), 3);
        QCOMPARE(spy.at(2).at(0).toString(), QString());
    }
};

QTEST_MAIN(TestCSearchLineEdit)
#include "tst_csearchlineedit.moc"
