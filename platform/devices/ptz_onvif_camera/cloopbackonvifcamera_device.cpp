#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include "ptz_devices/csimulatedcamera.h"
#include "ptz_devices/onvifsoap.h"

#include <QDateTime>

// Device and media services of the loopback camera.
namespace ptz_onvif_camera {

namespace ov = ptz_devices::onvif;

namespace {

const QString kProfileToken = QStringLiteral("profile_1");
const QString kPtzConfigToken = QStringLiteral("ptz_config_1");
const QString kNodeToken = QStringLiteral("ptz_node_1");
const QString kVideoSourceToken = QStringLiteral("video_source_1");

KDSoapValue withToken(KDSoapValue value, const QString &token)
{
    value.childValues().attributes() << ov::attribute(QStringLiteral("token"), token);
    return value;
}

} // namespace

void CLoopbackOnvifCamera::getDeviceInformation(const KDSoapMessage &, const Responder &respond)
{
    KDSoapValueList info;
    info << ov::element(ov::kDeviceNs, QStringLiteral("Manufacturer"), QStringLiteral("Loopback"))
         << ov::element(ov::kDeviceNs, QStringLiteral("Model"), m_options.model)
         << ov::element(ov::kDeviceNs, QStringLiteral("FirmwareVersion"), QStringLiteral("1.0"))
         << ov::element(ov::kDeviceNs, QStringLiteral("SerialNumber"), QString::number(m_port))
         << ov::element(ov::kDeviceNs, QStringLiteral("HardwareId"), QStringLiteral("loopback"));
    answer(respond, ov::body(ov::kDeviceNs, QStringLiteral("GetDeviceInformationResponse"), info));
}

void CLoopbackOnvifCamera::getCapabilities(const KDSoapMessage &, const Responder &respond)
{
    const auto service = [this](const char *name, const QString &path) {
        return ov::element(ov::kSchemaNs, QLatin1String(name),
                           KDSoapValueList{}
                               << ov::element(ov::kSchemaNs, QStringLiteral("XAddr"), serviceAddress(path)));
    };
    KDSoapValueList caps;
    caps << service("Device", ov::kDevicePath) << service("Imaging", ov::kImagingPath)
         << service("Media", ov::kMediaPath) << service("PTZ", ov::kPtzPath);
    answer(respond, ov::body(ov::kDeviceNs, QStringLiteral("GetCapabilitiesResponse"),
                             KDSoapValueList{} << ov::element(ov::kDeviceNs, QStringLiteral("Capabilities"), caps)));
}

void CLoopbackOnvifCamera::getServices(const KDSoapMessage &, const Responder &respond)
{
    KDSoapValueList services;
    const QList<QPair<QString, QString>> list{{ov::kDeviceNs, ov::kDevicePath},
                                              {ov::kMediaNs, ov::kMediaPath},
                                              {ov::kPtzNs, ov::kPtzPath},
                                              {ov::kImagingNs, ov::kImagingPath}};
    for (const auto &entry : list) {
        KDSoapValueList version;
        version << ov::element(ov::kSchemaNs, QStringLiteral("Major"), 2)
                << ov::element(ov::kSchemaNs, QStringLiteral("Minor"), 0);
        services << ov::element(ov::kDeviceNs, QStringLiteral("Service"),
                                KDSoapValueList{}
                                    << ov::element(ov::kDeviceNs, QStringLiteral("Namespace"), entry.first)
                                    << ov::element(ov::kDeviceNs, QStringLiteral("XAddr"), serviceAddress(entry.second))
                                    << ov::element(ov::kDeviceNs, QStringLiteral("Version"), version));
    }
    answer(respond, ov::body(ov::kDeviceNs, QStringLiteral("GetServicesResponse"), services));
}

void CLoopbackOnvifCamera::getSystemDateAndTime(const KDSoapMessage &, const Responder &respond)
{
    const QDateTime now = this->now();
    KDSoapValueList date;
    date << ov::element(ov::kSchemaNs, QStringLiteral("Year"), now.date().year())
         << ov::element(ov::kSchemaNs, QStringLiteral("Month"), now.date().month())
         << ov::element(ov::kSchemaNs, QStringLiteral("Day"), now.date().day());
    KDSoapValueList time;
    time << ov::element(ov::kSchemaNs, QStringLiteral("Hour"), now.time().hour())
         << ov::element(ov::kSchemaNs, QStringLiteral("Minute"), now.time().minute())
         << ov::element(ov::kSchemaNs, QStringLiteral("Second"), now.time().second());
    KDSoapValueList utc;
    utc << ov::element(ov::kSchemaNs, QStringLiteral("Date"), date)
        << ov::element(ov::kSchemaNs, QStringLiteral("Time"), time);
    KDSoapValueList info;
    info << ov::element(ov::kSchemaNs, QStringLiteral("DateTimeType"), QStringLiteral("Manual"))
         << ov::element(ov::kSchemaNs, QStringLiteral("UTCDateTime"), utc);
    answer(respond,
           ov::body(ov::kDeviceNs, QStringLiteral("GetSystemDateAndTimeResponse"),
                    KDSoapValueList{} << ov::element(ov::kDeviceNs, QStringLiteral("SystemDateAndTime"), info)));
}

void CLoopbackOnvifCamera::getProfiles(const KDSoapMessage &, const Responder &respond)
{
    KDSoapValueList source;
    source << ov::element(ov::kSchemaNs, QStringLiteral("Name"), QStringLiteral("Video source"))
           << ov::element(ov::kSchemaNs, QStringLiteral("UseCount"), 1)
           << ov::element(ov::kSchemaNs, QStringLiteral("SourceToken"), kVideoSourceToken);
    KDSoapValueList ptz;
    ptz << ov::element(ov::kSchemaNs, QStringLiteral("Name"), QStringLiteral("PTZ"))
        << ov::element(ov::kSchemaNs, QStringLiteral("UseCount"), 1)
        << ov::element(ov::kSchemaNs, QStringLiteral("NodeToken"), kNodeToken)
        << ov::element(ov::kSchemaNs, QStringLiteral("DefaultPTZTimeout"),
                       ov::durationText(m_options.defaultTimeoutMs));
    KDSoapValueList profile;
    profile << ov::element(ov::kSchemaNs, QStringLiteral("Name"), QStringLiteral("Main stream"))
            << withToken(ov::element(ov::kSchemaNs, QStringLiteral("VideoSourceConfiguration"), source),
                         QStringLiteral("video_config_1"))
            << withToken(ov::element(ov::kSchemaNs, QStringLiteral("PTZConfiguration"), ptz), kPtzConfigToken);
    answer(respond, ov::body(ov::kMediaNs, QStringLiteral("GetProfilesResponse"),
                             KDSoapValueList{} << withToken(
                                 ov::element(ov::kMediaNs, QStringLiteral("Profiles"), profile), kProfileToken)));
}

KDSoapValue CLoopbackOnvifCamera::ptzNode() const
{
    const ptz_devices::DriverCapabilities caps = m_camera->capabilities();
    KDSoapValueList spaces;
    if (hasPanTilt()) {
        spaces << ov::element(ov::kSchemaNs, QStringLiteral("ContinuousPanTiltVelocitySpace"),
                              KDSoapValueList{}
                                  << ov::element(ov::kSchemaNs, QStringLiteral("URI"), ov::kVelocityGenericSpace)
                                  << ov::range(QStringLiteral("XRange"), -1.0, 1.0)
                                  << ov::range(QStringLiteral("YRange"), -1.0, 1.0));
    }
    if (hasZoom()) {
        spaces << ov::element(ov::kSchemaNs, QStringLiteral("ContinuousZoomVelocitySpace"),
                              KDSoapValueList{}
                                  << ov::element(ov::kSchemaNs, QStringLiteral("URI"), ov::kZoomVelocityGenericSpace)
                                  << ov::range(QStringLiteral("XRange"), -1.0, 1.0));
    }
    KDSoapValueList node;
    node << ov::element(ov::kSchemaNs, QStringLiteral("Name"), QStringLiteral("PTZ head"))
         << ov::element(ov::kSchemaNs, QStringLiteral("SupportedPTZSpaces"), spaces)
         << ov::element(ov::kSchemaNs, QStringLiteral("MaximumNumberOfPresets"),
                        hasPanTilt() || hasZoom() ? caps.presetSlots : 0)
         << ov::element(ov::kSchemaNs, QStringLiteral("HomeSupported"), false);
    if (hasPanTilt()) {
        for (const QString &command : {ov::kLightOn, ov::kLightOff, ov::kWiperOn, ov::kWiperOff})
            node << ov::element(ov::kSchemaNs, QStringLiteral("AuxiliaryCommands"), command);
    }
    if (hasPanTilt() && caps.patrolSlots > 0) {
        KDSoapValueList tours;
        tours << ov::element(ov::kSchemaNs, QStringLiteral("MaximumNumberOfPresetTours"), caps.patrolSlots)
              << ov::element(ov::kSchemaNs, QStringLiteral("PTZPresetTourOperation"), QStringLiteral("Start"))
              << ov::element(ov::kSchemaNs, QStringLiteral("PTZPresetTourOperation"), QStringLiteral("Stop"));
        node << ov::element(ov::kSchemaNs, QStringLiteral("Extension"),
                            KDSoapValueList{}
                                << ov::element(ov::kSchemaNs, QStringLiteral("SupportedPresetTour"), tours));
    }
    return withToken(ov::element(ov::kPtzNs, QStringLiteral("PTZNode"), node), kNodeToken);
}

void CLoopbackOnvifCamera::getNodes(const KDSoapMessage &, const Responder &respond)
{
    answer(respond, ov::body(ov::kPtzNs, QStringLiteral("GetNodesResponse"), KDSoapValueList{} << ptzNode()));
}

void CLoopbackOnvifCamera::getConfigurationOptions(const KDSoapMessage &, const Responder &respond)
{
    KDSoapValueList options;
    options << ov::element(ov::kSchemaNs, QStringLiteral("Spaces"),
                           ov::child(ptzNode(), QStringLiteral("SupportedPTZSpaces")).childValues())
            << ov::element(ov::kSchemaNs, QStringLiteral("PTZTimeout"),
                           KDSoapValueList{}
                               << ov::element(ov::kSchemaNs, QStringLiteral("Min"), QStringLiteral("PT0.1S"))
                               << ov::element(ov::kSchemaNs, QStringLiteral("Max"), QStringLiteral("PT60S")));
    answer(respond,
           ov::body(ov::kPtzNs, QStringLiteral("GetConfigurationOptionsResponse"),
                    KDSoapValueList{} << ov::element(ov::kPtzNs, QStringLiteral("PTZConfigurationOptions"), options)));
}

bool CLoopbackOnvifCamera::hasPanTilt() const
{
    return m_camera->capabilities().hasAbility(ptz_devices::AbilityPan);
}

bool CLoopbackOnvifCamera::hasZoom() const
{
    return m_camera->capabilities().hasAbility(ptz_devices::AbilityZoom);
}

} // namespace ptz_onvif_camera
