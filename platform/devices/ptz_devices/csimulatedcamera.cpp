#include "ptz_devices/csimulatedcamera.h"

#include "ptz_devices/cmemorydevicestatestore.h"
#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera_p.h"

#include "tarn/base/logging.h"

#include <QTimer>

namespace ptz_devices {

using namespace simulation;

namespace {

bool touchesPanTilt(DriverOperation op)
{
    switch (op) {
    case DriverOperation::StopPanTilt:
    case DriverOperation::GotoPreset:
    case DriverOperation::Position3D:
    case DriverOperation::AutoScan:
    case DriverOperation::StartPatrol:
    case DriverOperation::StopPatrol:
    case DriverOperation::PlayPattern:
    case DriverOperation::StopPattern:
    case DriverOperation::StartPatternRecord:
    case DriverOperation::StopPatternRecord:
    case DriverOperation::StopActivity:
        return true;
    default:
        return false;
    }
}

bool isControl(DriverOperation op)
{
    switch (op) {
    case DriverOperation::MovePanTilt:
    case DriverOperation::StopPanTilt:
    case DriverOperation::Zoom:
    case DriverOperation::Focus:
    case DriverOperation::Iris:
    case DriverOperation::OneKeyFocus:
    case DriverOperation::LensInit:
    case DriverOperation::AutoScan:
    case DriverOperation::Position3D:
    case DriverOperation::GotoPreset:
    case DriverOperation::StartPatrol:
    case DriverOperation::StopPatrol:
    case DriverOperation::StartPatternRecord:
    case DriverOperation::StopPatternRecord:
    case DriverOperation::PlayPattern:
    case DriverOperation::StopPattern:
    case DriverOperation::StopActivity:
        return true;
    default:
        return false;
    }
}

} // namespace

// ---------------------------------------------------------------------------
// Models

QStringList CSimulatedCamera::models()
{
    return {QStringLiteral("speed-dome"), QStringLiteral("ptz-no-pattern"), QStringLiteral("box-zoom"),
            QStringLiteral("fisheye"), QStringLiteral("cascaded")};
}

bool CSimulatedCamera::isKnownModel(const QString &model)
{
    return models().contains(model);
}

DriverCapabilities CSimulatedCamera::capabilitiesForModel(const QString &model)
{
    DriverCapabilities caps;
    caps.model = model;
    const QVector<int> all = {AbilityPtz,        AbilityManualTracking, AbilityFaceCapture,
                              AbilityParkAction, AbilityAutoTracking,   AbilityPattern,
                              AbilityPan,        AbilityTilt,           AbilityZoom};
    if (model == QLatin1String("ptz-no-pattern")) {
        caps.abilities = all;
        caps.abilities.removeAll(AbilityPattern);
        caps.patternSlots = 0;
    } else if (model == QLatin1String("box-zoom")) {
        caps.abilities = {AbilityPtz, AbilityZoom};
        caps.patternSlots = 0;
        caps.minTilt = 0.0;
        caps.maxTilt = 0.0;
    } else if (model == QLatin1String("fisheye")) {
        caps.fishEye = true;
        caps.patternSlots = 0;
        caps.presetSlots = 0;
        caps.patrolSlots = 0;
        caps.pointsPerPatrol = 0;
        caps.minTilt = 0.0;
        caps.maxTilt = 0.0;
        caps.maxZoom = 1.0;
    } else {
        caps.abilities = all; // speed-dome, cascaded
    }
    return caps;
}

// ---------------------------------------------------------------------------
// Construction

CSimulatedCamera::CSimulatedCamera(const QString &cameraId, const QString &model, CSimClock *clock,
                                   IDeviceStateStore *store, QObject *parent)
    : IPtzDriver(parent)
    , m_cameraId(cameraId)
    , m_model(model)
    , m_caps(capabilitiesForModel(model))
    , m_store(store)
{
    registerDeviceMetaTypes();
    if (!clock)
        clock = new CSimClock(CSimClock::Mode::RealTime, this);
    m_clock = clock;
    connect(clock, &CSimClock::ticked, this, &CSimulatedCamera::onTick);
    m_simNow = clock->now();
    m_lastControl = m_simNow;
    m_parkDone = false;
    if (!m_store) {
        m_ownStore = std::make_unique<CMemoryDeviceStateStore>();
        m_store = m_ownStore.get();
    }
    m_processTimer = new QTimer(this);
    m_processTimer->setSingleShot(true);
    connect(m_processTimer, &QTimer::timeout, this, &CSimulatedCamera::processQueue);
    m_wall.start();
    loadState();
    m_lastStatus = status();
}

CSimulatedCamera::~CSimulatedCamera()
{
    m_processTimer->stop();
    std::deque<std::unique_ptr<Request>> pending;
    pending.swap(m_queue);
    for (const auto &r : pending) {
        DriverReply reply;
        reply.requestId = r->id;
        reply.operation = r->operation;
        reply.number = r->number;
        reply.error = r->fail ? r->error : tr("Camera %1 was closed").arg(m_cameraId);
        emit replied(reply);
    }
}

CSimClock *CSimulatedCamera::clock() const
{
    return m_clock.data();
}

DeviceStatus CSimulatedCamera::status() const
{
    DeviceStatus s;
    s.pan = m_pan;
    s.tilt = m_tilt;
    s.zoom = m_zoom;
    s.focus = m_focus;
    s.iris = m_iris;
    s.panTiltMoving = m_targetingPanTilt || m_autoScan || (m_ptSpeed > 0 && (m_panDir || m_tiltDir));
    s.zoomMoving = m_targetingZoom || (m_zoomDir != 0 && m_zoomSpeed > 0);
    s.light = m_light;
    s.wiper = m_wiper;
    s.autoScan = m_autoScan;
    s.autoScanSpeed = m_autoScan ? m_autoScanSpeed : 0;
    s.runningPatrol = m_patrol;
    if (m_patrol) {
        s.patrolPoint = m_patrolPoint + 1;
        s.patrolPointCount = m_patrols.value(m_patrol).points.size();
    }
    s.runningPattern = m_playing;
    s.recordingPattern = m_recording;
    s.autoTrack = m_autoTrack;
    s.connected = m_connected;
    s.parkActions = m_parkActions;
    return s;
}

void CSimulatedCamera::setLatency(int ms)
{
    m_latency = qMax(0, ms);
}

void CSimulatedCamera::setPosition(double pan, double tilt, double zoom)
{
    m_autoScan = false;
    m_patrol = 0;
    stopPatternPlayback();
    haltManualMotion();
    m_targetingPanTilt = m_targetingZoom = false;
    m_pan = wrapPan(pan);
    m_tilt = qBound(m_caps.minTilt, tilt, m_caps.maxTilt);
    m_zoom = qBound(1.0, zoom, m_caps.maxZoom);
    notifyStatus();
}

// ---------------------------------------------------------------------------
// Fault injection and connection

void CSimulatedCamera::failNextRequests(int count, const QString &error)
{
    m_failNext = qMax(0, count);
    m_failNextError = error;
}

void CSimulatedCamera::failOperation(DriverOperation operation, const QString &error, int times)
{
    if (times == 0) {
        m_failOps.remove(int(operation));
        return;
    }
    m_failOps.insert(int(operation), {error, times});
}

void CSimulatedCamera::clearFaults()
{
    m_failNext = 0;
    m_failNextError.clear();
    m_failOps.clear();
}

void CSimulatedCamera::disconnectDevice()
{
    if (!m_connected)
        return;
    m_connected = false;
    const QString error = tr("Camera %1 is disconnected").arg(m_cameraId);
    for (auto &r : m_queue) {
        if (!r->fail) {
            r->fail = true;
            r->error = error;
        }
        r->readyAt = 0;
    }
    // The link is gone, so nobody could send the release of a held move.
    haltManualMotion();
    m_processTimer->start(0);
    ZEPH_LOG_INFO("simulated camera %s disconnected, %d pending requests fail", qUtf8Printable(m_cameraId),
                  int(m_queue.size()));
    emit connectionChanged(false);
    notifyStatus();
}

void CSimulatedCamera::reconnectDevice()
{
    if (m_connected)
        return;
    m_connected = true;
    emit connectionChanged(true);
    notifyStatus();
}

// ---------------------------------------------------------------------------
// Request pipeline

quint64 CSimulatedCamera::enqueue(DriverOperation op, const QVariantList &args, int number,
                                  std::function<void(DriverReply &)> execute)
{
    auto r = std::make_unique<Request>();
    r->id = m_nextId++;
    r->operation = op;
    r->number = number;
    r->execute = std::move(execute);
    r->readyAt = m_wall.elapsed() + m_latency;

    RequestLogEntry entry;
    entry.id = r->id;
    entry.operation = op;
    entry.arguments = args;
    entry.time = m_simNow;
    m_log.append(entry);

    if (!m_connected) {
        r->fail = true;
        r->error = tr("Camera %1 is disconnected").arg(m_cameraId);
        r->readyAt = 0;
    } else if (m_failNext > 0) {
        --m_failNext;
        r->fail = true;
        r->error = m_failNextError.isEmpty() ? tr("The camera rejected the request") : m_failNextError;
    } else if (m_failOps.contains(int(op))) {
        OperationFault &fault = m_failOps[int(op)];
        const QString error = fault.error;
        if (fault.remaining > 0 && --fault.remaining == 0)
            m_failOps.remove(int(op));
        r->fail = true;
        r->error = error.isEmpty() ? tr("The camera rejected the request") : error;
    }

    if (op == DriverOperation::StopPanTilt) {
        // A move still waiting behind the stop would only twitch the camera.
        for (auto it = m_queue.rbegin(); it != m_queue.rend(); ++it) {
            Request &q = **it;
            if (q.operation == DriverOperation::MovePanTilt) {
                if (!q.fail)
                    q.superseded = true;
                continue;
            }
            if (touchesPanTilt(q.operation))
                break;
        }
    }

    const quint64 id = r->id;
    m_queue.push_back(std::move(r));
    scheduleProcessing();
    return id;
}

void CSimulatedCamera::scheduleProcessing()
{
    if (m_processTimer->isActive() || m_queue.empty())
        return;
    m_processTimer->start(int(qMax<qint64>(0, m_queue.front()->readyAt - m_wall.elapsed())));
}

void CSimulatedCamera::processQueue()
{
    QPointer<CSimulatedCamera> self(this);
    while (!m_queue.empty() && m_queue.front()->readyAt <= m_wall.elapsed()) {
        std::unique_ptr<Request> r = std::move(m_queue.front());
        m_queue.pop_front();

        DriverReply reply;
        reply.requestId = r->id;
        reply.operation = r->operation;
        reply.number = r->number;
        if (r->fail) {
            reply.ok = false;
            reply.error = r->error;
            // A stop that reaches the device halts it even when its answer is lost.
            if (r->isStop && m_connected) {
                DriverReply ignored;
                r->execute(ignored);
            }
        } else if (r->superseded) {
            reply.ok = true;
        } else {
            reply.ok = true;
            r->execute(reply);
            if (reply.ok && isControl(r->operation))
                markControl();
            // Zero-time consequences (already at a preset, first pattern step).
            handleDueEvents();
        }
        if (!reply.ok)
            ZEPH_LOG_INFO("camera %s: %s failed: %s", qUtf8Printable(m_cameraId),
                          qUtf8Printable(operationName(reply.operation)), qUtf8Printable(reply.error));
        emit replied(reply);
        if (!self)
            return;
        notifyStatus();
    }
    scheduleProcessing();
}

bool CSimulatedCamera::checkAbility(int code, DriverReply &reply) const
{
    if (m_caps.hasAbility(code))
        return true;
    reply.ok = false;
    switch (code) {
    case AbilityPtz:
        reply.error = tr("This camera has no PTZ");
        break;
    case AbilityPan:
        reply.error = tr("This camera cannot pan");
        break;
    case AbilityTilt:
        reply.error = tr("This camera cannot tilt");
        break;
    case AbilityZoom:
        reply.error = tr("This camera cannot zoom");
        break;
    case AbilityPattern:
        reply.error = tr("This camera has no patterns");
        break;
    case AbilityParkAction:
        reply.error = tr("This camera has no park action");
        break;
    case AbilityAutoTracking:
        reply.error = tr("This camera has no auto tracking");
        break;
    default:
        reply.error = tr("This camera cannot do this (ability %1)").arg(code);
        break;
    }
    return false;
}

bool CSimulatedCamera::checkSpeed(int speed, DriverReply &reply) const
{
    if (speed >= m_caps.minSpeed && speed <= m_caps.maxSpeed)
        return true;
    reply.ok = false;
    reply.error = tr("Speed %1 is outside %2-%3").arg(speed).arg(m_caps.minSpeed).arg(m_caps.maxSpeed);
    return false;
}

bool CSimulatedCamera::checkRange(int value, int max, const QString &what, DriverReply &reply) const
{
    if (value >= 1 && value <= max)
        return true;
    reply.ok = false;
    if (max < 1)
        reply.error = tr("This camera has no %1 slots").arg(what);
    else
        reply.error = tr("%1 %2 is outside 1-%3").arg(what).arg(value).arg(max);
    return false;
}

void CSimulatedCamera::storeFailed(DriverReply &reply) const
{
    // The change holds until restart; the caller learns it will not survive one.
    reply.ok = false;
    reply.error = tr("Camera %1 could not store its settings").arg(m_cameraId);
}

void CSimulatedCamera::markControl()
{
    m_lastControl = m_simNow;
    m_parkDone = false;
}

} // namespace ptz_devices
