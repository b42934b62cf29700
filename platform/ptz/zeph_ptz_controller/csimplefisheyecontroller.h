#pragma once

#include "zeph_ptz_controller/iptzfisheyecontroller.h"
#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include <QVector>

namespace zeph_ptz_controller {

// A fish-eye view controller that only keeps state: a number of sub-views,
// each with its direction, auto-pan and patrol marks. Hosts whose live view
// does the dewarping itself wire its user actions to the setters.
class ZEPH_PTZ_CONTROLLER_EXPORT CSimpleFishEyeController : public IPTZFishEyeController
{
    Q_OBJECT
public:
    explicit CSimpleFishEyeController(int wnd_count = 4, QObject *parent = nullptr);
    ~CSimpleFishEyeController() override;

    bool IsFishEyeWndOpen() const override;
    void SetFishEyeWndOpen(bool open) override;

    int GetSelectedWnd() const override;
    bool IsSelectedWndAutoPanning() const override;
    bool IsSelectedWndPatrolling(int &cruise_index) const override;
    void SetSelectedWndAutoPanning(bool on) override;
    void SetSelectedWndPatrolling(bool on, int cruise_index) override;

    void SetSemisphereFishEyePTZPos(double pan, double tilt, double zoom) override;
    void GetSemisphereFishEyePTZPos(double &pan, double &tilt, double &zoom) const override;

    int GetWndCount() const;
    // Selects a sub-view (clamped to the existing ones); emits
    // SignalFishEyeSelectedWndChanged when it changes.
    void SetSelectedWnd(int wnd);
    // Direction of any sub-view, for hosts that paint them all; false for a bad index.
    bool GetWndPTZPos(int wnd, double &pan, double &tilt, double &zoom) const;

private:
    struct View
    {
        double pan = 0.0;
        double tilt = -45.0;
        double zoom = 1.0;
        bool auto_panning = false;
        int cruise_index = -1;
    };

    bool m_open = false;
    int m_selected = 0;
    QVector<View> m_views;
};

} // namespace zeph_ptz_controller
