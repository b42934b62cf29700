#pragma once

#include "ptz_devices/ptzdevicetypes.h"
#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "site_store/demosite.h"

#include <QString>

// Identifiers of the demo site's cameras and users, as the host APIs take them.
inline const QString kDome = QString::fromLatin1(site_store::demo::kSpeedDome);
inline const QString kBasic = QString::fromLatin1(site_store::demo::kPtzNoPattern);
inline const QString kBox = QString::fromLatin1(site_store::demo::kBoxZoom);
inline const QString kFishEye = QString::fromLatin1(site_store::demo::kFishEye);
inline const QString kCascade = QString::fromLatin1(site_store::demo::kCascade);
inline const QString kOperator = QString::fromLatin1(site_store::demo::kOperator);

ptz_plugin_protocol::PresetInfo Preset(int number, int type, const QString &name, int reserved = 0);
// The same with the name's bytes as a request record carries them (they may be invalid UTF-8).
ptz_plugin_protocol::PresetInfo RawPreset(int number, int type, const std::string &name);
// One point of a device patrol: preset number, speed 1-40, dwell seconds.
ptz_devices::DevicePatrolPoint PatrolPoint(int preset, int speed, int dwell);
