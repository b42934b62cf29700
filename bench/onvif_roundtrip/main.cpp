// The ONVIF path on loopback: press -> ContinuousMove received by the camera,
// release -> Stop received, and the full round trip of each request (median
// and p99 over 1,000), requests per second on one camera, then 20 taps of an
// arrow with 50 ms camera latency (every stop must arrive, in order).

#include "ptz_devices/convifdriver.h"
#include "ptz_devices/csimulatedcamera.h"
#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace ptz_devices;
using ptz_onvif_camera::CLoopbackOnvifCamera;

namespace {

struct Figures
{
    std::vector<double> values;
    void print(const char *what)
    {
        std::sort(values.begin(), values.end());
        if (values.empty())
            return;
        const double median = values[values.size() / 2];
        const double p99 = values[std::min(values.size() - 1, values.size() * 99 / 100)];
        std::printf("%-34s median %7.3f ms   p99 %7.3f ms   (n=%zu)\n", what, median, p99, values.size());
    }
};

// Runs the event loop until `done` holds (or 10 s pass, reported as a failure).
bool waitFor(const std::function<bool()> &done)
{
    QElapsedTimer guard;
    guard.start();
    while (!done()) {
        if (guard.elapsed() > 10000)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    CLoopbackOnvifCamera::Options options;
    options.user = QStringLiteral("bench");
    options.password = QStringLiteral("bench");
    CLoopbackOnvifCamera camera(options);
    if (!camera.start())
        return 1;
    // Declared before the driver, which answers what is pending when it goes.
    QElapsedTimer clock;
    qint64 sentAt = 0;
    qint64 receivedAt = -1;
    quint64 waiting = 0;
    qint64 answeredAt = -1;
    int answers = 0;
    QVector<quint64> order;
    COnvifDriver driver(QStringLiteral("bench"), camera.deviceAddress(), options.user, options.password);
    if (!waitFor([&] { return driver.isConnected(); })) {
        std::printf("the driver did not connect: %s\n", qPrintable(driver.lastError()));
        return 1;
    }

    clock.start();
    QObject::connect(&camera, &CLoopbackOnvifCamera::requestReceived, &camera,
                     [&](const QString &) { receivedAt = clock.nsecsElapsed(); });
    QObject::connect(&driver, &IPtzDriver::replied, &driver, [&](const DriverReply &r) {
        ++answers;
        order << r.requestId;
        if (r.requestId == waiting)
            answeredAt = clock.nsecsElapsed();
    });

    Figures press, release, roundTrip;
    for (int i = 0; i < 1000; ++i) {
        const bool isPress = i % 2 == 0;
        receivedAt = answeredAt = -1;
        sentAt = clock.nsecsElapsed();
        waiting = isPress ? driver.movePanTilt(1, 0, 20) : driver.stopPanTilt();
        if (!waitFor([&] { return answeredAt >= 0; }))
            return 1;
        (isPress ? press : release).values.push_back((receivedAt - sentAt) / 1e6);
        roundTrip.values.push_back((answeredAt - sentAt) / 1e6);
    }
    press.print("press -> ContinuousMove received");
    release.print("release -> Stop received");
    roundTrip.print("request -> answer");

    answers = 0;
    const qint64 burstStart = clock.nsecsElapsed();
    for (int i = 0; i < 1000; ++i)
        driver.requestStatus();
    if (!waitFor([&] { return answers >= 1000; })) {
        std::printf("only %d of 1000 status requests were answered\n", answers);
        return 1;
    }
    std::printf("%-34s %7.0f requests/s\n", "status requests on one camera",
                1000 / ((clock.nsecsElapsed() - burstStart) / 1e9));

    camera.setLatency(50);
    camera.clearReceivedOperations();
    order.clear();
    answers = 0;
    QVector<quint64> ids;
    Figures tapStop;
    for (int tap = 0; tap < 20; ++tap) {
        ids << driver.movePanTilt(1, 0, 20);
        receivedAt = -1;
        sentAt = clock.nsecsElapsed();
        ids << driver.stopPanTilt();
        waiting = ids.last();
        answeredAt = -1;
        if (!waitFor([&] { return answeredAt >= 0; }))
            return 1;
        tapStop.values.push_back((answeredAt - sentAt) / 1e6);
    }
    const int stops = camera.receivedOperations().count(QStringLiteral("Stop"));
    tapStop.print("50 ms latency: release -> answer");
    std::printf("50 ms latency, 20 taps: %d of 20 stops received, answers %s, camera %s\n", stops,
                order == ids ? "in request order" : "REORDERED",
                camera.camera()->status().panTiltMoving ? "STILL MOVING" : "standing still");
    return stops == 20 && order == ids ? 0 : 1;
}
