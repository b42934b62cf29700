#pragma once

#include "quillon/quillon_export.h"

#include <QObject>
#include <QPointer>

class QAbstractScrollArea;

namespace Quillon {

class CScrollBar;

// Gives a scroll area the library's scroll bars. Either bar may be absent
// (not requested, or replaced later by someone else), so callers test for null.
class QUILLON_EXPORT CScrollBarDelegate : public QObject
{
    Q_OBJECT
public:
    explicit CScrollBarDelegate(QAbstractScrollArea *area,
                                Qt::Orientations orientations = Qt::Vertical | Qt::Horizontal);
    ~CScrollBarDelegate() override;

    CScrollBar *GetVerticalScrollBar() const;
    CScrollBar *GetHorizontalScrollBar() const;
    QAbstractScrollArea *GetScrollArea() const;

private:
    QPointer<QAbstractScrollArea> m_area;
    QPointer<CScrollBar> m_vertical;
    QPointer<CScrollBar> m_horizontal;
};

} // namespace Quillon
