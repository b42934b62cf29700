#pragma once

#include "ptz_devices/ptz_devices_export.h"

#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace ptz_devices {

class IPtzDriver;
class IDeviceStateStore;
class CSimClock;

// Everything a driver may need to open its camera; drivers ignore what they
// do not use (the simulated camera has no address, a network camera no clock).
struct PTZ_DEVICES_EXPORT DriverConfig
{
    QString kind;  // "simulated", later a network protocol
    QString model; // e.g. "speed-dome"
    QString cameraId;
    QString address; // device address for network drivers
    QString user;
    QString password;
    CSimClock *clock = nullptr;         // simulated: shared clock; null = own real-time clock
    IDeviceStateStore *store = nullptr; // durable state; null = kept in memory only
    QObject *parent = nullptr;
};

// Creates drivers from a camera record's driver kind and model. Kinds register
// a creator; the simulated kind is built in. A new kind is added by
// registering it, without touching anything above the driver.
class PTZ_DEVICES_EXPORT CDriverFactory
{
public:
    using Creator = std::function<IPtzDriver *(const DriverConfig &config, QString *error)>;

    // Null (and a reason in `error`) for an unknown kind or model.
    static IPtzDriver *create(const DriverConfig &config, QString *error = nullptr);
    static IPtzDriver *create(const QString &kind, const QString &model, const QString &cameraId, CSimClock *clock,
                              IDeviceStateStore *store, QObject *parent = nullptr, QString *error = nullptr);

    // Replaces an existing creator of the same kind.
    static void registerKind(const QString &kind, const QStringList &models, Creator creator);
    static QStringList kinds();
    static QStringList models(const QString &kind);
};

} // namespace ptz_devices
