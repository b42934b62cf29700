#pragma once

#include "ptz_devices/cmemorydevicestatestore.h"
#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"

#include <QObject>
#include <QTest>
#include <QVector>

#include <memory>

// A simulated camera on a manual clock with an in-memory store, collecting replies.
struct SimCameraHarness
{
    explicit SimCameraHarness(const QString &model = QStringLiteral("speed-dome"),
                              const QString &cameraId = QStringLiteral("cam-1"))
        : clock(ptz_devices::CSimClock::Mode::Manual)
    {
        create(model, cameraId);
    }

    void create(const QString &model, const QString &cameraId = QStringLiteral("cam-1"))
    {
        camera.reset();
        replies.clear();
        camera = std::make_unique<ptz_devices::CSimulatedCamera>(cameraId, model, &clock, &store);
        QObject::connect(camera.get(), &ptz_devices::IPtzDriver::replied, &context,
                         [this](const ptz_devices::DriverReply &r) { replies.append(r); });
    }

    // Waits (event loop, no sleeping) for the answer to `id`.
    bool await(quint64 id, ptz_devices::DriverReply *out = nullptr)
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

    // Waits for `id` and reports whether it succeeded.
    bool ok(quint64 id)
    {
        ptz_devices::DriverReply r;
        return await(id, &r) && r.ok;
    }

    int answersFor(quint64 id) const
    {
        int n = 0;
        for (const auto &r : replies)
            n += r.requestId == id ? 1 : 0;
        return n;
    }

    ptz_devices::DeviceStatus status() const { return camera->status(); }

    ptz_devices::CSimClock clock;
    ptz_devices::CMemoryDeviceStateStore store;
    // Declared before the camera so it outlives it: the camera's destructor still replies.
    QVector<ptz_devices::DriverReply> replies;
    QObject context;
    std::unique_ptr<ptz_devices::CSimulatedCamera> camera;
};
