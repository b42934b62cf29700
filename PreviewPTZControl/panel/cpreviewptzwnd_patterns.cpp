#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"

namespace PreviewPTZControl {

using namespace PanelPrivate;

// The pattern list arrives with the pattern subsystem; the stop operations already keep the
// shared running state and the device in step.

void CPreviewPTZWnd::InitPattenTab() {}

void CPreviewPTZWnd::UpdatePattenPageState() {}

void CPreviewPTZWnd::StopPatternPlaying(const QString &owner_index_code, const QString &camera_index_code,
                                        bool b_resume, int, bool b_send)
{
    auto *storage = StateStorage();
    if (!storage->IsRunningPattern(camera_index_code))
        return;
    const int pattern = storage->GetRunningPattern(camera_index_code);
    if (b_resume) {
        storage->SetInterruptPattern(camera_index_code, pattern);
        InterruptPatrolLocked(true);
    } else {
        storage->SetRunningPattern(camera_index_code, -1);
    }
    if (b_send)
        ExecutePTZControl(PTZControlParam(owner_index_code, camera_index_code, ptz_plugin_protocol::PTZ_CMD_STOP_RUNNING,
                                          ptz_plugin_protocol::PTZ_ACTION_STOP, b_command_extra_));
}

void CPreviewPTZWnd::StopPatternRecording(const QString &owner_index_code, const QString &camera_index_code,
                                          bool b_send)
{
    auto *storage = StateStorage();
    if (!storage->IsRecordPattern(camera_index_code))
        return;
    storage->SetRecordPattern(camera_index_code, 0);
    if (b_send)
        ExecutePTZControl(PTZControlParam(owner_index_code, camera_index_code,
                                          ptz_plugin_protocol::PTZ_CMD_PATTERN_RECORD_STOP,
                                          ptz_plugin_protocol::PTZ_ACTION_STOP, b_command_extra_));
}

void CPreviewPTZWnd::OnGetAllPatternsSuc(const QString &, const QVector<int> &) {}

void CPreviewPTZWnd::OnGetAllPatternsFailed(const QString &) {}

} // namespace PreviewPTZControl
