#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/cframe.h"

namespace PreviewPTZControl {

// Stand-in for the lock strip: shows which page the panel asked for and lets the
// panel ask for a fresh lock status. The full strip replaces it in the left form.
class PREVIEWPTZCONTROL_EXPORT CLockStripFrame : public Quillon::CFrame
{
    Q_OBJECT

public:
    explicit CLockStripFrame(QWidget *parent = nullptr);
    ~CLockStripFrame() override;

    // 0 unlocked (idle), 1 locked, 2 lock time.
    void ShowPage(int page);
    int CurrentPage() const { return current_page_; }
    void SetUserLevel(int level);
    int UserLevel() const { return user_level_; }

signals:
    void SignalRequestLockState();

private:
    int current_page_ = 0;
    int user_level_ = -1;
};

} // namespace PreviewPTZControl
