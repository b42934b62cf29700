#pragma once

#include "previewptzcontrol_export.h"

#include "boundary/ptzcontroltypes.h"

#include <QVector>
#include <QWidget>

#include <list>

namespace PreviewPTZControl {

// Base of the PTZ panels: the result handlers of the getter controller, which a panel overrides.
class PREVIEWPTZCONTROL_EXPORT CBasicPTZWnd : public QWidget
{
    Q_OBJECT

public:
    explicit CBasicPTZWnd(QWidget *parent = nullptr);
    ~CBasicPTZWnd() override;

public slots:
    virtual void OnGetPresetSuc(const QString &camera_index_code);
    virtual void OnGetPresetFailed(const QString &camera_index_code, const QString &str_error_info);
    virtual void OnGetAllPatrolsSuc(const QString &camera_index_code,
                                    const QVector<ptz_plugin_protocol::CruiseInfo> &vec_patrols_info);
    virtual void OnGetAllPatrolsFailed(const QString &camera_index_code);
    virtual void OnGetPatrolTypeSucBeforeOpen(int iPatrolPath, PreviewPTZControl::CruiseType enum_cruise_type,
                                              const QString &index_code, int min_time, int max_time);
    virtual void OnGetPatrolTypeSucBeforeDelete(int iPatrolPath, PreviewPTZControl::CruiseType enum_cruise_type,
                                                const QString &index_code);
    virtual void OnGetSinglePatrolSuc(const QString &camera_index_code, int i_patrol_path);
    virtual void OnGetPatrolFailed(const QString &camera_index_code, int i_patrol_path, const QString &error_info);
    virtual void OnSetHardwarePatrolFinish(const QString &camera_index_code);
    virtual void OnSetSoftwarePatrolFinish(const QString &camera_index_code);
    virtual void OnSetPatrolFailed(const QString &camera_index_code, const QString &error_info);
    virtual void OnGetPatrolTypeSuc(int i_patrol_path, bool b_stop_action, PreviewPTZControl::CruiseType cruise_type,
                                    const std::list<ptz_plugin_protocol::CruisePoint> &lst_cruise_point);
    virtual void OnGetPTZLockStatusSuc(const QString &camera_index_code);
    virtual void OnGetPTZLockStatusFailed(const QString &camera_index_code, const QString &error_info);
    virtual void OnUpdateAutoPanState(bool b_stop_autopan);
    virtual void OnUpdate3DPositionState();
    virtual void OnInterruptPatrolLocked(bool b_lock);
    virtual void OnGetLockStatus();
    virtual void OnSyncPresetsSuc(const QString &camera_index_code);
    virtual void OnSyncPresetsFailed(const QString &camera_index_code);
    virtual void OnGetAllPatternsSuc(const QString &camera_index_code, const QVector<int> &vec_patterns_no);
    virtual void OnGetAllPatternsFailed(const QString &camera_index_code);
};

} // namespace PreviewPTZControl
