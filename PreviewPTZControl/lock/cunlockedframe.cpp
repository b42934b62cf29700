#include "lock/cunlockedframe.h"

#include "lock/lockframes_p.h"
#include "ui_unlockedframeui.h"

#include "zeph_ptz_controller/cptzconfigmanager.h"

namespace PreviewPTZControl {

CUnLockedFrame::CUnLockedFrame(QWidget *parent)
    : Quillon::CFrame(parent)
    , ui_(std::make_unique<Ui::UnLockedFrameUI>())
{
    ui_->setupUi(this);
    ui_->pLockBtn->setToolTip(tr("Lock"));
}

CUnLockedFrame::~CUnLockedFrame() = default;

QPushButton *CUnLockedFrame::LockButton() const
{
    return ui_->pLockBtn;
}

void CUnLockedFrame::SetUserLevel(int level)
{
    if (zeph_ptz_controller::CPTZConfigManager::Instance()->ShowUserLevel())
        ui_->ptr_user_level_label_->setText(tr("Corvo-ControlClient.eea1e66096ec44169b26b57aeaf0cae7.name")
                                            + QStringLiteral(": L%1").arg(level));
    else
        ui_->ptr_user_level_label_->setText(QString());
}

void CUnLockedFrame::SwitchTheme(bool white)
{
    LockFramesPrivate::ApplyTheme(white,
                                  {{ui_->pBtnFrame, QStringLiteral("pBtnFrame"), QStringLiteral("pBtnFrame_white_")},
                                   {ui_->pLockBtn, QStringLiteral("pLockBtn"), QStringLiteral("pLockBtn_white_")}});
}

} // namespace PreviewPTZControl
