#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include "zeph_ptz_controller/cpatrolrunner.h"
#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "site_store/csitestore.h"
#include "tarn/base/logging.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <cmath>

namespace zeph_ptz_controller {

using namespace ptz_plugin_protocol;

namespace {

// A virtual preset keeps the part of the picture it shows as a direction and
// a magnification: pan 0..360 maps to the picture's width, tilt 0..-90 to its
// height, and the part's size is the picture's divided by the zoom.
QRectF AreaOf(const site_store::VirtualPresetRecord &preset)
{
    const double zoom = qMax(1.0, preset.zoom);
    const double size = 1.0 / zoom;
    double cx = std::fmod(preset.pan, 360.0) / 360.0;
    if (cx < 0)
        cx += 1.0;
    const double cy = qBound(0.0, -preset.tilt / 90.0, 1.0);
    const double left = qBound(0.0, cx - size / 2, 1.0 - size);
    const double top = qBound(0.0, cy - size / 2, 1.0 - size);
    return QRectF(left, top, size, size);
}

} // namespace

CVirtualPtzControllor::CVirtualPtzControllor(QObject *parent)
    : QObject(parent)
    , m_runner(new CPatrolRunner([this](const CruisePoint &point) { ShowPoint(point); }, this))
{
    registerMetaTypes();
}

CVirtualPtzControllor::~CVirtualPtzControllor() = default;

void CVirtualPtzControllor::SetCamera(const QString &camera_index_code)
{
    if (m_camera == camera_index_code)
        return;
    StopRunning(true);
    m_camera = camera_index_code;
}

QString CVirtualPtzControllor::GetCamera() const
{
    return m_camera;
}

bool CVirtualPtzControllor::Cruise(unsigned int command, unsigned int value)
{
    if (command == kCruiseStop) {
        StopRunning(true);
        return true;
    }
    if (command != kCruiseStart || m_camera.isEmpty() || value < 1 || value > unsigned(detail::kMaxCruiseIndex))
        return false;
    const auto patrol = Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance()->StoredCruise(
        m_camera, int(value));
    if (!patrol || patrol->cruise_type != CRUISE_TYPE_VIRTUAL || patrol->points.empty())
        return false;
    if (!detail::CheckCruisePoints(patrol->points, CRUISE_TYPE_VIRTUAL, nullptr).isEmpty())
        return false;
    StopRunning(true);
    ZEPH_LOG_INFO("virtual patrol %u of %s starts", value, qUtf8Printable(m_camera));
    emit SignalCruiseStateChanged(m_camera, int(value), true);
    m_runner->Start(int(value), patrol->points);
    return true;
}

void CVirtualPtzControllor::ShowPoint(const CruisePoint &point)
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    if (const auto preset = store ? store->virtualPreset(m_camera, int(point.preset_index)) : std::nullopt) {
        const QRectF area = AreaOf(*preset);
        SetDigitalZoomStyle(1, area.left(), area.top(), area.right(), area.bottom());
    }
}

void CVirtualPtzControllor::StopRunning(bool notify)
{
    const int stopped = m_runner->Stop();
    if (stopped > 0 && notify)
        emit SignalCruiseStateChanged(m_camera, stopped, false);
}

bool CVirtualPtzControllor::GetRunningState(unsigned int &cruise_index) const
{
    if (!m_runner->IsRunning())
        return false;
    cruise_index = unsigned(m_runner->Patrol());
    return true;
}

bool CVirtualPtzControllor::IsRunningPatrol() const
{
    return m_runner->IsRunning();
}

void CVirtualPtzControllor::SetDigitalZoomStyle(int style, double left, double top, double right, double bottom)
{
    QRectF area;
    if (style != 0 && right > left && bottom > top)
        area = QRectF(QPointF(left, top), QPointF(right, bottom)).intersected(QRectF(0, 0, 1, 1));
    else
        style = 0;
    if (style == m_style && area == m_area)
        return;
    m_style = style;
    m_area = area;
    emit SignalDigitalZoomStyleChanged(style, area);
}

int CVirtualPtzControllor::GetDigitalZoomStyle() const
{
    return m_style;
}

QRectF CVirtualPtzControllor::GetDigitalZoomRect() const
{
    return m_area;
}

int CVirtualPtzControllor::GetPatrolPointIndex() const
{
    return m_runner->PointIndex();
}

} // namespace zeph_ptz_controller
