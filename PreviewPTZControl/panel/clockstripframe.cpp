#include "panel/clockstripframe.h"

namespace PreviewPTZControl {

CLockStripFrame::CLockStripFrame(QWidget *parent) : Quillon::CFrame(parent)
{
    setFrameShape(QFrame::NoFrame);
}

CLockStripFrame::~CLockStripFrame() = default;

void CLockStripFrame::ShowPage(int page)
{
    current_page_ = page;
}

void CLockStripFrame::SetUserLevel(int level)
{
    user_level_ = level;
}

} // namespace PreviewPTZControl
