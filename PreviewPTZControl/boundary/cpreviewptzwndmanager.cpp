#include "boundary/cpreviewptzwndmanager.h"

namespace PreviewPTZControl {

void CPreviewPTZWndManager::AddPreviewPTZWnd(unsigned int screen_index, CPreviewPTZWnd *wnd)
{
    if (!wnd || preview_ptz_wnds_.contains(screen_index))
        return;
    preview_ptz_wnds_.insert(screen_index, wnd);
}

void CPreviewPTZWndManager::RemovePreviewPTZWnd(unsigned int screen_index)
{
    preview_ptz_wnds_.remove(screen_index);
}

CPreviewPTZWnd *CPreviewPTZWndManager::GetPreviewPTZWndByScreenIndex(unsigned int screen_index) const
{
    return preview_ptz_wnds_.value(screen_index, nullptr);
}

QMap<unsigned int, CPreviewPTZWnd *> CPreviewPTZWndManager::GetAllPreviewPTZWnd() const
{
    return preview_ptz_wnds_;
}

} // namespace PreviewPTZControl
