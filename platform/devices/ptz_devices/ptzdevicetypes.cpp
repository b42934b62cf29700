#include "ptz_devices/ptzdevicetypes.h"

#include <QMetaEnum>
#include <QtGlobal>

#include <mutex>

namespace ptz_devices {

bool DeviceStatus::operator==(const DeviceStatus &o) const
{
    return qFuzzyCompare(1.0 + pan, 1.0 + o.pan) && qFuzzyCompare(1.0 + tilt, 1.0 + o.tilt)
           && qFuzzyCompare(zoom, o.zoom) && qFuzzyCompare(1.0 + focus, 1.0 + o.focus)
           && qFuzzyCompare(1.0 + iris, 1.0 + o.iris) && panTiltMoving == o.panTiltMoving && zoomMoving == o.zoomMoving
           && light == o.light && wiper == o.wiper && autoScan == o.autoScan && autoScanSpeed == o.autoScanSpeed
           && runningPatrol == o.runningPatrol && patrolPoint == o.patrolPoint && patrolPointCount == o.patrolPointCount
           && runningPattern == o.runningPattern && recordingPattern == o.recordingPattern && autoTrack == o.autoTrack
           && connected == o.connected && parkActions == o.parkActions;
}

QString operationName(DriverOperation operation)
{
    const QMetaEnum e = QMetaEnum::fromType<DriverOperation>();
    const char *key = e.valueToKey(int(operation));
    return key ? QString::fromLatin1(key) : QString::number(int(operation));
}

void registerDeviceMetaTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        qRegisterMetaType<DriverReply>("ptz_devices::DriverReply");
        qRegisterMetaType<DeviceStatus>("ptz_devices::DeviceStatus");
        qRegisterMetaType<DevicePreset>("ptz_devices::DevicePreset");
        qRegisterMetaType<DevicePatrolPoint>("ptz_devices::DevicePatrolPoint");
        qRegisterMetaType<DevicePatrol>("ptz_devices::DevicePatrol");
        qRegisterMetaType<ParkAction>("ptz_devices::ParkAction");
        qRegisterMetaType<PatrolRecovery>("ptz_devices::PatrolRecovery");
        qRegisterMetaType<DriverCapabilities>("ptz_devices::DriverCapabilities");
        qRegisterMetaType<DeviceActivity>("ptz_devices::DeviceActivity");
        qRegisterMetaType<DriverOperation>("ptz_devices::DriverOperation");
        qRegisterMetaType<QVector<DevicePreset>>();
        qRegisterMetaType<QVector<DevicePatrol>>();
        qRegisterMetaType<QVector<DevicePatrolPoint>>();
    });
}

} // namespace ptz_devices
