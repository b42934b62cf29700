#pragma once

#include "zeph_ptz_controller/zeph_ptz_controller_export.h"

#include "tarn/base/singleton.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

#include <functional>

class QTimer;

namespace zeph_ptz_controller {

// Per-camera running state shared by every panel that shows a camera: light,
// wiper, auto-scan, patrol, pattern, and the bookkeeping of a patrol or pattern
// that manual control interrupted and that resumes after a waiting time.
// GUI thread only. Unknown cameras read as idle; setters register them.
class ZEPH_PTZ_CONTROLLER_EXPORT CPTZStateStorageManager : public QObject,
                                                           public Tarn::Base::CSingleton<CPTZStateStorageManager>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CPTZStateStorageManager>;

public:
    // Default waiting time before an interrupted patrol or pattern resumes.
    static constexpr int kDefaultInterruptWaitMs = 15000;

    // Waiting time the controllers use when they record an interruption.
    int GetInterruptWaitTime() const { return m_interrupt_wait_ms; }
    void SetInterruptWaitTime(int wait_ms) { m_interrupt_wait_ms = qMax(0, wait_ms); }

    void AddCamera(const QString &camera_index_code);
    bool HasCamera(const QString &camera_index_code) const;
    // Forgets everything about the camera (and drops a pending resume).
    void RemoveCamera(const QString &camera_index_code);
    // Forgets every camera; for tests and shutdown.
    void Clear();

    // Device auto-scan and software (fish-eye) auto-pan are kept apart.
    bool IsAutoScan(const QString &camera_index_code, bool is_software_ptz) const;
    void SetAutoScan(const QString &camera_index_code, bool auto_scan, bool is_software_ptz);

    bool IsCruising(const QString &camera_index_code) const;
    // cruise_index: 1-based patrol number; ignored when cruising is false.
    void SetCruising(const QString &camera_index_code, bool cruising, int cruise_index);
    // The running patrol's number, -1 when none.
    int GetRunningCruise(const QString &camera_index_code) const;

    bool IsLight(const QString &camera_index_code) const;
    void SetLight(const QString &camera_index_code, bool on);
    bool IsWiper(const QString &camera_index_code) const;
    void SetWiper(const QString &camera_index_code, bool on);

    // Pattern numbers are 1-based; 0 or -1 clears.
    bool IsRecordPattern(const QString &camera_index_code) const;
    void SetRecordPattern(const QString &camera_index_code, int pattern);
    int GetRecordPattern(const QString &camera_index_code) const; // -1 when none
    bool IsRunningPattern(const QString &camera_index_code) const;
    void SetRunningPattern(const QString &camera_index_code, int pattern);
    int GetRunningPattern(const QString &camera_index_code) const; // -1 when none

    // Interruption bookkeeping. Recording an interruption leaves the running
    // state alone (whoever stops the patrol or pattern clears it). When the
    // waiting time (wait_ms; -1: GetInterruptWaitTime()) ends, the patrol
    // (pattern) is marked running again, `resume` runs if its context still
    // lives (without one, the first live resume handler does), and
    // SignalInterruptTimeout(is_patrol, camera, number) is emitted.
    // Recording the same interruption again without a `resume` keeps the
    // pending one as it is, so a panel and a controller may both record it.
    void SetInterruptCruise(const QString &camera_index_code, int cruise_index, int wait_ms = -1,
                            QObject *context = nullptr, std::function<void()> resume = {});
    void SetInterruptPattern(const QString &camera_index_code, int pattern, int wait_ms = -1,
                             QObject *context = nullptr, std::function<void()> resume = {});
    // Who brings back an interrupted patrol or pattern recorded without its own
    // `resume` (the device controllers register themselves).
    void AddResumeHandler(QObject *context,
                          std::function<void(bool is_patrol, QString camera_index_code, int index)> handler);
    bool IsInterruptCruise(const QString &camera_index_code, int &cruise_index) const;
    bool IsInterruptPattern(const QString &camera_index_code, int &pattern) const;
    // Another manual command during the wait starts the waiting time again.
    void RestartInterruptWait(const QString &camera_index_code);
    // Drops a pending resume without emitting anything.
    void ClearInterrupt(const QString &camera_index_code);

    // Number of the preset being added (virtual presets are numbered by the client).
    void SetPresetNum(const QString &camera_index_code, int preset_index);
    int GetPresetNum(const QString &camera_index_code) const;

Q_SIGNALS:
    // A resumable patrol (is_patrol true) or pattern finished its waiting time.
    void SignalInterruptTimeout(bool is_patrol, QString camera_index_code, int index);
    // Any state of the camera changed (light, wiper, auto-scan, patrol, pattern).
    void SignalStateChanged(QString camera_index_code);

private:
    CPTZStateStorageManager();
    ~CPTZStateStorageManager() override;

    struct CameraState;
    CameraState &State(const QString &camera_index_code);
    const CameraState *Find(const QString &camera_index_code) const;
    void SetInterrupt(const QString &camera_index_code, bool is_patrol, int index, int wait_ms, QObject *context,
                      std::function<void()> resume);
    void OnInterruptTimer(const QString &camera_index_code);

    QHash<QString, CameraState *> m_states;
    int m_interrupt_wait_ms = kDefaultInterruptWaitMs;
    struct ResumeHandler;
    QVector<ResumeHandler> m_resume_handlers;
};

} // namespace zeph_ptz_controller
