#pragma once

#include "ptz_devices/ptz_devices_export.h"

#include <QElapsedTimer>
#include <QObject>

class QTimer;

namespace ptz_devices {

// Time source of the simulation, shared by any number of simulated cameras.
// Real time: a timer ticks every tickInterval() ms (default 20, i.e. 50 Hz)
// and now() follows the wall clock. Manual (tests): nothing moves until
// advance(ms), which steps time forward in ticks of at most tickInterval(),
// so dwell ends, park and recovery time-outs fire in order and
// deterministically. Cameras compute their own events exactly within a tick.
class PTZ_DEVICES_EXPORT CSimClock : public QObject
{
    Q_OBJECT
public:
    enum class Mode { RealTime, Manual };
    Q_ENUM(Mode)

    explicit CSimClock(Mode mode = Mode::RealTime, QObject *parent = nullptr);
    ~CSimClock() override;

    Mode mode() const { return m_mode; }
    // Milliseconds since the clock was created.
    qint64 now() const { return m_now; }

    int tickInterval() const { return m_tickInterval; }
    void setTickInterval(int ms);

    // Manual mode only; ignored (with a warning) in real time.
    void advance(qint64 ms);

Q_SIGNALS:
    // Time moved from `now - delta` to `now`.
    void ticked(qint64 now, qint64 delta);

private:
    void onTimer();
    void step(qint64 delta);

    Mode m_mode;
    qint64 m_now = 0;
    int m_tickInterval = 20;
    QTimer *m_timer = nullptr;
    QElapsedTimer m_wall;
};

} // namespace ptz_devices
