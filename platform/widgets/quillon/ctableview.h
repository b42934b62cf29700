#pragma once

#include "quillon/cabstractitemview.h"
#include "quillon/citemdatarole.h"

#include <QPersistentModelIndex>

namespace Quillon {

class CTreeViewWithRightPixmapDelegate;

// Item view whose cells may carry up to three right-aligned action pixmaps
// (ItemFirst/Second/ThirdRightPixmapRole). A left click on one of them, pressed
// and released on the same pixmap of an enabled item, emits signalClickedPixmap
// with the view model's index and the pixmap's role. Installs a
// CTreeViewWithRightPixmapDelegate; a replacement delegate should derive from it
// so painting and hit testing agree.
class QUILLON_EXPORT CTableView : public CAbstractItemView
{
    Q_OBJECT
public:
    explicit CTableView(QWidget *parent = nullptr);
    ~CTableView() override;

    // The pixmap under a viewport position: its index and role. False when none.
    bool PixmapAt(const QPoint &viewportPos, QModelIndex *index, CItemDataRole *role) const;
    // Tool tip of the pixmap under a viewport position, empty when none.
    QString PixmapToolTipAt(const QPoint &viewportPos) const;
    // Rectangle (viewport coordinates) of one action pixmap of index; empty when not shown.
    QRect PixmapRect(const QModelIndex &index, CItemDataRole role) const;

signals:
    void signalClickedPixmap(const QModelIndex &index, Quillon::CItemDataRole role);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    const CTreeViewWithRightPixmapDelegate *PixmapDelegate(const QModelIndex &index) const;

    CTreeViewWithRightPixmapDelegate *m_defaultDelegate = nullptr;
    QPersistentModelIndex m_pressedIndex;
    int m_pressedRole = -1;
};

} // namespace Quillon
