#pragma once

#include "quillon/cscrollbar.h"
#include "quillon/cscrollbardelegate.h"
#include "quillon/ctableview.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStyle>

namespace PreviewPTZControl {
namespace RowListView {

// The preset, patrol and pattern lists: one row per entry, no header, one selected row.
inline void SetUp(Quillon::CTableView *view)
{
    view->header()->hide();
    view->header()->setSectionResizeMode(QHeaderView::Fixed);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setAlternatingRowColors(false);
}

// The dark theme's style sheets address the lists' scroll bars by this name.
inline void UseDarkScrollBars(Quillon::CTableView *view)
{
    Quillon::CScrollBarDelegate *bars = view->GetScrollBarDelegate();
    if (!bars)
        return;
    for (QWidget *bar : {static_cast<QWidget *>(bars->GetVerticalScrollBar()),
                         static_cast<QWidget *>(bars->GetHorizontalScrollBar())}) {
        if (!bar)
            continue;
        bar->setObjectName(QStringLiteral("ptr_ptz_black_scrollbar_"));
        bar->style()->unpolish(bar);
        bar->style()->polish(bar);
    }
}

} // namespace RowListView
} // namespace PreviewPTZControl
