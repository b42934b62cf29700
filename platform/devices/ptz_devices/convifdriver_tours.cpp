#include "ptz_devices/convifdriver.h"

#include "ptz_devices/convifclient.h"
#include "ptz_devices/convifrequestqueue.h"
#include "ptz_devices/onvifsoap.h"

#include <algorithm>

// Patrols as the camera's preset tours.
namespace ptz_devices {

namespace ov = onvif;
using Service = COnvifClient::Service;

namespace {

KDSoapValueList profileArgs(const QString &profile)
{
    KDSoapValueList args;
    args << ov::element(ov::kPtzNs, QStringLiteral("ProfileToken"), profile);
    return args;
}

} // namespace

QVector<DevicePatrol> COnvifDriver::readTours(const KDSoapMessage &reply)
{
    const QList<KDSoapValue> tours = ov::children(reply, QStringLiteral("PresetTour"));
    const int slotCount = std::max(1, m_caps.patrolSlots);
    // Numbers this driver gave first, then numeric tokens, then the free numbers.
    QHash<int, QString> numbers;
    QStringList tokens;
    for (const KDSoapValue &tour : tours)
        tokens << ov::attributeValue(tour, QStringLiteral("token"));
    for (auto it = m_tourTokens.cbegin(); it != m_tourTokens.cend(); ++it) {
        if (tokens.contains(it.value()))
            numbers.insert(it.key(), it.value());
    }
    for (const QString &token : tokens) {
        const int number = token.toInt();
        if (numbers.key(token, 0) == 0 && number >= 1 && number <= slotCount && !numbers.contains(number))
            numbers.insert(number, token);
    }
    int next = 1;
    for (const QString &token : tokens) {
        if (numbers.key(token, 0) != 0)
            continue;
        while (numbers.contains(next))
            ++next;
        if (next <= slotCount)
            numbers.insert(next, token);
    }
    m_tourTokens = numbers;
    m_runningTour.clear();

    QVector<DevicePatrol> patrols;
    for (const KDSoapValue &tour : tours) {
        DevicePatrol patrol;
        const QString token = ov::attributeValue(tour, QStringLiteral("token"));
        patrol.number = numbers.key(token, 0);
        patrol.name = ov::child(tour, QStringLiteral("Name")).value().toString();
        if (ov::text(ov::path(tour, {QStringLiteral("Status"), QStringLiteral("State")})) == QLatin1String("Touring"))
            m_runningTour = token;
        for (const KDSoapValue &spot : ov::children(tour, QStringLiteral("TourSpot"))) {
            DevicePatrolPoint point;
            const QString presetToken =
                ov::text(ov::path(spot, {QStringLiteral("PresetDetail"), QStringLiteral("PresetToken")}));
            point.preset = m_presetTokens.key(presetToken, presetToken.toInt());
            const KDSoapValue speed = ov::path(spot, {QStringLiteral("Speed"), QStringLiteral("PanTilt")});
            point.speed = std::max(
                m_caps.minSpeed,
                ov::speedFromVelocity(ov::attributeValue(speed, QStringLiteral("x")).toDouble(), m_caps.maxSpeed, 1.0));
            point.dwellSeconds =
                std::max(0, ov::durationMs(ov::text(ov::child(spot, QStringLiteral("StayTime"))))) / 1000;
            patrol.points << point;
        }
        if (patrol.number != 0)
            patrols << patrol;
    }
    std::sort(patrols.begin(), patrols.end(),
              [](const DevicePatrol &a, const DevicePatrol &b) { return a.number < b.number; });
    return patrols;
}

void COnvifDriver::fetchTours(const std::function<void(bool, const QString &, const QVector<DevicePatrol> &)> &done)
{
    auto tours = std::make_shared<QVector<DevicePatrol>>();
    soap(
        int(Service::Ptz), ov::body(ov::kPtzNs, QStringLiteral("GetPresetTours"), profileArgs(m_profile.profileToken)),
        [done, tours](bool ok, const QString &error, const QVariant &) { done(ok, error, *tours); },
        [this, tours](const KDSoapMessage &r) {
            *tours = readTours(r);
            return QVariant();
        });
}

quint64 COnvifDriver::tourRequest(DriverOperation operation, int number,
                                  const std::function<void(const Completion &)> &send)
{
    return submit(operation, number, COnvifRequestQueue::NoAxis, false, false, [this, send](const Completion &done) {
        if (m_profile.maxTours == 0) {
            done(false, tr("this camera does not offer that function"), QVariant());
            return;
        }
        send(done);
    });
}

quint64 COnvifDriver::listPatrols()
{
    return tourRequest(DriverOperation::ListPatrols, 0, [this](const Completion &done) {
        fetchTours([done](bool ok, const QString &error, const QVector<DevicePatrol> &tours) {
            QVector<DevicePatrol> withPoints;
            std::copy_if(tours.begin(), tours.end(), std::back_inserter(withPoints),
                         [](const DevicePatrol &p) { return !p.points.isEmpty(); });
            done(ok, error, ok ? QVariant::fromValue(withPoints) : QVariant());
        });
    });
}

quint64 COnvifDriver::readPatrol(int number)
{
    return tourRequest(DriverOperation::ReadPatrol, number, [this, number](const Completion &done) {
        fetchTours([done, number](bool ok, const QString &error, const QVector<DevicePatrol> &tours) {
            DevicePatrol patrol;
            patrol.number = number;
            for (const DevicePatrol &p : tours) {
                if (p.number == number)
                    patrol = p;
            }
            done(ok, error, ok ? QVariant::fromValue(patrol) : QVariant());
        });
    });
}

void COnvifDriver::modifyTour(int number, const QString &token, const QVector<DevicePatrolPoint> &points,
                              const Completion &done)
{
    KDSoapValueList tour;
    tour << ov::element(ov::kSchemaNs, QStringLiteral("AutoStart"), false);
    for (const DevicePatrolPoint &point : points) {
        KDSoapValue speed = ov::element(ov::kSchemaNs, QStringLiteral("PanTilt"));
        const double v = ov::velocityFromSpeed(1, point.speed, m_caps.maxSpeed, 1.0);
        speed.childValues().attributes() << ov::attribute(QStringLiteral("x"), v)
                                         << ov::attribute(QStringLiteral("y"), v);
        KDSoapValueList spot;
        spot << ov::element(ov::kSchemaNs, QStringLiteral("PresetDetail"),
                            KDSoapValueList()
                                << ov::element(ov::kSchemaNs, QStringLiteral("PresetToken"), presetToken(point.preset)))
             << ov::element(ov::kSchemaNs, QStringLiteral("Speed"), KDSoapValueList() << speed)
             << ov::element(ov::kSchemaNs, QStringLiteral("StayTime"), ov::durationText(point.dwellSeconds * 1000));
        tour << ov::element(ov::kSchemaNs, QStringLiteral("TourSpot"), spot);
    }
    KDSoapValue value = ov::element(ov::kPtzNs, QStringLiteral("PresetTour"), tour);
    value.childValues().attributes() << ov::attribute(QStringLiteral("token"), token);
    DevicePatrol stored;
    stored.number = number;
    stored.points = points;
    soap(int(Service::Ptz),
         ov::body(ov::kPtzNs, QStringLiteral("ModifyPresetTour"),
                  QList<KDSoapValue>(profileArgs(m_profile.profileToken)) << value),
         [done, stored](bool ok, const QString &error, const QVariant &) {
             done(ok, error, ok ? QVariant::fromValue(stored) : QVariant());
         });
}

quint64 COnvifDriver::writePatrol(int number, const QVector<DevicePatrolPoint> &points)
{
    return tourRequest(DriverOperation::WritePatrol, number, [this, number, points](const Completion &done) {
        const QString token = m_tourTokens.value(number);
        if (points.isEmpty()) {
            // A cleared patrol is a removed tour.
            DevicePatrol cleared;
            cleared.number = number;
            if (token.isEmpty()) {
                done(true, QString(), QVariant::fromValue(cleared));
                return;
            }
            sendTourCommand(QStringLiteral("RemovePresetTour"), token, QString(),
                            [this, done, cleared, number](bool ok, const QString &e, const QVariant &) {
                                if (ok)
                                    m_tourTokens.remove(number);
                                done(ok, e, ok ? QVariant::fromValue(cleared) : QVariant());
                            });
            return;
        }
        if (!token.isEmpty()) {
            modifyTour(number, token, points, done);
            return;
        }
        soap(
            int(Service::Ptz),
            ov::body(ov::kPtzNs, QStringLiteral("CreatePresetTour"), profileArgs(m_profile.profileToken)),
            [this, number, points, done](bool ok, const QString &error, const QVariant &created) {
                if (!ok) {
                    done(false, error, QVariant());
                    return;
                }
                m_tourTokens.insert(number, created.toString());
                modifyTour(number, created.toString(), points, done);
            },
            [](const KDSoapMessage &r) { return QVariant(ov::text(ov::child(r, QStringLiteral("PresetTourToken")))); });
    });
}

void COnvifDriver::sendTourCommand(const QString &operation, const QString &token, const QString &argument,
                                   const Completion &done)
{
    KDSoapValueList args = profileArgs(m_profile.profileToken);
    args << ov::element(ov::kPtzNs, QStringLiteral("PresetTourToken"), token);
    if (!argument.isEmpty())
        args << ov::element(ov::kPtzNs, QStringLiteral("Operation"), argument);
    soap(int(Service::Ptz), ov::body(ov::kPtzNs, operation, args), done);
}

quint64 COnvifDriver::removePatrol(int number)
{
    return tourRequest(DriverOperation::RemovePatrol, number, [this, number](const Completion &done) {
        const QString token = m_tourTokens.value(number);
        if (token.isEmpty()) {
            done(true, QString(), QVariant());
            return;
        }
        sendTourCommand(QStringLiteral("RemovePresetTour"), token, QString(),
                        [this, number, done](bool ok, const QString &e, const QVariant &r) {
                            if (ok)
                                m_tourTokens.remove(number);
                            done(ok, e, r);
                        });
    });
}

quint64 COnvifDriver::startPatrol(int number)
{
    return tourRequest(DriverOperation::StartPatrol, number, [this, number](const Completion &done) {
        const QString token = m_tourTokens.value(number);
        if (token.isEmpty()) {
            done(false, tr("patrol %1 has no points").arg(number), QVariant());
            return;
        }
        sendTourCommand(QStringLiteral("OperatePresetTour"), token, QStringLiteral("Start"),
                        [this, token, done](bool ok, const QString &e, const QVariant &r) {
                            if (ok)
                                m_runningTour = token;
                            done(ok, e, r);
                        });
    });
}

quint64 COnvifDriver::stopPatrol(int number)
{
    return tourRequest(DriverOperation::StopPatrol, number, [this, number](const Completion &done) {
        const QString token = number == 0 ? m_runningTour : m_tourTokens.value(number);
        if (token.isEmpty()) {
            done(true, QString(), QVariant());
            return;
        }
        sendTourCommand(QStringLiteral("OperatePresetTour"), token, QStringLiteral("Stop"),
                        [this, done](bool ok, const QString &e, const QVariant &r) {
                            if (ok)
                                m_runningTour.clear();
                            done(ok, e, r);
                        });
    });
}

} // namespace ptz_devices
