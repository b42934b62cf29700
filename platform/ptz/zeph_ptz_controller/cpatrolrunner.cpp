#include "zeph_ptz_controller/cpatrolrunner.h"

namespace zeph_ptz_controller {

CPatrolRunner::CPatrolRunner(Target target, QObject *owner)
    : m_target(std::move(target))
    , m_dwell_timer(new QTimer(owner))
{
    m_dwell_timer->setSingleShot(true);
    QObject::connect(m_dwell_timer, &QTimer::timeout, m_dwell_timer, [this] {
        if (IsRunning())
            Visit(m_point + 1);
    });
}

CPatrolRunner::~CPatrolRunner()
{
    // The owner deletes the timer after its members; it must not call back into a runner that is gone.
    m_dwell_timer->disconnect();
    m_dwell_timer->stop();
}

void CPatrolRunner::Start(int cruise_index, const std::vector<ptz_plugin_protocol::CruisePoint> &points)
{
    m_points = points;
    m_patrol = m_points.empty() ? 0 : cruise_index;
    m_point = -1;
    m_dwell_timer->stop();
    if (IsRunning())
        Visit(0);
}

int CPatrolRunner::Stop()
{
    const int stopped = m_patrol;
    m_patrol = 0;
    m_point = -1;
    m_points.clear();
    m_dwell_timer->stop();
    return stopped;
}

void CPatrolRunner::Visit(int index)
{
    m_point = index % int(m_points.size());
    const ptz_plugin_protocol::CruisePoint point = m_points[size_t(m_point)];
    if (m_target)
        m_target(point);
    // The target may have stopped the patrol.
    if (IsRunning())
        m_dwell_timer->start(point.dwell_time * 1000);
}

} // namespace zeph_ptz_controller
