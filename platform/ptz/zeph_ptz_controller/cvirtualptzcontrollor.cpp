#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

#include "zeph_ptz_controller/ptzcontrollercommon_p.h"

#include "site_store/csitestore.h"
#include "tarn/base/logging.h"

#include <QTimer>

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

CVirtualPtzControllor::CVirtualPtzControllor(QObject *parent) : QObject(parent)
{
    registerMetaTypes();
    m_dwell_timer = new QTimer(this);
    m_dwell_timer->setSingleShot(true);
    connect(m_dwell_timer, &QTimer::timeout, this, [this] {
        if (m_patrol > 0)
            ShowPoint(m_point + 1);
    });
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
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    const auto record = store ? store->patrol(m_camera, int(value)) : std::nullopt;
    if (!record || record->type != CRUISE_TYPE_VIRTUAL || record->points.isEmpty())
        return false;
    std::vector<CruisePoint> points;
    for (const site_store::PatrolPointRecord &r : record->points) {
        CruisePoint p;
        p.preset_index = uint32_t(qMax(0, r.preset));
        p.speed = r.speed;
        p.dwell_time = r.dwell;
        p.preset_name = r.presetName.toStdString();
        points.push_back(p);
    }
    if (!detail::CheckCruisePoints(points, CRUISE_TYPE_VIRTUAL, nullptr).isEmpty())
        return false;
    StopRunning(true);
    m_points = points;
    m_patrol = int(value);
    ZEPH_LOG_INFO("virtual patrol %d of %s starts", m_patrol, qUtf8Printable(m_camera));
    emit SignalCruiseStateChanged(m_camera, m_patrol, true);
    ShowPoint(0);
    return true;
}

void CVirtualPtzControllor::ShowPoint(int index)
{
    if (m_points.empty())
        return;
    m_point = index % int(m_points.size());
    const CruisePoint &point = m_points[size_t(m_point)];
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    if (const auto preset = store ? store->virtualPreset(m_camera, int(point.preset_index)) : std::nullopt) {
        const QRectF area = AreaOf(*preset);
        SetDigitalZoomStyle(1, area.left(), area.top(), area.right(), area.bottom());
    }
    m_dwell_timer->start(point.dwell_time * 1000);
}

void CVirtualPtzControllor::StopRunning(bool notify)
{
    if (m_patrol <= 0)
        return;
    const int stopped = m_patrol;
    m_patrol = 0;
    m_point = -1;
    m_points.clear();
    m_dwell_timer->stop();
    if (notify)
        emit SignalCruiseStateChanged(m_camera, stopped, false);
}

bool CVirtualPtzControllor::GetRunningState(unsigned int &cruise_index) const
{
    if (m_patrol <= 0)
        return false;
    cruise_index = unsigned(m_patrol);
    return true;
}

bool CVirtualPtzControllor::IsRunningPatrol() const
{
    return m_patrol > 0;
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
    return m_point;
}

} // namespace zeph_ptz_controller
