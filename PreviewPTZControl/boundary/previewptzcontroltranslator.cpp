#include "boundary/previewptzcontroltranslator.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

namespace PreviewPTZControl {

bool InstallTranslator(QCoreApplication *app, const QLocale &locale)
{
    if (!app)
        return false;
    static QPointer<QTranslator> installed;
    if (installed)
        return true;

    auto *translator = new QTranslator(app);
    const bool loaded =
        translator->load(locale, QStringLiteral("previewptzcontrol"), QStringLiteral("_"), QStringLiteral(":/i18n"))
        || translator->load(QStringLiteral(":/i18n/previewptzcontrol_en.qm"));
    if (!loaded) {
        delete translator;
        return false;
    }
    QCoreApplication::installTranslator(translator);
    installed = translator;
    return true;
}

} // namespace PreviewPTZControl
