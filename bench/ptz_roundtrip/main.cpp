// Command round trips through the universal PTZ controller to a simulated
// camera that answers at once: one request in flight at a time (latency of the
// whole path), and a burst of requests in flight together (throughput).

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include "ptz_devices/csimclock.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <cstdio>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CUniversalPTZController;

namespace {

PTZControlCommand Command(int i)
{
    PTZControlCommand c;
    c.camera_index_code = site_store::demo::kSpeedDome;
    c.command = PTZ_CMD_PAN_RIGHT;
    c.action = i % 2 == 0 ? PTZ_ACTION_START : PTZ_ACTION_STOP; // press, release, press...
    c.speed = 20;
    return c;
}

double Sequential(CUniversalPTZController &controller, int count)
{
    int answered = 0;
    QEventLoop loop;
    auto next = [&] {
        if (++answered >= count)
            loop.quit();
        else
            controller.Control(Command(answered));
    };
    const auto ok = QObject::connect(&controller, &CUniversalPTZController::SignalExecutionSucceeded, &loop, next);
    const auto failed = QObject::connect(&controller, &CUniversalPTZController::SignalExecutionFailed, &loop, next);
    QElapsedTimer timer;
    timer.start();
    controller.Control(Command(0));
    loop.exec();
    const double seconds = timer.nsecsElapsed() / 1e9;
    QObject::disconnect(ok);
    QObject::disconnect(failed);
    return count / seconds;
}

double Burst(CUniversalPTZController &controller, int count)
{
    int answered = 0;
    QEventLoop loop;
    auto done = [&] {
        if (++answered >= count)
            loop.quit();
    };
    const auto ok = QObject::connect(&controller, &CUniversalPTZController::SignalExecutionSucceeded, &loop, done);
    const auto failed = QObject::connect(&controller, &CUniversalPTZController::SignalExecutionFailed, &loop, done);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        controller.Control(Command(i));
    loop.exec();
    const double seconds = timer.nsecsElapsed() / 1e9;
    QObject::disconnect(ok);
    QObject::disconnect(failed);
    return count / seconds;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    qputenv("QT_LOGGING_RULES", "ZephClientInfo.debug=false");
    site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory());
    ptz_devices::CSimClock clock(ptz_devices::CSimClock::Mode::Manual);
    auto *cameras = ZephPluginManager::CCameraManager::Instance();
    cameras->SetSimClock(&clock);

    CUniversalPTZController controller;
    Sequential(controller, 200); // warm-up: camera, driver and store caches
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 20000;
    const double sequential = Sequential(controller, count);
    const double burst = Burst(controller, count);
    std::printf("roundtrips_per_second: %.0f\n", sequential);
    std::printf("burst_roundtrips_per_second: %.0f\n", burst);
    std::printf("roundtrip_microseconds: %.1f\n", 1e6 / sequential);
    std::fflush(stdout);

    cameras->Clear();
    cameras->SetSimClock(nullptr);
    site_store::CSiteStore::InstallCurrent(nullptr);
    return 0;
}
