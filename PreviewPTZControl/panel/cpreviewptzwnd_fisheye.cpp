#include "panel/cpreviewptzwnd.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelleft.h"

#include "direction/cptzcloud.h"

#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/iptzfisheyecontroller.h"

namespace PreviewPTZControl {

using zeph_ptz_controller::IPTZFishEyeController;

void CPreviewPTZWnd::SetFishEyeController(IPTZFishEyeController *fish_eye_controller)
{
    if (!fish_eye_controller || !ptr_software_controller_)
        return;
    if (IPTZFishEyeController *old = ptr_software_controller_->GetSoftwareControllor()) {
        disconnect(old, &IPTZFishEyeController::SignalFishEyeWndOpen, this, &CPreviewPTZWnd::OnPreviewWndFishEyeOpen);
        disconnect(old, &IPTZFishEyeController::SignalFishEyeSelectedWndChanged, this,
                   &CPreviewPTZWnd::OnFishEyeSelectedWndChanged);
    }
    ptr_software_controller_->SetSoftwareControllor(fish_eye_controller);
    connect(fish_eye_controller, &IPTZFishEyeController::SignalFishEyeWndOpen, this,
            &CPreviewPTZWnd::OnPreviewWndFishEyeOpen);
    connect(fish_eye_controller, &IPTZFishEyeController::SignalFishEyeSelectedWndChanged, this,
            &CPreviewPTZWnd::OnFishEyeSelectedWndChanged);
}

void CPreviewPTZWnd::OnPreviewWndFishEyeOpen(bool open)
{
    // Moves started in the other mode went to the other controller: stop them there first.
    ReleaseHeldMotion();
    b_software_ptz_ = open;
    if (open && ptr_software_controller_)
        ptr_software_controller_->SetCamera(camera_index_code_);
    InitPtzState(open ? PTZWndSoftware : PTZWndDevice);
    OnTabIndexChanged(-1);
}

void CPreviewPTZWnd::OnFishEyeSelectedWndChanged()
{
    if (!ptr_software_controller_ || !ptr_software_controller_->GetSoftwareControllor())
        return;
    IPTZFishEyeController *fish_eye = ptr_software_controller_->GetSoftwareControllor();
    ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center, fish_eye->IsSelectedWndAutoPanning());
    int path = 0;
    const bool patrolling = fish_eye->IsSelectedWndPatrolling(path);
    UpdatePatrolPageState(patrolling, path - 1);
}

void CPreviewPTZWnd::OnFishEyePlayDisplayWndPress()
{
    if (!b_software_ptz_)
        return;
    ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center, false);
    int path = 0;
    if (ptr_software_controller_ && ptr_software_controller_->IsPtzPatrolling(path))
        UpdatePatrolPageState(true, qMax(ptr_software_controller_->GetPatrolPath() - 1, 0));
    else
        UpdatePatrolPageState(false, -1);
}

void CPreviewPTZWnd::OnSoftwareAutoPanRunningState(bool running)
{
    if (b_software_ptz_)
        ui_left_->ptr_cloud_->SetSectionChecked(CPTZCloud::Center, running);
}

void CPreviewPTZWnd::OnSoftwarePatrolRunningState(bool running, int patrol_path)
{
    if (b_software_ptz_)
        UpdatePatrolPageState(running, patrol_path - 1);
}

} // namespace PreviewPTZControl
