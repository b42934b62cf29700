#pragma once

#include "ptz_devices/ptz_devices_export.h"
#include "ptz_devices/ptzdevicetypes.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <deque>
#include <functional>

class QTimer;

namespace ptz_devices {

// The ordered request queue of one network camera: one request on the wire at
// a time, in the order they were made. A stop is never dropped or overtaken;
// it answers a still-waiting move of the same axes as done, without sending
// it. Every request is answered exactly once, never inside the call that made
// it, and fails when the camera gives no answer within the timeout.
class PTZ_DEVICES_EXPORT COnvifRequestQueue : public QObject
{
    Q_OBJECT
public:
    enum Axis { NoAxis = 0, PanTiltAxis = 1, ZoomAxis = 2, FocusAxis = 4, IrisAxis = 8 };
    // Answers the request: ok, or a readable error; `result` as in DriverReply.
    using Completion = std::function<void(bool ok, const QString &error, const QVariant &result)>;
    using Sender = std::function<void(const Completion &done)>;

    struct Entry
    {
        quint64 id = 0;
        DriverOperation operation = DriverOperation::None;
        int number = 0;
        int axes = NoAxis; // axes a move or stop acts on
        bool isStop = false;
        bool isMove = false;
        bool superseded = false; // answered as done in its turn, never sent
        Sender send;
    };

    // Holding: requests wait (while connecting). Running: they are sent.
    // Refusing: they fail at once with the refusal text (while disconnected).
    enum class Mode { Holding, Running, Refusing };

    explicit COnvifRequestQueue(QObject *parent = nullptr);
    ~COnvifRequestQueue() override;

    void setTimeout(int ms) { m_timeoutMs = ms; }
    int timeout() const { return m_timeoutMs; }
    void setMode(Mode mode, const QString &refusal = QString());
    Mode mode() const { return m_mode; }

    void enqueue(Entry entry);
    // Fails the request on the wire and every waiting one.
    void failAll(const QString &error);
    int pendingCount() const;
    bool hasWaiting(DriverOperation operation) const;

Q_SIGNALS:
    void answered(const ptz_devices::DriverReply &reply);
    // The request on the wire got no answer in time (already failed).
    void timedOut();

private:
    void scheduleNext();
    void sendNext();
    void finish(quint64 id, bool ok, const QString &error, const QVariant &result);
    void answerLater(const Entry &entry, bool ok, const QString &error);

    std::deque<Entry> m_waiting;
    Entry m_current;
    bool m_busy = false;
    bool m_scheduled = false;
    Mode m_mode = Mode::Holding;
    QString m_refusal;
    int m_timeoutMs = 5000;
    QTimer *m_timer = nullptr;
};

} // namespace ptz_devices
