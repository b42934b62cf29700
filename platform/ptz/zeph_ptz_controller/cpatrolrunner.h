#pragma once

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QTimer>

#include <functional>
#include <vector>

namespace zeph_ptz_controller {

// Runs one patrol in the client: visits its points in turn, dwells at each
// for the point's dwell time and goes round until stopped. What a visit does
// is the owner's (turn a fish-eye view, zoom into the live picture).
class CPatrolRunner
{
public:
    using Target = std::function<void(const ptz_plugin_protocol::CruisePoint &point)>;

    // The dwell timer is a child of owner, so the owner's object tree shows it.
    CPatrolRunner(Target target, QObject *owner);
    ~CPatrolRunner();

    // Replaces a running patrol without a stop; visits the first point at once.
    void Start(int cruise_index, const std::vector<ptz_plugin_protocol::CruisePoint> &points);
    // The patrol that was stopped, 0 when none ran.
    int Stop();

    bool IsRunning() const { return m_patrol > 0; }
    int Patrol() const { return m_patrol; }
    // Index of the point being visited, -1 when no patrol runs.
    int PointIndex() const { return m_point; }

private:
    void Visit(int index);

    Target m_target;
    int m_patrol = 0;
    int m_point = -1;
    std::vector<ptz_plugin_protocol::CruisePoint> m_points;
    QTimer *m_dwell_timer = nullptr;
};

} // namespace zeph_ptz_controller
