#include "quillon/cplaceholdlineedit.h"

namespace Quillon {

CPlaceholdLineEdit::CPlaceholdLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
}

CPlaceholdLineEdit::CPlaceholdLineEdit(const QString &placeholder, QWidget *parent)
    : QLineEdit(parent)
{
    setPlaceholderText(placeholder);
}

CPlaceholdLineEdit::~CPlaceholdLineEdit() = default;

QColor CPlaceholdLineEdit::GetPlaceholderColor() const
{
    return m_placeholderColor.isValid() ? m_placeholderColor : palette().color(QPalette::PlaceholderText);
}

void CPlaceholdLineEdit::SetPlaceholderColor(const QColor &color)
{
    if (m_placeholderColor == color)
        return;
    m_placeholderColor = color;
    QPalette pal = palette();
    pal.setColor(QPalette::PlaceholderText, color);
    setPalette(pal);
}

} // namespace Quillon
