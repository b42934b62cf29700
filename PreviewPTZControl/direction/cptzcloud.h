#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/cframe.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QPixmap>
#include <QPoint>
#include <QSharedPointer>

class QEnterEvent;
class QGraphicsScene;
class QMouseEvent;

namespace PreviewPTZControl {

class CPathWithStatus;
class CPTZGraphicsView;

// The eight-way direction pad with the auto-scan toggle in its centre.
// It only reports presses and releases of its sections; mapping them to PTZ
// commands is the panel's business.
class PREVIEWPTZCONTROL_EXPORT CPTZCloud : public Quillon::CFrame
{
    Q_OBJECT
    friend class CPTZGraphicsView;

public:
    // Laid out like a numeric keypad; -1 means no section.
    enum enClickSection {
        None = -1,
        TopLeft = 1,
        TopMiddle = 2,
        TopRight = 3,
        MiddleLeft = 4,
        Center = 5,
        MiddleRight = 6,
        BottomLeft = 7,
        BottomMiddle = 8,
        BottomRight = 9,
    };
    Q_ENUM(enClickSection)

    explicit CPTZCloud(QWidget *parent = nullptr);
    ~CPTZCloud() override;

    // Sets each listed section (that exists) to normal or disabled, then repaints.
    void SetSectionsEnabled(const QList<int> &sections, bool enabled);
    // Sets the section checked or normal; the panel mirrors auto-scan on section 5.
    void SetSectionChecked(int section, bool checked);

    // Visual state of a section (0 normal, 1 hover, 2 pressed, 3 checked, 4 disabled), -1 if absent.
    int sectionStatus(int section) const;
    QSharedPointer<CPathWithStatus> section(int section) const;
    // The cross-shaped ring shared by the four straight arrows.
    const CPathWithStatus *crossSection() const;
    // Whether point p (pad coordinates, origin at the centre) hits the section.
    bool hitSection(const QPoint &p, int section) const;
    // First enabled section hit by p in ascending order, or -1.
    int sectionAt(const QPoint &p) const;

    int pressedSection() const { return m_pressedSection; }
    int tipSection() const { return m_tipSection; }

    // Image resource for a section in a state; empty where nothing is drawn.
    // The dark images live under ":/Images/PTZ/Direction/"; with white = true the
    // same names under ":/Images/PTZWhite/Direction/" (used while the host's
    // style manager is in its white theme).
    static QString sectionImage(int section, int status, bool white = false);
    static QString backgroundImage(bool white = false);
    // Where a section's image goes, in pad coordinates; empty for unknown sections.
    static QRect sectionIconRect(int section);
    // Rotation of a section's (upward pointing) image in degrees.
    static qreal sectionRotation(int section);

    // Paints the pad with the origin at the painter's current (0, 0) corner for
    // the given device pixel ratio; paintEvent uses it, so can thumbnails.
    void paintPad(QPainter *painter, qreal dpr);

signals:
    void signalPressSection(QMouseEvent *event, PreviewPTZControl::CPTZCloud::enClickSection section);
    void signalReleaseSection(QMouseEvent *event, PreviewPTZControl::CPTZCloud::enClickSection section);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    // The graphics view over the pad owns the mouse and forwards it here. These are
    // not the QWidget handlers on purpose: events the view ignores propagate to the
    // pad and must not be handled a second time.
    void HandleMousePress(QMouseEvent *event);
    void HandleMouseRelease(QMouseEvent *event);
    void HandleMouseMove(QMouseEvent *event);
    void HandleEnter(QEvent *event);
    void HandleLeave(QEvent *event);

    void InitGraphicsView();
    void InitSections();
    QSharedPointer<CPathWithStatus> &SectionSlot(int section);
    QPoint ToPad(const QPointF &localPos) const;
    void TrackHover(const QPoint &p, bool stopAtActive);
    void UpdateToolTip(int hovered);
    const QPixmap &SectionPixmap(int section, int status, qreal dpr, bool white);
    const QPixmap &StaticLayer(qreal dpr, bool white);

    QMap<int, QSharedPointer<CPathWithStatus>> m_mapSections;
    QSharedPointer<CPathWithStatus> m_pCross;
    QSharedPointer<CPathWithStatus> m_pSection1;
    QSharedPointer<CPathWithStatus> m_pSection2;
    QSharedPointer<CPathWithStatus> m_pSection3;
    QSharedPointer<CPathWithStatus> m_pSection4;
    QSharedPointer<CPathWithStatus> m_pSection5;
    QSharedPointer<CPathWithStatus> m_pSection6;
    QSharedPointer<CPathWithStatus> m_pSection7;
    QSharedPointer<CPathWithStatus> m_pSection8;
    QSharedPointer<CPathWithStatus> m_pSectionCenter;

    const int m_iCenterDiameter = 58;
    const int m_iRingDiameter = 150;
    const int m_iPadSize = 174;
    const int m_iCornerRadius = 57;
    QPoint centre;

    QGraphicsScene *m_pScene = nullptr;
    CPTZGraphicsView *ptr_graphics_view = nullptr;

    qint32 m_tipSection = -1;
    qint32 m_pressedSection = -1;

    // Rendered images by resource, rotation and device pixel ratio; the layer
    // under them (background, cross, diagonals) by ratio and theme colours.
    QHash<QString, QPixmap> m_pixmapCache;
    QPixmap m_staticLayer;
    QString m_staticLayerKey;
};

} // namespace PreviewPTZControl
