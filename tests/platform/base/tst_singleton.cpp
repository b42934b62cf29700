#include "tarn/base/singleton.h"

#include <QAtomicInt>
#include <QSet>
#include <QTest>
#include <QThread>

#include <atomic>
#include <vector>

namespace {
QAtomicInt g_constructed;

class SlowToBuild : public Tarn::Base::CSingleton<SlowToBuild>
{
public:
    SlowToBuild()
    {
        g_constructed.fetchAndAddOrdered(1);
        // Widen the window in which a second thread could slip past the first check.
        QThread::yieldCurrentThread();
        QThread::usleep(200);
    }
};
} // namespace

class TestSingleton : public QObject
{
    Q_OBJECT
private slots:
    void raceYieldsOneObject_data()
    {
        QTest::addColumn<int>("threads");
        QTest::newRow("2 threads") << 2;
        QTest::newRow("16 threads") << 16;
        QTest::newRow("64 threads") << 64;
    }
    void raceYieldsOneObject()
    {
        QFETCH(int, threads);
        SlowToBuild::DestroyInstance();
        g_constructed = 0;

        std::atomic<bool> go{false};
        std::vector<SlowToBuild *> seen(threads, nullptr);
        std::vector<QThread *> workers;
        for (int i = 0; i < threads; ++i) {
            workers.push_back(QThread::create([&, i] {
                while (!go.load())
                    QThread::yieldCurrentThread();
                seen[i] = SlowToBuild::Instance();
            }));
            workers.back()->start();
        }
        go = true;
        for (QThread *t : workers) {
            QVERIFY(t->wait(10000));
            delete t;
        }
        QSet<SlowToBuild *> distinct(seen.begin(), seen.end());
        QCOMPARE(distinct.size(), 1);
        QVERIFY(*distinct.begin() != nullptr);
        QCOMPARE(g_constructed.loadAcquire(), 1);
    }
};

QTEST_GUILESS_MAIN(TestSingleton)
#include "tst_singleton.moc"
