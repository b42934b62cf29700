#pragma once

#include <QObject>

#include <memory>
#include <vector>

namespace ptz_onvif_camera {
class CLoopbackOnvifCamera;
}

// Serves, inside the workbench, the ONVIF cameras of the site whose model is
// "loopback": each on the 127.0.0.1 port of its address, with the credentials
// in that address, so the whole network path runs without another program.
class CLoopbackCameraHost : public QObject
{
    Q_OBJECT
public:
    explicit CLoopbackCameraHost(QObject *parent = nullptr);
    ~CLoopbackCameraHost() override;

    // Adds the demo ONVIF camera to the current site when it is missing.
    static bool AddDemoCamera(QString *error);
    // Starts a loopback camera for every such camera of the current site;
    // returns a sentence per camera that could not be served.
    QStringList ServeSiteCameras();

private:
    std::vector<std::unique_ptr<ptz_onvif_camera::CLoopbackOnvifCamera>> m_cameras;
};
