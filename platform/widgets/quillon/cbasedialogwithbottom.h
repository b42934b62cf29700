#pragma once

#include "quillon/quillon_export.h"

#include <QDialog>
#include <QPushButton>

class QFrame;
class QWidget;

namespace Quillon {

// Dialog with a content area and a bottom bar holding a confirm and a cancel
// button. Confirm accepts and cancel rejects unless a subclass reconnects
// confirm (ReconnectConfirmButton) to check its input first.
class QUILLON_EXPORT CBaseDialogWithBottom : public QDialog
{
    Q_OBJECT
public:
    explicit CBaseDialogWithBottom(QWidget *parent = nullptr);
    ~CBaseDialogWithBottom() override;

    // Subclasses build their form into this widget (ui->setupUi(GetContentWidget())).
    QWidget *GetContentWidget() const;
    QFrame *GetBottomFrame() const;
    QPushButton *GetConfirmButton() const;
    QPushButton *GetCancelButton() const;

    void SetTitle(const QString &title);
    void SetConfirmButtonText(const QString &text);
    void SetCancelButtonText(const QString &text);

    // Replaces the default accept of the confirm button by receiver's slot.
    template <typename Receiver, typename Slot>
    void ReconnectConfirmButton(const Receiver *receiver, Slot slot)
    {
        DisconnectConfirmButton();
        m_confirmConnection = connect(m_confirm, &QAbstractButton::clicked, receiver, slot);
    }

private:
    void DisconnectConfirmButton();

    QWidget *m_content = nullptr;
    QFrame *m_bottom = nullptr;
    QPushButton *m_confirm = nullptr;
    QPushButton *m_cancel = nullptr;
    QMetaObject::Connection m_confirmConnection;
};

} // namespace Quillon
