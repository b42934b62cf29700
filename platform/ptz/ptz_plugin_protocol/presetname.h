#pragma once

#include "ptz_plugin_protocol/ptz_plugin_protocol_export.h"

#include <QString>

#include <string>

class QRegularExpression;

// The rules of preset names, shared by the panel's checks, the controller
// library and the host's preset store, so every path refuses the same names.
// Names are counted in code points ("characters" as a user types them: an
// emoji is one), never in UTF-16 units or bytes.
namespace ptz_plugin_protocol {

// The nine characters no preset name may hold, as users are shown them: " / \ : * ? " < > |".
PTZ_PLUGIN_PROTOCOL_EXPORT QString PresetNameForbiddenList();
// An alternation of the nine, each escaped; a hit anywhere makes the name unusable.
PTZ_PLUGIN_PROTOCOL_EXPORT const QRegularExpression &PresetNameForbiddenExpression();
// What the name editor lets a user type: 1 to `max_length` characters, none of the
// nine, no apostrophe or percent sign, and nothing invisible (see below).
PTZ_PLUGIN_PROTOCOL_EXPORT QRegularExpression PresetNameInputExpression(int max_length);

// Control characters (NUL, newline, tab, ...), text-direction marks and
// overrides, and UTF-16 surrogates without their partner.
PTZ_PLUGIN_PROTOCOL_EXPORT bool PresetNameHasInvisibleCharacters(const QString &name);
PTZ_PLUGIN_PROTOCOL_EXPORT int PresetNameLength(const QString &name);

// A record's UTF-8 name as text; false for bytes that are not valid UTF-8
// (which a lenient decoder would silently replace).
PTZ_PLUGIN_PROTOCOL_EXPORT bool DecodePresetName(const std::string &utf8, QString *name);

// The platform's check of a name a request carries, duplicates aside:
// valid UTF-8, not blank, none of the nine, nothing invisible, at most
// kMaxPresetNameLength characters. A readable reason, empty when the name may be kept.
PTZ_PLUGIN_PROTOCOL_EXPORT QString CheckPresetName(const std::string &utf8_name);
PTZ_PLUGIN_PROTOCOL_EXPORT QString CheckPresetName(const QString &name);
PTZ_PLUGIN_PROTOCOL_EXPORT QString DuplicatePresetNameError(const QString &name);

} // namespace ptz_plugin_protocol
