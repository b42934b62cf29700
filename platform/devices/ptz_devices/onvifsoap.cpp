#include "ptz_devices/onvifsoap.h"

#include <QRegularExpression>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace ptz_devices {
namespace onvif {

KDSoapValue element(const QString &ns, const QString &name, const QVariant &value)
{
    KDSoapValue v(name, value);
    v.setNamespaceUri(ns);
    v.setQualified(true);
    return v;
}

KDSoapValue element(const QString &ns, const QString &name, const QList<KDSoapValue> &children)
{
    KDSoapValueList list;
    list.append(children);
    KDSoapValue v(name, list);
    v.setNamespaceUri(ns);
    v.setQualified(true);
    return v;
}

KDSoapValue range(const QString &name, double min, double max)
{
    return element(kSchemaNs, name,
                   KDSoapValueList{} << element(kSchemaNs, QStringLiteral("Min"), min)
                                     << element(kSchemaNs, QStringLiteral("Max"), max));
}

KDSoapValue attribute(const QString &name, const QVariant &value)
{
    return KDSoapValue(name, value);
}

KDSoapMessage body(const QString &ns, const QString &name, const QList<KDSoapValue> &children)
{
    KDSoapMessage message;
    message = element(ns, name, children);
    return message;
}

KDSoapValue child(const KDSoapValue &parent, const QString &name)
{
    const KDSoapValueList &list = parent.childValues();
    for (const KDSoapValue &v : list) {
        if (v.name() == name)
            return v;
    }
    return KDSoapValue();
}

KDSoapValue path(const KDSoapValue &root, const QStringList &names)
{
    KDSoapValue v = root;
    for (const QString &name : names) {
        v = child(v, name);
        if (v.isNull())
            break;
    }
    return v;
}

QList<KDSoapValue> children(const KDSoapValue &parent, const QString &name)
{
    QList<KDSoapValue> found;
    const KDSoapValueList &list = parent.childValues();
    for (const KDSoapValue &v : list) {
        if (v.name() == name)
            found << v;
    }
    return found;
}

KDSoapValue find(const KDSoapValue &root, const QString &name)
{
    const KDSoapValueList &list = root.childValues();
    for (const KDSoapValue &v : list) {
        if (v.name() == name)
            return v;
        const KDSoapValue below = find(v, name);
        if (!below.isNull())
            return below;
    }
    return KDSoapValue();
}

QString text(const KDSoapValue &value)
{
    return value.value().toString().trimmed();
}

QString attributeValue(const KDSoapValue &value, const QString &name)
{
    const QList<KDSoapValue> &attributes = value.childValues().attributes();
    for (const KDSoapValue &a : attributes) {
        if (a.name() == name)
            return a.value().toString();
    }
    return QString();
}

bool isTrue(const KDSoapValue &value)
{
    const QString t = text(value);
    return t == QLatin1String("true") || t == QLatin1String("1");
}

QString durationText(int ms)
{
    if (ms % 1000 == 0)
        return QStringLiteral("PT%1S").arg(ms / 1000);
    return QStringLiteral("PT%1S").arg(ms / 1000.0, 0, 'f', 3);
}

int durationMs(const QString &text)
{
    static const QRegularExpression re(QStringLiteral("^PT(?:(\\d+)H)?(?:(\\d+)M)?(?:(\\d+(?:\\.\\d+)?)S)?$"));
    const QRegularExpressionMatch m = re.match(text.trimmed());
    if (!m.hasMatch() || text.trimmed() == QLatin1String("PT"))
        return -1;
    const double seconds =
        m.captured(1).toDouble() * 3600.0 + m.captured(2).toDouble() * 60.0 + m.captured(3).toDouble();
    return int(seconds * 1000.0 + 0.5);
}

double velocityFromSpeed(int direction, int speed, int maxSpeed, double rangeMax)
{
    if (direction == 0 || speed <= 0 || maxSpeed <= 0)
        return 0.0;
    const double magnitude = std::min(1.0, double(speed) / maxSpeed) * rangeMax;
    return direction < 0 ? -magnitude : magnitude;
}

int speedFromVelocity(double velocity, int maxSpeed, double rangeMax)
{
    if (velocity == 0.0 || rangeMax <= 0.0)
        return 0;
    const int speed = int(std::lround(std::abs(velocity) / rangeMax * maxSpeed));
    return std::clamp(speed, 1, maxSpeed);
}

double panFromX(double x)
{
    double degrees = std::fmod(std::clamp(x, -1.0, 1.0) * 180.0, 360.0);
    if (degrees < 0.0)
        degrees += 360.0;
    return degrees >= 360.0 ? 0.0 : degrees;
}

double xFromPan(double degrees)
{
    double d = std::fmod(degrees, 360.0);
    if (d < 0.0)
        d += 360.0;
    return (d > 180.0 ? d - 360.0 : d) / 180.0;
}

double tiltFromY(double y, double minTilt, double maxTilt)
{
    return minTilt + (std::clamp(y, -1.0, 1.0) + 1.0) / 2.0 * (maxTilt - minTilt);
}

double yFromTilt(double degrees, double minTilt, double maxTilt)
{
    if (maxTilt <= minTilt)
        return 0.0;
    return (degrees - minTilt) / (maxTilt - minTilt) * 2.0 - 1.0;
}

double zoomFromX(double x, double maxZoom)
{
    return 1.0 + std::clamp(x, 0.0, 1.0) * (maxZoom - 1.0);
}

double xFromZoom(double zoom, double maxZoom)
{
    return maxZoom <= 1.0 ? 0.0 : (zoom - 1.0) / (maxZoom - 1.0);
}

QString faultDetails(const KDSoapMessage &message)
{
    if (!message.isFault())
        return QString();
    QStringList parts;
    // SOAP 1.2: Code/Value, Code/Subcode/Value, Reason/Text; SOAP 1.1: faultcode, faultstring.
    const KDSoapValue reason = child(message, QStringLiteral("Reason"));
    parts << text(reason.isNull() ? child(message, QStringLiteral("faultstring"))
                                  : child(reason, QStringLiteral("Text")));
    KDSoapValue code = child(message, QStringLiteral("Code"));
    while (!code.isNull()) {
        parts << text(child(code, QStringLiteral("Value")));
        code = child(code, QStringLiteral("Subcode"));
    }
    parts << text(child(message, QStringLiteral("faultcode")));
    parts.removeAll(QString());
    if (parts.isEmpty())
        parts << message.faultAsString();
    return parts.join(QLatin1Char(' '));
}

} // namespace onvif
} // namespace ptz_devices
