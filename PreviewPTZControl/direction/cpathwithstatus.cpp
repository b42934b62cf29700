#include "direction/cpathwithstatus.h"

namespace PreviewPTZControl {

CPathWithStatus::CPathWithStatus(QWidget *parent)
    : QWidget(parent)
{
    setFixedSize(0, 0);
}

CPathWithStatus::~CPathWithStatus() = default;

QColor CPathWithStatus::currentColor() const
{
    switch (status) {
    case StatusNormal:
        return m_colorNormal;
    case StatusHover:
        return m_colorHover;
    case StatusPressed:
        return m_colorPress;
    case StatusChecked:
        return m_colorCheck;
    case StatusDisabled:
        return m_colorDisable;
    default:
        return QColor();
    }
}

} // namespace PreviewPTZControl
