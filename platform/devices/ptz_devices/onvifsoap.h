#pragma once

// Building and reading the SOAP bodies exchanged with ONVIF cameras, shared by
// the driver and the loopback camera. Not installed: it names KDSoap types.

#include "ptz_devices/ptz_devices_export.h"

#include <KDSoapClient/KDSoapMessage.h>
#include <KDSoapClient/KDSoapValue.h>

#include <QString>
#include <QStringList>

namespace ptz_devices {
namespace onvif {

inline const QString kDeviceNs = QStringLiteral("http://www.onvif.org/ver10/device/wsdl");
inline const QString kMediaNs = QStringLiteral("http://www.onvif.org/ver10/media/wsdl");
inline const QString kPtzNs = QStringLiteral("http://www.onvif.org/ver20/ptz/wsdl");
inline const QString kImagingNs = QStringLiteral("http://www.onvif.org/ver20/imaging/wsdl");
inline const QString kSchemaNs = QStringLiteral("http://www.onvif.org/ver10/schema");
inline const QString kNetworkNs = QStringLiteral("http://www.onvif.org/ver10/network/wsdl");
inline const QString kDiscoveryNs = QStringLiteral("http://schemas.xmlsoap.org/ws/2005/04/discovery");
inline const QString kSecurityNs =
    QStringLiteral("http://docs.oasis-open.org/wss/2004/01/oasis-200401-wss-wssecurity-secext-1.0.xsd");

inline const QString kDevicePath = QStringLiteral("/onvif/device_service");
inline const QString kMediaPath = QStringLiteral("/onvif/media_service");
inline const QString kPtzPath = QStringLiteral("/onvif/ptz_service");
inline const QString kImagingPath = QStringLiteral("/onvif/imaging_service");

// Velocity and position spaces the loopback camera announces; the driver
// reads whatever URIs and ranges the camera reports.
inline const QString kVelocityGenericSpace =
    QStringLiteral("http://www.onvif.org/ver10/tptz/PanTiltSpaces/VelocityGenericSpace");
inline const QString kZoomVelocityGenericSpace =
    QStringLiteral("http://www.onvif.org/ver10/tptz/ZoomSpaces/VelocityGenericSpace");

// Auxiliary commands for light and wiper.
inline const QString kLightOn = QStringLiteral("tt:IRLamp|On");
inline const QString kLightOff = QStringLiteral("tt:IRLamp|Off");
inline const QString kWiperOn = QStringLiteral("tt:Wiper|On");
inline const QString kWiperOff = QStringLiteral("tt:Wiper|Off");

// A qualified element with a text value or with children.
PTZ_DEVICES_EXPORT KDSoapValue element(const QString &ns, const QString &name, const QVariant &value = QVariant());
PTZ_DEVICES_EXPORT KDSoapValue element(const QString &ns, const QString &name, const QList<KDSoapValue> &children);
// A schema element with Min and Max children, as ranges are reported.
PTZ_DEVICES_EXPORT KDSoapValue range(const QString &name, double min, double max);
PTZ_DEVICES_EXPORT KDSoapValue attribute(const QString &name, const QVariant &value);
// A request or response body: the operation element of a service namespace.
PTZ_DEVICES_EXPORT KDSoapMessage body(const QString &ns, const QString &name,
                                      const QList<KDSoapValue> &children = QList<KDSoapValue>());

// Children are matched by local name; namespaces vary between cameras.
PTZ_DEVICES_EXPORT KDSoapValue child(const KDSoapValue &parent, const QString &name);
PTZ_DEVICES_EXPORT KDSoapValue path(const KDSoapValue &root, const QStringList &names);
PTZ_DEVICES_EXPORT QList<KDSoapValue> children(const KDSoapValue &parent, const QString &name);
// The first element of that name anywhere below `root` (depth first).
PTZ_DEVICES_EXPORT KDSoapValue find(const KDSoapValue &root, const QString &name);
PTZ_DEVICES_EXPORT QString text(const KDSoapValue &value);
PTZ_DEVICES_EXPORT QString attributeValue(const KDSoapValue &value, const QString &name);
PTZ_DEVICES_EXPORT bool isTrue(const KDSoapValue &value);

// xs:duration for whole or fractional seconds ("PT1.5S") and back (ms, -1 when unreadable).
PTZ_DEVICES_EXPORT QString durationText(int ms);
PTZ_DEVICES_EXPORT int durationMs(const QString &text);

// Panel speed (1..maxSpeed, signed by direction) onto a camera velocity range
// [-rangeMax, rangeMax] and back (0 stays 0).
PTZ_DEVICES_EXPORT double velocityFromSpeed(int direction, int speed, int maxSpeed, double rangeMax);
PTZ_DEVICES_EXPORT int speedFromVelocity(double velocity, int maxSpeed, double rangeMax);

// Generic position space: pan x in [-1, 1] is -180..180 degrees (0 ahead),
// tilt y in [-1, 1] spans [minTilt, maxTilt], zoom x in [0, 1] spans 1x..maxZoom.
PTZ_DEVICES_EXPORT double panFromX(double x);
PTZ_DEVICES_EXPORT double xFromPan(double degrees);
PTZ_DEVICES_EXPORT double tiltFromY(double y, double minTilt, double maxTilt);
PTZ_DEVICES_EXPORT double yFromTilt(double degrees, double minTilt, double maxTilt);
PTZ_DEVICES_EXPORT double zoomFromX(double x, double maxZoom);
PTZ_DEVICES_EXPORT double xFromZoom(double zoom, double maxZoom);

// The camera's fault reason and codes, joined (empty when `message` is no fault).
PTZ_DEVICES_EXPORT QString faultDetails(const KDSoapMessage &message);

} // namespace onvif
} // namespace ptz_devices
