#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/cframe.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <memory>

class QPushButton;
class QTimer;

namespace PreviewPTZControl {

namespace Ui {
class LockedFrameUI;
}

// The lock strip's locked page: countdown, holder, and the lock/unlock buttons.
// Modes: 0 reset, 1 held by an equal or higher level, 2 held by a lower level,
// 3 held by the current user, 4 an interrupted patrol or pattern waits to resume.
class PREVIEWPTZCONTROL_EXPORT CLockedFrame : public Quillon::CFrame
{
    Q_OBJECT

public:
    explicit CLockedFrame(QWidget *parent = nullptr);
    ~CLockedFrame() override;

    void UpdateLockTimeLabel(const ptz_plugin_protocol::PTZLockStatusResponse &status);
    // Sets the remaining seconds and runs or stops the countdown.
    void SetRemainTime(int seconds, bool running);
    // Shows the remaining seconds without touching the countdown.
    void SetShowRemainTime(int seconds);
    void SetMode(int mode);
    int Mode() const { return mode; }
    int RemainSeconds() const { return remainSeconds; }
    // The current user's PTZ level, which decides whether the buttons show for a holder.
    void SetUserLevel(int level) { user_level_ = level; }
    void SwitchTheme(bool white);

    QPushButton *LockButton() const;
    QPushButton *UnLockButton() const;
    QTimer *CountdownTimer() const { return timer_; }

signals:
    void SignalLeftLockTimeChanged(int lock_time_left);
    void SignalRequestLockState();
    void SignalLockedDetailClicked();

public slots:
    void OnDetailsBtnClicked();
    void OnLeftLockTimeChanged(int lock_time_left);
    void OnSelfLockTimeOut();

protected:
    void changeEvent(QEvent *event) override;

private:
    void SetButtonFrameLarge(bool large);
    void SetTimeWidgetsVisible(bool visible);
    void RetranslateTexts();

    std::unique_ptr<Ui::LockedFrameUI> ui_;
    QTimer *timer_ = nullptr;
    int remainSeconds = 0;
    int mode = 3;
    int user_level_ = -1;
    bool white_ = false;
    bool large_buttons_ = true;
};

} // namespace PreviewPTZControl
