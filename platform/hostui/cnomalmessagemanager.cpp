#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include <QMessageBox>
#include <QPushButton>
#include <QWidget>

namespace vs_ui_data_controller {

namespace {
QMessageBox::Icon IconForLevel(int level)
{
    switch (level) {
    case CNomalMessageManager::LevelError:
        return QMessageBox::Critical;
    case CNomalMessageManager::LevelWarning:
        return QMessageBox::Warning;
    default:
        return QMessageBox::Information;
    }
}

QWidget *WindowOf(QWidget *parent)
{
    return parent ? parent->window() : nullptr;
}
} // namespace

CNomalMessageManager::CNomalMessageManager() = default;
CNomalMessageManager::~CNomalMessageManager() = default;

int CNomalMessageManager::ShowMessage(const QString &message, int level, QWidget *parent)
{
    emit SignalMessageShown(message, level);
    if (m_answerProvider)
        return m_answerProvider(message);

    QMessageBox box(IconForLevel(level), tr("Prompt"), message, QMessageBox::NoButton, WindowOf(parent));
    box.setObjectName(QStringLiteral("CNomalMessageBox"));
    QPushButton *ok = box.addButton(tr("Confirm"), QMessageBox::AcceptRole);
    ok->setObjectName(QStringLiteral("ptr_message_confirm_btn_"));
    box.setDefaultButton(ok);
    box.exec();
    return AnswerConfirm;
}

int CNomalMessageManager::ShowMessageTip(const QString &message, QWidget *parent, const QString &title)
{
    emit SignalMessageTipAsked(message);
    if (m_answerProvider)
        return m_answerProvider(message);

    QMessageBox box(QMessageBox::Question, title.isEmpty() ? tr("Prompt") : title, message, QMessageBox::NoButton,
                    WindowOf(parent));
    box.setObjectName(QStringLiteral("CNomalMessageTipBox"));
    QPushButton *confirm = box.addButton(tr("Confirm"), QMessageBox::AcceptRole);
    confirm->setObjectName(QStringLiteral("ptr_message_confirm_btn_"));
    QPushButton *cancel = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
    cancel->setObjectName(QStringLiteral("ptr_message_cancel_btn_"));
    box.setDefaultButton(confirm);
    box.setEscapeButton(cancel);
    box.exec();
    return box.clickedButton() == confirm ? AnswerConfirm : AnswerCancel;
}

void CNomalMessageManager::SetAnswerProvider(AnswerProvider provider)
{
    m_answerProvider = std::move(provider);
}

bool CNomalMessageManager::HasAnswerProvider() const
{
    return bool(m_answerProvider);
}

} // namespace vs_ui_data_controller
