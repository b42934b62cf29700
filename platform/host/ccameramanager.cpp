#include "zeph_plugin_manager/ccameramanager.h"

#include "zeph_plugin_manager/cstoredevicestatestore.h"

#include "ptz_devices/cdriverfactory.h"
#include "ptz_devices/iptzdriver.h"
#include "site_store/csitestore.h"

#include "tarn/base/logging.h"

#include <map>

namespace ZephPluginManager {

struct CCameraManager::Private
{
    quint64 generation = 0; // of the store the list was read from; 0 = never read
    std::vector<std::shared_ptr<CCamera>> cameras;
    std::map<QString, std::shared_ptr<CCamera>> byId;
    ptz_devices::CSimClock *clock = nullptr;
    CStoreDeviceStateStore stateStore;
    QMetaObject::Connection storeConnection;
};

namespace {

CCamera::Data dataFromRecord(const site_store::CameraRecord &r)
{
    CCamera::Data data;
    data.id = r.id.toStdString();
    data.name = r.name;
    data.driverKind = r.driverKind;
    data.driverAddress = r.driverAddress;
    data.model = r.model;
    data.abilities = r.abilities;
    data.cascade = r.cascade;
    data.fishEye = r.fishEye;
    data.accessProtocol = r.accessProtocol;
    return data;
}

bool sameData(const CCamera::Data &a, const CCamera::Data &b)
{
    return a.id == b.id && a.name == b.name && a.driverKind == b.driverKind && a.driverAddress == b.driverAddress
           && a.model == b.model && a.abilities == b.abilities && a.cascade == b.cascade && a.fishEye == b.fishEye
           && a.accessProtocol == b.accessProtocol;
}

bool sameDriver(const CCamera::Data &a, const CCamera::Data &b)
{
    return a.driverKind == b.driverKind && a.driverAddress == b.driverAddress && a.model == b.model;
}

} // namespace

CCameraManager::CCameraManager()
    : d(new Private)
{
}

CCameraManager::~CCameraManager()
{
    Clear();
}

void CCameraManager::SetSimClock(ptz_devices::CSimClock *clock)
{
    d->clock = clock;
}

void CCameraManager::Clear()
{
    QObject::disconnect(d->storeConnection);
    d->cameras.clear();
    d->byId.clear();
    d->generation = 0;
}

void CCameraManager::Reload()
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    const quint64 generation = site_store::CSiteStore::CurrentGeneration();
    if (generation != d->generation) {
        // Another store: nothing of the old one is reused.
        Clear();
        d->generation = generation;
        d->storeConnection = connect(store, &site_store::CSiteStore::changed, this,
                                     [this](site_store::CSiteStore::Table table, const QString &) {
                                         if (table == site_store::CSiteStore::Table::Cameras
                                             || table == site_store::CSiteStore::Table::All)
                                             Reload();
                                     });
    }

    std::vector<std::shared_ptr<CCamera>> cameras;
    std::map<QString, std::shared_ptr<CCamera>> byId;
    const QList<site_store::CameraRecord> records = store->cameras();
    for (const site_store::CameraRecord &record : records) {
        CCamera::Data data = dataFromRecord(record);
        std::shared_ptr<CCamera> camera;
        auto old = d->byId.find(record.id);
        if (old != d->byId.end() && sameData(old->second->data(), data)) {
            camera = old->second;
        } else {
            camera = std::make_shared<CCamera>(data);
            // A changed name or ability list keeps the running driver; the
            // old camera object lets it go first.
            if (old != d->byId.end() && sameDriver(old->second->data(), data) && old->second->HasDriver()) {
                camera->SetDriver(old->second->TakeDriver());
            } else {
                ptz_devices::DriverConfig config;
                config.kind = record.driverKind;
                config.model = record.model;
                config.cameraId = record.id;
                config.address = record.driverAddress;
                config.clock = d->clock;
                config.store = &d->stateStore;
                QString error;
                ptz_devices::IPtzDriver *driver = ptz_devices::CDriverFactory::create(config, &error);
                if (!driver)
                    ZEPH_LOG_WARN("no driver for camera %s (%s/%s): %s", qUtf8Printable(record.id),
                                  qUtf8Printable(record.driverKind), qUtf8Printable(record.model),
                                  qUtf8Printable(error));
                camera->SetDriver(driver, error);
            }
        }
        cameras.push_back(camera);
        byId.emplace(record.id, camera);
    }
    d->cameras.swap(cameras);
    d->byId.swap(byId);
    emit SignalCamerasChanged();
}

std::shared_ptr<CCamera> CCameraManager::GetCameraByID(const QString &cameraId)
{
    if (d->generation != site_store::CSiteStore::CurrentGeneration())
        Reload();
    auto it = d->byId.find(cameraId);
    return it == d->byId.end() ? std::shared_ptr<CCamera>() : it->second;
}

std::shared_ptr<CCamera> CCameraManager::GetCameraByID(const std::string &cameraId)
{
    return GetCameraByID(QString::fromStdString(cameraId));
}

std::vector<std::shared_ptr<CCamera>> CCameraManager::GetCameras()
{
    if (d->generation != site_store::CSiteStore::CurrentGeneration())
        Reload();
    return d->cameras;
}

QStringList CCameraManager::GetCameraIDs()
{
    QStringList ids;
    for (const auto &camera : GetCameras())
        ids << QString::fromStdString(camera->GetID());
    return ids;
}

} // namespace ZephPluginManager
