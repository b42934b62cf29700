#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"

#include "zeph_ptz_controller/cpatrolrunner.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/iptzfisheyecontroller.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "site_store/csitestore.h"
#include "tarn/base/logging.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QTimer>

#include <cmath>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;

namespace {
constexpr int kTickMs = 40;
constexpr double kDegreesPerSecondPerStep = 2.0;
constexpr double kZoomPerSecondPerStep = 0.05;
constexpr double kMinTilt = -90.0;
constexpr double kMaxTilt = 0.0;
constexpr double kMaxZoom = 8.0;

site_store::CSiteStore *Store()
{
    return site_store::CSiteStore::Current();
}
} // namespace

CBaseSoftwarePtzControllor::CBaseSoftwarePtzControllor(QObject *parent)
    : QObject(parent)
    , m_runner(new CPatrolRunner([this](const CruisePoint &point) { VisitPoint(point); }, this))
{
    registerMetaTypes();
    m_motion_timer = new QTimer(this);
    m_motion_timer->setInterval(kTickMs);
    connect(m_motion_timer, &QTimer::timeout, this, &CBaseSoftwarePtzControllor::OnMotionTick);
}

CBaseSoftwarePtzControllor::~CBaseSoftwarePtzControllor() = default;

void CBaseSoftwarePtzControllor::SetCamera(const QString &camera_index_code)
{
    if (m_camera == camera_index_code)
        return;
    StopPtzPatrol();
    StopAutoPan();
    m_pan_dir = m_tilt_dir = m_zoom_dir = 0;
    UpdateMotionTimer();
    m_camera = camera_index_code;
}

QString CBaseSoftwarePtzControllor::GetCamera() const
{
    return m_camera;
}

IPTZFishEyeController *CBaseSoftwarePtzControllor::GetSoftwareControllor() const
{
    return m_fisheye;
}

void CBaseSoftwarePtzControllor::SetSoftwareControllor(IPTZFishEyeController *controller)
{
    if (m_fisheye)
        disconnect(m_fisheye, nullptr, this, nullptr);
    m_fisheye = controller;
    if (m_fisheye)
        connect(m_fisheye, &IPTZFishEyeController::SignalFishEyeSelectedWndChanged, this,
                &CBaseSoftwarePtzControllor::FollowSelectedWnd);
}

// Motion steers the selected sub-view only. Held moves belong to the sub-view left behind; auto-pan
// and patrol are marks of each sub-view, so what runs follows the marks of the one now selected: the
// one left behind pauses and carries on when it is selected again.
void CBaseSoftwarePtzControllor::FollowSelectedWnd()
{
    m_pan_dir = m_tilt_dir = m_zoom_dir = 0;
    if (const int paused = m_runner->Stop(); paused > 0)
        emit SignalPatrolRunningState(false, paused);
    int cruise_index = 0;
    std::vector<CruisePoint> points;
    if (m_fisheye && m_fisheye->IsSelectedWndPatrolling(cruise_index) && GetPatrolPathByIndex(cruise_index, points)
        && !points.empty()) {
        m_last_patrol = cruise_index;
        emit SignalPatrolRunningState(true, cruise_index);
        m_runner->Start(cruise_index, points);
    }
    SetAutoPanRunning(m_fisheye && m_fisheye->IsSelectedWndAutoPanning());
    UpdateMotionTimer();
}

void CBaseSoftwarePtzControllor::SetAutoPanRunning(bool running)
{
    if (running == m_auto_pan)
        return;
    m_auto_pan = running;
    if (running && m_auto_pan_speed <= 0)
        m_auto_pan_speed = ptz_plugin_protocol::kDefaultSpeed;
    if (!m_camera.isEmpty())
        CPTZStateStorageManager::Instance()->SetAutoScan(m_camera, running, true);
    emit SignalAutoPanRunningState(running);
}

void CBaseSoftwarePtzControllor::SetSemisphereFishEyePTZPos(double pan, double tilt, double zoom)
{
    pan = std::fmod(pan, 360.0);
    if (pan < 0)
        pan += 360.0;
    tilt = qBound(kMinTilt, tilt, kMaxTilt);
    zoom = qBound(1.0, zoom, kMaxZoom);
    if (m_fisheye)
        m_fisheye->SetSemisphereFishEyePTZPos(pan, tilt, zoom);
    m_pan = pan;
    m_tilt = tilt;
    m_zoom = zoom;
}

void CBaseSoftwarePtzControllor::GetSemisphereFishEyePTZPos(double &pan, double &tilt, double &zoom) const
{
    if (m_fisheye) {
        m_fisheye->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
        return;
    }
    pan = m_pan;
    tilt = m_tilt;
    zoom = m_zoom;
}

bool CBaseSoftwarePtzControllor::Control(unsigned int command, bool stop, int speed)
{
    const bool move = command >= PTZ_CMD_TILT_UP && command <= PTZ_CMD_DOWN_RIGHT;
    const bool zoom = command == PTZ_CMD_ZOOM_IN || command == PTZ_CMD_ZOOM_OUT;
    const bool lens = command >= PTZ_CMD_FOCUS_NEAR && command <= PTZ_CMD_IRIS_CLOSE;
    if (!move && !zoom && !lens && command != PTZ_CMD_AUTO_PAN)
        return false;
    if (!stop && (speed < detail::kMinSpeed || speed > detail::kMaxSpeed))
        return false;
    if (lens)
        return true; // a dewarped picture has no focus or iris
    if (command == PTZ_CMD_AUTO_PAN) {
        if (stop) {
            StopAutoPan();
        } else {
            StopPtzPatrol();
            m_auto_pan_speed = speed;
            if (m_fisheye)
                m_fisheye->SetSelectedWndAutoPanning(true);
            SetAutoPanRunning(true);
        }
        UpdateMotionTimer();
        return true;
    }
    if (move) {
        if (stop) {
            m_pan_dir = m_tilt_dir = 0;
        } else {
            // A manual move ends auto-pan and patrol.
            StopAutoPan();
            StopPtzPatrol();
            static const int table[8][2] = {{0, 1}, {0, -1}, {-1, 0}, {1, 0}, {-1, 1}, {1, 1}, {-1, -1}, {1, -1}};
            m_pan_dir = table[command - PTZ_CMD_TILT_UP][0];
            m_tilt_dir = table[command - PTZ_CMD_TILT_UP][1];
            m_move_speed = speed;
        }
    } else {
        if (stop) {
            m_zoom_dir = 0;
        } else {
            StopPtzPatrol();
            m_zoom_dir = command == PTZ_CMD_ZOOM_IN ? 1 : -1;
            m_zoom_speed = speed;
        }
    }
    UpdateMotionTimer();
    return true;
}

bool CBaseSoftwarePtzControllor::StartPtzControl(unsigned int command, int speed)
{
    return Control(command, false, speed);
}

bool CBaseSoftwarePtzControllor::StopPtzControl(unsigned int command)
{
    return Control(command, true, 0);
}

void CBaseSoftwarePtzControllor::StopAutoPan()
{
    if (!m_auto_pan)
        return;
    if (m_fisheye)
        m_fisheye->SetSelectedWndAutoPanning(false);
    SetAutoPanRunning(false);
    UpdateMotionTimer();
}

void CBaseSoftwarePtzControllor::UpdateMotionTimer()
{
    const bool moving = m_auto_pan || m_pan_dir != 0 || m_tilt_dir != 0 || m_zoom_dir != 0;
    if (moving && !m_motion_timer->isActive())
        m_motion_timer->start();
    else if (!moving)
        m_motion_timer->stop();
}

void CBaseSoftwarePtzControllor::OnMotionTick()
{
    double pan = 0;
    double tilt = 0;
    double zoom = 1;
    GetSemisphereFishEyePTZPos(pan, tilt, zoom);
    const double seconds = kTickMs / 1000.0;
    if (m_auto_pan)
        pan += m_auto_pan_speed * kDegreesPerSecondPerStep * seconds;
    pan += m_pan_dir * m_move_speed * kDegreesPerSecondPerStep * seconds;
    tilt += m_tilt_dir * m_move_speed * kDegreesPerSecondPerStep * seconds;
    zoom += m_zoom_dir * m_zoom_speed * kZoomPerSecondPerStep * seconds;
    SetSemisphereFishEyePTZPos(pan, tilt, zoom);
}

bool CBaseSoftwarePtzControllor::Preset(unsigned int command, PresetInfo &preset)
{
    site_store::CSiteStore *store = Store();
    if (m_camera.isEmpty() || !store || preset.preset_index < 1 || preset.preset_index > detail::kMaxPresetIndex)
        return false;
    switch (command) {
    case kPresetSet: {
        if (!preset.preset_name.empty()
            && !detail::PresetNameFault(m_camera, preset.preset_index, PRESET_TYPE_FISHEYE, preset.preset_name)
                    .isEmpty())
            return false;
        site_store::VirtualPresetRecord record;
        record.cameraId = m_camera;
        record.number = preset.preset_index;
        record.name = QString::fromStdString(preset.preset_name);
        if (record.name.isEmpty())
            record.name = detail::Tr("Preset%1").arg(preset.preset_index);
        record.type = PRESET_TYPE_FISHEYE;
        GetSemisphereFishEyePTZPos(record.pan, record.tilt, record.zoom);
        if (!store->upsertVirtualPreset(record))
            return false;
        preset.preset_type = PRESET_TYPE_FISHEYE;
        preset.preset_name = record.name.toStdString();
        preset.pan = record.pan;
        preset.tilt = record.tilt;
        preset.zoom = record.zoom;
        return true;
    }
    case kPresetGoto: {
        const auto record = store->virtualPreset(m_camera, preset.preset_index);
        if (!record)
            return false;
        StopAutoPan();
        StopPtzPatrol();
        SetSemisphereFishEyePTZPos(record->pan, record->tilt, record->zoom);
        preset.preset_type = record->type;
        preset.preset_name = record->name.toStdString();
        preset.pan = record->pan;
        preset.tilt = record->tilt;
        preset.zoom = record->zoom;
        return true;
    }
    case kPresetClear:
        return store->virtualPreset(m_camera, preset.preset_index)
               && store->removeVirtualPreset(m_camera, preset.preset_index);
    default:
        return false;
    }
}

bool CBaseSoftwarePtzControllor::RunPreset(PresetInfo &preset)
{
    return Preset(kPresetGoto, preset);
}

bool CBaseSoftwarePtzControllor::RunPreset(unsigned int preset_index)
{
    PresetInfo preset;
    preset.preset_index = int(preset_index);
    return Preset(kPresetGoto, preset);
}

bool CBaseSoftwarePtzControllor::Cruise(unsigned int command, int cruise_index, std::vector<CruisePoint> &points)
{
    if (command == PTZ_CMD_CRUISE_START)
        return StartPtzPatrol(cruise_index, points);
    if (command == PTZ_CMD_CRUISE_STOP) {
        StopPtzPatrol();
        return true;
    }
    return false;
}

bool CBaseSoftwarePtzControllor::StartPtzPatrol(int cruise_index, std::vector<CruisePoint> &points)
{
    if (points.empty())
        GetPatrolPathByIndex(cruise_index, points);
    if (points.empty() || !CheckCruisePath(cruise_index, CRUISE_TYPE_SOFTWARE, points).isEmpty())
        return false;
    StopPtzPatrol();
    StopAutoPan();
    m_pan_dir = m_tilt_dir = m_zoom_dir = 0;
    UpdateMotionTimer();
    m_last_patrol = cruise_index;
    if (m_fisheye)
        m_fisheye->SetSelectedWndPatrolling(true, cruise_index);
    ZEPH_LOG_INFO("software patrol %d of %s starts with %d points", cruise_index, qUtf8Printable(m_camera),
                  int(points.size()));
    emit SignalPatrolRunningState(true, cruise_index);
    m_runner->Start(cruise_index, points);
    return true;
}

void CBaseSoftwarePtzControllor::StopPtzPatrol()
{
    const int stopped = m_runner->Stop();
    if (stopped <= 0)
        return;
    if (m_fisheye)
        m_fisheye->SetSelectedWndPatrolling(false, stopped);
    emit SignalPatrolRunningState(false, stopped);
}

void CBaseSoftwarePtzControllor::VisitPoint(const CruisePoint &point)
{
    if (site_store::CSiteStore *store = Store()) {
        if (const auto record = store->virtualPreset(m_camera, int(point.preset_index)))
            SetSemisphereFishEyePTZPos(record->pan, record->tilt, record->zoom);
    }
}

bool CBaseSoftwarePtzControllor::IsPtzPatrolling(int &cruise_index) const
{
    if (!m_runner->IsRunning())
        return false;
    cruise_index = m_runner->Patrol();
    return true;
}

bool CBaseSoftwarePtzControllor::IsPtzAutoPanning() const
{
    return m_auto_pan;
}

int CBaseSoftwarePtzControllor::GetPatrolPath() const
{
    return m_runner->IsRunning() ? m_runner->Patrol() : m_last_patrol;
}

int CBaseSoftwarePtzControllor::GetPatrolPointIndex() const
{
    return m_runner->PointIndex();
}

bool CBaseSoftwarePtzControllor::GetPatrolPathByIndex(int cruise_index, std::vector<CruisePoint> &points)
{
    points.clear();
    if (m_camera.isEmpty())
        return false;
    const auto patrol = Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->StoredCruise(
        m_camera, cruise_index);
    if (!patrol || patrol->cruise_type != CRUISE_TYPE_SOFTWARE)
        return false;
    points = patrol->points;
    return true;
}

bool CBaseSoftwarePtzControllor::DeleteCruise(int cruise_index)
{
    // The path itself is the host's record; only a running patrol is ours to end.
    if (cruise_index < 1 || cruise_index > detail::kMaxCruiseIndex)
        return false;
    if (m_runner->Patrol() == cruise_index)
        StopPtzPatrol();
    if (m_last_patrol == cruise_index)
        m_last_patrol = 0;
    return true;
}

} // namespace zeph_ptz_controller
