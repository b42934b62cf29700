#pragma once

#include "quillon/quillon_export.h"

#include <QScrollArea>

namespace Quillon {

class CScrollBarDelegate;

// Scroll area with the library's scroll bars.
class QUILLON_EXPORT CScrollArea : public QScrollArea
{
    Q_OBJECT
public:
    explicit CScrollArea(QWidget *parent = nullptr);
    ~CScrollArea() override;

    CScrollBarDelegate *GetScrollBarDelegate() const;

private:
    CScrollBarDelegate *m_scrollBarDelegate = nullptr;
};

} // namespace Quillon
