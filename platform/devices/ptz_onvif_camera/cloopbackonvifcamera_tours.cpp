#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include "ptz_devices/csimulatedcamera.h"
#include "ptz_devices/onvifsoap.h"

#include <cmath>

// Preset tours of the loopback camera: the simulated head's patrols.
namespace ptz_onvif_camera {

using namespace ptz_devices;
namespace ov = ptz_devices::onvif;

namespace {

const QString kNoTour = QStringLiteral("No such preset tour");

} // namespace

int CLoopbackOnvifCamera::tourNumber(const QString &token) const
{
    bool ok = false;
    const int number = token.toInt(&ok);
    const bool known = m_createdTours.contains(number) || m_camera->status().runningPatrol == number;
    for (const DevicePatrol &p : m_camera->patrols()) {
        if (p.number == number)
            return number;
    }
    return ok && known ? number : 0;
}

KDSoapValue CLoopbackOnvifCamera::presetTour(const DevicePatrol &patrol) const
{
    const DeviceStatus status = m_camera->status();
    const int maxSpeed = m_camera->capabilities().maxSpeed;
    KDSoapValueList tour;
    tour << ov::element(ov::kSchemaNs, QStringLiteral("Name"), patrol.name)
         << ov::element(ov::kSchemaNs, QStringLiteral("Status"),
                        KDSoapValueList{} << ov::element(
                            ov::kSchemaNs, QStringLiteral("State"),
                            status.runningPatrol == patrol.number ? QStringLiteral("Touring") : QStringLiteral("Idle")))
         << ov::element(ov::kSchemaNs, QStringLiteral("AutoStart"), false);
    for (const DevicePatrolPoint &point : patrol.points) {
        KDSoapValue panTilt = ov::element(ov::kSchemaNs, QStringLiteral("PanTilt"));
        const double speed = double(point.speed) / maxSpeed;
        panTilt.childValues().attributes()
            << ov::attribute(QStringLiteral("x"), speed) << ov::attribute(QStringLiteral("y"), speed);
        KDSoapValueList spot;
        spot << ov::element(ov::kSchemaNs, QStringLiteral("PresetDetail"),
                            KDSoapValueList{} << ov::element(ov::kSchemaNs, QStringLiteral("PresetToken"),
                                                             QString::number(point.preset)))
             << ov::element(ov::kSchemaNs, QStringLiteral("Speed"), KDSoapValueList{} << panTilt)
             << ov::element(ov::kSchemaNs, QStringLiteral("StayTime"), ov::durationText(point.dwellSeconds * 1000));
        tour << ov::element(ov::kSchemaNs, QStringLiteral("TourSpot"), spot);
    }
    KDSoapValue value = ov::element(ov::kPtzNs, QStringLiteral("PresetTour"), tour);
    value.childValues().attributes() << ov::attribute(QStringLiteral("token"), QString::number(patrol.number));
    return value;
}

void CLoopbackOnvifCamera::getPresetTours(const KDSoapMessage &, const Responder &respond)
{
    QMap<int, DevicePatrol> tours;
    for (int number : m_createdTours)
        tours[number].number = number;
    for (const DevicePatrol &p : m_camera->patrols())
        tours[p.number] = p;
    KDSoapValueList list;
    for (const DevicePatrol &p : tours)
        list << presetTour(p);
    answer(respond, ov::body(ov::kPtzNs, QStringLiteral("GetPresetToursResponse"), list));
}

void CLoopbackOnvifCamera::createPresetTour(const KDSoapMessage &, const Responder &respond)
{
    int number = 1;
    while (tourNumber(QString::number(number)) != 0)
        ++number;
    if (number > m_camera->capabilities().patrolSlots) {
        answerFault(respond, QStringLiteral("Too many preset tours"));
        return;
    }
    m_createdTours.insert(number);
    answer(respond, ov::body(ov::kPtzNs, QStringLiteral("CreatePresetTourResponse"),
                             KDSoapValueList{} << ov::element(ov::kPtzNs, QStringLiteral("PresetTourToken"),
                                                              QString::number(number))));
}

void CLoopbackOnvifCamera::modifyPresetTour(const KDSoapMessage &request, const Responder &respond)
{
    const KDSoapValue tour = ov::child(request, QStringLiteral("PresetTour"));
    const int number = tourNumber(ov::attributeValue(tour, QStringLiteral("token")));
    if (number == 0) {
        answerFault(respond, kNoTour);
        return;
    }
    const int maxSpeed = m_camera->capabilities().maxSpeed;
    QVector<DevicePatrolPoint> points;
    for (const KDSoapValue &spot : ov::children(tour, QStringLiteral("TourSpot"))) {
        DevicePatrolPoint point;
        point.preset =
            presetNumber(ov::text(ov::path(spot, {QStringLiteral("PresetDetail"), QStringLiteral("PresetToken")})));
        const KDSoapValue speed = ov::path(spot, {QStringLiteral("Speed"), QStringLiteral("PanTilt")});
        point.speed = ov::speedFromVelocity(ov::attributeValue(speed, QStringLiteral("x")).toDouble(), maxSpeed, 1.0);
        if (point.speed == 0)
            point.speed = maxSpeed;
        point.dwellSeconds = std::max(0, ov::durationMs(ov::text(ov::child(spot, QStringLiteral("StayTime"))))) / 1000;
        points << point;
    }
    afterCamera(m_camera->writePatrol(number, points), respond, ov::kPtzNs, QStringLiteral("ModifyPresetTour"));
}

void CLoopbackOnvifCamera::operatePresetTour(const KDSoapMessage &request, const Responder &respond)
{
    const int number = tourNumber(ov::text(ov::child(request, QStringLiteral("PresetTourToken"))));
    const QString operation = ov::text(ov::child(request, QStringLiteral("Operation")));
    if (number == 0) {
        answerFault(respond, kNoTour);
        return;
    }
    if (operation == QLatin1String("Start"))
        afterCamera(m_camera->startPatrol(number), respond, ov::kPtzNs, QStringLiteral("OperatePresetTour"));
    else if (operation == QLatin1String("Stop"))
        afterCamera(m_camera->stopPatrol(number), respond, ov::kPtzNs, QStringLiteral("OperatePresetTour"));
    else
        answerFault(respond, QStringLiteral("Preset tour operation not supported: %1").arg(operation));
}

void CLoopbackOnvifCamera::removePresetTour(const KDSoapMessage &request, const Responder &respond)
{
    const int number = tourNumber(ov::text(ov::child(request, QStringLiteral("PresetTourToken"))));
    if (number == 0) {
        answerFault(respond, kNoTour);
        return;
    }
    m_createdTours.remove(number);
    afterCamera(m_camera->removePatrol(number), respond, ov::kPtzNs, QStringLiteral("RemovePresetTour"));
}

} // namespace ptz_onvif_camera
