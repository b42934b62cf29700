#include "panel/cbasicptzwnd.h"

namespace PreviewPTZControl {

CBasicPTZWnd::CBasicPTZWnd(QWidget *parent)
    : QWidget(parent)
{
}

CBasicPTZWnd::~CBasicPTZWnd() = default;

// The base ignores every result; a panel overrides what it shows.
void CBasicPTZWnd::OnGetPresetSuc(const QString &) { }
void CBasicPTZWnd::OnGetPresetFailed(const QString &, const QString &) { }
void CBasicPTZWnd::OnGetAllPatrolsSuc(const QString &, const QVector<ptz_plugin_protocol::CruiseInfo> &) { }
void CBasicPTZWnd::OnGetAllPatrolsFailed(const QString &) { }
void CBasicPTZWnd::OnGetPatrolTypeSucBeforeOpen(int, CruiseType, const QString &, int, int) { }
void CBasicPTZWnd::OnGetPatrolTypeSucBeforeDelete(int, CruiseType, const QString &) { }
void CBasicPTZWnd::OnGetSinglePatrolSuc(const QString &, int) { }
void CBasicPTZWnd::OnGetPatrolFailed(const QString &, int, const QString &) { }
void CBasicPTZWnd::OnSetHardwarePatrolFinish(const QString &) { }
void CBasicPTZWnd::OnSetSoftwarePatrolFinish(const QString &) { }
void CBasicPTZWnd::OnSetPatrolFailed(const QString &, const QString &) { }
void CBasicPTZWnd::OnGetPatrolTypeSuc(int, bool, CruiseType, const std::list<ptz_plugin_protocol::CruisePoint> &) { }
void CBasicPTZWnd::OnGetPTZLockStatusSuc(const QString &) { }
void CBasicPTZWnd::OnGetPTZLockStatusFailed(const QString &, const QString &) { }
void CBasicPTZWnd::OnUpdateAutoPanState(bool) { }
void CBasicPTZWnd::OnUpdate3DPositionState() { }
void CBasicPTZWnd::OnInterruptPatrolLocked(bool) { }
void CBasicPTZWnd::OnGetLockStatus() { }
void CBasicPTZWnd::OnSyncPresetsSuc(const QString &) { }
void CBasicPTZWnd::OnSyncPresetsFailed(const QString &) { }
void CBasicPTZWnd::OnGetAllPatternsSuc(const QString &, const QVector<int> &) { }
void CBasicPTZWnd::OnGetAllPatternsFailed(const QString &) { }

} // namespace PreviewPTZControl
