#include "quillon/cfixedcontentlineedit.h"

#include <QEvent>
#include <QLabel>

namespace Quillon {

namespace {
constexpr int kLabelMargin = 6;
}

CFixedContentLineEdit::CFixedContentLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    m_label = new QLabel(this);
    m_label->setObjectName(QStringLiteral("ptr_fixed_content_label_"));
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_label->hide();
}

CFixedContentLineEdit::~CFixedContentLineEdit() = default;

void CFixedContentLineEdit::SetFixedContent(const QString &content)
{
    if (m_label->text() == content)
        return;
    m_label->setText(content);
    m_label->setVisible(!content.isEmpty());
    UpdateFixedContentGeometry();
}

QString CFixedContentLineEdit::GetFixedContent() const
{
    return m_label->text();
}

QLabel *CFixedContentLineEdit::GetFixedContentLabel() const
{
    return m_label;
}

void CFixedContentLineEdit::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    UpdateFixedContentGeometry();
}

void CFixedContentLineEdit::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        UpdateFixedContentGeometry();
}

void CFixedContentLineEdit::UpdateFixedContentGeometry()
{
    QMargins margins = textMargins();
    if (m_label->text().isEmpty()) {
        margins.setRight(0);
        setTextMargins(margins);
        return;
    }
    m_label->setFont(font());
    const int width = m_label->sizeHint().width();
    m_label->setGeometry(this->width() - width - kLabelMargin, 0, width, height());
    margins.setRight(width + kLabelMargin);
    setTextMargins(margins);
}

} // namespace Quillon
