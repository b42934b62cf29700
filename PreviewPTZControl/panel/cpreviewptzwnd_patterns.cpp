#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelright.h"

#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableview.h"

#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cvirtualptzcontrollor.h"

// The pattern tab: one row per pattern slot of the camera, played, recorded and deleted
// through the ordinary command path. Which pattern plays or records lives in the shared state
// storage, so every panel of the camera shows the same rows.

namespace PreviewPTZControl {

using namespace PanelPrivate;
using namespace ptz_plugin_protocol;

namespace {
constexpr int kMaxPatternNo = 4;

// Stored numbers outside the slots (0, -1, a stale 5) mean "no pattern".
bool IsPatternNo(int pattern)
{
    return pattern >= 1 && pattern <= kMaxPatternNo;
}
} // namespace

void CPreviewPTZWnd::EnsurePatternList()
{
    if (ptr_pattern_model_)
        return;
    ptr_pattern_model_ = new CPatternTableModel(devicePixelRatioF(), this, whiteTheme);
    CPatternTableView *view = ui_right_->m_pTreeViewPatten;
    view->setModel(ptr_pattern_model_);
    view->SetWhiteTheme(whiteTheme);
    connect(view, &CPatternTableView::SignalPattenPlayControl, this, &CPreviewPTZWnd::OnPatternPlayCtl);
    connect(view, &CPatternTableView::SignalPattenRecordControl, this, &CPreviewPTZWnd::OnPatternRecordCtl);
    connect(view, &CPatternTableView::SignalPattenDeleteControl, this, &CPreviewPTZWnd::OnPatternDeleteControl);
    // Whoever changed the camera's state (another panel, another controller, an interruption
    // or its resume), the rows follow the storage.
    connect(StateStorage(), &zeph_ptz_controller::CPTZStateStorageManager::SignalStateChanged, this,
            [this](const QString &camera_index_code) {
                if (camera_index_code == camera_index_code_)
                    UpdatePattenPageState();
            });
}

void CPreviewPTZWnd::InitPattenTab()
{
    EnsurePatternList();
    // Recording and deleting need the right that lets the user edit presets.
    ptr_pattern_model_->InitPatterns(Config()->GetTrackNum(), b_preset_edit_perm_);
    ui_right_->m_pTreeViewPatten->LayoutColumns();
}

void CPreviewPTZWnd::UpdatePattenPageState()
{
    if (!ptr_pattern_model_)
        return;
    for (int row = 0; row < ptr_pattern_model_->rowCount(); ++row) {
        ptr_pattern_model_->SetPlayingState(row, false);
        ptr_pattern_model_->SetRecordingState(row, false);
    }
    if (camera_index_code_.isEmpty())
        return;
    auto *storage = StateStorage();
    if (storage->IsRunningPattern(camera_index_code_)) {
        const int pattern = storage->GetRunningPattern(camera_index_code_);
        if (!IsPatternNo(pattern))
            return;
        ptr_pattern_model_->SetPlayingState(pattern - 1, true);
    }
    if (storage->IsRecordPattern(camera_index_code_) && b_preset_edit_perm_) {
        const int pattern = storage->GetRecordPattern(camera_index_code_);
        if (IsPatternNo(pattern))
            ptr_pattern_model_->SetRecordingState(pattern - 1, true);
    }
}

void CPreviewPTZWnd::OnGetAllPatternsSuc(const QString &camera_index_code, const QVector<int> &vec_patterns_no)
{
    if (camera_index_code != camera_index_code_ || !ptr_pattern_model_)
        return;
    ptr_pattern_model_->UpdatePatterns(vec_patterns_no);
    UpdatePattenPageState();
}

void CPreviewPTZWnd::OnGetAllPatternsFailed(const QString &camera_index_code)
{
    // The rows stay as they were; the next visit of the tab asks again.
    if (camera_index_code == camera_index_code_)
        emit SignalMessageTipNeeded(tr("FailedToGetPatterns"), 0);
}

// The refusals every row action shares, in the order the operator meets them.
bool CPreviewPTZWnd::PatternCommandRefused(const QModelIndex &index, bool b_recording_blocks)
{
    if (!index.isValid()) {
        emit SignalMessageTipNeeded(tr("PleaseSelectAPresetPrknxDNBA", "pattern"), 2);
        return true;
    }
    if (camera_index_code_.isEmpty() || lockedByCamera.value(camera_index_code_))
        return true;
    if (b_recording_blocks && StateStorage()->IsRecordPattern(camera_index_code_)) {
        emit SignalMessageTipNeeded(tr("Corvo-ControlClient.e7fc316a038f48f2a6cbcab348cb9a1b.msg"), 2);
        return true;
    }
    return false;
}

// A client-side patrol would keep zooming the picture digitally over the pattern's movement.
void CPreviewPTZWnd::StopVirtualPatrolForPattern()
{
    if (!ptr_virtual_controller_)
        return;
    ptr_virtual_controller_->Cruise(zeph_ptz_controller::CVirtualPtzControllor::kCruiseStop, 0);
    ptr_virtual_controller_->SetDigitalZoomStyle(0, -1.0, -1.0, -1.0, -1.0);
}

void CPreviewPTZWnd::SendPatternCommand(quint32 command, quint32 action, int pattern)
{
    PTZControlParam param(camera_index_code_, command, action, b_command_extra_);
    param.parameter = pattern;
    ExecutePTZControl(param);
}

void CPreviewPTZWnd::OnPatternPlayCtl(const QModelIndex &index, bool play)
{
    if (PatternCommandRefused(index, play))
        return;
    const int pattern = index.row() + 1;
    if (play) {
        StopVirtualPatrolForPattern();
        StopPatternPlaying(owner_index_code_, camera_index_code_, false, 0, true);
        SendPatternCommand(PTZ_CMD_PATTERN_RUN, PTZ_ACTION_START, pattern);
    } else {
        SendPatternCommand(PTZ_CMD_STOP_RUNNING, PTZ_ACTION_STOP, pattern);
    }
}

void CPreviewPTZWnd::OnPatternRecordCtl(const QModelIndex &index, bool record)
{
    if (PatternCommandRefused(index, record))
        return;
    const int pattern = index.row() + 1;
    if (record) {
        StopVirtualPatrolForPattern();
        StopPatternPlaying(owner_index_code_, camera_index_code_, false, 0, true);
        SendPatternCommand(PTZ_CMD_PATTERN_RECORD_START, PTZ_ACTION_START, pattern);
    } else {
        SendPatternCommand(PTZ_CMD_PATTERN_RECORD_STOP, PTZ_ACTION_STOP, pattern);
    }
}

void CPreviewPTZWnd::OnPatternDeleteControl(const QModelIndex &index)
{
    if (PatternCommandRefused(index, true))
        return;
    if (vs_ui_data_controller::CNomalMessageManager::Instance()->ShowMessageTip(tr("ConfirmToDelete", "pattern"), this)
        != vs_ui_data_controller::CNomalMessageManager::AnswerConfirm)
        return;
    const int pattern = index.row() + 1;
    // Only this pattern is stopped: a stop sent for it would mark another playing one as stopped.
    if (StateStorage()->GetRunningPattern(camera_index_code_) == pattern)
        OnPatternPlayCtl(index, false);
    SendPatternCommand(PTZ_CMD_PATTERN_DELETE, PTZ_ACTION_START, pattern);
}

void CPreviewPTZWnd::OnPatternControlSuccess(int command)
{
    switch (command) {
    case PTZ_CMD_PATTERN_RECORD_START:
    case PTZ_CMD_PATTERN_RUN:
    case PTZ_CMD_STOP_RUNNING:
        UpdatePattenPageState();
        break;
    case PTZ_CMD_PATTERN_RECORD_STOP:
    case PTZ_CMD_PATTERN_DELETE:
        // Which slots hold a pattern is the camera's to say.
        UpdatePattenPageState();
        if (ptr_ptz_get_controller_)
            ptr_ptz_get_controller_->StartGetPatterns(camera_index_code_);
        break;
    default:
        break;
    }
}

void CPreviewPTZWnd::StopPatternPlaying(const QString &owner_index_code, const QString &camera_index_code,
                                        bool b_resume, int, bool b_send)
{
    auto *storage = StateStorage();
    if (!storage->IsRunningPattern(camera_index_code))
        return;
    const int pattern = storage->GetRunningPattern(camera_index_code);
    if (!IsPatternNo(pattern))
        return;
    if (camera_index_code == camera_index_code_ && ptr_pattern_model_)
        ptr_pattern_model_->SetPlayingState(pattern - 1, false);
    storage->SetRunningPattern(camera_index_code, -1);
    if (b_resume) {
        // The pattern comes back after the waiting time; meanwhile the lock strip says so.
        storage->SetInterruptPattern(camera_index_code, pattern);
        InterruptPatrolLocked(true);
    }
    if (b_send) {
        PTZControlParam param(owner_index_code, camera_index_code, PTZ_CMD_STOP_RUNNING, PTZ_ACTION_STOP,
                              b_command_extra_);
        param.parameter = pattern;
        ExecutePTZControl(param);
    }
}

void CPreviewPTZWnd::StopPatternRecording(const QString &owner_index_code, const QString &camera_index_code,
                                          bool b_send)
{
    auto *storage = StateStorage();
    if (!storage->IsRecordPattern(camera_index_code))
        return;
    const int pattern = storage->GetRecordPattern(camera_index_code);
    if (!IsPatternNo(pattern))
        return;
    storage->SetRecordPattern(camera_index_code, -1);
    if (camera_index_code == camera_index_code_ && ptr_pattern_model_)
        ptr_pattern_model_->SetRecordingState(pattern - 1, false);
    if (b_send) {
        PTZControlParam param(owner_index_code, camera_index_code, PTZ_CMD_PATTERN_RECORD_STOP, PTZ_ACTION_STOP,
                              b_command_extra_);
        param.parameter = pattern;
        ExecutePTZControl(param);
    }
}

} // namespace PreviewPTZControl
