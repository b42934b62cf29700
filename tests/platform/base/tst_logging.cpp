#include "tarn/base/logging.h"

#include <QTest>

class TestLogging : public QObject
{
    Q_OBJECT
private slots:
    void lineStartsWithFunctionAndLine()
    {
        const int line = __LINE__ + 1;
        ZEPH_LOG_INFO("DPR is %f", 1.5);
        const QString logged = Tarn::Base::LastLogLine();
        const QString expected =
            QStringLiteral("[%1(%2)] - DPR is 1.500000").arg(QString::fromLatin1(Q_FUNC_INFO)).arg(line);
        QCOMPARE(logged, expected);
        QVERIFY(logged.contains(QLatin1String("TestLogging::lineStartsWithFunctionAndLine")));
    }
};

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_logging.moc"
