#include "ptz_devices/convifrequestqueue.h"

#include <QtTest>

#include <functional>

using namespace ptz_devices;
using Queue = COnvifRequestQueue;

// The ordered queue of a network camera, with requests the test answers by hand.
class tst_COnvifRequestQueue : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Queue> m_queue;
    QVector<DriverReply> m_answers;
    QVector<quint64> m_sent;
    QHash<quint64, Queue::Completion> m_onWire;
    quint64 m_nextId = 1;

    quint64 add(DriverOperation operation, int axes = Queue::NoAxis, bool isStop = false, bool isMove = false)
    {
        Queue::Entry entry;
        entry.id = m_nextId++;
        entry.operation = operation;
        entry.axes = axes;
        entry.isStop = isStop;
        entry.isMove = isMove;
        const quint64 id = entry.id;
        entry.send = [this, id](const Queue::Completion &done) {
            m_sent << id;
            m_onWire.insert(id, done);
        };
        m_queue->enqueue(entry);
        return id;
    }
    quint64 move(int axes)
    {
        return add(axes == Queue::ZoomAxis ? DriverOperation::Zoom : DriverOperation::MovePanTilt, axes, false, true);
    }
    quint64 stop(int axes) { return add(DriverOperation::StopPanTilt, axes, true, false); }
    void answer(quint64 id, bool ok = true)
    {
        QTRY_VERIFY(m_onWire.contains(id));
        m_onWire.take(id)(ok, ok ? QString() : QStringLiteral("refused"), QVariant());
    }
    QVector<quint64> answeredIds() const
    {
        QVector<quint64> ids;
        for (const DriverReply &r : m_answers)
            ids << r.requestId;
        return ids;
    }

private Q_SLOTS:
    void init()
    {
        m_queue = std::make_unique<Queue>();
        m_answers.clear();
        m_sent.clear();
        m_onWire.clear();
        connect(m_queue.get(), &Queue::answered, this, [this](const DriverReply &r) { m_answers << r; });
        m_queue->setMode(Queue::Mode::Running);
    }

    void stopSupersedesWaitingMovesOfItsAxes_data()
    {
        QTest::addColumn<int>("moveAxes");
        QTest::addColumn<int>("stopAxes");
        QTest::addColumn<bool>("superseded");
        QTest::newRow("pan stop, pan move") << int(Queue::PanTiltAxis) << int(Queue::PanTiltAxis) << true;
        QTest::newRow("zoom stop, zoom move") << int(Queue::ZoomAxis) << int(Queue::ZoomAxis) << true;
        QTest::newRow("stop all, zoom move")
            << int(Queue::ZoomAxis) << int(Queue::PanTiltAxis | Queue::ZoomAxis) << true;
        QTest::newRow("pan stop, zoom move") << int(Queue::ZoomAxis) << int(Queue::PanTiltAxis) << false;
        QTest::newRow("zoom stop, pan move") << int(Queue::PanTiltAxis) << int(Queue::ZoomAxis) << false;
    }
    void stopSupersedesWaitingMovesOfItsAxes()
    {
        QFETCH(int, moveAxes);
        QFETCH(int, stopAxes);
        QFETCH(bool, superseded);
        const quint64 first = add(DriverOperation::ListPresets); // keeps the wire busy
        const quint64 waiting = move(moveAxes);
        const quint64 halt = stop(stopAxes);
        answer(first);
        if (!superseded)
            answer(waiting);
        answer(halt);
        QTRY_COMPARE(m_answers.size(), 3);
        QCOMPARE(answeredIds(), (QVector<quint64>{first, waiting, halt}));
        QCOMPARE(m_sent.contains(waiting), !superseded);
        QVERIFY(m_answers.at(1).ok);
    }

    void answersNeverInsideTheCall()
    {
        m_queue->setMode(Queue::Mode::Refusing, QStringLiteral("the camera cannot be reached"));
        const quint64 id = add(DriverOperation::ListPresets);
        QVERIFY(m_answers.isEmpty());
        QTRY_COMPARE(m_answers.size(), 1);
        QCOMPARE(m_answers.first().requestId, id);
        QCOMPARE(m_answers.first().error, QStringLiteral("the camera cannot be reached"));
        QVERIFY(m_sent.isEmpty());
    }

    void silentRequestFailsOnceAndLateAnswerIsDropped()
    {
        m_queue->setTimeout(20);
        QSignalSpy timedOut(m_queue.get(), &Queue::timedOut);
        const quint64 id = add(DriverOperation::GetStatus);
        QTRY_COMPARE(timedOut.count(), 1);
        QCOMPARE(m_answers.size(), 1);
        QVERIFY(!m_answers.first().ok);
        m_onWire.take(id)(true, QString(), QVariant());
        const quint64 next = add(DriverOperation::GetStatus);
        answer(next);
        QTRY_COMPARE(answeredIds(), (QVector<quint64>{id, next}));
    }

    void failAllAnswersWireAndWaitingInOrder()
    {
        const quint64 a = add(DriverOperation::ListPresets);
        const quint64 b = move(Queue::PanTiltAxis);
        const quint64 c = stop(Queue::PanTiltAxis);
        QTRY_COMPARE(m_sent.size(), 1);
        m_queue->failAll(QStringLiteral("lost"));
        QCOMPARE(answeredIds(), (QVector<quint64>{a, b, c}));
        for (const DriverReply &r : m_answers)
            QCOMPARE(r.error, QStringLiteral("lost"));
        m_onWire.take(a)(true, QString(), QVariant());
        QCOMPARE(m_answers.size(), 3);
    }
};

QTEST_GUILESS_MAIN(tst_COnvifRequestQueue)
#include "tst_convifrequestqueue.moc"
