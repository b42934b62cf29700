#include "quillon/cbasedialogwithbottom.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <QVariant>

namespace Quillon {

CBaseDialogWithBottom::CBaseDialogWithBottom(QWidget *parent)
    : QDialog(parent)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_content = new QWidget(this);
    m_content->setObjectName(QStringLiteral("ptr_dialog_content_"));
    layout->addWidget(m_content, 1);

    m_bottom = new QFrame(this);
    m_bottom->setObjectName(QStringLiteral("ptr_dialog_bottom_frame_"));
    auto *bottomLayout = new QHBoxLayout(m_bottom);
    bottomLayout->setContentsMargins(16, 12, 16, 16);
    bottomLayout->setSpacing(8);
    bottomLayout->addStretch(1);

    m_confirm = new QPushButton(tr("Confirm"), m_bottom);
    m_confirm->setObjectName(QStringLiteral("ptr_dialog_confirm_btn_"));
    m_confirm->setDefault(true);
    m_confirm->setProperty("style", QStringLiteral("brand"));
    bottomLayout->addWidget(m_confirm);

    m_cancel = new QPushButton(tr("Cancel"), m_bottom);
    m_cancel->setObjectName(QStringLiteral("ptr_dialog_cancel_btn_"));
    m_cancel->setProperty("style", QStringLiteral("neutral"));
    bottomLayout->addWidget(m_cancel);

    layout->addWidget(m_bottom);

    m_confirmConnection = connect(m_confirm, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
}

CBaseDialogWithBottom::~CBaseDialogWithBottom() = default;

QWidget *CBaseDialogWithBottom::GetContentWidget() const
{
    return m_content;
}

QFrame *CBaseDialogWithBottom::GetBottomFrame() const
{
    return m_bottom;
}

QPushButton *CBaseDialogWithBottom::GetConfirmButton() const
{
    return m_confirm;
}

QPushButton *CBaseDialogWithBottom::GetCancelButton() const
{
    return m_cancel;
}

void CBaseDialogWithBottom::SetTitle(const QString &title)
{
    setWindowTitle(title);
}

void CBaseDialogWithBottom::SetConfirmButtonText(const QString &text)
{
    m_confirm->setText(text);
}

void CBaseDialogWithBottom::SetCancelButtonText(const QString &text)
{
    m_cancel->setText(text);
}

void CBaseDialogWithBottom::DisconnectConfirmButton()
{
    if (m_confirmConnection) {
        disconnect(m_confirmConnection);
        m_confirmConnection = QMetaObject::Connection();
    }
}

} // namespace Quillon
