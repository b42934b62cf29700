#pragma once

#include "previewptzcontrol_export.h"

#include <QWidget>

#include <memory>

class QComboBox;
class QFrame;
class QLabel;
class QPushButton;

namespace Quillon {
class CSwitchControl;
}

namespace zeph_ptz_controller {
class CUniversalPTZController;
}

namespace PreviewPTZControl {

// Pop-up where the operator decides whether, and after how long, an interrupted patrol resumes.
class PREVIEWPTZCONTROL_EXPORT CCruiseRecoverConfigDlg : public QWidget
{
    Q_OBJECT

public:
    explicit CCruiseRecoverConfigDlg(std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller,
                                     QWidget *parent = nullptr);
    ~CCruiseRecoverConfigDlg() override;

    void SetConfig(bool enabled, int seconds);
    void SetCamera(const QString &camera_index_code);
    void SetController(std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller);

    Quillon::CSwitchControl *Switch() const { return switch_; }
    QComboBox *TimeCombo() const { return time_combo_; }
    QFrame *TimeRow() const { return time_row_; }
    QPushButton *SaveButton() const { return save_btn_; }

signals:
    void SignalMessageTipNeeded(QString message_tip, int tip_type);
    void SignalCruiseRecoverConfigHide();

public slots:
    void OnSaveBtnClicked();
    void OnOpenCruiseRecover(bool toggled);

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QString camera_index_code_;
    std::weak_ptr<zeph_ptz_controller::CUniversalPTZController> controller_;
    Quillon::CSwitchControl *switch_ = nullptr;
    QFrame *time_row_ = nullptr;
    QComboBox *time_combo_ = nullptr;
    QLabel *first_label_ = nullptr;
    QLabel *second_label_ = nullptr;
    QPushButton *save_btn_ = nullptr;
};

} // namespace PreviewPTZControl
