#include "lock/caboutlockframe.h"

#include "lock/lockframes_p.h"
#include "ui_aboutlockframeui.h"

#include "quillon/cfixedcontentlineedit.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include <QEvent>
#include <QRegularExpressionValidator>

namespace PreviewPTZControl {

CAboutLockFrame::CAboutLockFrame(QWidget *parent)
    : Quillon::CFrame(parent)
    , ui_(std::make_unique<Ui::AboutLockFrameUI>())
{
    ui_->setupUi(this);
    ui_->lock_time_edit->setMaxLength(4);
    ui_->lock_time_edit->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]+")), ui_->lock_time_edit));
    ui_->lock_time_edit->setText(QStringLiteral("300"));
    RetranslateTexts();
}

CAboutLockFrame::~CAboutLockFrame() = default;

int CAboutLockFrame::GetLockTime()
{
    bool ok = false;
    const int seconds = ui_->lock_time_edit->text().trimmed().toInt(&ok, 10);
    if (ok && seconds >= kMinLockSeconds && seconds <= kMaxLockSeconds)
        return seconds;
    Tarn::Base::CSingleton<vs_ui_data_controller::CNomalMessageManager>::Instance()->ShowMessage(
        tr("Corvo-ControlClient.28383cbadd24465f890c61d87e7d9aa7.msg").arg(kMinLockSeconds).arg(kMaxLockSeconds),
        vs_ui_data_controller::CNomalMessageManager::LevelInformation, window());
    ui_->lock_time_edit->setFocus();
    return 0;
}

QPushButton *CAboutLockFrame::ConfirmButton() const
{
    return ui_->pConfirmBtn;
}

QPushButton *CAboutLockFrame::CancelButton() const
{
    return ui_->pCancelBtn;
}

Quillon::CFixedContentLineEdit *CAboutLockFrame::LockTimeEdit() const
{
    return ui_->lock_time_edit;
}

void CAboutLockFrame::SwitchTheme(bool white)
{
    // The edit's white name has no trailing underscore: the style sheets address it so.
    LockFramesPrivate::ApplyTheme(
        white, {{ui_->lock_time_edit, QStringLiteral("lock_time_edit"), QStringLiteral("lock_time_edit_white")},
                {ui_->pLockLabel, QStringLiteral("pLockLabel"), QStringLiteral("pLockLabel_white_")},
                {ui_->pConfirmBtn, QStringLiteral("pConfirmBtn"), QStringLiteral("pConfirmBtn_white_")},
                {ui_->pCancelBtn, QStringLiteral("pCancelBtn"), QStringLiteral("pCancelBtn_white_")}});
}

void CAboutLockFrame::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        ui_->retranslateUi(this);
        RetranslateTexts();
    }
    Quillon::CFrame::changeEvent(event);
}

void CAboutLockFrame::RetranslateTexts()
{
    ui_->pLockLabel->setText(tr("LockTimeLaDOtBsbdskBDWea") + QLatin1Char(':'));
    ui_->lock_time_edit->SetFixedContent(tr("SecondsBRH1H3KO"));
    ui_->pConfirmBtn->setText(tr("Confirm"));
    ui_->pCancelBtn->setText(tr("UndoMerge"));
}

} // namespace PreviewPTZControl
