#include "ptz_devices/csimulatedcamera.h"

#include "ptz_devices/cmemorydevicestatestore.h"
#include "ptz_devices/csimclock.h"

#include "tarn/base/logging.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTimer>

#include <cmath>
#include <limits>

namespace ptz_devices {

namespace {

constexpr double kDegPerSecondPerStep = 2.0;   // speed 1: 2 deg/s, speed 40: 80 deg/s
constexpr double kZoomPerSecondPerStep = 0.5;  // magnification units per second
constexpr double kLensPerSecondPerStep = 0.01; // focus and iris, fraction per second
constexpr double kFieldOfViewAtWide = 60.0;    // horizontal degrees at 1x
constexpr double kAspect = 9.0 / 16.0;
constexpr int kPresetSpeed = 40;
constexpr qint64 kMinPatternDuration = 100;
constexpr qint64 kNoEvent = std::numeric_limits<qint64>::max() / 4;

// Kinds of recorded pattern events.
enum PatternEventKind { PatternPanTilt = 1, PatternZoom = 2 };

const QString kKeyPresets = QStringLiteral("presets");
const QString kKeyPatrols = QStringLiteral("patrols");
const QString kKeyPatterns = QStringLiteral("patterns");
const QString kKeyPark = QStringLiteral("park_action");
const QString kKeyRecovery = QStringLiteral("patrol_recovery");
const QString kKeyAutoTrack = QStringLiteral("auto_track");

double wrapPan(double pan)
{
    double p = std::fmod(pan, 360.0);
    if (p < 0.0)
        p += 360.0;
    if (p >= 360.0)
        p -= 360.0;
    return p;
}

// Signed shortest way from `from` to `to` on the pan circle, in (-180, 180].
double panDelta(double from, double to)
{
    double d = std::fmod(to - from, 360.0);
    if (d > 180.0)
        d -= 360.0;
    else if (d <= -180.0)
        d += 360.0;
    return d;
}

double approach(double value, double target, double step)
{
    if (std::abs(target - value) <= step)
        return target;
    return value + (target > value ? step : -step);
}

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

struct CSimulatedCamera::Request
{
    quint64 id = 0;
    DriverOperation operation = DriverOperation::None;
    int number = 0;
    std::function<void(DriverReply &)> execute;
    qint64 readyAt = 0;
    bool fail = false;
    bool superseded = false;
    bool isStop = false;
    QString error;
};

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
    const QVector<int> all = {AbilityPtz,         AbilityManualTracking, AbilityFaceCapture,
                              AbilityParkAction,  AbilityAutoTracking,   AbilityPattern,
                              AbilityPan,         AbilityTilt,           AbilityZoom};
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

CSimulatedCamera::~CSimulatedCamera() = default;

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
    s.runningPattern = m_playing;
    s.recordingPattern = m_recording;
    s.autoTrack = m_autoTrack;
    s.connected = m_connected;
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

void CSimulatedCamera::failOperation(DriverOperation operation, const QString &error)
{
    m_failOps.insert(int(operation), error);
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
    ZEPH_LOG_INFO("simulated camera %s disconnected, %d pending requests fail",
                  qUtf8Printable(m_cameraId), int(m_queue.size()));
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
        const QString error = m_failOps.take(int(op));
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
        reply.error = tr("Camera model %1 has no PTZ").arg(m_model);
        break;
    case AbilityPan:
        reply.error = tr("Camera model %1 cannot pan").arg(m_model);
        break;
    case AbilityTilt:
        reply.error = tr("Camera model %1 cannot tilt").arg(m_model);
        break;
    case AbilityZoom:
        reply.error = tr("Camera model %1 cannot zoom").arg(m_model);
        break;
    case AbilityPattern:
        reply.error = tr("Camera model %1 has no patterns").arg(m_model);
        break;
    case AbilityParkAction:
        reply.error = tr("Camera model %1 has no park action").arg(m_model);
        break;
    case AbilityAutoTracking:
        reply.error = tr("Camera model %1 has no auto tracking").arg(m_model);
        break;
    default:
        reply.error = tr("Camera model %1 lacks ability %2").arg(m_model).arg(code);
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
        reply.error = tr("Camera model %1 has no %2 slots").arg(m_model, what);
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

// ---------------------------------------------------------------------------
// Requests: motion

quint64 CSimulatedCamera::movePanTilt(int panDirection, int tiltDirection, int speed)
{
    return enqueue(DriverOperation::MovePanTilt, {panDirection, tiltDirection, speed}, speed,
                   [this, panDirection, tiltDirection, speed](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        if (panDirection < -1 || panDirection > 1 || tiltDirection < -1 || tiltDirection > 1) {
            reply.ok = false;
            reply.error = tr("Direction must be -1, 0 or 1");
            return;
        }
        if ((panDirection && !checkAbility(AbilityPan, reply))
            || (tiltDirection && !checkAbility(AbilityTilt, reply)))
            return;
        if ((panDirection || tiltDirection) && !checkSpeed(speed, reply))
            return;
        if (panDirection || tiltDirection)
            interruptActivities(true);
        applyPanTilt(panDirection, tiltDirection, speed);
        recordEvent(PatternPanTilt, m_panDir, m_tiltDir, m_ptSpeed);
    });
}

quint64 CSimulatedCamera::stopPanTilt()
{
    const quint64 id = enqueue(DriverOperation::StopPanTilt, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        applyPanTilt(0, 0, 0);
        if (!m_patrol && !m_playing)
            m_targetingPanTilt = false;
        recordEvent(PatternPanTilt, 0, 0, 0);
    });
    m_queue.back()->isStop = true;
    return id;
}

quint64 CSimulatedCamera::zoom(int direction, int speed)
{
    const quint64 id = enqueue(DriverOperation::Zoom, {direction, speed}, direction,
                               [this, direction, speed](DriverReply &reply) {
        if (!checkAbility(AbilityZoom, reply))
            return;
        const bool stop = direction == 0 || speed == 0;
        if (!stop && (direction < -1 || direction > 1)) {
            reply.ok = false;
            reply.error = tr("Direction must be -1, 0 or 1");
            return;
        }
        if (!stop && !checkSpeed(speed, reply))
            return;
        if (!stop)
            interruptActivities(true);
        applyZoom(stop ? 0 : direction, stop ? 0 : speed);
        recordEvent(PatternZoom, m_zoomDir, m_zoomSpeed, 0);
    });
    m_queue.back()->isStop = direction == 0 || speed == 0;
    return id;
}

quint64 CSimulatedCamera::focus(int direction, int speed)
{
    const quint64 id = enqueue(DriverOperation::Focus, {direction, speed}, direction,
                               [this, direction, speed](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        const bool stop = direction == 0 || speed == 0;
        if (!stop && (direction < -1 || direction > 1 || !checkSpeed(speed, reply))) {
            if (reply.ok) {
                reply.ok = false;
                reply.error = tr("Direction must be -1, 0 or 1");
            }
            return;
        }
        m_focusDir = stop ? 0 : direction;
        m_focusSpeed = stop ? 0 : speed;
    });
    m_queue.back()->isStop = direction == 0 || speed == 0;
    return id;
}

quint64 CSimulatedCamera::iris(int direction, int speed)
{
    const quint64 id = enqueue(DriverOperation::Iris, {direction, speed}, direction,
                               [this, direction, speed](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        const bool stop = direction == 0 || speed == 0;
        if (!stop && (direction < -1 || direction > 1 || !checkSpeed(speed, reply))) {
            if (reply.ok) {
                reply.ok = false;
                reply.error = tr("Direction must be -1, 0 or 1");
            }
            return;
        }
        m_irisDir = stop ? 0 : direction;
        m_irisSpeed = stop ? 0 : speed;
    });
    m_queue.back()->isStop = direction == 0 || speed == 0;
    return id;
}

quint64 CSimulatedCamera::setLight(bool on)
{
    return enqueue(DriverOperation::Light, {on}, on ? 1 : 0, [this, on](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            m_light = on;
    });
}

quint64 CSimulatedCamera::setWiper(bool on)
{
    return enqueue(DriverOperation::Wiper, {on}, on ? 1 : 0, [this, on](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            m_wiper = on;
    });
}

quint64 CSimulatedCamera::oneKeyFocus()
{
    return enqueue(DriverOperation::OneKeyFocus, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        m_focusDir = 0;
        m_focusSpeed = 0;
        m_focus = 0.5;
    });
}

quint64 CSimulatedCamera::initLens()
{
    return enqueue(DriverOperation::LensInit, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        applyZoom(0, 0);
        m_targetingZoom = false;
        m_focusDir = m_irisDir = 0;
        m_focusSpeed = m_irisSpeed = 0;
        m_zoom = 1.0;
        m_focus = 0.5;
        m_iris = 0.5;
    });
}

quint64 CSimulatedCamera::setAutoScan(bool on, int speed)
{
    return enqueue(DriverOperation::AutoScan, {on, speed}, on ? 1 : 0, [this, on, speed](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkAbility(AbilityPan, reply))
            return;
        if (!on) {
            m_autoScan = false;
            m_autoScanSpeed = 0;
            return;
        }
        if (!checkSpeed(speed, reply))
            return;
        if (!m_autoScan)
            interruptActivities(false);
        haltManualMotion();
        m_targetingPanTilt = false;
        m_autoScan = true;
        m_autoScanSpeed = speed;
    });
}

quint64 CSimulatedCamera::position3D(const QRectF &area)
{
    return enqueue(DriverOperation::Position3D, {area}, 0, [this, area](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        if (area.isNull() || qFuzzyIsNull(area.width())) {
            reply.ok = false;
            reply.error = tr("The positioning box is empty");
            return;
        }
        const QRectF box = area.normalized();
        const bool zoomOut = area.width() < 0;
        const double fovH = kFieldOfViewAtWide / m_zoom;
        const double fovV = fovH * kAspect;
        double pan = m_pan;
        double tilt = m_tilt;
        if (m_caps.hasAbility(AbilityPan))
            pan = wrapPan(m_pan + (box.center().x() - 0.5) * fovH);
        if (m_caps.hasAbility(AbilityTilt))
            tilt = qBound(m_caps.minTilt, m_tilt - (box.center().y() - 0.5) * fovV, m_caps.maxTilt);
        double zoom = m_zoom;
        if (m_caps.hasAbility(AbilityZoom)) {
            const double factor = qBound(0.01, box.width(), 1.0);
            zoom = zoomOut ? m_zoom * factor : m_zoom / factor;
            zoom = qBound(1.0, zoom, m_caps.maxZoom);
        }
        interruptActivities(true);
        haltManualMotion();
        beginTarget(pan, tilt, zoom, kPresetSpeed);
    });
}

// ---------------------------------------------------------------------------
// Requests: presets

quint64 CSimulatedCamera::listPresets()
{
    return enqueue(DriverOperation::ListPresets, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            reply.result = QVariant::fromValue(presets());
    });
}

quint64 CSimulatedCamera::setPreset(int number, const QString &name)
{
    return enqueue(DriverOperation::SetPreset, {number, name}, number, [this, number, name](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        DevicePreset p;
        p.number = number;
        p.name = name.trimmed().isEmpty() ? tr("Preset %1").arg(number) : name;
        p.pan = m_pan;
        p.tilt = m_tilt;
        p.zoom = m_zoom;
        m_presets.insert(number, p);
        reply.result = QVariant::fromValue(p);
        if (!savePresets())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::gotoPreset(int number)
{
    return enqueue(DriverOperation::GotoPreset, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        const auto it = m_presets.constFind(number);
        if (it == m_presets.constEnd()) {
            reply.ok = false;
            reply.error = tr("Preset %1 is not set").arg(number);
            return;
        }
        interruptActivities(true);
        haltManualMotion();
        beginTarget(it->pan, it->tilt, it->zoom, kPresetSpeed);
    });
}

quint64 CSimulatedCamera::removePreset(int number)
{
    return enqueue(DriverOperation::RemovePreset, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        if (!m_presets.remove(number)) {
            reply.ok = false;
            reply.error = tr("Preset %1 is not set").arg(number);
            return;
        }
        if (!savePresets())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::renamePreset(int number, const QString &name)
{
    return enqueue(DriverOperation::RenamePreset, {number, name}, number, [this, number, name](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.presetSlots, tr("Preset"), reply))
            return;
        auto it = m_presets.find(number);
        if (it == m_presets.end()) {
            reply.ok = false;
            reply.error = tr("Preset %1 is not set").arg(number);
            return;
        }
        if (name.trimmed().isEmpty()) {
            reply.ok = false;
            reply.error = tr("A preset name cannot be empty");
            return;
        }
        it->name = name;
        reply.result = QVariant::fromValue(*it);
        if (!savePresets())
            storeFailed(reply);
    });
}

QVector<DevicePreset> CSimulatedCamera::presets() const
{
    QVector<DevicePreset> list;
    list.reserve(m_presets.size());
    for (const DevicePreset &p : m_presets)
        list.append(p);
    return list;
}

// ---------------------------------------------------------------------------
// Requests: patrols

QVector<DevicePatrol> CSimulatedCamera::patrols() const
{
    QVector<DevicePatrol> list;
    for (DevicePatrol patrol : m_patrols) {
        for (DevicePatrolPoint &point : patrol.points)
            point.presetName = m_presets.value(point.preset).name;
        list.append(patrol);
    }
    return list;
}

quint64 CSimulatedCamera::listPatrols()
{
    return enqueue(DriverOperation::ListPatrols, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            reply.result = QVariant::fromValue(patrols());
    });
}

quint64 CSimulatedCamera::readPatrol(int number)
{
    return enqueue(DriverOperation::ReadPatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        DevicePatrol patrol = m_patrols.value(number);
        patrol.number = number;
        for (DevicePatrolPoint &point : patrol.points)
            point.presetName = m_presets.value(point.preset).name;
        reply.result = QVariant::fromValue(patrol);
    });
}

quint64 CSimulatedCamera::writePatrol(int number, const QVector<DevicePatrolPoint> &points)
{
    return enqueue(DriverOperation::WritePatrol, {number, QVariant::fromValue(points)}, number,
                   [this, number, points](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        if (points.size() > m_caps.pointsPerPatrol) {
            reply.ok = false;
            reply.error = tr("A patrol holds at most %1 points, got %2").arg(m_caps.pointsPerPatrol).arg(points.size());
            return;
        }
        for (int i = 0; i < points.size(); ++i) {
            const DevicePatrolPoint &pt = points.at(i);
            if (pt.preset < 1 || pt.preset > m_caps.presetSlots) {
                reply.ok = false;
                reply.error = tr("Point %1: preset %2 is outside 1-%3").arg(i + 1).arg(pt.preset).arg(m_caps.presetSlots);
                return;
            }
            if (pt.speed < m_caps.minSpeed || pt.speed > m_caps.maxSpeed) {
                reply.ok = false;
                reply.error = tr("Point %1: speed %2 is outside %3-%4")
                                  .arg(i + 1).arg(pt.speed).arg(m_caps.minSpeed).arg(m_caps.maxSpeed);
                return;
            }
            if (pt.dwellSeconds < m_caps.minDwellSeconds || pt.dwellSeconds > m_caps.maxDwellSeconds) {
                reply.ok = false;
                reply.error = tr("Point %1: dwell time %2 s is outside %3-%4 s")
                                  .arg(i + 1).arg(pt.dwellSeconds).arg(m_caps.minDwellSeconds).arg(m_caps.maxDwellSeconds);
                return;
            }
        }
        if (m_patrol == number) {
            m_patrol = 0;
            m_targetingPanTilt = m_targetingZoom = false;
        }
        if (m_interruptedPatrol == number)
            m_interruptedPatrol = 0;
        if (points.isEmpty()) {
            m_patrols.remove(number);
        } else {
            DevicePatrol patrol;
            patrol.number = number;
            patrol.name = tr("Patrol %1").arg(number);
            patrol.points = points;
            for (DevicePatrolPoint &p : patrol.points)
                p.presetName.clear();
            m_patrols.insert(number, patrol);
        }
        if (!savePatrols())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::removePatrol(int number)
{
    return enqueue(DriverOperation::RemovePatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        if (m_patrol == number) {
            m_patrol = 0;
            m_targetingPanTilt = m_targetingZoom = false;
        }
        if (m_interruptedPatrol == number)
            m_interruptedPatrol = 0;
        m_patrols.remove(number);
        if (!savePatrols())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::startPatrol(int number)
{
    return enqueue(DriverOperation::StartPatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply) || !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        const DevicePatrol patrol = m_patrols.value(number);
        if (patrol.points.isEmpty()) {
            reply.ok = false;
            reply.error = tr("Patrol %1 has no points").arg(number);
            return;
        }
        bool reachable = false;
        for (const DevicePatrolPoint &pt : patrol.points)
            reachable = reachable || m_presets.contains(pt.preset);
        if (!reachable) {
            reply.ok = false;
            reply.error = tr("No preset of patrol %1 is set").arg(number);
            return;
        }
        if (m_patrol != number)
            interruptActivities(false);
        m_interruptedPatrol = 0;
        haltManualMotion();
        startPatrolNow(number, 0);
    });
}

quint64 CSimulatedCamera::stopPatrol(int number)
{
    const quint64 id = enqueue(DriverOperation::StopPatrol, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        if (number != 0 && !checkRange(number, m_caps.patrolSlots, tr("Patrol"), reply))
            return;
        // Stopping what is not running is harmless; the caller's aim is met.
        if (m_patrol && (number == 0 || number == m_patrol)) {
            m_patrol = 0;
            m_targetingPanTilt = m_targetingZoom = false;
        }
        if (number == 0 || m_interruptedPatrol == number)
            m_interruptedPatrol = 0;
    });
    m_queue.back()->isStop = true;
    return id;
}

void CSimulatedCamera::startPatrolNow(int number, int fromPoint)
{
    const DevicePatrol patrol = m_patrols.value(number);
    m_autoScan = false;
    stopPatternPlayback();
    m_patrol = number;
    m_patrolDwelling = false;
    const int count = patrol.points.size();
    for (int i = 0; i < count; ++i) {
        const int index = (fromPoint + i) % count;
        const auto preset = m_presets.constFind(patrol.points.at(index).preset);
        if (preset != m_presets.constEnd()) {
            m_patrolPoint = index;
            beginTarget(preset->pan, preset->tilt, preset->zoom, patrol.points.at(index).speed);
            return;
        }
    }
    // Every preset of the path is gone.
    m_patrol = 0;
}

void CSimulatedCamera::patrolArrived()
{
    const DevicePatrol patrol = m_patrols.value(m_patrol);
    if (m_patrolPoint >= patrol.points.size()) {
        m_patrol = 0;
        return;
    }
    m_patrolDwelling = true;
    m_dwellEnd = m_simNow + qint64(patrol.points.at(m_patrolPoint).dwellSeconds) * 1000;
}

// ---------------------------------------------------------------------------
// Requests: patterns

QVector<int> CSimulatedCamera::recordedPatterns() const
{
    return m_patterns.keys().toVector();
}

quint64 CSimulatedCamera::listPatterns()
{
    return enqueue(DriverOperation::ListPatterns, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPattern, reply))
            reply.result = QVariant::fromValue(recordedPatterns());
    });
}

quint64 CSimulatedCamera::startPatternRecord(int number)
{
    return enqueue(DriverOperation::StartPatternRecord, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (m_recording && m_recording != number) {
            reply.ok = false;
            reply.error = tr("Pattern %1 is being recorded").arg(m_recording);
            return;
        }
        interruptActivities(false);
        haltManualMotion();
        m_targetingPanTilt = m_targetingZoom = false;
        m_recording = number;
        m_recordStart = m_simNow;
        m_recordBuffer = Pattern();
        m_recordBuffer.startPan = m_pan;
        m_recordBuffer.startTilt = m_tilt;
        m_recordBuffer.startZoom = m_zoom;
    });
}

quint64 CSimulatedCamera::stopPatternRecord(int number)
{
    const quint64 id = enqueue(DriverOperation::StopPatternRecord, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (m_recording != number) {
            reply.ok = false;
            reply.error = tr("Pattern %1 is not being recorded").arg(number);
            return;
        }
        Pattern pattern = m_recordBuffer;
        pattern.duration = qMax(kMinPatternDuration, m_simNow - m_recordStart);
        m_patterns.insert(number, pattern);
        m_recording = 0;
        m_recordBuffer = Pattern();
        if (!savePatterns())
            storeFailed(reply);
    });
    m_queue.back()->isStop = true;
    return id;
}

quint64 CSimulatedCamera::playPattern(int number)
{
    return enqueue(DriverOperation::PlayPattern, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (!m_patterns.contains(number)) {
            reply.ok = false;
            reply.error = tr("Pattern %1 is not recorded").arg(number);
            return;
        }
        if (m_recording) {
            reply.ok = false;
            reply.error = tr("Pattern %1 is being recorded").arg(m_recording);
            return;
        }
        if (m_playing != number)
            interruptActivities(false);
        haltManualMotion();
        startPatternNow(number);
    });
}

quint64 CSimulatedCamera::stopPattern(int number)
{
    const quint64 id = enqueue(DriverOperation::StopPattern, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply))
            return;
        if (number != 0 && !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (m_playing && (number == 0 || number == m_playing))
            stopPatternPlayback();
    });
    m_queue.back()->isStop = true;
    return id;
}

quint64 CSimulatedCamera::removePattern(int number)
{
    return enqueue(DriverOperation::RemovePattern, {number}, number, [this, number](DriverReply &reply) {
        if (!checkAbility(AbilityPattern, reply) || !checkRange(number, m_caps.patternSlots, tr("Pattern"), reply))
            return;
        if (m_playing == number)
            stopPatternPlayback();
        if (m_recording == number) {
            m_recording = 0;
            m_recordBuffer = Pattern();
        }
        m_patterns.remove(number);
        if (!savePatterns())
            storeFailed(reply);
    });
}

void CSimulatedCamera::startPatternNow(int number)
{
    m_autoScan = false;
    m_patrol = 0;
    const Pattern &pattern = m_patterns[number];
    m_playing = number;
    m_playStart = -1;
    m_playNext = 0;
    beginTarget(pattern.startPan, pattern.startTilt, pattern.startZoom, kPresetSpeed);
}

void CSimulatedCamera::restartPatternCycle()
{
    haltManualMotion();
    const Pattern &pattern = m_patterns[m_playing];
    m_playStart = -1;
    m_playNext = 0;
    beginTarget(pattern.startPan, pattern.startTilt, pattern.startZoom, kPresetSpeed);
}

void CSimulatedCamera::stopPatternPlayback()
{
    if (!m_playing)
        return;
    m_playing = 0;
    m_playStart = -1;
    m_playNext = 0;
    haltManualMotion();
    m_targetingPanTilt = m_targetingZoom = false;
}

quint64 CSimulatedCamera::stopActivity()
{
    const quint64 id = enqueue(DriverOperation::StopActivity, {}, 0, [this](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        m_autoScan = false;
        m_autoScanSpeed = 0;
        m_patrol = 0;
        m_interruptedPatrol = 0;
        stopPatternPlayback();
        haltManualMotion();
        m_targetingPanTilt = m_targetingZoom = false;
    });
    m_queue.back()->isStop = true;
    return id;
}

// ---------------------------------------------------------------------------
// Requests: settings

quint64 CSimulatedCamera::setAutoTrack(bool on)
{
    return enqueue(DriverOperation::SetAutoTrack, {on}, on ? 1 : 0, [this, on](DriverReply &reply) {
        if (!checkAbility(AbilityAutoTracking, reply))
            return;
        m_autoTrack = on;
        reply.result = on;
        if (!saveSettings())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::getAutoTrack()
{
    return enqueue(DriverOperation::GetAutoTrack, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityAutoTracking, reply))
            reply.result = m_autoTrack;
    });
}

quint64 CSimulatedCamera::setParkAction(const ParkAction &action)
{
    return enqueue(DriverOperation::SetParkAction,
                   {action.enabled, action.waitingSeconds, int(action.type), action.target}, int(action.type),
                   [this, action](DriverReply &reply) {
        if (!checkAbility(AbilityParkAction, reply))
            return;
        if (action.waitingSeconds < 5 || action.waitingSeconds > 720) {
            reply.ok = false;
            reply.error = tr("Park waiting time %1 s is outside 5-720 s").arg(action.waitingSeconds);
            return;
        }
        switch (action.type) {
        case ParkActionType::None:
            break;
        case ParkActionType::Preset:
            // Target 0 parks where the camera looks now.
            if (action.target != 0 && !checkRange(action.target, m_caps.presetSlots, tr("Preset"), reply))
                return;
            break;
        case ParkActionType::Patrol:
            if (!checkRange(action.target, m_caps.patrolSlots, tr("Patrol"), reply))
                return;
            break;
        default:
            reply.ok = false;
            reply.error = tr("Unknown park action type %1").arg(int(action.type));
            return;
        }
        m_park = action;
        m_parkPan = m_pan;
        m_parkTilt = m_tilt;
        m_parkZoom = m_zoom;
        // Idle time counts from the new setting, not from before it.
        markControl();
        if (!saveSettings())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::getParkAction()
{
    return enqueue(DriverOperation::GetParkAction, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityParkAction, reply))
            reply.result = QVariant::fromValue(m_park);
    });
}

quint64 CSimulatedCamera::setPatrolRecovery(const PatrolRecovery &recovery)
{
    return enqueue(DriverOperation::SetPatrolRecovery, {recovery.enabled, recovery.waitingSeconds},
                   recovery.enabled ? 1 : 0, [this, recovery](DriverReply &reply) {
        if (!checkAbility(AbilityPtz, reply))
            return;
        if (recovery.enabled && (recovery.waitingSeconds < 1 || recovery.waitingSeconds > 720)) {
            reply.ok = false;
            reply.error = tr("Recovery waiting time %1 s is outside 1-720 s").arg(recovery.waitingSeconds);
            return;
        }
        m_recovery = recovery;
        if (!recovery.enabled)
            m_recovery.waitingSeconds = 0;
        if (!saveSettings())
            storeFailed(reply);
    });
}

quint64 CSimulatedCamera::getPatrolRecovery()
{
    return enqueue(DriverOperation::GetPatrolRecovery, {}, 0, [this](DriverReply &reply) {
        if (checkAbility(AbilityPtz, reply))
            reply.result = QVariant::fromValue(m_recovery);
    });
}

quint64 CSimulatedCamera::requestStatus()
{
    return enqueue(DriverOperation::GetStatus, {}, 0, [this](DriverReply &reply) {
        reply.result = QVariant::fromValue(status());
    });
}

// ---------------------------------------------------------------------------
// Motion helpers

void CSimulatedCamera::applyPanTilt(int panDir, int tiltDir, int speed)
{
    if (panDir || tiltDir) {
        m_targetingPanTilt = false;
        m_autoScan = false;
    }
    m_panDir = panDir;
    m_tiltDir = tiltDir;
    m_ptSpeed = (panDir || tiltDir) ? speed : 0;
}

void CSimulatedCamera::applyZoom(int dir, int speed)
{
    if (dir)
        m_targetingZoom = false;
    m_zoomDir = dir;
    m_zoomSpeed = dir ? speed : 0;
}

void CSimulatedCamera::haltManualMotion()
{
    m_panDir = m_tiltDir = m_ptSpeed = 0;
    m_zoomDir = m_zoomSpeed = 0;
    m_focusDir = m_focusSpeed = 0;
    m_irisDir = m_irisSpeed = 0;
}

void CSimulatedCamera::recordEvent(int kind, int a, int b, int c)
{
    if (!m_recording)
        return;
    PatternEvent ev;
    ev.offset = m_simNow - m_recordStart;
    ev.kind = kind;
    ev.a = a;
    ev.b = b;
    ev.c = c;
    m_recordBuffer.events.append(ev);
}

void CSimulatedCamera::beginTarget(double pan, double tilt, double zoom, int speed)
{
    m_targetPan = wrapPan(pan);
    m_targetTilt = qBound(m_caps.minTilt, tilt, m_caps.maxTilt);
    m_targetZoom = qBound(1.0, zoom, m_caps.maxZoom);
    m_targetSpeed = qBound(m_caps.minSpeed, speed, m_caps.maxSpeed);
    m_targetingPanTilt = true;
    m_targetingZoom = true;
}

bool CSimulatedCamera::activityRunning() const
{
    return m_autoScan || m_patrol || m_playing || m_recording;
}

void CSimulatedCamera::interruptActivities(bool manual)
{
    QVector<QPair<DeviceActivity, int>> stopped;
    if (m_autoScan) {
        m_autoScan = false;
        m_autoScanSpeed = 0;
        stopped.append({DeviceActivity::AutoScan, 0});
    }
    if (m_patrol) {
        if (manual) {
            m_interruptedPatrol = m_patrol;
            m_interruptedPatrolPoint = m_patrolPoint;
        }
        stopped.append({DeviceActivity::Patrol, m_patrol});
        m_patrol = 0;
        m_patrolDwelling = false;
        m_targetingPanTilt = m_targetingZoom = false;
    }
    if (m_playing) {
        stopped.append({DeviceActivity::Pattern, m_playing});
        stopPatternPlayback();
    }
    for (const auto &s : stopped) {
        ZEPH_LOG_INFO("camera %s: %s %d interrupted", qUtf8Printable(m_cameraId),
                      s.first == DeviceActivity::AutoScan ? "auto-scan"
                      : s.first == DeviceActivity::Patrol ? "patrol" : "pattern", s.second);
        emit activityInterrupted(s.first, s.second);
    }
}

// ---------------------------------------------------------------------------
// Time

void CSimulatedCamera::onTick(qint64 now, qint64 delta)
{
    Q_UNUSED(delta)
    if (now > m_simNow)
        advance(now - m_simNow);
    notifyStatus();
}

qint64 CSimulatedCamera::timeToNextEvent() const
{
    qint64 next = kNoEvent;
    auto consider = [&next](qint64 t) { next = qMin(next, qMax<qint64>(0, t)); };

    if (isTargeting()) {
        const double v = kDegPerSecondPerStep * m_targetSpeed;
        const double vz = kZoomPerSecondPerStep * m_targetSpeed;
        double seconds = 0.0;
        if (m_targetingPanTilt)
            seconds = qMax(std::abs(panDelta(m_pan, m_targetPan)), std::abs(m_targetTilt - m_tilt)) / v;
        if (m_targetingZoom)
            seconds = qMax(seconds, std::abs(m_targetZoom - m_zoom) / vz);
        consider(qint64(std::ceil(seconds * 1000.0 - 1e-6)));
    }
    if (m_patrol && m_patrolDwelling)
        consider(m_dwellEnd - m_simNow);
    const auto playing = m_playing ? m_patterns.constFind(m_playing) : m_patterns.constEnd();
    if (playing != m_patterns.constEnd() && m_playStart >= 0) {
        if (m_playNext < playing->events.size())
            consider(m_playStart + playing->events.at(m_playNext).offset - m_simNow);
        consider(m_playStart + playing->duration - m_simNow);
    }
    const bool idle = !activityRunning() && !m_panDir && !m_tiltDir && !m_zoomDir;
    if (idle && m_park.enabled && !m_parkDone)
        consider(m_lastControl + qint64(m_park.waitingSeconds) * 1000 - m_simNow);
    if (idle && m_recovery.enabled && m_interruptedPatrol)
        consider(m_lastControl + qint64(m_recovery.waitingSeconds) * 1000 - m_simNow);
    return next;
}

void CSimulatedCamera::advance(qint64 ms)
{
    // Split the step at every event so results do not depend on the tick size.
    handleDueEvents();
    while (ms > 0) {
        const qint64 dt = qBound<qint64>(1, timeToNextEvent(), ms);
        stepPhysics(dt);
        m_simNow += dt;
        ms -= dt;
        handleDueEvents();
    }
}

void CSimulatedCamera::stepPhysics(qint64 ms)
{
    const double s = double(ms) / 1000.0;
    if (m_targetingPanTilt) {
        const double step = kDegPerSecondPerStep * m_targetSpeed * s;
        const double d = panDelta(m_pan, m_targetPan);
        m_pan = std::abs(d) <= step ? m_targetPan : wrapPan(m_pan + (d > 0 ? step : -step));
        m_tilt = approach(m_tilt, m_targetTilt, step);
    } else {
        const double panVelocity = m_autoScan ? kDegPerSecondPerStep * m_autoScanSpeed
                                              : m_panDir * kDegPerSecondPerStep * m_ptSpeed;
        m_pan = wrapPan(m_pan + panVelocity * s);
        m_tilt = qBound(m_caps.minTilt, m_tilt + m_tiltDir * kDegPerSecondPerStep * m_ptSpeed * s, m_caps.maxTilt);
    }
    if (m_targetingZoom)
        m_zoom = approach(m_zoom, m_targetZoom, kZoomPerSecondPerStep * m_targetSpeed * s);
    else if (m_zoomDir)
        m_zoom = qBound(1.0, m_zoom + m_zoomDir * kZoomPerSecondPerStep * m_zoomSpeed * s, m_caps.maxZoom);
    if (m_focusDir)
        m_focus = qBound(0.0, m_focus + m_focusDir * kLensPerSecondPerStep * m_focusSpeed * s, 1.0);
    if (m_irisDir)
        m_iris = qBound(0.0, m_iris + m_irisDir * kLensPerSecondPerStep * m_irisSpeed * s, 1.0);
}

void CSimulatedCamera::handleDueEvents()
{
    // Bounded: every branch either consumes an event or schedules one in the future.
    for (int guard = 0; guard < 64; ++guard) {
        bool handled = false;

        if (m_targetingPanTilt && qFuzzyCompare(1.0 + panDelta(m_pan, m_targetPan), 1.0)
            && qFuzzyCompare(1.0 + m_tilt, 1.0 + m_targetTilt)) {
            m_pan = m_targetPan;
            m_tilt = m_targetTilt;
            m_targetingPanTilt = false;
            handled = !m_targetingZoom;
        }
        if (m_targetingZoom && qFuzzyCompare(m_zoom, m_targetZoom)) {
            m_zoom = m_targetZoom;
            m_targetingZoom = false;
            handled = !m_targetingPanTilt;
        }
        if (handled) {
            if (m_patrol && !m_patrolDwelling)
                patrolArrived();
            else if (m_playing && m_playStart < 0) {
                m_playStart = m_simNow;
                m_playNext = 0;
            }
            continue;
        }

        if (m_patrol && m_patrolDwelling && m_simNow >= m_dwellEnd) {
            const DevicePatrol patrol = m_patrols.value(m_patrol);
            startPatrolNow(m_patrol, patrol.points.isEmpty() ? 0 : (m_patrolPoint + 1) % patrol.points.size());
            continue;
        }

        const auto playing = m_playing ? m_patterns.constFind(m_playing) : m_patterns.constEnd();
        if (playing != m_patterns.constEnd() && m_playStart >= 0) {
            const Pattern &pattern = *playing;
            if (m_playNext < pattern.events.size()
                && m_simNow >= m_playStart + pattern.events.at(m_playNext).offset) {
                const PatternEvent ev = pattern.events.at(m_playNext++);
                if (ev.kind == PatternPanTilt)
                    applyPanTilt(ev.a, ev.b, ev.c);
                else if (ev.kind == PatternZoom)
                    applyZoom(ev.a, ev.b);
                continue;
            }
            if (m_playNext >= pattern.events.size() && m_simNow >= m_playStart + pattern.duration) {
                restartPatternCycle();
                continue;
            }
        }

        const bool idle = !activityRunning() && !m_panDir && !m_tiltDir && !m_zoomDir;
        const qint64 recoveryAt = m_lastControl + qint64(m_recovery.waitingSeconds) * 1000;
        const qint64 parkAt = m_lastControl + qint64(m_park.waitingSeconds) * 1000;
        if (idle && m_recovery.enabled && m_interruptedPatrol && m_simNow >= recoveryAt
            && (!m_park.enabled || m_parkDone || recoveryAt <= parkAt)) {
            const int number = m_interruptedPatrol;
            m_interruptedPatrol = 0;
            if (m_patrols.contains(number)) {
                ZEPH_LOG_INFO("camera %s: patrol %d resumes", qUtf8Printable(m_cameraId), number);
                startPatrolNow(number, m_interruptedPatrolPoint);
                if (m_patrol)
                    emit activityResumed(DeviceActivity::Patrol, number);
            }
            continue;
        }
        if (idle && m_park.enabled && !m_parkDone && m_simNow >= parkAt) {
            m_parkDone = true;
            m_interruptedPatrol = 0;
            ZEPH_LOG_INFO("camera %s: park action %d fires", qUtf8Printable(m_cameraId), int(m_park.type));
            if (m_park.type == ParkActionType::Preset) {
                if (m_park.target == 0) {
                    beginTarget(m_parkPan, m_parkTilt, m_parkZoom, kPresetSpeed);
                } else {
                    const auto preset = m_presets.constFind(m_park.target);
                    if (preset != m_presets.constEnd())
                        beginTarget(preset->pan, preset->tilt, preset->zoom, kPresetSpeed);
                }
            } else if (m_park.type == ParkActionType::Patrol && m_patrols.contains(m_park.target)) {
                startPatrolNow(m_park.target, 0);
                if (m_patrol)
                    emit activityResumed(DeviceActivity::Patrol, m_park.target);
            }
            continue;
        }
        break;
    }
}

void CSimulatedCamera::notifyStatus()
{
    const DeviceStatus s = status();
    if (s == m_lastStatus)
        return;
    m_lastStatus = s;
    emit statusChanged(s);
}

// ---------------------------------------------------------------------------
// Persistence

void CSimulatedCamera::loadState()
{
    const QJsonArray presets = m_store->load(m_cameraId, kKeyPresets).value(QStringLiteral("items")).toArray();
    for (const QJsonValue &v : presets) {
        const QJsonObject o = v.toObject();
        DevicePreset p;
        p.number = o.value(QStringLiteral("number")).toInt();
        p.name = o.value(QStringLiteral("name")).toString();
        p.pan = o.value(QStringLiteral("pan")).toDouble();
        p.tilt = o.value(QStringLiteral("tilt")).toDouble();
        p.zoom = o.value(QStringLiteral("zoom")).toDouble(1.0);
        if (p.number >= 1 && p.number <= m_caps.presetSlots)
            m_presets.insert(p.number, p);
    }

    const QJsonArray patrols = m_store->load(m_cameraId, kKeyPatrols).value(QStringLiteral("items")).toArray();
    for (const QJsonValue &v : patrols) {
        const QJsonObject o = v.toObject();
        DevicePatrol patrol;
        patrol.number = o.value(QStringLiteral("number")).toInt();
        patrol.name = o.value(QStringLiteral("name")).toString();
        const QJsonArray points = o.value(QStringLiteral("points")).toArray();
        for (const QJsonValue &pv : points) {
            const QJsonObject po = pv.toObject();
            DevicePatrolPoint pt;
            pt.preset = po.value(QStringLiteral("preset")).toInt();
            pt.speed = po.value(QStringLiteral("speed")).toInt();
            pt.dwellSeconds = po.value(QStringLiteral("dwell")).toInt();
            patrol.points.append(pt);
        }
        if (patrol.number >= 1 && patrol.number <= m_caps.patrolSlots && !patrol.points.isEmpty())
            m_patrols.insert(patrol.number, patrol);
    }

    const QJsonArray patterns = m_store->load(m_cameraId, kKeyPatterns).value(QStringLiteral("items")).toArray();
    for (const QJsonValue &v : patterns) {
        const QJsonObject o = v.toObject();
        const int number = o.value(QStringLiteral("number")).toInt();
        Pattern pattern;
        pattern.duration = qMax<qint64>(kMinPatternDuration, qint64(o.value(QStringLiteral("duration")).toDouble()));
        pattern.startPan = o.value(QStringLiteral("startPan")).toDouble();
        pattern.startTilt = o.value(QStringLiteral("startTilt")).toDouble();
        pattern.startZoom = o.value(QStringLiteral("startZoom")).toDouble(1.0);
        const QJsonArray events = o.value(QStringLiteral("events")).toArray();
        for (const QJsonValue &ev : events) {
            const QJsonArray a = ev.toArray();
            if (a.size() != 5)
                continue;
            PatternEvent e;
            e.offset = qint64(a.at(0).toDouble());
            e.kind = a.at(1).toInt();
            e.a = a.at(2).toInt();
            e.b = a.at(3).toInt();
            e.c = a.at(4).toInt();
            pattern.events.append(e);
        }
        if (number >= 1 && number <= m_caps.patternSlots)
            m_patterns.insert(number, pattern);
    }

    const QJsonObject park = m_store->load(m_cameraId, kKeyPark);
    if (!park.isEmpty()) {
        m_park.enabled = park.value(QStringLiteral("enabled")).toBool();
        m_park.waitingSeconds = park.value(QStringLiteral("waitingSeconds")).toInt(5);
        m_park.type = ParkActionType(park.value(QStringLiteral("type")).toInt());
        m_park.target = park.value(QStringLiteral("target")).toInt();
        m_parkPan = park.value(QStringLiteral("pan")).toDouble();
        m_parkTilt = park.value(QStringLiteral("tilt")).toDouble();
        m_parkZoom = park.value(QStringLiteral("zoom")).toDouble(1.0);
    }
    const QJsonObject recovery = m_store->load(m_cameraId, kKeyRecovery);
    m_recovery.enabled = recovery.value(QStringLiteral("enabled")).toBool();
    m_recovery.waitingSeconds = recovery.value(QStringLiteral("waitingSeconds")).toInt();
    m_autoTrack = m_store->load(m_cameraId, kKeyAutoTrack).value(QStringLiteral("enabled")).toBool();
}

bool CSimulatedCamera::savePresets()
{
    QJsonArray items;
    for (const DevicePreset &p : qAsConst(m_presets)) {
        items.append(QJsonObject{{QStringLiteral("number"), p.number},
                                 {QStringLiteral("name"), p.name},
                                 {QStringLiteral("pan"), p.pan},
                                 {QStringLiteral("tilt"), p.tilt},
                                 {QStringLiteral("zoom"), p.zoom}});
    }
    if (m_store->save(m_cameraId, kKeyPresets, QJsonObject{{QStringLiteral("items"), items}}))
        return true;
    ZEPH_LOG_WARN("camera %s: presets not stored", qUtf8Printable(m_cameraId));
    return false;
}

bool CSimulatedCamera::savePatrols()
{
    QJsonArray items;
    for (const DevicePatrol &patrol : qAsConst(m_patrols)) {
        QJsonArray points;
        for (const DevicePatrolPoint &pt : patrol.points) {
            points.append(QJsonObject{{QStringLiteral("preset"), pt.preset},
                                      {QStringLiteral("speed"), pt.speed},
                                      {QStringLiteral("dwell"), pt.dwellSeconds}});
        }
        items.append(QJsonObject{{QStringLiteral("number"), patrol.number},
                                 {QStringLiteral("name"), patrol.name},
                                 {QStringLiteral("points"), points}});
    }
    if (m_store->save(m_cameraId, kKeyPatrols, QJsonObject{{QStringLiteral("items"), items}}))
        return true;
    ZEPH_LOG_WARN("camera %s: patrols not stored", qUtf8Printable(m_cameraId));
    return false;
}

bool CSimulatedCamera::savePatterns()
{
    QJsonArray items;
    for (auto it = m_patterns.constBegin(); it != m_patterns.constEnd(); ++it) {
        QJsonArray events;
        for (const PatternEvent &e : it->events)
            events.append(QJsonArray{double(e.offset), e.kind, e.a, e.b, e.c});
        items.append(QJsonObject{{QStringLiteral("number"), it.key()},
                                 {QStringLiteral("duration"), double(it->duration)},
                                 {QStringLiteral("startPan"), it->startPan},
                                 {QStringLiteral("startTilt"), it->startTilt},
                                 {QStringLiteral("startZoom"), it->startZoom},
                                 {QStringLiteral("events"), events}});
    }
    if (m_store->save(m_cameraId, kKeyPatterns, QJsonObject{{QStringLiteral("items"), items}}))
        return true;
    ZEPH_LOG_WARN("camera %s: patterns not stored", qUtf8Printable(m_cameraId));
    return false;
}

bool CSimulatedCamera::saveSettings()
{
    bool ok = m_store->save(m_cameraId, kKeyPark,
                            QJsonObject{{QStringLiteral("enabled"), m_park.enabled},
                                        {QStringLiteral("waitingSeconds"), m_park.waitingSeconds},
                                        {QStringLiteral("type"), int(m_park.type)},
                                        {QStringLiteral("target"), m_park.target},
                                        {QStringLiteral("pan"), m_parkPan},
                                        {QStringLiteral("tilt"), m_parkTilt},
                                        {QStringLiteral("zoom"), m_parkZoom}});
    ok = m_store->save(m_cameraId, kKeyRecovery,
                       QJsonObject{{QStringLiteral("enabled"), m_recovery.enabled},
                                   {QStringLiteral("waitingSeconds"), m_recovery.waitingSeconds}})
        && ok;
    ok = m_store->save(m_cameraId, kKeyAutoTrack, QJsonObject{{QStringLiteral("enabled"), m_autoTrack}}) && ok;
    if (!ok)
        ZEPH_LOG_WARN("camera %s: settings not stored", qUtf8Printable(m_cameraId));
    return ok;
}

} // namespace ptz_devices
