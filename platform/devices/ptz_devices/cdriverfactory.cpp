#include "ptz_devices/cdriverfactory.h"

#include "ptz_devices/convifdriver.h"
#include "ptz_devices/csimulatedcamera.h"

#include <QMap>
#include <QObject>

#include <mutex>

namespace ptz_devices {

namespace {

struct KindEntry
{
    QStringList models;
    CDriverFactory::Creator creator;
};

struct Registry
{
    std::mutex mutex;
    QMap<QString, KindEntry> kinds;

    Registry()
    {
        kinds.insert(QStringLiteral("simulated"),
                     {CSimulatedCamera::models(), [](const DriverConfig &config, QString *error) -> IPtzDriver * {
                          if (!CSimulatedCamera::isKnownModel(config.model)) {
                              if (error)
                                  *error = QObject::tr("Unknown simulated camera model \"%1\"").arg(config.model);
                              return nullptr;
                          }
                          return new CSimulatedCamera(config.cameraId, config.model, config.clock, config.store,
                                                      config.parent);
                      }});
        // A network camera over ONVIF; its abilities come from the camera. "loopback" is one
        // the workbench serves itself on 127.0.0.1; the driver treats both alike.
        kinds.insert(QStringLiteral("onvif"),
                     {QStringList{QStringLiteral("generic"), QStringLiteral("loopback")}, &COnvifDriver::create});
    }
};

Registry &registry()
{
    static Registry r;
    return r;
}

} // namespace

IPtzDriver *CDriverFactory::create(const DriverConfig &config, QString *error)
{
    Creator creator;
    {
        Registry &r = registry();
        std::lock_guard<std::mutex> guard(r.mutex);
        const auto it = r.kinds.constFind(config.kind);
        if (it != r.kinds.constEnd())
            creator = it->creator;
    }
    if (!creator) {
        if (error)
            *error = QObject::tr("Unknown driver kind \"%1\"").arg(config.kind);
        return nullptr;
    }
    return creator(config, error);
}

IPtzDriver *CDriverFactory::create(const QString &kind, const QString &model, const QString &cameraId, CSimClock *clock,
                                   IDeviceStateStore *store, QObject *parent, QString *error)
{
    DriverConfig config;
    config.kind = kind;
    config.model = model;
    config.cameraId = cameraId;
    config.clock = clock;
    config.store = store;
    config.parent = parent;
    return create(config, error);
}

void CDriverFactory::registerKind(const QString &kind, const QStringList &models, Creator creator)
{
    Registry &r = registry();
    std::lock_guard<std::mutex> guard(r.mutex);
    r.kinds.insert(kind, {models, std::move(creator)});
}

QStringList CDriverFactory::kinds()
{
    Registry &r = registry();
    std::lock_guard<std::mutex> guard(r.mutex);
    return r.kinds.keys();
}

QStringList CDriverFactory::models(const QString &kind)
{
    Registry &r = registry();
    std::lock_guard<std::mutex> guard(r.mutex);
    return r.kinds.value(kind).models;
}

} // namespace ptz_devices
