#include "quillon/cscrollarea.h"

#include "quillon/cscrollbardelegate.h"

namespace Quillon {

CScrollArea::CScrollArea(QWidget *parent)
    : QScrollArea(parent)
{
    m_scrollBarDelegate = new CScrollBarDelegate(this);
}

CScrollArea::~CScrollArea() = default;

CScrollBarDelegate *CScrollArea::GetScrollBarDelegate() const
{
    return m_scrollBarDelegate;
}

} // namespace Quillon
