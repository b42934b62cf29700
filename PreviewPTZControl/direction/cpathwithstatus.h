#pragma once

#include "previewptzcontrol_export.h"

#include <QColor>
#include <QPainterPath>
#include <QWidget>

namespace PreviewPTZControl {

// One section of the direction pad: its hit shape and its visual state.
// Never shown; it is a QWidget only so style sheets can set the colours below.
class PREVIEWPTZCONTROL_EXPORT CPathWithStatus : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor m_colorNormal MEMBER m_colorNormal)
    Q_PROPERTY(QColor m_colorHover MEMBER m_colorHover)
    Q_PROPERTY(QColor m_colorPress MEMBER m_colorPress)
    Q_PROPERTY(QColor m_colorCheck MEMBER m_colorCheck)
    Q_PROPERTY(QColor m_colorDisable MEMBER m_colorDisable)
    Q_PROPERTY(QColor m_colorForePress MEMBER m_colorForePress)

public:
    // Visual states of a section.
    enum Status {
        StatusNormal = 0,
        StatusHover = 1,
        StatusPressed = 2,
        StatusChecked = 3,
        StatusDisabled = 4,
    };

    explicit CPathWithStatus(QWidget *parent = nullptr);
    ~CPathWithStatus() override;

    // Colour of the current state; invalid for a state outside 0..4.
    QColor currentColor() const;

    QPainterPath path;     // hit and fill shape, pad coordinates (origin at the pad centre)
    QPainterPath pathFore; // spare, kept empty
    QColor colorFore;
    qint32 status = StatusNormal;

private:
    QColor m_colorNormal;
    QColor m_colorHover;
    QColor m_colorPress;
    QColor m_colorCheck;
    QColor m_colorDisable;
    QColor m_colorForePress;
};

} // namespace PreviewPTZControl
