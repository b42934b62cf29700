#include "ptz_devices/convifrequestqueue.h"

#include <QPointer>
#include <QTimer>

namespace ptz_devices {

COnvifRequestQueue::COnvifRequestQueue(QObject *parent)
    : QObject(parent)
{
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, [this] {
        if (!m_busy)
            return;
        finish(m_current.id, false, tr("the camera did not answer within %1 s").arg(m_timeoutMs / 1000.0), {});
        emit timedOut();
    });
}

COnvifRequestQueue::~COnvifRequestQueue() = default;

void COnvifRequestQueue::setMode(Mode mode, const QString &refusal)
{
    m_mode = mode;
    m_refusal = refusal;
    if (mode == Mode::Refusing) {
        failAll(refusal);
        return;
    }
    scheduleNext();
}

void COnvifRequestQueue::enqueue(Entry entry)
{
    if (m_mode == Mode::Refusing) {
        answerLater(entry, false, m_refusal);
        return;
    }
    if (entry.isStop) {
        // A waiting move of the same axes would only be undone by the stop.
        for (Entry &waiting : m_waiting) {
            if (waiting.isMove && (waiting.axes & ~entry.axes) == 0)
                waiting.superseded = true;
        }
    }
    m_waiting.push_back(std::move(entry));
    scheduleNext();
}

void COnvifRequestQueue::failAll(const QString &error)
{
    std::deque<Entry> waiting;
    waiting.swap(m_waiting);
    if (m_busy)
        finish(m_current.id, false, error, {});
    for (const Entry &entry : waiting) {
        DriverReply reply;
        reply.requestId = entry.id;
        reply.operation = entry.operation;
        reply.number = entry.number;
        reply.error = error;
        emit answered(reply);
    }
}

int COnvifRequestQueue::pendingCount() const
{
    return int(m_waiting.size()) + (m_busy ? 1 : 0);
}

bool COnvifRequestQueue::hasWaiting(DriverOperation operation) const
{
    if (m_busy && m_current.operation == operation)
        return true;
    for (const Entry &entry : m_waiting) {
        if (entry.operation == operation && !entry.superseded)
            return true;
    }
    return false;
}

void COnvifRequestQueue::scheduleNext()
{
    if (m_scheduled || m_busy || m_waiting.empty() || m_mode != Mode::Running)
        return;
    // Never inside the caller's request: the next pass of the event loop sends.
    m_scheduled = true;
    QTimer::singleShot(0, this, [this] {
        m_scheduled = false;
        sendNext();
    });
}

void COnvifRequestQueue::sendNext()
{
    if (m_busy || m_waiting.empty() || m_mode != Mode::Running)
        return;
    m_current = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_busy = true;
    if (m_current.superseded) {
        finish(m_current.id, true, QString(), {});
        return;
    }
    m_timer->start(m_timeoutMs);
    const quint64 id = m_current.id;
    QPointer<COnvifRequestQueue> self(this);
    m_current.send([self, id](bool ok, const QString &error, const QVariant &result) {
        if (self)
            self->finish(id, ok, error, result);
    });
}

void COnvifRequestQueue::finish(quint64 id, bool ok, const QString &error, const QVariant &result)
{
    // A late answer to a request that already failed is dropped.
    if (!m_busy || m_current.id != id)
        return;
    m_busy = false;
    m_timer->stop();
    DriverReply reply;
    reply.requestId = id;
    reply.operation = m_current.operation;
    reply.number = m_current.number;
    reply.ok = ok;
    reply.error = error;
    reply.result = result;
    m_current = Entry();
    emit answered(reply);
    scheduleNext();
}

void COnvifRequestQueue::answerLater(const Entry &entry, bool ok, const QString &error)
{
    DriverReply reply;
    reply.requestId = entry.id;
    reply.operation = entry.operation;
    reply.number = entry.number;
    reply.ok = ok;
    reply.error = error;
    QTimer::singleShot(0, this, [this, reply] { emit answered(reply); });
}

} // namespace ptz_devices
