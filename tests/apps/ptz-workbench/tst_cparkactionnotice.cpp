#include "support/records.h"
#include "support/testenv.h"

#include "cparkactionnotice.h"

#include <QTest>

namespace {
struct Step
{
    QString camera;
    int count;
    qint64 now;
    bool shown;
};
} // namespace
Q_DECLARE_METATYPE(QVector<Step>)

class TestParkActionNotice : public QObject
{
    Q_OBJECT
private slots:
    void showsForAFewSecondsAfterANewParkAction_data()
    {
        QTest::addColumn<QVector<Step>>("steps");
        const QString a = QStringLiteral("a");
        const QString b = QStringLiteral("b");
        const qint64 show = CParkActionNotice::kShowMs;

        QTest::newRow("one more shows, then fades") << QVector<Step>{
            {a, 0, 0, false}, {a, 1, 1000, true}, {a, 1, 1000 + show - 1, true}, {a, 1, 1000 + show, false}};
        QTest::newRow("another park action restarts the time")
            << QVector<Step>{{a, 0, 0, false}, {a, 1, 100, true}, {a, 2, 3000, true}, {a, 2, 3000 + show - 1, true}};
        QTest::newRow("another camera starts over")
            << QVector<Step>{{a, 0, 0, false}, {a, 1, 100, true}, {b, 5, 200, false}, {a, 1, 300, false}};
        QTest::newRow("restarted driver is no park action")
            << QVector<Step>{{a, 4, 0, false}, {a, 0, 100, false}, {a, 1, 200, true}};
    }
    void showsForAFewSecondsAfterANewParkAction()
    {
        QFETCH(QVector<Step>, steps);
        CParkActionNotice notice;
        for (int i = 0; i < steps.size(); ++i) {
            const Step &s = steps.at(i);
            QVERIFY2(notice.Update(s.camera, s.count, s.now) == s.shown, qPrintable(QStringLiteral("step %1").arg(i)));
        }
    }
    void simulatedCameraReportsItsParkAction()
    {
        TestEnv env;
        env.setUp();
        ptz_devices::CSimulatedCamera *dome = env.camera(kDome);
        dome->setParkAction({true, 5, ptz_devices::ParkActionType::Preset});
        QTRY_VERIFY(dome->parkAction().enabled);
        // Once after the idle time, and only once per idle period.
        for (int ms : {4000, 2000, 60000}) {
            env.clock()->advance(ms);
            QCOMPARE(dome->status().parkActions, ms == 4000 ? 0 : 1);
        }
        env.tearDown();
    }
};

QTEST_MAIN(TestParkActionNotice)
#include "tst_cparkactionnotice.moc"
