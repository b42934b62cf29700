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
        QVERIFY2(options.Parse({ QStringLiteral("ptz-workbench"), QStringLiteral("--site"), QStringLiteral("/tmp/s.db"),
                                   QStringLiteral("--user"), QStringLiteral("guard"), QStringLiteral("--screens=9"),
                                   QStringLiteral("--theme"), QStringLiteral("white"), QStringLiteral("--layout"),
                                   QStringLiteral("stacked"), QStringLiteral("--screenshot"), QStringLiteral("a.png") },
                     &error),
            qPrintable(error));
        QCOMPARE(options.site, QStringLiteral("/tmp/s.db"));
        QCOMPARE(options.user, QStringLiteral("guard"));
        QCOMPARE(options.screens, 9);
        QVERIFY(options.white);
        QVERIFY(options.stacked);
        QCOMPARE(options.screenshot, QStringLiteral("a.png"));

        CWorkbenchOptions defaults;
        QVERIFY(defaults.Parse({ QStringLiteral("ptz-workbench") }, &error));
        QCOMPARE(defaults.screens, 4);
        QVERIFY(!defaults.white);
        QVERIFY(!defaults.stacked);
    }
    void badLinesAreRefused_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("expected");
        QTest::newRow("screens 3") << QStringList { QStringLiteral("--screens"), QStringLiteral("3") }
                                   << QStringLiteral("--screens expects 1, 4 or 9, not '3'.");
        QTest::newRow("theme blue") << QStringList { QStringLiteral("--theme=blue") }
                                    << QStringLiteral("--theme expects dark or white, not 'blue'.");
        QTest::newRow("layout grid") << QStringList { QStringLiteral("--layout"), QStringLiteral("grid") }
                                     << QStringLiteral("--layout expects side or stacked, not 'grid'.");
        QTest::newRow("empty user") << QStringList { QStringLiteral("--user=") }
                                    << QStringLiteral("--user expects a user name.");
        QTest::newRow("unknown option") << QStringList { QStringLiteral("--colour") } << QStringLiteral("colour");
        QTest::newRow("missing value") << QStringList { QStringLiteral("--site") } << QStringLiteral("site");
        QTest::newRow("stray word") << QStringList { QStringLiteral("dome") }
                                    << QStringLiteral("unexpected argument 'dome'; options start with --.");
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
