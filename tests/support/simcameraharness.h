#pragma once

#include "ptz_devices/cmemorydevicestatestore.h"
#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"

#include <QObject>
#include <QVector>

#include <cmath>
#include <memory>

// A simulated camera on a manual clock with an in-memory store, collecting replies.
struct SimCameraHarness
{
    explicit SimCameraHarness(const QString &model = QStringLiteral("speed-dome"),
                              const QString &cameraId = QStringLiteral("cam-1"));

    void create(const QString &model, const QString &cameraId = QStringLiteral("cam-1"));
    // Waits (event loop, no sleeping) for the answer to `id`.
    bool await(quint64 id, ptz_devices::DriverReply *out = nullptr);
    // Waits for `id` and reports whether it succeeded.
    bool ok(quint64 id);
    int answersFor(quint64 id) const;
    ptz_devices::DeviceStatus status() const { return camera->status(); }

    ptz_devices::CSimClock clock;
    ptz_devices::CMemoryDeviceStateStore store;
    QObject context;
    // Declared before the camera: the camera's destructor answers what is pending into it.
    QVector<ptz_devices::DriverReply> replies;
    std::unique_ptr<ptz_devices::CSimulatedCamera> camera;
};

// Positions computed on the simulation clock match to well below a display step.
inline bool near(double a, double b, double eps = 1e-6)
{
    return std::abs(a - b) <= eps;
}
