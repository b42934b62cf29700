#include "ptz_devices/convifdriver.h"

#include "ptz_devices/convifclient.h"
#include "ptz_devices/convifrequestqueue.h"
#include "ptz_devices/onvifsoap.h"

// Presets and auxiliary switches.
namespace ptz_devices {

namespace ov = onvif;
using Service = COnvifClient::Service;

namespace {

KDSoapValueList presetArgs(const QString &profile, const QString &token)
{
    KDSoapValueList args;
    args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), profile)
         << ov::element(ov::kPtzNs, QStringLiteral("PresetToken"), token);
    return args;
}

} // namespace

QString COnvifDriver::presetToken(int number) const
{
    // Cameras that number their presets use the number as token.
    return m_presetTokens.value(number, QString::number(number));
}

QVariant COnvifDriver::readPresets(const KDSoapMessage &reply)
{
    const QList<KDSoapValue> presets = ov::children(reply, QStringLiteral("Preset"));
    const int slotCount = std::max(1, m_caps.presetSlots);
    QHash<int, QString> tokens;
    QStringList unnumbered;
    for (const KDSoapValue &p : presets) {
        const QString token = ov::attributeValue(p, QStringLiteral("token"));
        bool numeric = false;
        const int number = token.toInt(&numeric);
        if (numeric && number >= 1 && number <= slotCount && !tokens.contains(number))
            tokens.insert(number, token);
        else
            unnumbered << token;
    }
    // Other tokens take the free numbers, in the camera's order.
    int next = 1;
    for (const QString &token : unnumbered) {
        while (tokens.contains(next))
            ++next;
        if (next > slotCount)
            break;
        tokens.insert(next, token);
    }
    m_presetTokens = tokens;

    QVector<DevicePreset> list;
    for (const KDSoapValue &p : presets) {
        const QString token = ov::attributeValue(p, QStringLiteral("token"));
        const int number = tokens.key(token, 0);
        if (number == 0)
            continue;
        DevicePreset preset;
        preset.number = number;
        preset.name = ov::child(p, QStringLiteral("Name")).value().toString();
        const KDSoapValue position = ov::child(p, QStringLiteral("PTZPosition"));
        const KDSoapValue panTilt = ov::child(position, QStringLiteral("PanTilt"));
        const KDSoapValue zoom = ov::child(position, QStringLiteral("Zoom"));
        preset.pan = ov::panFromX(ov::attributeValue(panTilt, QStringLiteral("x")).toDouble());
        preset.tilt =
            ov::tiltFromY(ov::attributeValue(panTilt, QStringLiteral("y")).toDouble(), m_caps.minTilt, m_caps.maxTilt);
        preset.zoom = ov::zoomFromX(ov::attributeValue(zoom, QStringLiteral("x")).toDouble(), m_caps.maxZoom);
        list << preset;
    }
    std::sort(list.begin(), list.end(),
              [](const DevicePreset &a, const DevicePreset &b) { return a.number < b.number; });
    return QVariant::fromValue(list);
}

quint64 COnvifDriver::listPresets()
{
    return submit(DriverOperation::ListPresets, 0, COnvifRequestQueue::NoAxis, false, false, [this](const auto &done) {
        KDSoapValueList args;
        args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), m_profile.profileToken);
        soap(int(Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("GetPresets"), args), done,
             [this](const KDSoapMessage &r) { return readPresets(r); });
    });
}

quint64 COnvifDriver::storePreset(DriverOperation operation, int number, const QString &name)
{
    return submit(operation, number, COnvifRequestQueue::NoAxis, false, false, [this, number, name](const auto &done) {
        if (number < 1 || number > m_caps.presetSlots) {
            done(false, tr("preset %1 is outside 1-%2").arg(number).arg(m_caps.presetSlots), QVariant());
            return;
        }
        KDSoapValueList args = presetArgs(m_profile.profileToken, presetToken(number));
        // The library escapes the name; it reaches the camera exactly as typed.
        args.insert(1, ov::element(ov::kPtzNs, QStringLiteral("PresetName"), name));
        soap(int(Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("SetPreset"), args), done,
             [this, number, name](const KDSoapMessage &r) {
                 const QString token = ov::text(ov::child(r, QStringLiteral("PresetToken")));
                 if (!token.isEmpty())
                     m_presetTokens.insert(number, token);
                 DevicePreset preset;
                 preset.number = number;
                 preset.name = name;
                 preset.pan = m_status.pan;
                 preset.tilt = m_status.tilt;
                 preset.zoom = m_status.zoom;
                 return QVariant::fromValue(preset);
             });
    });
}

quint64 COnvifDriver::setPreset(int number, const QString &name)
{
    return storePreset(DriverOperation::SetPreset, number, name);
}

quint64 COnvifDriver::renamePreset(int number, const QString &name)
{
    // The protocol renames by storing the preset again under its token.
    return storePreset(DriverOperation::RenamePreset, number, name);
}

quint64 COnvifDriver::gotoPreset(int number)
{
    return submit(DriverOperation::GotoPreset, number, COnvifRequestQueue::NoAxis, false, false,
                  [this, number](const auto &done) {
                      soap(int(Service::Ptz),
                           ov::body(ov::kPtzNs, QStringLiteral("GotoPreset"),
                                    presetArgs(m_profile.profileToken, presetToken(number))),
                           done);
                  });
}

quint64 COnvifDriver::removePreset(int number)
{
    return submit(DriverOperation::RemovePreset, number, COnvifRequestQueue::NoAxis, false, false,
                  [this, number](const auto &done) {
                      const auto removed = [this, number, done](bool ok, const QString &error, const QVariant &result) {
                          if (ok)
                              m_presetTokens.remove(number);
                          done(ok, error, result);
                      };
                      soap(int(Service::Ptz),
                           ov::body(ov::kPtzNs, QStringLiteral("RemovePreset"),
                                    presetArgs(m_profile.profileToken, presetToken(number))),
                           removed);
                  });
}

quint64 COnvifDriver::auxiliary(DriverOperation operation, bool on, const QString &onCommand, const QString &offCommand)
{
    const QString command = on ? onCommand : offCommand;
    return submit(
        operation, on ? 1 : 0, COnvifRequestQueue::NoAxis, false, false,
        [this, operation, on, command](const auto &done) {
            if (!m_profile.auxiliary.contains(command)) {
                done(false, tr("this camera does not offer that function"), QVariant());
                return;
            }
            KDSoapValueList args;
            args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), m_profile.profileToken)
                 << ov::element(ov::kPtzNs, QStringLiteral("AuxiliaryData"), command);
            const auto switched = [this, operation, on, done](bool ok, const QString &error, const QVariant &r) {
                if (ok) {
                    (operation == DriverOperation::Light ? m_status.light : m_status.wiper) = on;
                    emit statusChanged(status());
                }
                done(ok, error, r);
            };
            soap(int(Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("SendAuxiliaryCommand"), args), switched);
        });
}

quint64 COnvifDriver::setLight(bool on)
{
    return auxiliary(DriverOperation::Light, on, ov::kLightOn, ov::kLightOff);
}

quint64 COnvifDriver::setWiper(bool on)
{
    return auxiliary(DriverOperation::Wiper, on, ov::kWiperOn, ov::kWiperOff);
}

} // namespace ptz_devices
