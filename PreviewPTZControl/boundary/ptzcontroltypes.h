#pragma once

#include "previewptzcontrol_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <QObject>

namespace PreviewPTZControl {
Q_NAMESPACE_EXPORT(PREVIEWPTZCONTROL_EXPORT)

// What the panel can drive for the bound camera.
enum PTZWndType {
    PTZWndNone = 0,     // no usable camera: the panel shows, every PTZ function is off
    PTZWndDevice = 1,   // commands go to the device controller
    PTZWndSoftware = 2, // fish-eye picture: commands go to the software controller
};
Q_ENUM_NS(PTZWndType)

// The controller library's signals carry these, so the module uses the library's own types.
using PTZPresetType = ptz_plugin_protocol::PTZPresetType;
using CruiseType = ptz_plugin_protocol::CruiseType;

} // namespace PreviewPTZControl
