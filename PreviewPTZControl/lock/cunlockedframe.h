#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/cframe.h"

#include <memory>

class QPushButton;

namespace PreviewPTZControl {

namespace Ui {
class UnLockedFrameUI;
}

// The lock strip's idle page: the "Lock" button and the operator's PTZ level.
class PREVIEWPTZCONTROL_EXPORT CUnLockedFrame : public Quillon::CFrame
{
    Q_OBJECT

public:
    explicit CUnLockedFrame(QWidget *parent = nullptr);
    ~CUnLockedFrame() override;

    QPushButton *LockButton() const;
    // Shows "<level name>: L<level>" when the site shows user levels, nothing otherwise.
    void SetUserLevel(int level);
    void SwitchTheme(bool white);

private:
    std::unique_ptr<Ui::UnLockedFrameUI> ui_;
};

} // namespace PreviewPTZControl
