#pragma once

#include "ptz_plugin_protocol/ptz_plugin_protocol_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QString>

#include <vector>

namespace ptz_plugin_protocol {

// What a patrol path of one kind may hold. Device patrols take their camera's
// figures where a driver reports them (the caller narrows the defaults).
struct CruisePathLimits
{
    int max_points = 0;
    int min_speed = 0;
    int max_speed = 0;
    bool check_speed = true; // points over virtual presets carry no speed
    int min_dwell = 0;
    int max_dwell = 0;
};

PTZ_PLUGIN_PROTOCOL_EXPORT CruisePathLimits DefaultCruisePathLimits(int cruise_type);

// The one check of a patrol before it is stored or sent: slot 1..8, a known
// kind, at most the limit's points, presets 1..256, speeds and dwell times
// within the limits. Returns the first fault as a readable sentence, empty
// when the patrol may be kept.
PTZ_PLUGIN_PROTOCOL_EXPORT QString CheckCruisePath(int cruise_index, int cruise_type,
                                                   const std::vector<CruisePoint> &points,
                                                   const CruisePathLimits &limits);
PTZ_PLUGIN_PROTOCOL_EXPORT QString CheckCruisePath(int cruise_index, int cruise_type,
                                                   const std::vector<CruisePoint> &points);
// The points alone, for callers that have checked slot and kind already.
PTZ_PLUGIN_PROTOCOL_EXPORT QString CheckCruisePoints(const std::vector<CruisePoint> &points,
                                                     const CruisePathLimits &limits);

} // namespace ptz_plugin_protocol
