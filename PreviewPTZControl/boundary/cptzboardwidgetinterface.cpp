#include "boundary/cptzboardwidgetinterface.h"

#include "panel/cpreviewptzwnd.h"

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QHBoxLayout>

namespace PreviewPTZControl {

CPTZBoardWidgetInterface::CPTZBoardWidgetInterface(unsigned int screen_index, bool b_software_ptz, bool b_playback,
                                                   QWidget *parent)
    : QWidget(parent)
{
    ptr_preview_ptz_wnd_ = new CPreviewPTZWnd(screen_index, b_software_ptz, b_playback, this);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(ptr_preview_ptz_wnd_);

    ptr_ptz_controller_ = std::make_shared<zeph_ptz_controller::CUniversalPTZController>();
    ptr_preview_ptz_wnd_->SetPTZController(ptr_ptz_controller_, nullptr);

    // The panel already passes its controller's tips on; a second direct connection from the
    // controller would show every controller tip twice.
    connect(ptr_preview_ptz_wnd_, &CPreviewPTZWnd::SignalMessageTipNeeded, this,
            &CPTZBoardWidgetInterface::SignalMessageTipNeeded);
}

CPTZBoardWidgetInterface::~CPTZBoardWidgetInterface()
{
    // The panel goes first so it never sees a controller that is being torn down.
    delete ptr_preview_ptz_wnd_;
    ptr_preview_ptz_wnd_ = nullptr;
}

void CPTZBoardWidgetInterface::SetCamera(const QString &owner_index_code, const QString &camera_index_code)
{
    if (ptr_preview_ptz_wnd_)
        ptr_preview_ptz_wnd_->SetCamera(owner_index_code, camera_index_code, false, false);
}

void CPTZBoardWidgetInterface::SetPtzAuxiliaryLineHide()
{
    if (ptr_preview_ptz_wnd_)
        ptr_preview_ptz_wnd_->SetPtzAuxiliaryLineHide();
}

void CPTZBoardWidgetInterface::OnUpdatePtzBtnClicked()
{
    if (ptr_preview_ptz_wnd_)
        ptr_preview_ptz_wnd_->OnUpdatePtzBtnClicked();
}

bool CPTZBoardWidgetInterface::event(QEvent *event)
{
    return QWidget::event(event);
}

bool CPTZBoardWidgetInterface::eventFilter(QObject *watched, QEvent *event)
{
    return QWidget::eventFilter(watched, event);
}

} // namespace PreviewPTZControl
