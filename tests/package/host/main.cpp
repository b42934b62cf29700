// One panel on the simulated speed dome of an in-memory demo site; a move
// sent through the panel's controller must come back as executed.
#include "boundary/cpreviewptzwndmanager.h"
#include "boundary/previewptzcontroltranslator.h"
#include "panel/cpreviewptzwnd.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>
#include <memory>

using namespace PreviewPTZControl;

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory());
    PreviewPTZControl::InstallTranslator(&app);

    auto controller = std::make_shared<zeph_ptz_controller::CUniversalPTZController>();
    auto *panel = new CPreviewPTZWnd(0, false, false);
    Tarn::Base::CSingleton<CPreviewPTZWndManager>::Instance()->AddPreviewPTZWnd(0, panel);
    panel->SetPTZController(controller, nullptr);
    const QString camera = QString::fromLatin1(site_store::demo::kSpeedDome);
    panel->SetCamera(QString(), camera, false, false);

    int exit_code = 1;
    QObject::connect(controller.get(), &zeph_ptz_controller::CUniversalPTZController::SignalExecutionSucceeded, &app,
                     [&](const QString &id) {
                         exit_code = id == camera ? 0 : 1;
                         app.quit();
                     });
    QObject::connect(controller.get(), &zeph_ptz_controller::CUniversalPTZController::SignalExecutionFailed, &app,
                     [&] { app.quit(); });
    // A hung controller must not hang the test run.
    QTimer::singleShot(20000, &app, [&] {
        std::fprintf(stderr, "no answer from the controller\n");
        app.quit();
    });

    ptz_plugin_protocol::PTZControlCommand stop;
    stop.camera_index_code = camera.toStdString();
    stop.command = ptz_plugin_protocol::PTZ_CMD_PAN_RIGHT;
    stop.action = ptz_plugin_protocol::PTZ_ACTION_STOP;
    stop.speed = 20;
    controller->Control(stop);
    app.exec();

    panel->StopWork();
    Tarn::Base::CSingleton<CPreviewPTZWndManager>::Instance()->RemovePreviewPTZWnd(0);
    delete panel;
    site_store::CSiteStore::InstallCurrent(nullptr);
    return exit_code;
}
