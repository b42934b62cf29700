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

        QTest::newRow("first sighting shows nothing") << QVector<Step>{{a, 3, 0, false}, {a, 3, 100, false}};
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
        ptz_devices::ParkAction park;
        park.enabled = true;
        park.waitingSeconds = 5;
        park.type = ptz_devices::ParkActionType::Preset;
        dome->setParkAction(park);
        QTRY_VERIFY(dome->parkAction().enabled);

        CParkActionNotice notice;
        QVERIFY(!notice.Update(kDome, dome->status().parkActions, 0));
        env.clock()->advance(4000);
        QCOMPARE(dome->status().parkActions, 0);
        env.clock()->advance(2000);
        QCOMPARE(dome->status().parkActions, 1);
        QVERIFY(notice.Update(kDome, dome->status().parkActions, 10));
        env.clock()->advance(60000); // park fires once per idle period
        QCOMPARE(dome->status().parkActions, 1);
        env.tearDown();
    }
};

QTEST_MAIN(TestParkActionNotice)
#include "tst_cparkactionnotice.moc"
