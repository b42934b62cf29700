#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include <QObject>

namespace zeph_ptz_controller {

// The live view's fish-eye picture as the PTZ panel sees it: whether the
// dewarped (software PTZ) view is open, which of its sub-views is selected,
// and where that sub-view looks. The live view implements it; the panel and
// the software PTZ controller only talk to this interface.
class ZEPH_PTZ_CONTROLLER_EXPORT IPTZFishEyeController : public QObject
{
    Q_OBJECT
public:
    explicit IPTZFishEyeController(QObject *parent = nullptr);
    ~IPTZFishEyeController() override;

    virtual bool IsFishEyeWndOpen() const = 0;
    virtual void SetFishEyeWndOpen(bool open) = 0;

    // The selected sub-view: its index, whether it auto-pans, and whether it
    // patrols (with the 1-based patrol number as out-value).
    virtual int GetSelectedWnd() const = 0;
    virtual bool IsSelectedWndAutoPanning() const = 0;
    virtual bool IsSelectedWndPatrolling(int &cruise_index) const = 0;

    // Bookkeeping of the software PTZ controller on the selected sub-view.
    virtual void SetSelectedWndAutoPanning(bool on) = 0;
    virtual void SetSelectedWndPatrolling(bool on, int cruise_index) = 0;

    // View direction of the selected sub-view on the hemisphere: pan 0..360
    // degrees, tilt -90 (straight down) .. 0 (horizon), zoom 1..8.
    virtual void SetSemisphereFishEyePTZPos(double pan, double tilt, double zoom) = 0;
    virtual void GetSemisphereFishEyePTZPos(double &pan, double &tilt, double &zoom) const = 0;

Q_SIGNALS:
    void SignalFishEyeWndOpen(bool open);
    void SignalFishEyeSelectedWndChanged();
    // The selected sub-view's direction changed.
    void SignalFishEyePTZPosChanged(double pan, double tilt, double zoom);
};

} // namespace zeph_ptz_controller
