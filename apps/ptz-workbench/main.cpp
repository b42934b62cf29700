// ptz-workbench: the host application in which operators use the PTZ panel.
#include "cworkbenchoptions.h"
#include "cworkbenchscript.h"
#include "cworkbenchwindow.h"

#include "boundary/previewptzcontroltranslator.h"
#include "zeph_plugin_manager/chostsession.h"

#include "site_store/csitestore.h"

#include <QApplication>
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

    auto fail = [](const QString &message) {
        std::fprintf(stderr, "ptz-workbench: %s\n", qUtf8Printable(message));
        return 2;
    };
    CWorkbenchOptions options;
    QString optionError;
    if (!options.Parse(app.arguments(), &optionError))
        return fail(optionError);
    if (options.help) {
        std::fprintf(stdout, "%s", qUtf8Printable(options.helpText));
        return 0;
    }

    CWorkbenchScript script;
    if (!options.script.isEmpty()) {
        QFile file(options.script);
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
        window.SetScreenCount(options.screens);
        window.SetStackedLayout(options.stacked);
        window.SetWhiteTheme(options.white);
        window.resize(1400, 860);
        window.show();
        for (const QString &message : session.messages)
            window.ShowTip(message, 2);
        // The store stops saving when its file goes away; the operator must know before relying on it.
        QObject::connect(site_store::CSiteStore::Current(), &site_store::CSiteStore::fileLost, &window,
                         [&window](const QString &message) {
                             window.ShowTip(message, 0);
                             auto *box = new QMessageBox(QMessageBox::Warning, QObject::tr("PTZ Workbench"), message,
                                                         QMessageBox::Ok, &window);
                             box->setAttribute(Qt::WA_DeleteOnClose);
                             box->open();
                         });

        if (!options.screenshot.isEmpty() || !options.script.isEmpty()) {
            const QString file = options.screenshot;
            const QString scriptName = options.script;
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
