#include "cworkbenchoptions.h"

#include <QtTest>

class TestWorkbenchOptions : public QObject
{
    Q_OBJECT

private slots:
    void goodLineIsRead()
    {
        CWorkbenchOptions options;
        QString error;
        const QStringList args{"ptz-workbench", "--site", "/tmp/s.db", "--user",  "guard",        "--screens=9",
                               "--theme",       "white",  "--layout",  "stacked", "--screenshot", "a.png"};
        QVERIFY2(options.Parse(args, &error), qPrintable(error));
        QCOMPARE(options.site, QStringLiteral("/tmp/s.db"));
        QCOMPARE(options.user, QStringLiteral("guard"));
        QCOMPARE(options.screens, 9);
        QVERIFY(options.white && options.stacked);
        QCOMPARE(options.screenshot, QStringLiteral("a.png"));
    }
    void badLinesAreRefused_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("expected");
        QTest::newRow("screens 3") << QStringList{"--screens", "3"} << "--screens expects 1, 4 or 9, not '3'.";
        QTest::newRow("theme blue") << QStringList{"--theme=blue"} << "--theme expects dark or white, not 'blue'.";
        QTest::newRow("layout grid") << QStringList{"--layout", "grid"}
                                     << "--layout expects side or stacked, not 'grid'.";
        QTest::newRow("empty user") << QStringList{"--user="} << "--user expects a user name.";
        QTest::newRow("unknown option") << QStringList{"--colour"} << "colour";
        QTest::newRow("missing value") << QStringList{"--site"} << "site";
        QTest::newRow("stray word") << QStringList{"dome"} << "unexpected argument 'dome'; options start with --.";
    }
    void badLinesAreRefused()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, expected);
        args.prepend(QStringLiteral("ptz-workbench"));
        CWorkbenchOptions options;
        QString error;
        QVERIFY(!options.Parse(args, &error));
        QVERIFY2(error.contains(expected), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TestWorkbenchOptions)
#include "tst_cworkbenchoptions.moc"
