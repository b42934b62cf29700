#include "quillon/cscrollbar.h"

namespace Quillon {

CScrollBar::CScrollBar(QWidget *parent)
    : QScrollBar(parent)
{
}

CScrollBar::CScrollBar(Qt::Orientation orientation, QWidget *parent)
    : QScrollBar(orientation, parent)
{
}

CScrollBar::~CScrollBar() = default;

} // namespace Quillon
