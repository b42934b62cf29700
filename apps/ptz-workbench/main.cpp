// ptz-workbench: the host application in which operators use the PTZ panel.
#include "cworkbenchscript.h"
#include "cworkbenchwindow.h"

#include "boundary/previewptzcontroltranslator.h"
#include "zeph_plugin_manager/chostsession.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    // Screenshots and scripts need no display.
    for (int i = 1; i < argc; ++i) {
        if ((qstrcmp(argv[i], "--screenshot") == 0 || qstrcmp(argv[i], "--script") == 0)
            && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ptz-workbench"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("PTZ control workbench on a site of simulated cameras."));
    parser.addHelpOption();
    const QCommandLineOption siteOpt(QStringLiteral("site"), QStringLiteral("Site store file."), QStringLiteral("FILE"));
    const QCommandLineOption userOpt(QStringLiteral("user"), QStringLiteral("Operator to sign in as."),
                                     QStringLiteral("NAME"));
    const QCommandLineOption screensOpt(QStringLiteral("screens"), QStringLiteral("Screens in the grid: 1, 4 or 9."),
                                        QStringLiteral("N"), QStringLiteral("4"));
    const QCommandLineOption themeOpt(QStringLiteral("theme"), QStringLiteral("dark or white."), QStringLiteral("THEME"),
                                      QStringLiteral("dark"));
    const QCommandLineOption layoutOpt(QStringLiteral("layout"), QStringLiteral("Panel layout: side or stacked."),
                                       QStringLiteral("LAYOUT"), QStringLiteral("side"));
    const QCommandLineOption scriptOpt(QStringLiteral("script"),
                                       QStringLiteral("Actions to run before the screenshot (see README)."),
                                       QStringLiteral("FILE"));
    const QCommandLineOption shotOpt(QStringLiteral("screenshot"),
                                     QStringLiteral("Render the window to FILE (offscreen) and exit."),
                                     QStringLiteral("FILE"));
    parser.addOptions({siteOpt, userOpt, screensOpt, themeOpt, layoutOpt, scriptOpt, shotOpt});
    parser.process(app);

    auto fail = [](const QString &message) {
        std::fprintf(stderr, "ptz-workbench: %s\n", qUtf8Printable(message));
        return 2;
    };
    const QString screens = parser.value(screensOpt);
    if (screens != QLatin1String("1") && screens != QLatin1String("4") && screens != QLatin1String("9"))
        return fail(QStringLiteral("--screens expects 1, 4 or 9, not '%1'.").arg(screens));
    const QString theme = parser.value(themeOpt);
    if (theme != QLatin1String("dark") && theme != QLatin1String("white"))
        return fail(QStringLiteral("--theme expects dark or white, not '%1'.").arg(theme));
    const QString layout = parser.value(layoutOpt);
    if (layout != QLatin1String("side") && layout != QLatin1String("stacked"))
        return fail(QStringLiteral("--layout expects side or stacked, not '%1'.").arg(layout));

    CWorkbenchScript script;
    if (parser.isSet(scriptOpt)) {
        QFile file(parser.value(scriptOpt));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            return fail(QStringLiteral("cannot read the script %1: %2").arg(file.fileName(), file.errorString()));
        QString error;
        if (!script.Parse(QString::fromUtf8(file.readAll()), &error))
            return fail(QStringLiteral("%1: %2").arg(file.fileName(), error));
    }

    const ZephPluginManager::CHostSession::Result session = ZephPluginManager::CHostSession::Start(app.arguments());
    PreviewPTZControl::InstallTranslator(&app);

    int rc = 0;
    {
        CWorkbenchWindow window;
        window.SetScreenCount(screens.toInt());
        window.SetStackedLayout(layout == QLatin1String("stacked"));
        window.SetWhiteTheme(theme == QLatin1String("white"));
        window.resize(1400, 860);
        window.show();
        for (const QString &message : session.messages)
            window.ShowTip(message, 2);

        if (parser.isSet(shotOpt) || parser.isSet(scriptOpt)) {
            const QString file = parser.value(shotOpt);
            const QString scriptName = parser.value(scriptOpt);
            QTimer::singleShot(300, &window, [&window, &rc, &script, file, scriptName] {
                QString error;
                if (!script.Run(&window, &error)) {
                    std::fprintf(stderr, "ptz-workbench: %s: %s\n", qUtf8Printable(scriptName), qUtf8Printable(error));
                    rc = 2;
                } else if (!file.isEmpty() && !window.grab().save(file)) {
                    std::fprintf(stderr, "ptz-workbench: cannot write %s\n", qUtf8Printable(file));
                    rc = 1;
                }
                QApplication::quit();
            });
        } else if (!session.messages.isEmpty()) {
            QMessageBox::warning(&window, QObject::tr("PTZ Workbench"), session.messages.join(QLatin1Char('\n')));
        }
        const int loop = app.exec();
        if (rc == 0)
            rc = loop;
    }
    ZephPluginManager::CHostSession::Stop();
    return rc;
}
