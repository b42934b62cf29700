#pragma once

// Internals shared by the sources of CSimulatedCamera; not installed.

#include "ptz_devices/csimulatedcamera.h"

#include <QString>

#include <cmath>
#include <functional>
#include <limits>

namespace ptz_devices {
namespace simulation {

constexpr double kDegPerSecondPerStep = 2.0;   // speed 1: 2 deg/s, speed 40: 80 deg/s
constexpr double kZoomPerSecondPerStep = 0.5;  // magnification units per second
constexpr double kLensPerSecondPerStep = 0.01; // focus and iris, fraction per second
constexpr double kFieldOfViewAtWide = 60.0;    // horizontal degrees at 1x
constexpr double kAspect = 9.0 / 16.0;
constexpr int kPresetSpeed = 40;
constexpr qint64 kMinPatternDuration = 100;
constexpr qint64 kNoEvent = std::numeric_limits<qint64>::max() / 4;

// Kinds of recorded pattern events.
enum PatternEventKind { PatternPanTilt = 1, PatternZoom = 2 };

inline double wrapPan(double pan)
{
    double p = std::fmod(pan, 360.0);
    if (p < 0.0)
        p += 360.0;
    if (p >= 360.0)
        p -= 360.0;
    return p;
}

// Signed shortest way from `from` to `to` on the pan circle, in (-180, 180].
inline double panDelta(double from, double to)
{
    double d = std::fmod(to - from, 360.0);
    if (d > 180.0)
        d -= 360.0;
    else if (d <= -180.0)
        d += 360.0;
    return d;
}

inline double approach(double value, double target, double step)
{
    if (std::abs(target - value) <= step)
        return target;
    return value + (target > value ? step : -step);
}

} // namespace simulation

struct CSimulatedCamera::Request
{
    quint64 id = 0;
    DriverOperation operation = DriverOperation::None;
    int number = 0;
    std::function<void(DriverReply &)> execute;
    qint64 readyAt = 0;
    bool fail = false;
    bool superseded = false;
    bool isStop = false;
    QString error;
};

} // namespace ptz_devices
