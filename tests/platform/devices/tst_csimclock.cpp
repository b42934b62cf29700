#include "ptz_devices/csimclock.h"

#include <QSignalSpy>
#include <QtTest>

using namespace ptz_devices;

class tst_CSimClock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void manualAdvanceStepsInTicks_data()
    {
        QTest::addColumn<int>("tick");
        QTest::addColumn<int>("advance");
        QTest::addColumn<QVector<qint64>>("deltas");

        QTest::newRow("remainder last") << 20 << 45 << QVector<qint64>{20, 20, 5};
        QTest::newRow("shorter than a tick") << 20 << 7 << QVector<qint64>{7};
        QTest::newRow("nothing") << 20 << 0 << QVector<qint64>{};
    }
    void manualAdvanceStepsInTicks()
    {
        QFETCH(int, tick);
        QFETCH(int, advance);
        QFETCH(QVector<qint64>, deltas);

        CSimClock clock(CSimClock::Mode::Manual);
        clock.setTickInterval(tick);
        clock.advance(100);
        QSignalSpy spy(&clock, &CSimClock::ticked);
        clock.advance(advance);
        QCOMPARE(spy.count(), deltas.size());
        qint64 now = 100;
        for (int i = 0; i < deltas.size(); ++i) {
            now += deltas.at(i);
            QCOMPARE(spy.at(i).at(0).toLongLong(), now);
            QCOMPARE(spy.at(i).at(1).toLongLong(), deltas.at(i));
        }
        QCOMPARE(clock.now(), 100 + advance);
    }
    void realTimeIgnoresAdvanceAndTicks()
    {
        CSimClock clock(CSimClock::Mode::RealTime);
        QSignalSpy spy(&clock, &CSimClock::ticked);
        clock.advance(100000);
        QVERIFY(clock.now() < 100000);
        QVERIFY(spy.wait(1000));
        QVERIFY(spy.last().at(0).toLongLong() > 0);
        QCOMPARE(clock.now(), spy.last().at(0).toLongLong());
    }
};

QTEST_GUILESS_MAIN(tst_CSimClock)
#include "tst_csimclock.moc"
