#pragma once

#include "ptz_plugin_protocol/ptz_plugin_protocol_export.h"

#include <QMetaType>
#include <QObject>
#include <QVector>

#include <cstdint>
#include <list>
#include <string>
#include <vector>

// Records exchanged between the PTZ panel, the PTZ controller library and the
// host. Text members are UTF-8 byte strings; numbers are plain integers so the
// records stay cheap to copy across queued connections.
namespace ptz_plugin_protocol {
Q_NAMESPACE_EXPORT(PTZ_PLUGIN_PROTOCOL_EXPORT)

// Kind of a patrol slot. Any value other than the three kinds marks an empty slot.
enum CruiseType {
    CRUISE_TYPE_NONE = 0,
    CRUISE_TYPE_DEVICE = 1,   // stored and run by the camera
    CRUISE_TYPE_SOFTWARE = 2, // software PTZ on a fish-eye picture
    CRUISE_TYPE_VIRTUAL = 3,  // patrol over the client's virtual presets
};
Q_ENUM_NS(CruiseType)

enum PTZPresetType {
    PRESET_TYPE_INVALID = -1,
    PRESET_TYPE_DEVICE = 1,
    PRESET_TYPE_FISHEYE = 2,
    PRESET_TYPE_VIRTUAL = 3,
};
Q_ENUM_NS(PTZPresetType)

// Command codes carried in PTZControlCommand::command.
enum PTZCommandCode : uint32_t {
    PTZ_CMD_LIGHT = 2,
    PTZ_CMD_WIPER = 3,
    PTZ_CMD_ZOOM_IN = 11,
    PTZ_CMD_ZOOM_OUT = 12,
    PTZ_CMD_FOCUS_NEAR = 13,
    PTZ_CMD_FOCUS_FAR = 14,
    PTZ_CMD_IRIS_OPEN = 15,
    PTZ_CMD_IRIS_CLOSE = 16,
    PTZ_CMD_TILT_UP = 21,
    PTZ_CMD_TILT_DOWN = 22,
    PTZ_CMD_PAN_LEFT = 23,
    PTZ_CMD_PAN_RIGHT = 24,
    PTZ_CMD_UP_LEFT = 25,
    PTZ_CMD_UP_RIGHT = 26,
    PTZ_CMD_DOWN_LEFT = 27,
    PTZ_CMD_DOWN_RIGHT = 28,
    PTZ_CMD_AUTO_PAN = 29,
    PTZ_CMD_PATTERN_RECORD_START = 34,
    PTZ_CMD_PATTERN_RECORD_STOP = 35,
    PTZ_CMD_PATTERN_RUN = 36,
    PTZ_CMD_CRUISE_START = 37, // software and virtual patrol controllers only
    PTZ_CMD_CRUISE_STOP = 38,  // software and virtual patrol controllers only
    PTZ_CMD_STOP_RUNNING = 44, // stops a playing pattern or a running patrol
    PTZ_CMD_PATTERN_DELETE = 45,
    PTZ_CMD_LOCK = 200,
    PTZ_CMD_UNLOCK = 201,
    PTZ_CMD_ONE_KEY_FOCUS = 206,
    PTZ_CMD_LENS_INIT = 207,
};

enum PTZAction : uint32_t {
    PTZ_ACTION_START = 0,
    PTZ_ACTION_STOP = 1,
};

// One device command. The same record comes back in the success signal with
// `param` filled in (pattern number for 34-36/44/45, lock seconds for 200).
struct PTZControlCommand
{
    std::string camera_index_code;
    std::string owner_index_code; // echoed, identifies the panel that sent it
    uint32_t command = 0;
    uint32_t action = 0; // 0 start, 1 stop
    int32_t speed = 0;   // 1..40 for moves, zoom, focus, iris and auto pan
    int32_t param = 0;   // pattern number, lock duration in seconds
    int32_t channel = 1; // video channel of the device, 1-based
    int32_t extra = 1;   // caller's flag, forwarded unchanged
};

struct PresetInfo
{
    int32_t preset_index = -1; // 1..256
    int32_t preset_type = PRESET_TYPE_INVALID;
    std::string preset_name;
    int32_t reserved = 0; // 1: a preset the device keeps for itself; no edit, delete or patrol use
    // Position of a virtual or fish-eye preset (degrees, zoom factor); unused for device presets.
    double pan = 0.0;
    double tilt = 0.0;
    double zoom = 1.0;
};

struct PresetControlRequest
{
    std::string operation; // "SetPreset", "GotoPreset" or "DelPreset"
    std::string camera_index_code;
    std::string owner_index_code;
    int32_t preset_index = -1;
    std::string preset_name; // "SetPreset" only
};

struct CruisePoint
{
    uint32_t preset_index = 0; // 1-based
    int32_t speed = 0;         // 1..40
    int32_t dwell_time = 0;    // seconds
    std::string preset_name;   // filled on points read back
};

struct CruiseInfo
{
    int32_t cruise_index = -1; // 1-based slot number, 1..8
    std::string cruise_name;
    int32_t cruise_type = CRUISE_TYPE_NONE;
    std::string cruise_id; // the store's key of a client-kept patrol; empty for device patrols
    std::vector<CruisePoint> points;
};

struct CruiseControlRequest
{
    std::string camera_index_code;
    std::string camera_name;
    std::string operation;           // "CruiseRouteControl", "DelCruiseRoute" or "ModifyCruiseRoute"
    int32_t cruise_index = -1;       // 1-based
    int32_t action = 0;              // "CruiseRouteControl": 0 start, 1 stop; otherwise the CruiseType
    std::vector<CruisePoint> points; // "ModifyCruiseRoute"
};

struct GetCruiseRouteResponse
{
    std::string camera_index_code;
    int32_t cruise_index = -1;
    std::string cruise_name;
    int32_t cruise_type = CRUISE_TYPE_NONE;
    std::vector<CruisePoint> points;
};

// Park action: what the camera does by itself after being idle for wait_time.
struct SetParkActionRequest
{
    std::string camera_index_code;
    bool enabled = false;
    int32_t wait_time = 5;   // seconds, 5..720
    int32_t action_type = 5; // 5 preset (target 0: the current view), 3 patrol
    int32_t target_id = 0;   // preset or patrol number
};

struct GetParkActionRequest
{
    std::string camera_index_code;
};

struct GetParkActionResponse
{
    std::string camera_index_code;
    bool enabled = false;
    int32_t wait_time = 5;
    int32_t action_type = 5;
    int32_t target_id = 0;
};

// Patrol recovery: resume an interrupted patrol after wait_time seconds.
struct SetPatrolRecoverConfigRequest
{
    std::string camera_index_code;
    bool enabled = false;
    int32_t wait_time = 0; // 15, 30, 45, 60, 90 or 120; 0 when disabled
};

struct GetPatrolRecoverConfigRequest
{
    std::string camera_index_code;
};

struct GetPatrolRecoverConfigResponse
{
    std::string camera_index_code;
    bool enabled = false;
    int32_t wait_time = 0;
};

struct SetAutoTrackRequest
{
    std::string camera_index_code;
    int32_t enable = 0; // 1 on, 0 off
};

struct GetAutoTrackRequest
{
    std::string camera_index_code;
};

struct GetUserPtzPermRequest
{
    std::string user_id;
};

struct GetUserPtzPermResponse
{
    int32_t ptz_level = -1; // higher outranks lower
};

struct PTZLockStatusRequest
{
    std::string camera_index_code;
};

struct PTZLockStatusResponse
{
    int32_t locked = 0;                  // 1 locked
    int32_t remaining_time = 0;          // seconds, 0..3600
    std::string user_name;               // holder
    std::string user_detail;             // shown in parentheses after the holder's name
    int32_t ptz_level = -1;              // holder's level
    bool locked_by_other_client = false; // holder is this user, but on another client
};

struct GetPresetRequest
{
    std::string camera_index_code;
    int32_t preset_type = PRESET_TYPE_INVALID; // -1: every type
};

struct GetPresetResponse
{
    std::vector<PresetInfo> presets;
    std::string error_text;
};

struct AddPresetRequest
{
    std::string camera_index_code;
    PresetInfo preset;
};

struct AddPresetResponse
{
    int32_t preset_index = -1;
    std::string error_text;
};

struct UpdatePresetRequest
{
    std::string camera_index_code;
    PresetInfo preset;
};

struct UpdatePresetResponse
{
    std::string error_text;
};

struct DeletePresetRequest
{
    std::string camera_index_code;
    int32_t preset_index = -1;
    int32_t preset_type = PRESET_TYPE_INVALID;
};

struct DeletePresetResponse
{
    std::string error_text;
};

struct GetCruisesRequest
{
    std::string camera_index_code;
};

struct GetCruiseResponse
{
    std::vector<CruiseInfo> cruises;
    std::string error_text;
};

struct AddCruiseRequest
{
    std::string camera_index_code;
    std::string cruise_name;
    int32_t cruise_index = -1;
    int32_t cruise_type = CRUISE_TYPE_NONE;
    std::vector<CruisePoint> points;
};

struct AddCruiseResponse
{
    std::string cruise_id;
    std::string error_text;
};

struct UpdateCruiseRequest
{
    std::string camera_index_code;
    std::string cruise_name;
    std::string cruise_id;
    int32_t cruise_index = -1;
    int32_t cruise_type = CRUISE_TYPE_NONE;
    std::vector<CruisePoint> points;
};

struct UpdateCruiseResponse
{
    std::string error_text;
};

struct DeleteCruiseRequest
{
    std::string camera_index_code;
    std::string cruise_id;
    int32_t cruise_index = -1;
};

struct DeleteCruiseResponse
{
    std::string error_text;
};

// Registers every record (and the containers signals carry) with the meta-type
// system; safe to call more than once. The controller library calls it itself.
PTZ_PLUGIN_PROTOCOL_EXPORT void registerMetaTypes();

} // namespace ptz_plugin_protocol

Q_DECLARE_METATYPE(ptz_plugin_protocol::PTZControlCommand)
Q_DECLARE_METATYPE(ptz_plugin_protocol::PresetInfo)
Q_DECLARE_METATYPE(ptz_plugin_protocol::PresetControlRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::CruisePoint)
Q_DECLARE_METATYPE(ptz_plugin_protocol::CruiseInfo)
Q_DECLARE_METATYPE(ptz_plugin_protocol::CruiseControlRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetCruiseRouteResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::SetParkActionRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetParkActionRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetParkActionResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::SetPatrolRecoverConfigRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetPatrolRecoverConfigRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetPatrolRecoverConfigResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::SetAutoTrackRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetAutoTrackRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetUserPtzPermRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetUserPtzPermResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::PTZLockStatusRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::PTZLockStatusResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetPresetRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetPresetResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::AddPresetRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::AddPresetResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::UpdatePresetRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::UpdatePresetResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::DeletePresetRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::DeletePresetResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetCruisesRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::GetCruiseResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::AddCruiseRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::AddCruiseResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::UpdateCruiseRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::UpdateCruiseResponse)
Q_DECLARE_METATYPE(ptz_plugin_protocol::DeleteCruiseRequest)
Q_DECLARE_METATYPE(ptz_plugin_protocol::DeleteCruiseResponse)
// QVector, std::vector and std::list of these records are declared by Qt itself.
