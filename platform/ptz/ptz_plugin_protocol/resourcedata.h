#pragma once

// Codes of the host's resource model that the PTZ boundary asks about.
namespace ResourceData {

// Camera abilities, as reported by the camera's driver and kept in the site store.
enum CameraAbilityType {
    ABILITY_PTZ = 1,
    ABILITY_MANUAL_TRACK = 6,
    ABILITY_FACE_CAPTURE = 26,
    ABILITY_PARK_ACTION = 33,
    ABILITY_AUTO_TRACK = 35,
    ABILITY_PATTERN = 46,
    ABILITY_PAN = 48,
    ABILITY_TILT = 49,
    ABILITY_ZOOM = 50,
};

// Per-camera permission items of a user.
enum ResourcePermissionItem {
    PERMISSION_PTZ_CONTROL = 15,
    PERMISSION_PARK_ACTION_CONFIG = 796,
};

// How the client reaches a camera.
enum AccessProtocol {
    ACCESS_PROTOCOL_UNKNOWN = 0,
    ACCESS_PROTOCOL_NO_PTZ_REFRESH = 9, // PTZ information of the camera cannot be refreshed
};

} // namespace ResourceData
