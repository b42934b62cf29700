#include "support/simcameraharness.h"

#include <QTest>

#include <algorithm>

SimCameraHarness::SimCameraHarness(const QString &model, const QString &cameraId)
    : clock(ptz_devices::CSimClock::Mode::Manual)
{
    create(model, cameraId);
}

void SimCameraHarness::create(const QString &model, const QString &cameraId)
{
    camera.reset();
    replies.clear();
    camera = std::make_unique<ptz_devices::CSimulatedCamera>(cameraId, model, &clock, &store);
    QObject::connect(camera.get(), &ptz_devices::IPtzDriver::replied, &context,
                     [this](const ptz_devices::DriverReply &r) { replies.append(r); });
}

bool SimCameraHarness::await(quint64 id, ptz_devices::DriverReply *out)
{
    auto find = [this, id]() -> const ptz_devices::DriverReply * {
        for (const auto &r : qAsConst(replies))
            if (r.requestId == id)
                return &r;
        return nullptr;
    };
    if (!QTest::qWaitFor([&] { return find() != nullptr; }, 5000))
        return false;
    if (out)
        *out = *find();
    return true;
}

bool SimCameraHarness::ok(quint64 id)
{
    ptz_devices::DriverReply r;
    return await(id, &r) && r.ok;
}

int SimCameraHarness::answersFor(quint64 id) const
{
    return int(std::count_if(replies.begin(), replies.end(), [id](const auto &r) { return r.requestId == id; }));
}
