#include "quillon/cswitchcontrol.h"

#include <QPainter>
#include <QVariantAnimation>

namespace Quillon {

namespace {
constexpr int kAnimationMs = 120;
constexpr int kKnobMargin = 2;
} // namespace

CSwitchControl::CSwitchControl(QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_animation = new QVariantAnimation(this);
    m_animation->setDuration(kAnimationMs);
    connect(m_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_knobPosition = value.toReal();
        update();
    });
    connect(this, &QAbstractButton::toggled, this, &CSwitchControl::OnToggled);
}

CSwitchControl::~CSwitchControl() = default;

void CSwitchControl::SetToggle(bool on)
{
    setChecked(on);
}

bool CSwitchControl::IsToggled() const
{
    return isChecked();
}

QColor CSwitchControl::GetCheckedColor() const
{
    return m_checkedColor;
}

void CSwitchControl::SetCheckedColor(const QColor &color)
{
    if (m_checkedColor == color)
        return;
    m_checkedColor = color;
    update();
}

QColor CSwitchControl::GetUncheckedColor() const
{
    return m_uncheckedColor;
}

void CSwitchControl::SetUncheckedColor(const QColor &color)
{
    if (m_uncheckedColor == color)
        return;
    m_uncheckedColor = color;
    update();
}

QColor CSwitchControl::GetKnobColor() const
{
    return m_knobColor;
}

void CSwitchControl::SetKnobColor(const QColor &color)
{
    if (m_knobColor == color)
        return;
    m_knobColor = color;
    update();
}

QColor CSwitchControl::GetDisabledColor() const
{
    return m_disabledColor;
}

void CSwitchControl::SetDisabledColor(const QColor &color)
{
    if (m_disabledColor == color)
        return;
    m_disabledColor = color;
    update();
}

QSize CSwitchControl::sizeHint() const
{
    return QSize(36, 20);
}

QSize CSwitchControl::minimumSizeHint() const
{
    return QSize(24, 14);
}

void CSwitchControl::OnToggled(bool on)
{
    const qreal target = on ? 1.0 : 0.0;
    m_animation->stop();
    if (!isVisible()) {
        // Nothing to watch: jump, so a switch shown later is drawn in place.
        m_knobPosition = target;
        update();
        return;
    }
    m_animation->setStartValue(m_knobPosition);
    m_animation->setEndValue(target);
    m_animation->start();
}

void CSwitchControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    const QRectF track = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = track.height() / 2.0;
    QColor trackColor;
    if (!isEnabled())
        trackColor = m_disabledColor;
    else
        trackColor = isChecked() ? m_checkedColor : m_uncheckedColor;
    painter.setBrush(trackColor);
    painter.drawRoundedRect(track, radius, radius);

    const qreal knobDiameter = track.height() - 2 * kKnobMargin;
    const qreal travel = track.width() - 2 * kKnobMargin - knobDiameter;
    const QRectF knob(track.left() + kKnobMargin + travel * m_knobPosition, track.top() + kKnobMargin, knobDiameter,
                      knobDiameter);
    QColor knobColor = m_knobColor;
    if (!isEnabled())
        knobColor.setAlphaF(knobColor.alphaF() * 0.6);
    painter.setBrush(knobColor);
    painter.drawEllipse(knob);
}

} // namespace Quillon
