#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/cframe.h"

#include <memory>

class QPushButton;

namespace Quillon {
class CFixedContentLineEdit;
}

namespace PreviewPTZControl {

namespace Ui {
class AboutLockFrameUI;
}

// The lock strip's lock-time page: a duration in seconds, confirm or cancel.
class PREVIEWPTZCONTROL_EXPORT CAboutLockFrame : public Quillon::CFrame
{
    Q_OBJECT

public:
    static constexpr int kMinLockSeconds = 1;
    static constexpr int kMaxLockSeconds = 3600;

    explicit CAboutLockFrame(QWidget *parent = nullptr);
    ~CAboutLockFrame() override;

    // The entered duration (1..3600); anything else tells the user the range, puts the focus back
    // into the edit and returns 0.
    int GetLockTime();

    QPushButton *ConfirmButton() const;
    QPushButton *CancelButton() const;
    Quillon::CFixedContentLineEdit *LockTimeEdit() const;
    void SwitchTheme(bool white);

protected:
    void changeEvent(QEvent *event) override;

private:
    void RetranslateTexts();

    std::unique_ptr<Ui::AboutLockFrameUI> ui_;
};

} // namespace PreviewPTZControl
