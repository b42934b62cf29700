// Figures of the PTZ panel: construction time, resident memory per panel, the synchronous
// work of binding a camera, and the time from a press on the pad to the driver's request.
// Runs offscreen unless a platform is given.

#include "direction/cptzcloud.h"
#include "panel/cpreviewptzwnd.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"

#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace PreviewPTZControl;

namespace {

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

double Percentile(std::vector<double> values, double p)
{
    std::sort(values.begin(), values.end());
    if (values.empty())
        return 0.0;
    return values[std::min(values.size() - 1, size_t(p * double(values.size())))];
}

long ResidentKiB()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields.at(1).toLong() * 4 : -1;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("ZephClientInfo.info=false\nZephClientInfo.debug=false"));

    site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory());
    ptz_devices::CSimClock clock(ptz_devices::CSimClock::Mode::Manual);
    auto *cameras = ZephPluginManager::CCameraManager::Instance();
    cameras->SetSimClock(&clock);
    const QString dome = QString::fromLatin1(site_store::demo::kSpeedDome);
    const QString basic = QString::fromLatin1(site_store::demo::kPtzNoPattern);
    auto controller = std::make_shared<zeph_ptz_controller::CUniversalPTZController>();
    cameras->GetCameraByID(dome.toStdString());
    cameras->GetCameraByID(basic.toStdString());

    // Warm-up: first panel loads styles, fonts and resources.
    delete new CPreviewPTZWnd(0, false, false);

    std::vector<double> construct_ms;
    for (int i = 0; i < 40; ++i) {
        QElapsedTimer timer;
        timer.start();
        auto *panel = new CPreviewPTZWnd(0, false, false);
        construct_ms.push_back(timer.nsecsElapsed() / 1e6);
        delete panel;
    }
    std::printf("construct panel:            median %.2f ms, p90 %.2f ms (40 runs)\n", Median(construct_ms),
                Percentile(construct_ms, 0.9));

    QApplication::processEvents();
    const long before_kib = ResidentKiB();
    std::vector<std::unique_ptr<CPreviewPTZWnd>> panels;
    for (unsigned int i = 0; i < 64; ++i) {
        panels.emplace_back(new CPreviewPTZWnd(i, false, false));
        panels.back()->SetPTZController(controller, nullptr);
        panels.back()->resize(560, 700);
    }
    QApplication::processEvents();
    const long after_kib = ResidentKiB();
    std::printf("resident memory:            %.1f KiB per panel (64 panels, %ld KiB in all)\n",
                double(after_kib - before_kib) / 64.0, after_kib - before_kib);
    panels.clear();
    QApplication::processEvents();

    CPreviewPTZWnd panel(0, false, false);
    panel.SetPTZController(controller, nullptr);
    std::vector<double> bind_ms;
    for (int i = 0; i < 60; ++i) {
        const QString camera = i % 2 ? basic : dome;
        QElapsedTimer timer;
        timer.start();
        panel.SetCamera(QString(), camera, false, false);
        bind_ms.push_back(timer.nsecsElapsed() / 1e6);
        QApplication::processEvents(); // answers of the queries that binding sent
    }
    std::printf("SetCamera (synchronous):    median %.3f ms, p90 %.3f ms (60 rebinds)\n", Median(bind_ms),
                Percentile(bind_ms, 0.9));

    panel.SetCamera(QString(), dome, false, false);
    QApplication::processEvents();
    auto *driver = qobject_cast<ptz_devices::CSimulatedCamera *>(ZephPluginManager::CDriverTestAccess::GetDriver(dome));
    auto *cloud = panel.findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_"));
    std::vector<double> press_us;
    for (int i = 0; i < 200 && driver && cloud; ++i) {
        driver->clearRequestLog();
        QElapsedTimer timer;
        timer.start();
        emit cloud->signalPressSection(nullptr, CPTZCloud::TopMiddle);
        while (driver->requestLog().isEmpty() && timer.elapsed() < 1000)
            QApplication::processEvents();
        press_us.push_back(timer.nsecsElapsed() / 1e3);
        emit cloud->signalReleaseSection(nullptr, CPTZCloud::TopMiddle);
        QApplication::processEvents();
    }
    std::printf("pad press to driver:        median %.1f us, p90 %.1f us (200 presses)\n", Median(press_us),
                Percentile(press_us, 0.9));

    panel.StopWork();
    controller.reset();
    zeph_ptz_controller::CPTZStateStorageManager::Instance()->Clear();
    cameras->Clear();
    cameras->SetSimClock(nullptr);
    site_store::CSiteStore::InstallCurrent(nullptr);
    return 0;
}
