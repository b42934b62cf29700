#include "zeph_ptz_controller/cuniversalptzcontroller_p.h"

#include "zeph_ptz_controller/cptzconfigmanager.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "tarn/base/logging.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QTimer>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;
using detail::Pending;
using detail::Tr;
using ptz_devices::IPtzDriver;

namespace detail {

CPTZStateStorageManager *Storage()
{
    return Tarn::Base::CSingleton<CPTZStateStorageManager>::Instance();
}

ZephPluginManager::CPTZBusinessInterfaceMgr *Business()
{
    return Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance();
}

QString ActingUser()
{
    return Tarn::Base::CSingleton<ZephPluginManager::CCurrentUser>::Instance()->GetUserName();
}

bool IsMove(uint32_t command)
{
    return command >= PTZ_CMD_TILT_UP && command <= PTZ_CMD_DOWN_RIGHT;
}

bool IsLensAxis(uint32_t command)
{
    return command >= PTZ_CMD_ZOOM_IN && command <= PTZ_CMD_IRIS_CLOSE;
}

} // namespace detail

CUniversalPTZController::CUniversalPTZController(QObject *parent)
    : QObject(parent)
    , d(new Private)
{
    registerMetaTypes();
    d->clock.start();
    d->watchdog = new QTimer(this);
    d->watchdog->setInterval(1000);
    connect(d->watchdog, &QTimer::timeout, this, &CUniversalPTZController::OnWatchdog);
    // Interruptions recorded by panels (a preset call, a pattern) come back to a device controller.
    detail::Storage()->AddResumeHandler(this, [this](bool is_patrol, const QString &camera, int index) {
        ResumeInterrupted(camera, is_patrol, index);
    });
}

CUniversalPTZController::~CUniversalPTZController() = default;

int CUniversalPTZController::PendingRequestCount() const
{
    return d->pending.size();
}

void CUniversalPTZController::SetRequestTimeout(int ms)
{
    d->timeout_ms = qMax(1, ms);
    d->watchdog->setInterval(qBound(10, ms / 4, 1000));
}

bool CUniversalPTZController::GetDeviceStatus(const QString &camera_index_code, ptz_devices::DeviceStatus &status) const
{
    const IPtzDriver *driver = detail::DriverForCamera(camera_index_code, nullptr);
    if (!driver)
        return false;
    status = driver->status();
    return true;
}

IPtzDriver *CUniversalPTZController::Driver(const QString &camera, QString *error)
{
    IPtzDriver *driver = detail::DriverForCamera(camera, error);
    EnsureConnected(driver);
    return driver;
}

void CUniversalPTZController::EnsureConnected(IPtzDriver *driver)
{
    if (!driver || d->connected_drivers.contains(driver))
        return;
    d->connected_drivers.insert(driver);
    connect(driver, &IPtzDriver::replied, this, &CUniversalPTZController::OnDriverReplied);
    connect(driver, &QObject::destroyed, this, &CUniversalPTZController::OnDriverGone);
    const QPointer<IPtzDriver> guard(driver);
    connect(driver, &IPtzDriver::activityInterrupted, this,
            [this, guard](ptz_devices::DeviceActivity activity, int number) {
                if (guard)
                    OnActivityInterrupted(guard, int(activity), number);
            });
    connect(driver, &IPtzDriver::activityResumed, this, [guard](ptz_devices::DeviceActivity activity, int number) {
        if (!guard)
            return;
        const QString cam = guard->cameraId();
        CPTZStateStorageManager *storage = detail::Storage();
        int pending_index = 0;
        if (activity == ptz_devices::DeviceActivity::Patrol) {
            if (storage->IsInterruptCruise(cam, pending_index))
                storage->ClearInterrupt(cam);
            storage->SetCruising(cam, true, number);
        } else if (activity == ptz_devices::DeviceActivity::Pattern) {
            if (storage->IsInterruptPattern(cam, pending_index))
                storage->ClearInterrupt(cam);
            storage->SetRunningPattern(cam, number);
        }
    });
}

void CUniversalPTZController::OnActivityInterrupted(IPtzDriver *driver, int activity_code, int number)
{
    using ptz_devices::DeviceActivity;
    const auto activity = DeviceActivity(activity_code);
    const QString cam = driver->cameraId();
    if (d->notices_pending.contains(cam))
        return;
    // A pattern being started reports the patrol it ends once it is answered.
    for (const auto &pending : qAsConst(d->pending)) {
        if (pending->driver == driver && pending->kind == Pending::ControlCommand
            && (pending->command.command == PTZ_CMD_PATTERN_RUN
                || pending->command.command == PTZ_CMD_PATTERN_RECORD_START))
            return;
    }
    CPTZStateStorageManager *storage = detail::Storage();
    // Interruptions this controller did not cause itself (a preset call,
    // another client) still reach the panels.
    bool running = false;
    if (activity == DeviceActivity::AutoScan)
        running = storage->IsAutoScan(cam, false);
    else if (activity == DeviceActivity::Patrol)
        running = storage->IsCruising(cam);
    else if (activity == DeviceActivity::Pattern)
        running = storage->IsRunningPattern(cam);
    if (!running)
        return;
    emit SignalPTZPanelInterrupt(cam, cam, false, activity == DeviceActivity::Patrol ? number : -1);
    if (activity == DeviceActivity::AutoScan)
        storage->SetAutoScan(cam, false, false);
    else if (activity == DeviceActivity::Patrol)
        storage->SetCruising(cam, false, -1);
    else
        storage->SetRunningPattern(cam, -1);
}

void CUniversalPTZController::Track(IPtzDriver *driver, quint64 request_id, const PendingPtr &pending)
{
    EnsureConnected(driver);
    pending->driver = driver;
    pending->request_id = request_id;
    pending->deadline = d->clock.elapsed() + d->timeout_ms;
    d->pending.insert(qMakePair(static_cast<const QObject *>(driver), request_id), pending);
    if (!d->watchdog->isActive())
        d->watchdog->start();
}

void CUniversalPTZController::FailLater(const PendingPtr &pending, int error_code, const QString &error)
{
    QTimer::singleShot(0, this, [this, pending, error_code, error] { Finish(pending, false, error, error_code); });
}

void detail::UniversalHandlers::SucceedLater(CUniversalPTZController &c, const PendingPtr &p)
{
    QTimer::singleShot(0, &c, [&c, p] { c.Finish(p, true, QString(), CUniversalPTZController::kErrorNone); });
}

void CUniversalPTZController::OnDriverGone(QObject *driver)
{
    d->connected_drivers.remove(driver);
    const auto keys = d->pending.keys();
    for (const auto &key : keys) {
        if (key.first != driver)
            continue;
        const auto pending = d->pending.take(key);
        Finish(pending, false, Tr("The camera was removed before it answered."), kErrorNoDevice);
    }
    for (auto it = d->overdue.begin(); it != d->overdue.end();)
        it = it.key().first == driver ? d->overdue.erase(it) : it + 1;
}

void CUniversalPTZController::OnWatchdog()
{
    const qint64 now = d->clock.elapsed();
    const auto keys = d->pending.keys();
    for (const auto &key : keys) {
        const auto it = d->pending.find(key);
        if (it == d->pending.end() || (*it)->deadline > now)
            continue;
        const auto pending = d->pending.take(key);
        // Every driver answers each request once, so the entry goes when the late answer comes.
        d->overdue.insert(key, pending);
        Finish(pending, false, Tr("The camera did not answer in time."), kErrorDevice);
    }
    if (d->pending.isEmpty())
        d->watchdog->stop();
}

void CUniversalPTZController::OnDriverReplied(const ptz_devices::DriverReply &reply)
{
    const Private::Key key = qMakePair(static_cast<const QObject *>(sender()), reply.requestId);
    if (const auto late = d->overdue.take(key)) {
        // The requester was told it failed; the camera's state still follows.
        if (reply.ok) {
            ZEPH_LOG_INFO("late answer from %s folded into the shared state", qUtf8Printable(late->camera));
            detail::UniversalHandlers::ForKind(late->kind).fold(*this, *late, reply);
        }
        return;
    }
    const auto pending = d->pending.take(key);
    if (!pending)
        return;
    if (d->pending.isEmpty())
        d->watchdog->stop();
    if (!reply.ok) {
        Finish(pending, false, reply.error.isEmpty() ? Tr("The camera refused the request.") : reply.error,
               kErrorDevice);
        return;
    }
    detail::UniversalHandlers::ForKind(pending->kind).fold(*this, *pending, reply);
    Finish(pending, true, QString(), kErrorNone);
}

void CUniversalPTZController::Finish(const PendingPtr &pending, bool ok, const QString &error, int error_code)
{
    if (!ok)
        ZEPH_LOG_WARN("PTZ request for %s failed: %s", qUtf8Printable(pending->camera), qUtf8Printable(error));
    detail::UniversalHandlers::ForKind(pending->kind).answer(*this, *pending, ok, error, error_code);
}

void CUniversalPTZController::HandleManualInterrupt(const PTZControlCommand &command, const QString &owner)
{
    const QString camera = QString::fromStdString(command.camera_index_code);
    CPTZStateStorageManager *storage = detail::Storage();
    storage->RestartInterruptWait(camera);
    const bool auto_scan = storage->IsAutoScan(camera, false);
    const int cruise = storage->GetRunningCruise(camera);
    const int pattern = storage->GetRunningPattern(camera);
    if (!auto_scan && cruise <= 0 && pattern <= 0)
        return;
    if (CPTZConfigManager::Instance()->ResumeCruiseAfterInterrupt()) {
        if (cruise > 0) {
            storage->SetInterruptCruise(camera, cruise, storage->GetInterruptWaitTime(), this,
                                        [this, camera, cruise] { ResumeInterrupted(camera, true, cruise); });
        } else if (pattern > 0) {
            storage->SetInterruptPattern(camera, pattern, storage->GetInterruptWaitTime(), this,
                                         [this, camera, pattern] { ResumeInterrupted(camera, false, pattern); });
        }
    }
    ZEPH_LOG_INFO("manual control of %s interrupts auto-scan %d, patrol %d, pattern %d", qUtf8Printable(camera),
                  int(auto_scan), cruise, pattern);
    // The notice goes out from the event loop, ahead of the move's answer,
    // while the state storage still shows what ran.
    d->notices_pending.insert(camera);
    QTimer::singleShot(0, this, [this, owner, camera, cruise] {
        d->notices_pending.remove(camera);
        emit SignalPTZPanelInterrupt(owner, camera, false, cruise > 0 ? cruise : -1);
        // Panels may have cleared these already; the camera stops them in any case.
        CPTZStateStorageManager *storage = detail::Storage();
        storage->SetAutoScan(camera, false, false);
        storage->SetCruising(camera, false, -1);
        storage->SetRunningPattern(camera, -1);
    });
}

void CUniversalPTZController::ResumeInterrupted(const QString &camera, bool is_patrol, int index)
{
    QString error;
    IPtzDriver *driver = Driver(camera, &error);
    auto pending = std::make_shared<Pending>();
    pending->kind = Pending::Resume;
    pending->camera = camera;
    pending->owner = camera;
    pending->resume_patrol = is_patrol;
    pending->resume_index = index;
    if (!driver) {
        FailLater(pending, kErrorNoDevice, error);
        return;
    }
    const ptz_devices::DeviceStatus status = driver->status();
    if (is_patrol && status.runningPatrol == index)
        return;
    if (!is_patrol && status.runningPattern == index)
        return;
    ZEPH_LOG_INFO("resuming %s %d of %s", is_patrol ? "patrol" : "pattern", index, qUtf8Printable(camera));
    Track(driver, is_patrol ? driver->startPatrol(index) : driver->playPattern(index), pending);
}

} // namespace zeph_ptz_controller
