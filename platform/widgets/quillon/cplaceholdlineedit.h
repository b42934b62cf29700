#pragma once

#include "quillon/quillon_export.h"

#include <QColor>
#include <QLineEdit>

namespace Quillon {

// Line edit whose placeholder keeps showing while it has focus and is empty,
// in a colour the style sheet may set (qproperty-placeholderColor).
class QUILLON_EXPORT CPlaceholdLineEdit : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(QColor placeholderColor READ GetPlaceholderColor WRITE SetPlaceholderColor)
public:
    explicit CPlaceholdLineEdit(QWidget *parent = nullptr);
    explicit CPlaceholdLineEdit(const QString &placeholder, QWidget *parent = nullptr);
    ~CPlaceholdLineEdit() override;

    QColor GetPlaceholderColor() const;
    void SetPlaceholderColor(const QColor &color);

private:
    QColor m_placeholderColor;
};

} // namespace Quillon
