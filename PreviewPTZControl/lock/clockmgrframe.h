#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/cframe.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <functional>
#include <memory>

namespace Quillon {
class CDataObjectMapper;
}

namespace PreviewPTZControl {

class CAboutLockFrame;
class CLockedFrame;
class CUnLockedFrame;

namespace Ui {
class LockMgrFrameUI;
}

// The lock strip: switches between the unlocked, locked and lock-time pages and turns their
// buttons into signals; it sends no request itself.
class PREVIEWPTZCONTROL_EXPORT CLockMgrFrame : public Quillon::CFrame
{
    Q_OBJECT

public:
    enum Page { PageUnlocked = 0, PageLocked = 1, PageLockTime = 2 };
    Q_ENUM(Page)

    explicit CLockMgrFrame(QWidget *parent = nullptr);
    ~CLockMgrFrame() override;

    void ShowPage(int page);
    int CurrentPage() const { return current_page_; }
    void SetLockStatus(const ptz_plugin_protocol::PTZLockStatusResponse &status);
    void SetRemainTime(int seconds, bool running);
    void SetLockedMode(int mode);
    void SetShowRemainTime(int seconds);
    void SetUserLevel(int level);
    void SwitchTheme(bool white);
    // Called with false when the unlocked page shows, true for the locked and lock-time pages.
    void SetPageChangedCallback(std::function<void(bool)> callback);

    CUnLockedFrame *UnLockedFrame() const;
    CLockedFrame *LockedFrame() const;
    CAboutLockFrame *AboutLockFrame() const;

signals:
    void SignalAboutLockBtnClicked(int lock_time);
    void SignalAboutCancelBtnClicked();
    void SignalUnLockBtnClicked();
    void SignalRequestLockState();
    void SignalLockedDetailClicked();

public slots:
    void OnContinueLockBtnClicked();
    void OnLockBtnClicked();
    void OnAboutLockBtnClicked();
    void OnAboutLockCancel();

private:
    std::unique_ptr<Ui::LockMgrFrameUI> ui_;
    Quillon::CDataObjectMapper *mapper_ = nullptr;
    std::function<void(bool)> page_changed_;
    bool aboutFromLockButton = false;
    int current_page_ = PageUnlocked;
};

} // namespace PreviewPTZControl
