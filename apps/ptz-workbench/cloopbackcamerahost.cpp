#include "cloopbackcamerahost.h"

#include "ptz_onvif_camera/cloopbackonvifcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QHostAddress>
#include <QUrl>

namespace demo = site_store::demo;

CLoopbackCameraHost::CLoopbackCameraHost(QObject *parent)
    : QObject(parent)
{
}

CLoopbackCameraHost::~CLoopbackCameraHost() = default;

bool CLoopbackCameraHost::AddDemoCamera(QString *error)
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    if (!store || store->camera(QString::fromLatin1(demo::kOnvifCamera)))
        return true;
    site_store::CameraRecord camera;
    camera.id = QString::fromLatin1(demo::kOnvifCamera);
    camera.name = tr("ONVIF Dome - Loopback");
    camera.driverKind = QString::fromLatin1(demo::kOnvifKind);
    camera.model = QString::fromLatin1(demo::kOnvifLoopbackModel);
    camera.driverAddress = QString::fromLatin1(demo::kOnvifAddress);
    camera.abilities = {1, 48, 49, 50};
    if (store->upsertCamera(camera))
        return true;
    if (error)
        *error = store->lastError();
    return false;
}

QStringList CLoopbackCameraHost::ServeSiteCameras()
{
    QStringList problems;
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    if (!store)
        return problems;
    const QList<site_store::CameraRecord> cameras = store->cameras();
    for (const site_store::CameraRecord &record : cameras) {
        if (record.driverKind != QLatin1String(demo::kOnvifKind)
            || record.model != QLatin1String(demo::kOnvifLoopbackModel))
            continue;
        const QUrl url(record.driverAddress);
        if (!QHostAddress(url.host()).isLoopback() || url.port() <= 0) {
            problems << tr("The loopback camera %1 needs an address on 127.0.0.1 with a port.").arg(record.name);
            continue;
        }
        ptz_onvif_camera::CLoopbackOnvifCamera::Options options;
        options.port = quint16(url.port());
        options.user = url.userName();
        options.password = url.password();
        auto camera = std::make_unique<ptz_onvif_camera::CLoopbackOnvifCamera>(options);
        QString error;
        if (!camera->start(&error)) {
            problems << tr("The loopback camera %1 cannot be served: %2").arg(record.name, error);
            continue;
        }
        m_cameras.push_back(std::move(camera));
    }
    return problems;
}
