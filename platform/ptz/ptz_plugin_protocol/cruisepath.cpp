#include "ptz_plugin_protocol/cruisepath.h"

#include "ptz_plugin_protocol/ptzlimits.h"

#include <QCoreApplication>

namespace ptz_plugin_protocol {

namespace {
QString Tr(const char *text)
{
    return QCoreApplication::translate("ptz_plugin_protocol", text);
}

bool IsCruiseType(int type)
{
    return type == CRUISE_TYPE_DEVICE || type == CRUISE_TYPE_SOFTWARE || type == CRUISE_TYPE_VIRTUAL;
}

QString CheckPoint(const CruisePoint &p, size_t position, const CruisePathLimits &limits)
{
    const int number = int(position) + 1;
    if (p.preset_index < uint32_t(kMinPresetIndex) || p.preset_index > uint32_t(kMaxPresetIndex))
        return Tr("Point %1 names preset %2; presets are numbered %3 to %4.")
            .arg(number)
            .arg(p.preset_index)
            .arg(kMinPresetIndex)
            .arg(kMaxPresetIndex);
    if (limits.check_speed && (p.speed < limits.min_speed || p.speed > limits.max_speed))
        return Tr("The speed %1 of point %2 is outside %3 to %4.")
            .arg(p.speed)
            .arg(number)
            .arg(limits.min_speed)
            .arg(limits.max_speed);
    if (p.dwell_time < limits.min_dwell || p.dwell_time > limits.max_dwell)
        return Tr("The dwell time %1 s of point %2 is outside %3 to %4 s.")
            .arg(p.dwell_time)
            .arg(number)
            .arg(limits.min_dwell)
            .arg(limits.max_dwell);
    return QString();
}
} // namespace

CruisePathLimits DefaultCruisePathLimits(int cruise_type)
{
    CruisePathLimits limits;
    limits.max_points = kMaxCruisePoints;
    limits.min_speed = kMinSpeed;
    limits.max_speed = kMaxSpeed;
    switch (cruise_type) {
    case CRUISE_TYPE_VIRTUAL:
        limits.check_speed = false;
        limits.min_dwell = kVirtualMinDwell;
        limits.max_dwell = kVirtualMaxDwell;
        break;
    case CRUISE_TYPE_SOFTWARE:
        limits.min_dwell = kSoftwareMinDwell;
        limits.max_dwell = kSoftwareMaxDwell;
        break;
    default:
        // A device without a driver to ask: the widest range any of our cameras offers.
        limits.min_dwell = 1;
        limits.max_dwell = kSoftwareMaxDwell;
        break;
    }
    return limits;
}

QString CheckCruisePath(int cruise_index, int cruise_type, const std::vector<CruisePoint> &points,
                        const CruisePathLimits &limits)
{
    if (cruise_index < kMinCruiseIndex || cruise_index > kMaxCruiseIndex)
        return Tr("The patrol number %1 is outside %2 to %3.")
            .arg(cruise_index)
            .arg(kMinCruiseIndex)
            .arg(kMaxCruiseIndex);
    if (!IsCruiseType(cruise_type))
        return Tr("Unknown patrol type %1.").arg(cruise_type);
    return CheckCruisePoints(points, limits);
}

QString CheckCruisePoints(const std::vector<CruisePoint> &points, const CruisePathLimits &limits)
{
    if (int(points.size()) > limits.max_points)
        return Tr("A patrol holds at most %1 points, not %2.").arg(limits.max_points).arg(int(points.size()));
    for (size_t i = 0; i < points.size(); ++i) {
        const QString fault = CheckPoint(points[i], i, limits);
        if (!fault.isEmpty())
            return fault;
    }
    return QString();
}

QString CheckCruisePath(int cruise_index, int cruise_type, const std::vector<CruisePoint> &points)
{
    return CheckCruisePath(cruise_index, cruise_type, points, DefaultCruisePathLimits(cruise_type));
}

} // namespace ptz_plugin_protocol
