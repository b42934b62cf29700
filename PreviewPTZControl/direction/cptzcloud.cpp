#include "direction/cptzcloud.h"

#include "direction/cpathwithstatus.h"
#include "direction/cptzgraphicsview.h"

#include "quillon/cguitoolkit.h"
#include "vs_ui_data_controller/cvsstylemanager.h"

#include <QEnterEvent>
#include <QGraphicsScene>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmapCache>
#include <QtMath>

namespace PreviewPTZControl {

namespace {

const char kImageRoot[] = ":/Images/PTZ/Direction/";
const char kWhiteImageRoot[] = ":/Images/PTZWhite/Direction/";

bool IsDiagonal(int section)
{
    return section == CPTZCloud::TopLeft || section == CPTZCloud::TopRight || section == CPTZCloud::BottomLeft
           || section == CPTZCloud::BottomRight;
}

bool IsStraight(int section)
{
    return section == CPTZCloud::TopMiddle || section == CPTZCloud::MiddleLeft || section == CPTZCloud::MiddleRight
           || section == CPTZCloud::BottomMiddle;
}

vs_ui_data_controller::CVSStyleManager *StyleManager()
{
    return vs_ui_data_controller::CVSStyleManager::Instance();
}

} // namespace

CPTZCloud::CPTZCloud(QWidget *parent)
    : Quillon::CFrame(parent)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setMouseTracking(true);
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(m_iPadSize, m_iPadSize);
    centre = QPoint(m_iPadSize / 2, m_iPadSize / 2);
    InitGraphicsView();
    InitSections();
    // Colours come from the host theme; repaint when it changes (the layer cache is keyed by colour).
    connect(StyleManager(), &vs_ui_data_controller::CVSStyleManager::ThemeChanged, this, [this]() { update(); });
}

CPTZCloud::~CPTZCloud() = default;

void CPTZCloud::InitGraphicsView()
{
    m_pScene = new QGraphicsScene(0, 0, m_iPadSize, m_iPadSize, this);
    ptr_graphics_view = new CPTZGraphicsView(m_pScene, this);
    ptr_graphics_view->setObjectName(QStringLiteral("ptr_graphics_view"));
    ptr_graphics_view->setFixedSize(m_iPadSize, m_iPadSize);
    ptr_graphics_view->setRenderHint(QPainter::Antialiasing);
    ptr_graphics_view->move(0, 0);
}

QSharedPointer<CPathWithStatus> &CPTZCloud::SectionSlot(int section)
{
    switch (section) {
    case TopMiddle:
        return m_pSection1;
    case TopRight:
        return m_pSection2;
    case MiddleRight:
        return m_pSection3;
    case BottomRight:
        return m_pSection4;
    case BottomMiddle:
        return m_pSection5;
    case BottomLeft:
        return m_pSection6;
    case MiddleLeft:
        return m_pSection7;
    case TopLeft:
        return m_pSection8;
    default:
        return m_pSectionCenter;
    }
}

void CPTZCloud::InitSections()
{
    const qreal r = m_iRingDiameter / 2.0;
    const qreal c = m_iCenterDiameter / 2.0;
    const qreal k = m_iCornerRadius;

    QPainterPath outer;
    outer.addEllipse(QPointF(0, 0), r, r);
    QPainterPath inner;
    inner.addEllipse(QPointF(0, 0), c, c);

    QPainterPath centreSquare;
    centreSquare.addRect(QRectF(-c, -c, m_iCenterDiameter, m_iCenterDiameter));

    auto cornerDisc = [k](qreal x, qreal y) {
        QPainterPath disc;
        disc.addEllipse(QPointF(x, y), k, k);
        return disc;
    };
    const QPainterPath topLeft = cornerDisc(-r, -r);
    const QPainterPath topRight = cornerDisc(r, -r);
    const QPainterPath bottomLeft = cornerDisc(-r, r);
    const QPainterPath bottomRight = cornerDisc(r, r);

    m_pCross.reset(new CPathWithStatus());
    m_pCross->path =
        outer.subtracted(topLeft).subtracted(topRight).subtracted(bottomLeft).subtracted(bottomRight).subtracted(inner);

    struct Spec
    {
        int section;
        const char *name;
        QPainterPath path;
    };
    const Spec specs[] = {
        {Center, "sectionCenter", centreSquare},
        {TopLeft, "section8", outer.intersected(topLeft)},
        {TopRight, "section2", outer.intersected(topRight)},
        {BottomLeft, "section6", outer.intersected(bottomLeft)},
        {BottomRight, "section4", outer.intersected(bottomRight)},
        // The straight arrows share the cross; the hit rule splits it.
        {TopMiddle, "section1", QPainterPath()},
        {MiddleRight, "section3", QPainterPath()},
        {BottomMiddle, "section5", QPainterPath()},
        {MiddleLeft, "section7", QPainterPath()},
    };
    for (const Spec &spec : specs) {
        QSharedPointer<CPathWithStatus> &slot = SectionSlot(spec.section);
        if (!slot.isNull()) {
            continue;
        }
        slot.reset(new CPathWithStatus());
        slot->setObjectName(QString::fromLatin1(spec.name));
        slot->path = spec.path;
        m_mapSections.insert(spec.section, slot);
    }
}

void CPTZCloud::SetSectionsEnabled(const QList<int> &sections, bool enabled)
{
    if (sections.isEmpty()) {
        return;
    }
    for (int number : sections) {
        const QSharedPointer<CPathWithStatus> s = m_mapSections.value(number);
        if (s) {
            s->status = enabled ? CPathWithStatus::StatusNormal : CPathWithStatus::StatusDisabled;
        }
    }
    update();
}

void CPTZCloud::SetSectionChecked(int section, bool checked)
{
    const QSharedPointer<CPathWithStatus> s = m_mapSections.value(section);
    if (s) {
        s->status = checked ? CPathWithStatus::StatusChecked : CPathWithStatus::StatusNormal;
    }
    update();
}

int CPTZCloud::sectionStatus(int number) const
{
    const QSharedPointer<CPathWithStatus> s = m_mapSections.value(number);
    return s ? s->status : -1;
}

QSharedPointer<CPathWithStatus> CPTZCloud::section(int number) const
{
    return m_mapSections.value(number);
}

const CPathWithStatus *CPTZCloud::crossSection() const
{
    return m_pCross.data();
}

bool CPTZCloud::hitSection(const QPoint &p, int number) const
{
    if (IsDiagonal(number) || number == Center) {
        const QSharedPointer<CPathWithStatus> s = m_mapSections.value(number);
        return s && s->path.contains(p);
    }
    if (!IsStraight(number) || !m_pCross->path.contains(p)) {
        return false;
    }
    const int c = m_iCenterDiameter / 2;
    switch (number) {
    case MiddleLeft:
        return p.x() <= -c;
    case TopMiddle:
        return p.y() <= -c;
    case MiddleRight:
        return p.x() >= c;
    case BottomMiddle:
        return p.y() >= c;
    default:
        return false;
    }
}

int CPTZCloud::sectionAt(const QPoint &p) const
{
    for (auto it = m_mapSections.cbegin(); it != m_mapSections.cend(); ++it) {
        if (it.value() && it.value()->status != CPathWithStatus::StatusDisabled && hitSection(p, it.key())) {
            return it.key();
        }
    }
    return None;
}

QPoint CPTZCloud::ToPad(const QPointF &localPos) const
{
    const int half = m_iPadSize / 2;
    return QPoint(qRound(localPos.x()) - half, qRound(localPos.y()) - half);
}

void CPTZCloud::HandleMousePress(QMouseEvent *event)
{
    if (!event || !isEnabled() || event->button() != Qt::LeftButton) {
        return;
    }
    const int hit = sectionAt(ToPad(event->localPos()));
    if (hit == None) {
        update();
        return;
    }
    CPathWithStatus *s = m_mapSections.value(hit).data();
    const auto number = static_cast<enClickSection>(hit);
    if (hit != Center) {
        s->status = CPathWithStatus::StatusPressed;
        m_pressedSection = hit;
        emit signalPressSection(event, number);
    } else if (s->status != CPathWithStatus::StatusChecked) {
        s->status = CPathWithStatus::StatusChecked;
        m_pressedSection = hit;
        emit signalPressSection(event, number);
    } else {
        s->status = CPathWithStatus::StatusNormal;
        m_pressedSection = None;
        emit signalReleaseSection(event, number);
    }
    update();
}

void CPTZCloud::HandleMouseRelease(QMouseEvent *event)
{
    if (!event || !isEnabled() || event->button() != Qt::LeftButton) {
        return;
    }
    const QPoint p = ToPad(event->localPos());
    int found = None;
    for (auto it = m_mapSections.cbegin(); it != m_mapSections.cend(); ++it) {
        CPathWithStatus *s = it.value().data();
        if (!s || s->status == CPathWithStatus::StatusDisabled || s->status == CPathWithStatus::StatusChecked) {
            continue;
        }
        s->status = CPathWithStatus::StatusNormal;
        if (found == None && hitSection(p, it.key())) {
            found = it.key();
            s->status = CPathWithStatus::StatusHover;
            if (found != Center) {
                emit signalReleaseSection(event, static_cast<enClickSection>(found));
            }
        }
    }
    // A drag off the pressed arrow must still stop the motion.
    if (found == None && m_pressedSection != None && m_pressedSection != Center) {
        const auto pressed = static_cast<enClickSection>(m_pressedSection);
        m_pressedSection = None;
        emit signalReleaseSection(event, pressed);
    }
    update();
}

void CPTZCloud::HandleMouseMove(QMouseEvent *event)
{
    if (!event || !isEnabled()) {
        return;
    }
    TrackHover(ToPad(event->localPos()), false);
}

void CPTZCloud::HandleEnter(QEvent *event)
{
    if (!event || !isEnabled()) {
        return;
    }
    QPoint p(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (event->type() == QEvent::Enter) {
        p = ToPad(static_cast<QEnterEvent *>(event)->localPos());
    }
    TrackHover(p, true);
}

void CPTZCloud::HandleLeave(QEvent *event)
{
    if (!event || !isEnabled()) {
        return;
    }
    for (const QSharedPointer<CPathWithStatus> &s : qAsConst(m_mapSections)) {
        if (s && s->status != CPathWithStatus::StatusDisabled && s->status != CPathWithStatus::StatusChecked) {
            s->status = CPathWithStatus::StatusNormal;
        }
    }
    update();
}

void CPTZCloud::TrackHover(const QPoint &p, bool stopAtActive)
{
    // While an arrow is held the picture stays as it was pressed.
    for (const QSharedPointer<CPathWithStatus> &s : qAsConst(m_mapSections)) {
        if (s && s->status == CPathWithStatus::StatusPressed) {
            return;
        }
    }
    int hovered = None;
    for (auto it = m_mapSections.cbegin(); it != m_mapSections.cend(); ++it) {
        CPathWithStatus *s = it.value().data();
        if (!s || s->status == CPathWithStatus::StatusDisabled) {
            continue;
        }
        if (s->status == CPathWithStatus::StatusChecked) {
            if (hovered == None && hitSection(p, it.key())) {
                hovered = it.key();
                UpdateToolTip(hovered);
            }
            continue;
        }
        if (stopAtActive && s->status != CPathWithStatus::StatusNormal) {
            break;
        }
        s->status = CPathWithStatus::StatusNormal;
        if (hovered == None && hitSection(p, it.key())) {
            hovered = it.key();
            s->status = CPathWithStatus::StatusHover;
        }
    }
    UpdateToolTip(hovered);
    update();
}

void CPTZCloud::UpdateToolTip(int hovered)
{
    if (hovered == m_tipSection) {
        return;
    }
    m_tipSection = hovered;
    QString tip;
    switch (hovered) {
    case TopLeft:
        tip = tr("UpperLeft");
        break;
    case TopMiddle:
        tip = tr("TurnUp");
        break;
    case TopRight:
        tip = tr("UpperRight");
        break;
    case MiddleLeft:
        tip = tr("TurningToTheLeft");
        break;
    case Center:
        tip = sectionStatus(Center) == CPathWithStatus::StatusChecked ? tr("StopAuto-Scanning")
                                                                      : tr("StartAuto-Scanning");
        break;
    case MiddleRight:
        tip = tr("ToTheRightTurn");
        break;
    case BottomLeft:
        tip = tr("LowerLeft");
        break;
    case BottomMiddle:
        tip = tr("TurnDown");
        break;
    case BottomRight:
        tip = tr("LowerRight");
        break;
    default:
        break;
    }
    setToolTip(tip);
}

QString CPTZCloud::backgroundImage(bool white)
{
    return QLatin1String(white ? kWhiteImageRoot : kImageRoot) + QLatin1String("ptz_control_panel_bg.svg");
}

QString CPTZCloud::sectionImage(int number, int status, bool white)
{
    static const char *const kStates[] = {"nor", "hov_sel", "pre", nullptr, "dis"};
    if (status < 0 || status > 4) {
        return QString();
    }
    QString base;
    if (number == Center) {
        // A checked centre looks pressed.
        base = QStringLiteral("ptz_control_panel_rotate_");
        if (status == CPathWithStatus::StatusChecked) {
            status = CPathWithStatus::StatusPressed;
        }
    } else if (IsStraight(number)) {
        base = QStringLiteral("ptz_control_panel_arrows_");
    } else if (IsDiagonal(number)) {
        base = QStringLiteral("ptz_control_panel_arrows_sm_");
    }
    if (base.isEmpty() || !kStates[status]) {
        return QString();
    }
    return QLatin1String(white ? kWhiteImageRoot : kImageRoot) + base + QLatin1String(kStates[status])
           + QLatin1String(".svg");
}

QRect CPTZCloud::sectionIconRect(int number)
{
    const int h = 174 / 2;
    switch (number) {
    case TopLeft:
        return QRect(24 - h, 24 - h, 36, 36);
    case TopMiddle:
        return QRect(-12, 25 - h, 24, 24);
    case TopRight:
        return QRect(h - 24 - 36, 24 - h, 36, 36);
    case MiddleLeft:
        return QRect(25 - h, -12, 24, 24);
    case Center:
        return QRect(-24, -24, 48, 48);
    case MiddleRight:
        return QRect(h - 25 - 24, -12, 24, 24);
    case BottomLeft:
        return QRect(24 - h, h - 24 - 36, 36, 36);
    case BottomMiddle:
        return QRect(-12, h - 25 - 24, 24, 24);
    case BottomRight:
        return QRect(h - 24 - 36, h - 24 - 36, 36, 36);
    default:
        return QRect();
    }
}

qreal CPTZCloud::sectionRotation(int number)
{
    switch (number) {
    case MiddleLeft:
        return -90;
    case MiddleRight:
        return 90;
    case BottomMiddle:
        return 180;
    case TopLeft:
        return -45;
    case TopRight:
        return 45;
    case BottomLeft:
        return -135;
    case BottomRight:
        return 135;
    default:
        return 0;
    }
}

const QPixmap &CPTZCloud::SectionPixmap(int number, int status, qreal dpr, bool white)
{
    static const QPixmap kNone;
    const QString file = sectionImage(number, status, white);
    const QRect rect = sectionIconRect(number);
    if (file.isEmpty() || rect.isEmpty()) {
        return kNone;
    }
    const qreal angle = sectionRotation(number);
    const QString key = file + QLatin1Char('|') + QString::number(angle) + QLatin1Char('|') + QString::number(dpr)
                        + QLatin1Char('|') + QString::number(rect.width());
    auto it = m_pixmapCache.find(key);
    if (it != m_pixmapCache.end()) {
        return it.value();
    }
    // Every panel of a live-view grid shows the same images: share renders across pads.
    QPixmap shared;
    if (QPixmapCache::find(QLatin1String("ptzcloud|") + key, &shared)) {
        return m_pixmapCache.insert(key, shared).value();
    }

    QPixmap pixmap = Quillon::CGUIToolkit::GetPixmapFromSvg(file, rect.size(), dpr);
    if (pixmap.isNull()) {
        return kNone;
    }
    if (qAbs(angle) >= 0.0001) {
        const QSize device = pixmap.size();
        QTransform matrix;
        matrix.rotate(angle);
        pixmap = pixmap.transformed(matrix, Qt::SmoothTransformation);
        // The rotated picture is drawn into the same rectangle; scale once here, not per paint.
        pixmap = pixmap.scaled(device, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        pixmap.setDevicePixelRatio(dpr);
    }
    QPixmapCache::insert(QLatin1String("ptzcloud|") + key, pixmap);
    return m_pixmapCache.insert(key, pixmap).value();
}

const QPixmap &CPTZCloud::StaticLayer(qreal dpr, bool white)
{
    const QColor cross = StyleManager()->ColorPtzIrregularShape();
    const QColor diagonal = StyleManager()->GetNeuColorT2(0.08);
    const QString key = backgroundImage(white) + QLatin1Char('|') + QString::number(dpr) + QLatin1Char('|')
                        + QString::number(cross.rgba()) + QLatin1Char('|') + QString::number(diagonal.rgba());
    if (key == m_staticLayerKey && !m_staticLayer.isNull()) {
        return m_staticLayer;
    }
    const QString sharedKey = QLatin1String("ptzcloud-layer|") + key;
    if (QPixmapCache::find(sharedKey, &m_staticLayer)) {
        m_staticLayerKey = key;
        return m_staticLayer;
    }

    const QSize device = (QSizeF(m_iPadSize, m_iPadSize) * dpr).toSize();
    QImage image(device, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.translate(centre);
        painter.setPen(Qt::NoPen);
        const int h = m_iPadSize / 2;
        painter.drawPixmap(QPointF(-h, -h), Quillon::CGUIToolkit::GetPixmapFromSvg(backgroundImage(white),
                                                                                   QSize(m_iPadSize, m_iPadSize), dpr));
        painter.setBrush(cross);
        painter.drawPath(m_pCross->path);
        painter.setBrush(diagonal);
        for (auto it = m_mapSections.cbegin(); it != m_mapSections.cend(); ++it) {
            if (it.value() && IsDiagonal(it.key())) {
                painter.drawPath(it.value()->path);
            }
        }
    }
    m_staticLayer = QPixmap::fromImage(image);
    m_staticLayerKey = key;
    QPixmapCache::insert(sharedKey, m_staticLayer);
    return m_staticLayer;
}

void CPTZCloud::paintPad(QPainter *painter, qreal dpr)
{
    if (!painter) {
        return;
    }
    const bool white = StyleManager()->IsWhiteTheme();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    // Background, cross and diagonal fills never depend on section state: one cached layer.
    painter->drawPixmap(0, 0, StaticLayer(dpr, white));
    painter->translate(centre);
    for (auto it = m_mapSections.cbegin(); it != m_mapSections.cend(); ++it) {
        if (!it.value()) {
            continue;
        }
        const QPixmap &pixmap = SectionPixmap(it.key(), it.value()->status, dpr, white);
        if (!pixmap.isNull()) {
            painter->drawPixmap(sectionIconRect(it.key()).topLeft(), pixmap);
        }
    }
    painter->restore();
}

void CPTZCloud::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    paintPad(&painter, devicePixelRatioF());
}

} // namespace PreviewPTZControl
