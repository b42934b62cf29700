#pragma once

#include "previewptzcontrol_export.h"

#include <QString>

namespace PreviewPTZControl {

// The white-theme object name of a widget: names that already end in an underscore take
// "white_", the others "_white_". Host style sheets and scripts use it to find themed widgets.
PREVIEWPTZCONTROL_EXPORT QString WhiteObjectName(const QString &dark_name);

} // namespace PreviewPTZControl
