#include "lock/clockedframe.h"

#include "lock/lockframes_p.h"
#include "ui_lockedframeui.h"

#include "tarn/base/logging.h"

#include <QEvent>
#include <QIcon>
#include <QTimer>

namespace PreviewPTZControl {

using LockFramesPrivate::FormatClock;

CLockedFrame::CLockedFrame(QWidget *parent)
    : Quillon::CFrame(parent)
    , ui_(std::make_unique<Ui::LockedFrameUI>())
    , timer_(new QTimer(this))
{
    ui_->setupUi(this);
    ui_->pLockIconLabel->setPixmap(QIcon(QStringLiteral(":/Images/PTZ/icon_time_nor.svg")).pixmap(16, 16));
    ui_->ptr_detail_btn_->setStyleSheet(QStringLiteral(
        "QPushButton { border: none; color: rgb(33, 150, 243); background: transparent; font: 13px \"Segoe UI\"; }"
        "QPushButton:hover { text-decoration: underline; }"));
    RetranslateTexts();
    connect(ui_->ptr_detail_btn_, &QPushButton::clicked, this, &CLockedFrame::OnDetailsBtnClicked);
    connect(this, &CLockedFrame::SignalLeftLockTimeChanged, this, &CLockedFrame::OnLeftLockTimeChanged);
    connect(timer_, &QTimer::timeout, this, &CLockedFrame::OnSelfLockTimeOut);
    SetMode(mode);
}

CLockedFrame::~CLockedFrame() = default;

QPushButton *CLockedFrame::LockButton() const
{
    return ui_->pLockBtn;
}

QPushButton *CLockedFrame::UnLockButton() const
{
    return ui_->pUnLockBtn;
}

void CLockedFrame::UpdateLockTimeLabel(const ptz_plugin_protocol::PTZLockStatusResponse &status)
{
    if (status.remaining_time < 0 || status.remaining_time > 3600)
        return;
    const bool locked = status.locked == 1;
    const int remain = locked ? status.remaining_time : 0;
    ui_->pLockTimeLabel->setText(FormatClock(remain));
    ui_->pBtnFrame->setVisible(user_level_ >= status.ptz_level);
    const QString holder = QString::fromStdString(status.user_name);
    if (locked && !holder.isEmpty()) {
        const QString detail = QString::fromStdString(status.user_detail);
        const QString text = detail.isEmpty() ? holder : holder + QLatin1Char('(') + detail + QLatin1Char(')');
        ui_->ptr_locker_info_->setText(tr("Corvo-ControlClient.9e030b79c68742eba3246ff80c74fc33.msg").arg(text));
        ui_->ptr_locker_info_->show();
    } else {
        ui_->ptr_locker_info_->hide();
    }
    remainSeconds = remain;
    if (locked)
        timer_->start(1000);
    else
        timer_->stop();
    Tarn::Base::LogInfo("[%s(%d)] - Remain lock time: [%d]", "PreviewPTZControl::CLockedFrame::UpdateLockTimeLabel",
                        __LINE__, remain);
    emit SignalLeftLockTimeChanged(remain);
}

void CLockedFrame::SetRemainTime(int seconds, bool running)
{
    remainSeconds = qMax(0, seconds);
    ui_->pLockTimeLabel->setText(FormatClock(remainSeconds));
    if (running)
        timer_->start(1000);
    else
        timer_->stop();
    emit SignalLeftLockTimeChanged(remainSeconds);
}

void CLockedFrame::SetShowRemainTime(int seconds)
{
    ui_->pLockTimeLabel->setText(FormatClock(qMax(0, seconds)));
}

void CLockedFrame::SetMode(int new_mode)
{
    mode = new_mode;
    ui_->pBtnFrame->show();
    switch (mode) {
    case 0:
        SetTimeWidgetsVisible(true);
        SetButtonFrameLarge(true);
        break;
    case 1:
        SetTimeWidgetsVisible(true);
        ui_->ptr_locker_info_->show();
        ui_->pBtnFrame->hide();
        break;
    case 2:
        SetTimeWidgetsVisible(true);
        ui_->ptr_locker_info_->show();
        SetButtonFrameLarge(false);
        break;
    case 3:
        SetTimeWidgetsVisible(true);
        ui_->ptr_locker_info_->hide();
        SetButtonFrameLarge(true);
        break;
    default:
        break;
    }
    ui_->pUnLockBtn->setEnabled(mode != 4);
    OnLeftLockTimeChanged(remainSeconds);
}

void CLockedFrame::SetTimeWidgetsVisible(bool visible)
{
    ui_->pLockIconLabel->setVisible(visible);
    ui_->pLockTimeLabel->setVisible(visible);
    ui_->ptr_busy_label_->hide();
    ui_->ptr_detail_btn_->hide();
}

void CLockedFrame::SetButtonFrameLarge(bool large)
{
    large_buttons_ = large;
    QFrame *frame = ui_->pBtnFrame;
    frame->setFixedSize(large ? QSize(68, 32) : QSize(32, 32));
    ui_->pUnLockBtn->setVisible(large);
    if (!large)
        ui_->pLockBtn->setEnabled(true);
    const QString dark = large ? QStringLiteral("pBtnFrame") : QStringLiteral("pBtnFrame_small");
    LockFramesPrivate::ApplyTheme(white_, {{frame, dark, dark + QStringLiteral("_white_")}});
}

void CLockedFrame::OnDetailsBtnClicked()
{
    emit SignalLockedDetailClicked();
}

void CLockedFrame::OnLeftLockTimeChanged(int lock_time_left)
{
    // A lock can be extended only in its last minute, except by a user who outranks the holder.
    ui_->pLockBtn->setEnabled(mode == 2 || lock_time_left < 61);
}

void CLockedFrame::OnSelfLockTimeOut()
{
    remainSeconds = qMax(remainSeconds - 1, 0);
    ui_->pLockTimeLabel->setText(FormatClock(remainSeconds));
    if (remainSeconds == 0)
        emit SignalRequestLockState();
}

void CLockedFrame::SwitchTheme(bool white)
{
    white_ = white;
    LockFramesPrivate::ApplyTheme(
        white, {{ui_->pLockTimeLabel, QStringLiteral("pLockTimeLabel"), QStringLiteral("pLockTimeLabel_white_")},
                {ui_->pUnLockBtn, QStringLiteral("pUnLockBtn"), QStringLiteral("pUnLockBtn_white_")},
                {ui_->pLockBtn, QStringLiteral("pLockBtn"), QStringLiteral("pLockBtn_white_")}});
    SetButtonFrameLarge(large_buttons_);
}

void CLockedFrame::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        ui_->retranslateUi(this);
        RetranslateTexts();
    }
    Quillon::CFrame::changeEvent(event);
}

void CLockedFrame::RetranslateTexts()
{
    ui_->pLockBtn->setToolTip(tr("Lock"));
    ui_->pUnLockBtn->setToolTip(tr("UnLock"));
    ui_->ptr_busy_label_->setText(tr("Corvo-ControlClient.bc3d5481117d4029a36d9c2749739dfe.msg"));
    ui_->ptr_detail_btn_->setText(tr("Corvo-ControlClient.bf3a5ac010ea4e0a8ee9bdb92fa76e18.button"));
}

} // namespace PreviewPTZControl
