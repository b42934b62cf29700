#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include "tarn/base/logging.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace zeph_ptz_controller {

struct CPTZStateStorageManager::CameraState
{
    bool auto_scan = false;
    bool soft_auto_scan = false;
    int running_cruise = -1;
    bool light = false;
    bool wiper = false;
    int record_pattern = -1;
    int running_pattern = -1;
    int preset_num = -1;

    // Pending resume after an interruption.
    bool interrupt_is_patrol = false;
    int interrupt_index = -1;
    int interrupt_wait_ms = 0;
    QTimer *interrupt_timer = nullptr;
    QPointer<QObject> resume_context;
    bool has_context = false;
    std::function<void()> resume;

    ~CameraState() { delete interrupt_timer; }
};

struct CPTZStateStorageManager::ResumeHandler
{
    QPointer<QObject> context;
    std::function<void(bool, QString, int)> handler;
};

namespace {
int Normalised(int number)
{
    return number > 0 ? number : -1;
}
} // namespace

CPTZStateStorageManager::CPTZStateStorageManager() = default;

CPTZStateStorageManager::~CPTZStateStorageManager()
{
    qDeleteAll(m_states);
}

CPTZStateStorageManager::CameraState &CPTZStateStorageManager::State(const QString &camera_index_code)
{
    auto it = m_states.find(camera_index_code);
    if (it == m_states.end())
        it = m_states.insert(camera_index_code, new CameraState);
    return **it;
}

const CPTZStateStorageManager::CameraState *CPTZStateStorageManager::Find(const QString &camera_index_code) const
{
    return m_states.value(camera_index_code, nullptr);
}

void CPTZStateStorageManager::AddCamera(const QString &camera_index_code)
{
    if (!camera_index_code.isEmpty())
        State(camera_index_code);
}

bool CPTZStateStorageManager::HasCamera(const QString &camera_index_code) const
{
    return m_states.contains(camera_index_code);
}

void CPTZStateStorageManager::RemoveCamera(const QString &camera_index_code)
{
    delete m_states.take(camera_index_code);
}

void CPTZStateStorageManager::Clear()
{
    qDeleteAll(m_states);
    m_states.clear();
}

bool CPTZStateStorageManager::IsAutoScan(const QString &camera_index_code, bool is_software_ptz) const
{
    const CameraState *s = Find(camera_index_code);
    return s && (is_software_ptz ? s->soft_auto_scan : s->auto_scan);
}

void CPTZStateStorageManager::SetAutoScan(const QString &camera_index_code, bool auto_scan, bool is_software_ptz)
{
    CameraState &s = State(camera_index_code);
    bool &flag = is_software_ptz ? s.soft_auto_scan : s.auto_scan;
    if (flag == auto_scan)
        return;
    flag = auto_scan;
    emit SignalStateChanged(camera_index_code);
}

bool CPTZStateStorageManager::IsCruising(const QString &camera_index_code) const
{
    const CameraState *s = Find(camera_index_code);
    return s && s->running_cruise > 0;
}

void CPTZStateStorageManager::SetCruising(const QString &camera_index_code, bool cruising, int cruise_index)
{
    CameraState &s = State(camera_index_code);
    const int value = cruising ? Normalised(cruise_index) : -1;
    if (s.running_cruise == value)
        return;
    s.running_cruise = value;
    emit SignalStateChanged(camera_index_code);
}

int CPTZStateStorageManager::GetRunningCruise(const QString &camera_index_code) const
{
    const CameraState *s = Find(camera_index_code);
    return s ? s->running_cruise : -1;
}

void CPTZStateStorageManager::SetPresetNum(const QString &camera_index_code, int preset_index)
{
    State(camera_index_code).preset_num = preset_index;
}

int CPTZStateStorageManager::GetPresetNum(const QString &camera_index_code) const
{
    const CameraState *s = Find(camera_index_code);
    return s ? s->preset_num : -1;
}

bool CPTZStateStorageManager::IsLight(const QString &camera_index_code) const
{
    const CameraState *s = Find(camera_index_code);
    return s && s->light;
}

void CPTZStateStorageManager::SetLight(const QString &camera_index_code, bool on)
{
    CameraState &s = State(camera_index_code);
    if (s.light == on)
        return;
    s.light = on;
    emit SignalStateChanged(camera_index_code);
}

bool CPTZStateStorageManager::IsWiper(const QString &camera_index_code) const
{
    const CameraState *s = Find(camera_index_code);
    return s && s->wiper;
}

void CPTZStateStorageManager::SetWiper(const QString &camera_index_code, bool on)
{
    CameraState &s = State(camera_index_code);
    if (s.wiper == on)
        return;
    s.wiper = on;
    emit SignalStateChanged(camera_index_code);
}

bool CPTZStateStorageManager::IsRecordPattern(const QString &camera_index_code) const
{
    return GetRecordPattern(camera_index_code) > 0;
}

void CPTZStateStorageManager::SetRecordPattern(const QString &camera_index_code, int pattern)
{
    CameraState &s = State(camera_index_code);
    const int value = Normalised(pattern);
    if (s.record_pattern == value)
        return;
    s.record_pattern = value;
    emit SignalStateChanged(camera_index_code);
}

int CPTZStateStorageManager::GetRecordPattern(const QString &camera_index_code) const
{
    const CameraState *s = Find(camera_index_code);
    return s ? s->record_pattern : -1;
}

bool CPTZStateStorageManager::IsRunningPattern(const QString &camera_index_code) const
{
    return GetRunningPattern(camera_index_code) > 0;
}

void CPTZStateStorageManager::SetRunningPattern(const QString &camera_index_code, int pattern)
{
    CameraState &s = State(camera_index_code);
    const int value = Normalised(pattern);
    if (s.running_pattern == value)
        return;
    s.running_pattern = value;
    emit SignalStateChanged(camera_index_code);
}

int CPTZStateStorageManager::GetRunningPattern(const QString &camera_index_code) const
{
    const CameraState *s = Find(camera_index_code);
    return s ? s->running_pattern : -1;
}

void CPTZStateStorageManager::SetInterruptCruise(const QString &camera_index_code, int cruise_index, int wait_ms,
                                                 QObject *context, std::function<void()> resume)
{
    SetInterrupt(camera_index_code, true, cruise_index, wait_ms, context, std::move(resume));
}

void CPTZStateStorageManager::SetInterruptPattern(const QString &camera_index_code, int pattern, int wait_ms,
                                                  QObject *context, std::function<void()> resume)
{
    SetInterrupt(camera_index_code, false, pattern, wait_ms, context, std::move(resume));
}

void CPTZStateStorageManager::SetInterrupt(const QString &camera_index_code, bool is_patrol, int index, int wait_ms,
                                           QObject *context, std::function<void()> resume)
{
    if (camera_index_code.isEmpty() || index <= 0)
        return;
    CameraState &s = State(camera_index_code);
    if (!resume && s.interrupt_index == index && s.interrupt_is_patrol == is_patrol && s.interrupt_timer
        && s.interrupt_timer->isActive())
        return;
    if (wait_ms < 0)
        wait_ms = m_interrupt_wait_ms;
    s.interrupt_is_patrol = is_patrol;
    s.interrupt_index = index;
    s.interrupt_wait_ms = qMax(0, wait_ms);
    s.resume_context = context;
    s.has_context = context != nullptr;
    s.resume = std::move(resume);
    if (!s.interrupt_timer) {
        s.interrupt_timer = new QTimer;
        s.interrupt_timer->setSingleShot(true);
        const QString camera = camera_index_code;
        connect(s.interrupt_timer, &QTimer::timeout, this, [this, camera] { OnInterruptTimer(camera); });
    }
    s.interrupt_timer->start(s.interrupt_wait_ms);
    ZEPH_LOG_INFO("%s %d of %s interrupted, resumes in %d ms", is_patrol ? "patrol" : "pattern", index,
                  qUtf8Printable(camera_index_code), s.interrupt_wait_ms);
    emit SignalStateChanged(camera_index_code);
}

void CPTZStateStorageManager::AddResumeHandler(QObject *context, std::function<void(bool, QString, int)> handler)
{
    m_resume_handlers.erase(std::remove_if(m_resume_handlers.begin(), m_resume_handlers.end(),
                                           [](const ResumeHandler &h) { return !h.context; }),
                            m_resume_handlers.end());
    if (context && handler)
        m_resume_handlers.append({context, std::move(handler)});
}

bool CPTZStateStorageManager::IsInterruptCruise(const QString &camera_index_code, int &cruise_index) const
{
    const CameraState *s = Find(camera_index_code);
    if (!s || s->interrupt_index <= 0 || !s->interrupt_is_patrol)
        return false;
    cruise_index = s->interrupt_index;
    return true;
}

bool CPTZStateStorageManager::IsInterruptPattern(const QString &camera_index_code, int &pattern) const
{
    const CameraState *s = Find(camera_index_code);
    if (!s || s->interrupt_index <= 0 || s->interrupt_is_patrol)
        return false;
    pattern = s->interrupt_index;
    return true;
}

void CPTZStateStorageManager::RestartInterruptWait(const QString &camera_index_code)
{
    CameraState *s = m_states.value(camera_index_code, nullptr);
    if (s && s->interrupt_index > 0 && s->interrupt_timer)
        s->interrupt_timer->start(s->interrupt_wait_ms);
}

void CPTZStateStorageManager::ClearInterrupt(const QString &camera_index_code)
{
    CameraState *s = m_states.value(camera_index_code, nullptr);
    if (!s || s->interrupt_index <= 0)
        return;
    if (s->interrupt_timer)
        s->interrupt_timer->stop();
    s->interrupt_index = -1;
    s->resume = nullptr;
    s->resume_context = nullptr;
    s->has_context = false;
}

void CPTZStateStorageManager::OnInterruptTimer(const QString &camera_index_code)
{
    CameraState *s = m_states.value(camera_index_code, nullptr);
    if (!s || s->interrupt_index <= 0)
        return;
    const bool is_patrol = s->interrupt_is_patrol;
    const int index = s->interrupt_index;
    std::function<void()> resume = std::move(s->resume);
    const bool context_alive = !s->has_context || s->resume_context;
    s->interrupt_index = -1;
    s->resume = nullptr;
    s->resume_context = nullptr;
    s->has_context = false;
    if (is_patrol)
        s->running_cruise = index;
    else
        s->running_pattern = index;
    if (resume) {
        if (context_alive)
            resume();
    } else {
        for (const ResumeHandler &h : qAsConst(m_resume_handlers)) {
            if (h.context) {
                h.handler(is_patrol, camera_index_code, index);
                break;
            }
        }
    }
    emit SignalStateChanged(camera_index_code);
    emit SignalInterruptTimeout(is_patrol, camera_index_code, index);
}

} // namespace zeph_ptz_controller
