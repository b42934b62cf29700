#include "cworkbenchscript.h"

#include <QTest>

class TestWorkbenchScriptBytes : public QObject
{
    Q_OBJECT
private slots:
    void fileBytes_data();
    void fileBytes();
};

void TestWorkbenchScriptBytes::fileBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("actions"); // -1: refused
    QTest::addColumn<QString>("error");
    QTest::newRow("tabs and spaces") << QByteArray("select\t1\n\tpress  \t up\r\nrelease up\n") << 3 << QString();
    QTest::newRow("NUL hides the release") << QByteArray("press up\nwait 5\x00x\nrelease up\n", 31) << -1
                                           << "line 2 contains a NUL";
    QTest::newRow("broken UTF-8") << QByteArray("press up\n\n# caf\xc3\n") << -1 << "line 3 is not valid UTF-8";
    QTest::newRow("UTF-8 comment is fine") << QByteArray("press up # caf\xc3\xa9\nrelease up") << 2 << QString();
    QTest::newRow("long line is cut in the message")
        << QByteArray("jump ") + QByteArray(5000, 'y') << -1 << "'jump " + QString(75, QLatin1Char('y')) + QChar(0x2026) + "'";
}

void TestWorkbenchScriptBytes::fileBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, actions);
    QFETCH(QString, error);
    CWorkbenchScript script;
    QString message;
    QCOMPARE(script.ParseFile(bytes, &message), actions >= 0);
    if (actions >= 0) {
        QCOMPARE(script.Actions().size(), actions);
    } else {
        QVERIFY2(message.endsWith(error) || message.contains(error), qPrintable(message.left(300)));
        QVERIFY(message.size() < 300);
        QVERIFY(script.Actions().isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestWorkbenchScriptBytes)
#include "tst_cworkbenchscriptbytes.moc"
