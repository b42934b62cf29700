#include "patrol/ccruiserecoverconfigdlg.h"

#include "quillon/cswitchcontrol.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace PreviewPTZControl {

namespace {
// Waiting times offered before an interrupted patrol resumes, in seconds.
constexpr int kWaitChoices[] = {15, 30, 45, 60, 90, 120};
constexpr int kHeightOn = 194;
constexpr int kHeightOff = 120;
} // namespace

CCruiseRecoverConfigDlg::CCruiseRecoverConfigDlg(
    std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller, QWidget *parent)
    : QWidget(parent, Qt::Popup)
    , controller_(controller)
{
    setObjectName(QStringLiteral("CCruiseRecoverConfigDlg"));
    setFixedWidth(260);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 10);
    layout->setSpacing(8);

    auto *switch_row = new QHBoxLayout;
    first_label_ = new QLabel(tr("Corvo-ControlClient.ebb7e877a67544a1b18fae5e1fcce324.msg"), this);
    first_label_->setWordWrap(true);
    switch_ = new Quillon::CSwitchControl(this);
    switch_->setObjectName(QStringLiteral("ptr_recover_switch_"));
    switch_row->addWidget(first_label_, 1);
    switch_row->addWidget(switch_);
    layout->addLayout(switch_row);

    time_row_ = new QFrame(this);
    time_row_->setObjectName(QStringLiteral("ptr_recover_time_row_"));
    auto *time_layout = new QHBoxLayout(time_row_);
    time_layout->setContentsMargins(0, 0, 0, 0);
    auto *tip = new QLabel(time_row_);
    tip->setPixmap(QIcon(QStringLiteral(":/Images/PTZ/ic_tips.svg")).pixmap(16, 16));
    second_label_ = new QLabel(tr("Corvo-ControlClient.543a9e1befed4798b2d985456115c0a5.msg"), time_row_);
    time_combo_ = new QComboBox(time_row_);
    time_combo_->setObjectName(QStringLiteral("ptr_recover_time_combo_"));
    for (int seconds : kWaitChoices)
        time_combo_->addItem(tr("Corvo-ControlClient.82e6ab8cc01e42e5809d4a79141a94c5.name").arg(seconds), seconds);
    time_layout->addWidget(tip);
    time_layout->addWidget(second_label_, 1);
    time_layout->addWidget(time_combo_);
    layout->addWidget(time_row_);
    layout->addStretch(1);

    save_btn_ = new QPushButton(tr("Save"), this);
    save_btn_->setObjectName(QStringLiteral("ptr_recover_save_btn_"));
    layout->addWidget(save_btn_, 0, Qt::AlignRight);

    connect(switch_, &Quillon::CSwitchControl::toggled, this, &CCruiseRecoverConfigDlg::OnOpenCruiseRecover);
    connect(save_btn_, &QPushButton::clicked, this, &CCruiseRecoverConfigDlg::OnSaveBtnClicked);
    time_row_->hide();
    setFixedHeight(kHeightOff);
}

CCruiseRecoverConfigDlg::~CCruiseRecoverConfigDlg() = default;

void CCruiseRecoverConfigDlg::SetController(std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller)
{
    controller_ = controller;
}

void CCruiseRecoverConfigDlg::SetConfig(bool enabled, int seconds)
{
    switch_->SetToggle(enabled);
    OnOpenCruiseRecover(enabled);
    if (enabled)
        time_combo_->setCurrentIndex(time_combo_->findData(seconds));
}

void CCruiseRecoverConfigDlg::SetCamera(const QString &camera_index_code)
{
    camera_index_code_ = camera_index_code;
}

void CCruiseRecoverConfigDlg::OnOpenCruiseRecover(bool toggled)
{
    time_row_->setVisible(toggled);
    QTimer::singleShot(0, this, [this, toggled] { setFixedHeight(toggled ? kHeightOn : kHeightOff); });
}

void CCruiseRecoverConfigDlg::OnSaveBtnClicked()
{
    ptz_plugin_protocol::SetPatrolRecoverConfigRequest request;
    request.camera_index_code = camera_index_code_.toStdString();
    request.enabled = switch_->IsToggled();
    request.wait_time = request.enabled ? time_combo_->currentData().toInt() : 0;
    if (auto controller = controller_.lock())
        controller->SetCruiseRecover(request);
    hide();
}

void CCruiseRecoverConfigDlg::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    emit SignalCruiseRecoverConfigHide();
}

} // namespace PreviewPTZControl
