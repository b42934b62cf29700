#include "cworkbenchoptions.h"

#include <QCommandLineParser>

bool CWorkbenchOptions::Parse(const QStringList &arguments, QString *error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("PTZ control workbench on a site of simulated cameras."));
    const QCommandLineOption helpOpt({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption siteOpt(QStringLiteral("site"), QStringLiteral("Site store file."),
                                     QStringLiteral("FILE"));
    const QCommandLineOption userOpt(QStringLiteral("user"), QStringLiteral("Operator to sign in as."),
                                     QStringLiteral("NAME"));
    const QCommandLineOption screensOpt(QStringLiteral("screens"), QStringLiteral("Screens in the grid: 1, 4 or 9."),
                                        QStringLiteral("N"), QStringLiteral("4"));
    const QCommandLineOption themeOpt(QStringLiteral("theme"), QStringLiteral("dark or white."),
                                      QStringLiteral("THEME"), QStringLiteral("dark"));
    const QCommandLineOption layoutOpt(QStringLiteral("layout"), QStringLiteral("Panel layout: side or stacked."),
                                       QStringLiteral("LAYOUT"), QStringLiteral("side"));
    const QCommandLineOption scriptOpt(QStringLiteral("script"),
                                       QStringLiteral("Actions to run before the screenshot (see README)."),
                                       QStringLiteral("FILE"));
    const QCommandLineOption shotOpt(QStringLiteral("screenshot"),
                                     QStringLiteral("Render the window to FILE (offscreen) and exit."),
                                     QStringLiteral("FILE"));
    const QCommandLineOption onvifOpt(QStringLiteral("onvif-demo"),
                                      QStringLiteral("Add the demo ONVIF camera (served on 127.0.0.1) to the site."));
    parser.addOptions({helpOpt, siteOpt, userOpt, screensOpt, themeOpt, layoutOpt, scriptOpt, shotOpt, onvifOpt});
    helpText = parser.helpText();

    auto fail = [error](const QString &message) {
        if (error)
            *error = message;
        return false;
    };
    if (!parser.parse(arguments))
        return fail(parser.errorText());
    // A repeated option would silently keep its last value: the operator meant one of them.
    for (const QCommandLineOption &option : {siteOpt, userOpt, screensOpt, themeOpt, layoutOpt, scriptOpt, shotOpt}) {
        if (parser.values(option).size() > 1)
            return fail(QStringLiteral("--%1 is given more than once; give it once.").arg(option.names().constFirst()));
    }
    if (!parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("unexpected argument '%1'; options start with --.")
                        .arg(parser.positionalArguments().constFirst()));
    help = parser.isSet(helpOpt);
    onvifDemo = parser.isSet(onvifOpt);

    const QString screenText = parser.value(screensOpt);
    if (screenText != QLatin1String("1") && screenText != QLatin1String("4") && screenText != QLatin1String("9"))
        return fail(QStringLiteral("--screens expects 1, 4 or 9, not '%1'.").arg(screenText));
    const QString theme = parser.value(themeOpt);
    if (theme != QLatin1String("dark") && theme != QLatin1String("white"))
        return fail(QStringLiteral("--theme expects dark or white, not '%1'.").arg(theme));
    const QString layout = parser.value(layoutOpt);
    if (layout != QLatin1String("side") && layout != QLatin1String("stacked"))
        return fail(QStringLiteral("--layout expects side or stacked, not '%1'.").arg(layout));
    if (parser.isSet(userOpt) && parser.value(userOpt).trimmed().isEmpty())
        return fail(QStringLiteral("--user expects a user name."));

    site = parser.value(siteOpt);
    user = parser.value(userOpt);
    screens = screenText.toInt();
    white = theme == QLatin1String("white");
    stacked = layout == QLatin1String("stacked");
    script = parser.value(scriptOpt);
    screenshot = parser.value(shotOpt);
    return true;
}
