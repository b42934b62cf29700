#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QtMath>

namespace zeph_ptz_controller {

CSimpleFishEyeController::CSimpleFishEyeController(int wnd_count, QObject *parent)
    : IPTZFishEyeController(parent)
    , m_views(qMax(1, wnd_count))
{
}

CSimpleFishEyeController::~CSimpleFishEyeController() = default;

bool CSimpleFishEyeController::IsFishEyeWndOpen() const
{
    return m_open;
}

void CSimpleFishEyeController::SetFishEyeWndOpen(bool open)
{
    if (m_open == open)
        return;
    m_open = open;
    emit SignalFishEyeWndOpen(open);
}

int CSimpleFishEyeController::GetSelectedWnd() const
{
    return m_selected;
}

int CSimpleFishEyeController::GetWndCount() const
{
    return m_views.size();
}

void CSimpleFishEyeController::SetSelectedWnd(int wnd)
{
    wnd = qBound(0, wnd, m_views.size() - 1);
    if (wnd == m_selected)
        return;
    m_selected = wnd;
    emit SignalFishEyeSelectedWndChanged();
}

bool CSimpleFishEyeController::IsSelectedWndAutoPanning() const
{
    return m_views.at(m_selected).auto_panning;
}

bool CSimpleFishEyeController::IsSelectedWndPatrolling(int &cruise_index) const
{
    const View &view = m_views.at(m_selected);
    if (view.cruise_index <= 0)
        return false;
    cruise_index = view.cruise_index;
    return true;
}

void CSimpleFishEyeController::SetSelectedWndAutoPanning(bool on)
{
    m_views[m_selected].auto_panning = on;
}

void CSimpleFishEyeController::SetSelectedWndPatrolling(bool on, int cruise_index)
{
    m_views[m_selected].cruise_index = on ? cruise_index : -1;
}

void CSimpleFishEyeController::SetSemisphereFishEyePTZPos(double pan, double tilt, double zoom)
{
    View &view = m_views[m_selected];
    pan = std::fmod(pan, 360.0);
    if (pan < 0)
        pan += 360.0;
    tilt = qBound(-90.0, tilt, 0.0);
    zoom = qBound(1.0, zoom, 8.0);
    if (view.pan == pan && view.tilt == tilt && view.zoom == zoom)
        return;
    view.pan = pan;
    view.tilt = tilt;
    view.zoom = zoom;
    emit SignalFishEyePTZPosChanged(pan, tilt, zoom);
}

void CSimpleFishEyeController::GetSemisphereFishEyePTZPos(double &pan, double &tilt, double &zoom) const
{
    const View &view = m_views.at(m_selected);
    pan = view.pan;
    tilt = view.tilt;
    zoom = view.zoom;
}

bool CSimpleFishEyeController::GetWndPTZPos(int wnd, double &pan, double &tilt, double &zoom) const
{
    if (wnd < 0 || wnd >= m_views.size())
        return false;
    const View &view = m_views.at(wnd);
    pan = view.pan;
    tilt = view.tilt;
    zoom = view.zoom;
    return true;
}

} // namespace zeph_ptz_controller
