#pragma once

// Limits of the records exchanged at the boundary, whatever a device reports
// beyond them. The panel, the controller library and the host all read them
// from here.
namespace ptz_plugin_protocol {

// Preset numbers of one camera; device, fish-eye and virtual presets alike.
constexpr int kMinPresetIndex = 1;
constexpr int kMaxPresetIndex = 256;

// Patrol slots of one camera, and points on one patrol path.
constexpr int kMinCruiseIndex = 1;
constexpr int kMaxCruiseIndex = 8;
constexpr int kMaxCruisePoints = 32;

// Pattern slots of one camera.
constexpr int kMaxPatternCount = 4;

// Speed of moves, zoom, focus, iris and patrol points.
constexpr int kMinSpeed = 1;
constexpr int kMaxSpeed = 40;
constexpr int kDefaultSpeed = 20;

// Dwell time of a patrol point, in seconds, by patrol kind; device patrols
// take the range their camera reports.
constexpr int kSoftwareMinDwell = 2;
constexpr int kSoftwareMaxDwell = 30;
constexpr int kVirtualMinDwell = 15;
constexpr int kVirtualMaxDwell = 30;

// PTZ lock duration, in seconds.
constexpr int kDefaultLockSeconds = 300;
constexpr int kMaxLockSeconds = 3600;

// Idle time before a park action, in seconds.
constexpr int kMinParkWaitSeconds = 5;
constexpr int kMaxParkWaitSeconds = 720;

// Characters of a preset name, counted as code points.
constexpr int kMaxPresetNameLength = 64;

static_assert(kMinSpeed <= kDefaultSpeed && kDefaultSpeed <= kMaxSpeed, "default speed outside the range");
static_assert(kVirtualMinDwell >= kSoftwareMinDwell && kVirtualMaxDwell <= kSoftwareMaxDwell,
              "virtual dwell range must lie within the software one");

} // namespace ptz_plugin_protocol
