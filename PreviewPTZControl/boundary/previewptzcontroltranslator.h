#pragma once

#include "previewptzcontrol_export.h"

#include <QLocale>

class QCoreApplication;

namespace PreviewPTZControl {

// Installs the module's embedded translations on the application (once per process).
// The keys are not readable texts, so English is used when the locale has no translation.
// Returns false when no translation could be loaded.
PREVIEWPTZCONTROL_EXPORT bool InstallTranslator(QCoreApplication *app, const QLocale &locale = QLocale());

} // namespace PreviewPTZControl
