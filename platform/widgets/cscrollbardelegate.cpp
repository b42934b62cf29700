#include "quillon/cscrollbardelegate.h"

#include "quillon/cscrollbar.h"

#include <QAbstractScrollArea>

namespace Quillon {

CScrollBarDelegate::CScrollBarDelegate(QAbstractScrollArea *area, Qt::Orientations orientations)
    : QObject(area)
    , m_area(area)
{
    if (!area)
        return;
    // The scroll area takes ownership of the bars it is given.
    if (orientations & Qt::Vertical) {
        m_vertical = new CScrollBar(Qt::Vertical, area);
        m_vertical->setObjectName(QStringLiteral("ptr_vertical_scrollbar_"));
        area->setVerticalScrollBar(m_vertical);
    }
    if (orientations & Qt::Horizontal) {
        m_horizontal = new CScrollBar(Qt::Horizontal, area);
        m_horizontal->setObjectName(QStringLiteral("ptr_horizontal_scrollbar_"));
        area->setHorizontalScrollBar(m_horizontal);
    }
}

CScrollBarDelegate::~CScrollBarDelegate() = default;

CScrollBar *CScrollBarDelegate::GetVerticalScrollBar() const
{
    // Someone may have installed another bar since; ours is then gone.
    if (m_area && m_vertical && m_area->verticalScrollBar() == m_vertical)
        return m_vertical;
    return nullptr;
}

CScrollBar *CScrollBarDelegate::GetHorizontalScrollBar() const
{
    if (m_area && m_horizontal && m_area->horizontalScrollBar() == m_horizontal)
        return m_horizontal;
    return nullptr;
}

QAbstractScrollArea *CScrollBarDelegate::GetScrollArea() const
{
    return m_area;
}

} // namespace Quillon
