#pragma once

#include "previewptzcontrol_export.h"

#include "ptz_plugin_protocol/ptzlimits.h"

#include <QString>

class QAbstractItemModel;

namespace PreviewPTZControl {

// Longest preset name accepted for a rename made in the list itself; the
// dialogs save 20 characters at most.
constexpr int kMaxListPresetNameLength = ptz_plugin_protocol::kMaxPresetNameLength;

// Checks a name changed in the preset list against the rules of the panel:
// not blank, none of \ / : * ? " < > |, at most 64 characters once trimmed,
// and no other row of the list (proxy, name column) carrying it. Returns true
// when the name may be used; otherwise false with the tip in message (empty
// when no list is given). Texts use the panel's translation context.
PREVIEWPTZCONTROL_EXPORT bool CheckListPresetName(const QString &name, const QAbstractItemModel *proxy,
                                                  QString *message);

} // namespace PreviewPTZControl
