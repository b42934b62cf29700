#pragma once

#include "quillon/quillon_export.h"

#include <QAbstractButton>
#include <QColor>

class QVariantAnimation;

namespace Quillon {

// On/off switch: a rounded track with a sliding knob. It is a checkable button,
// so toggled(bool) reports every change, by click, keyboard or SetToggle.
class QUILLON_EXPORT CSwitchControl : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(QColor checkedColor READ GetCheckedColor WRITE SetCheckedColor)
    Q_PROPERTY(QColor uncheckedColor READ GetUncheckedColor WRITE SetUncheckedColor)
    Q_PROPERTY(QColor knobColor READ GetKnobColor WRITE SetKnobColor)
    Q_PROPERTY(QColor disabledColor READ GetDisabledColor WRITE SetDisabledColor)
public:
    explicit CSwitchControl(QWidget *parent = nullptr);
    ~CSwitchControl() override;

    void SetToggle(bool on);
    bool IsToggled() const;

    QColor GetCheckedColor() const;
    void SetCheckedColor(const QColor &color);
    QColor GetUncheckedColor() const;
    void SetUncheckedColor(const QColor &color);
    QColor GetKnobColor() const;
    void SetKnobColor(const QColor &color);
    QColor GetDisabledColor() const;
    void SetDisabledColor(const QColor &color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void OnToggled(bool on);

    QColor m_checkedColor{0x21, 0x96, 0xF3};
    QColor m_uncheckedColor{0x8A, 0x90, 0x99};
    QColor m_knobColor{Qt::white};
    QColor m_disabledColor{0x5A, 0x5F, 0x66};
    qreal m_knobPosition = 0.0; // 0 = off end, 1 = on end
    QVariantAnimation *m_animation = nullptr;
};

} // namespace Quillon
