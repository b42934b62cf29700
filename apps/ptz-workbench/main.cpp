// ptz-workbench: the host application in which operators use the PTZ panel.
#include "cloopbackcamerahost.h"
#include "cworkbenchoptions.h"
#include "cworkbenchscript.h"
#include "cworkbenchsignin.h"
#include "cworkbenchwindow.h"

#include "boundary/previewptzcontroltranslator.h"
#include "site_store/csitestore.h"
#include "zeph_plugin_manager/chostsession.h"

#include "site_store/csitestore.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>

namespace {

int Fail(const QString &message)
{
    std::fprintf(stderr, "ptz-workbench: %s\n", qUtf8Printable(message));
    return 2;
}

// Reads the options and the script without any GUI, so help and mistakes are reported on a
// machine without a display too. Returns -1 to go on, else the exit code.
int CheckCommandLine(int argc, char *argv[], CWorkbenchOptions *options, CWorkbenchScript *script)
{
    QCoreApplication core(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ptz-workbench"));
    QString error;
    if (!options->Parse(core.arguments(), &error))
        return Fail(error);
    if (options->help) {
        std::fprintf(stdout, "%s", qUtf8Printable(options->helpText));
        return 0;
    }
    if (!options->script.isEmpty()) {
        QFile file(options->script);
        if (!file.open(QIODevice::ReadOnly))
            return Fail(QStringLiteral("cannot read the script %1: %2").arg(file.fileName(), file.errorString()));
        if (!script->ParseFile(file.readAll(), &error))
            return Fail(QStringLiteral("%1: %2").arg(file.fileName(), error));
    }
    return -1;
}

} // namespace

int main(int argc, char *argv[])
{
    CWorkbenchOptions options;
    CWorkbenchScript script;
    const int early = CheckCommandLine(argc, argv, &options, &script);
    if (early >= 0)
        return early;

    // Screenshots and scripts need no display.
    if ((!options.screenshot.isEmpty() || !options.script.isEmpty()) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ptz-workbench"));
    // Opening the site makes a missing folder; the operator should know where it went.
    const QString sitePath = site_store::CSiteStore::ResolvePath(app.arguments());
    const QDir siteDir = QFileInfo(sitePath).absoluteDir();
    const bool newSiteFolder = !sitePath.isEmpty() && !siteDir.exists();
    const ZephPluginManager::CHostSession::Result session = ZephPluginManager::CHostSession::Start(app.arguments());
    QString userError;
    if (!CWorkbenchSignIn::SignIn(options.user, &userError)) {
        ZephPluginManager::CHostSession::Stop();
        return Fail(userError);
    }
    PreviewPTZControl::InstallTranslator(&app);
    // Loopback ONVIF cameras are served before their drivers first try to connect.
    CLoopbackCameraHost loopbackCameras;
    QStringList loopbackProblems;
    QString demoError;
    if (options.onvifDemo && !CLoopbackCameraHost::AddDemoCamera(&demoError))
        loopbackProblems << demoError;
    loopbackProblems << loopbackCameras.ServeSiteCameras();

    int rc = 0;
    {
        CWorkbenchWindow window;
        window.SetScreenCount(options.screens);
        window.SetStackedLayout(options.stacked);
        window.SetWhiteTheme(options.white);
        window.resize(CWorkbenchWindow::DefaultSize());
        window.show();
        if (newSiteFolder && siteDir.exists())
            window.ShowStatusNote(
                QObject::tr("Created the folder %1 for the site file %2.")
                    .arg(QDir::toNativeSeparators(siteDir.absolutePath()), QFileInfo(sitePath).fileName()));
        for (const QString &message : session.messages + loopbackProblems)
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
