#pragma once

#include "quillon/quillon_export.h"

#include <QScrollBar>

namespace Quillon {

// The library's scroll bar: a distinct type so style sheets can give item views
// and scroll areas their slim bars without touching other scroll bars.
class QUILLON_EXPORT CScrollBar : public QScrollBar
{
    Q_OBJECT
public:
    explicit CScrollBar(QWidget *parent = nullptr);
    explicit CScrollBar(Qt::Orientation orientation, QWidget *parent = nullptr);
    ~CScrollBar() override;
};

} // namespace Quillon
