#pragma once

#include "previewptzcontrol_export.h"

#include <QWidget>

#include <memory>

namespace zeph_ptz_controller {
class CUniversalPTZController;
}

namespace PreviewPTZControl {

class CPreviewPTZWnd;

// A ready PTZ panel with its own device controller, for hosts that only embed a widget.
class PREVIEWPTZCONTROL_EXPORT CPTZBoardWidgetInterface : public QWidget
{
    Q_OBJECT

public:
    CPTZBoardWidgetInterface(unsigned int screen_index, bool b_software_ptz, bool b_playback,
                             QWidget *parent = nullptr);
    ~CPTZBoardWidgetInterface() override;

    void SetCamera(const QString &owner_index_code, const QString &camera_index_code);
    void SetPtzAuxiliaryLineHide();

    CPreviewPTZWnd *PreviewPTZWnd() const { return ptr_preview_ptz_wnd_; }

public slots:
    void OnUpdatePtzBtnClicked();

signals:
    void SignalMessageTipNeeded(QString message_tip, int tip_type);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    CPreviewPTZWnd *ptr_preview_ptz_wnd_ = nullptr;
    std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> ptr_ptz_controller_;
};

} // namespace PreviewPTZControl
