// Requests other than Control: presets, patrols, park action, patrol
// recovery, auto tracking and 3D positioning.
#include "zeph_ptz_controller/cuniversalptzcontroller_p.h"

#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "ptz_plugin_protocol/ptzlimits.h"
#include "ptz_plugin_protocol/resourcedata.h"

#include <QTimer>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Activity;
using detail::Pending;
using detail::Tr;
using ptz_devices::IPtzDriver;

namespace {

std::shared_ptr<Pending> NewPending(Pending::Kind kind, const std::string &camera, const std::string &owner = {})
{
    auto pending = std::make_shared<Pending>();
    pending->kind = kind;
    pending->camera = QString::fromStdString(camera);
    pending->owner = owner.empty() ? pending->camera : QString::fromStdString(owner);
    return pending;
}

} // namespace

void CUniversalPTZController::Preset(const PresetControlRequest &request)
{
    auto pending = NewPending(Pending::PresetRequest, request.camera_index_code, request.owner_index_code);
    pending->preset = request;
    const std::string &op = request.operation;
    if (op != "SetPreset" && op != "GotoPreset" && op != "DelPreset") {
        FailLater(pending, kErrorUnsupported,
                  Tr("The preset operation \"%1\" is not supported.").arg(QString::fromStdString(op)));
        return;
    }
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (!driver) {
        FailLater(pending, unknown ? kErrorUnknownCamera : kErrorNoDevice, error);
        return;
    }
    const int slot_count = qMin(detail::kMaxPresetIndex, driver->capabilities().presetSlots);
    if (request.preset_index < 1 || request.preset_index > slot_count) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The preset number %1 is outside 1 to %2.").arg(request.preset_index).arg(slot_count));
        return;
    }
    if (!Admit(pending, ResourceData::PERMISSION_PTZ_CONTROL))
        return;
    if (op == "SetPreset" && !request.preset_name.empty()) {
        const QString fault =
            detail::PresetNameFault(pending->camera, request.preset_index, PRESET_TYPE_DEVICE, request.preset_name);
        if (!fault.isEmpty()) {
            FailLater(pending, kErrorInvalidArgument, fault);
            return;
        }
    }
    quint64 id = 0;
    if (op == "SetPreset") {
        QString name = QString::fromStdString(request.preset_name);
        if (name.isEmpty())
            name = Tr("Preset%1").arg(request.preset_index);
        // New presets only get free numbers, so a taken one is the edit of a
        // name: the stored position must stay where it is.
        pending->rename = detail::DeviceHasPreset(pending->camera, request.preset_index);
        id = pending->rename ? driver->renamePreset(request.preset_index, name)
                             : driver->setPreset(request.preset_index, name);
    } else if (op == "GotoPreset") {
        id = driver->gotoPreset(request.preset_index);
    } else {
        id = driver->removePreset(request.preset_index);
    }
    Track(driver, id, pending);
}

void CUniversalPTZController::Cruise(const CruiseControlRequest &request)
{
    auto pending = NewPending(Pending::CruiseRequest, request.camera_index_code);
    pending->cruise = request;
    const std::string &op = request.operation;
    if (op != "CruiseRouteControl" && op != "DelCruiseRoute" && op != "ModifyCruiseRoute") {
        FailLater(pending, kErrorUnsupported,
                  Tr("The patrol operation \"%1\" is not supported.").arg(QString::fromStdString(op)));
        return;
    }
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (unknown) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    if (request.cruise_index < 1 || request.cruise_index > detail::kMaxCruiseIndex) {
        FailLater(
            pending, kErrorInvalidArgument,
            Tr("The patrol number %1 is outside 1 to %2.").arg(request.cruise_index).arg(detail::kMaxCruiseIndex));
        return;
    }
    const bool control = op == "CruiseRouteControl";
    // Delete and modify carry the patrol kind; only device patrols live on the camera.
    const bool device_patrol = control || request.action == CRUISE_TYPE_DEVICE
                               || (op == "ModifyCruiseRoute" && request.action == CRUISE_TYPE_NONE);
    if (op == "ModifyCruiseRoute") {
        const QString invalid =
            detail::CheckCruisePoints(request.points, device_patrol ? CRUISE_TYPE_DEVICE : request.action, driver);
        if (!invalid.isEmpty()) {
            FailLater(pending, kErrorInvalidArgument, invalid);
            return;
        }
    }
    if (control && request.action != 0 && request.action != 1) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The action %1 is neither start (0) nor stop (1).").arg(request.action));
        return;
    }
    const bool stop = control && request.action == 1;
    if (!Admit(pending, ResourceData::PERMISSION_PTZ_CONTROL, int(stop ? Activity::Patrol : Activity::None)))
        return;
    if (!device_patrol) {
        // Client patrols are stored by the host; nothing to tell the camera.
        detail::UniversalHandlers::SucceedLater(*this, pending);
        return;
    }
    if (!driver) {
        FailLater(pending, kErrorNoDevice, error);
        return;
    }
    const int slot_count = driver->capabilities().patrolSlots;
    if (request.cruise_index > slot_count) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The patrol number %1 is outside 1 to %2.").arg(request.cruise_index).arg(slot_count));
        return;
    }
    quint64 id = 0;
    if (control) {
        id = stop ? driver->stopPatrol(request.cruise_index) : driver->startPatrol(request.cruise_index);
    } else if (op == "DelCruiseRoute" || request.points.empty()) {
        id = driver->removePatrol(request.cruise_index);
    } else {
        QVector<ptz_devices::DevicePatrolPoint> points;
        points.reserve(int(request.points.size()));
        for (const CruisePoint &p : request.points)
            points.append(detail::ToDevicePoint(p));
        id = driver->writePatrol(request.cruise_index, points);
    }
    Track(driver, id, pending);
}

void CUniversalPTZController::SetParkAction(const SetParkActionRequest &request)
{
    auto pending = NewPending(Pending::ParkAction, request.camera_index_code);
    pending->park = request;
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (!driver) {
        FailLater(pending, unknown ? kErrorUnknownCamera : kErrorNoDevice, error);
        return;
    }
    if (request.wait_time < ptz_plugin_protocol::kMinParkWaitSeconds
        || request.wait_time > ptz_plugin_protocol::kMaxParkWaitSeconds) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The waiting time must lie between %1 and %2 seconds.")
                      .arg(ptz_plugin_protocol::kMinParkWaitSeconds)
                      .arg(ptz_plugin_protocol::kMaxParkWaitSeconds));
        return;
    }
    ptz_devices::ParkAction action;
    action.enabled = request.enabled;
    action.waitingSeconds = request.wait_time;
    action.target = request.target_id;
    if (request.action_type == int(ptz_devices::ParkActionType::Preset)) {
        action.type = ptz_devices::ParkActionType::Preset;
        if (request.target_id < 0 || request.target_id > detail::kMaxPresetIndex) {
            FailLater(
                pending, kErrorInvalidArgument,
                Tr("The preset number %1 is outside 1 to %2.").arg(request.target_id).arg(detail::kMaxPresetIndex));
            return;
        }
    } else if (request.action_type == int(ptz_devices::ParkActionType::Patrol)) {
        action.type = ptz_devices::ParkActionType::Patrol;
        if (request.target_id < 1 || request.target_id > detail::kMaxCruiseIndex) {
            FailLater(
                pending, kErrorInvalidArgument,
                Tr("The patrol number %1 is outside 1 to %2.").arg(request.target_id).arg(detail::kMaxCruiseIndex));
            return;
        }
    } else {
        FailLater(pending, kErrorInvalidArgument, Tr("The park action type %1 is unknown.").arg(request.action_type));
        return;
    }
    if (!Admit(pending, ResourceData::PERMISSION_PARK_ACTION_CONFIG))
        return;
    Track(driver, driver->setParkAction(action), pending);
}

void CUniversalPTZController::SetCruiseRecover(const SetPatrolRecoverConfigRequest &request)
{
    auto pending = NewPending(Pending::CruiseRecover, request.camera_index_code);
    pending->recover = request;
    if (!request.enabled)
        pending->recover.wait_time = 0;
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (!driver) {
        FailLater(pending, unknown ? kErrorUnknownCamera : kErrorNoDevice, error);
        return;
    }
    static const QSet<int> choices = {15, 30, 45, 60, 90, 120};
    if (request.enabled && !choices.contains(request.wait_time)) {
        FailLater(pending, kErrorInvalidArgument,
                  Tr("The waiting time %1 s is not one of 15, 30, 45, 60, 90 or 120 s.").arg(request.wait_time));
        return;
    }
    if (!Admit(pending, ResourceData::PERMISSION_PTZ_CONTROL))
        return;
    ptz_devices::PatrolRecovery recovery;
    recovery.enabled = request.enabled;
    recovery.waitingSeconds = pending->recover.wait_time;
    Track(driver, driver->setPatrolRecovery(recovery), pending);
}

void CUniversalPTZController::SetAutoTrack(const SetAutoTrackRequest &request)
{
    auto pending = NewPending(Pending::AutoTrackSet, request.camera_index_code);
    pending->on = request.enable != 0;
    QString error;
    IPtzDriver *driver = Driver(pending->camera, &error);
    if (!driver) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    if (!Admit(pending, ResourceData::PERMISSION_PTZ_CONTROL))
        return;
    Track(driver, driver->setAutoTrack(pending->on), pending);
}

void CUniversalPTZController::GetAutoTrack(const GetAutoTrackRequest &request)
{
    auto pending = NewPending(Pending::AutoTrackGet, request.camera_index_code);
    QString error;
    IPtzDriver *driver = Driver(pending->camera, &error);
    if (!driver) {
        FailLater(pending, kErrorUnknownCamera, error);
        return;
    }
    Track(driver, driver->getAutoTrack(), pending);
}

void CUniversalPTZController::Position3D(const QString &camera_index_code, const QRectF &area)
{
    auto pending = NewPending(Pending::Position3D, camera_index_code.toStdString());
    QString error;
    bool unknown = false;
    IPtzDriver *driver = detail::DriverForCamera(pending->camera, &error, &unknown);
    if (!driver) {
        FailLater(pending, unknown ? kErrorUnknownCamera : kErrorNoDevice, error);
        return;
    }
    if (qFuzzyIsNull(area.width()) || qFuzzyIsNull(area.height())) {
        FailLater(pending, kErrorInvalidArgument, Tr("Draw a box on the picture to position the camera."));
        return;
    }
    if (!Admit(pending, ResourceData::PERMISSION_PTZ_CONTROL))
        return;
    Track(driver, driver->position3D(area), pending);
}

} // namespace zeph_ptz_controller
