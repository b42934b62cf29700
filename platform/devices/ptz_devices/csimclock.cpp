#include "ptz_devices/csimclock.h"

#include "tarn/base/logging.h"

#include <QTimer>

namespace ptz_devices {

CSimClock::CSimClock(Mode mode, QObject *parent)
    : QObject(parent)
    , m_mode(mode)
{
    if (m_mode == Mode::RealTime) {
        m_timer = new QTimer(this);
        m_timer->setTimerType(Qt::PreciseTimer);
        m_timer->setInterval(m_tickInterval);
        connect(m_timer, &QTimer::timeout, this, &CSimClock::onTimer);
        m_wall.start();
        m_timer->start();
    }
}

CSimClock::~CSimClock() = default;

void CSimClock::setTickInterval(int ms)
{
    m_tickInterval = qMax(1, ms);
    if (m_timer)
        m_timer->setInterval(m_tickInterval);
}

void CSimClock::advance(qint64 ms)
{
    if (m_mode != Mode::Manual) {
        ZEPH_LOG_WARN("advance ignored on a real-time clock");
        return;
    }
    while (ms > 0) {
        const qint64 delta = qMin<qint64>(ms, m_tickInterval);
        ms -= delta;
        step(delta);
    }
}

void CSimClock::onTimer()
{
    const qint64 wallNow = m_wall.elapsed();
    if (wallNow > m_now)
        step(wallNow - m_now);
}

void CSimClock::step(qint64 delta)
{
    m_now += delta;
    emit ticked(m_now, delta);
}

} // namespace ptz_devices
