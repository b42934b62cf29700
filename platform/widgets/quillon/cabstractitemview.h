#pragma once

#include "quillon/quillon_export.h"

#include <QTreeView>

namespace Quillon {

class CScrollBarDelegate;

// Flat list/table view on QTreeView: no root decoration or indentation, uniform
// rows, the library's scroll bars, and column widths taken from the model's
// horizontal header data in ColumnWidthRole.
class QUILLON_EXPORT CAbstractItemView : public QTreeView
{
    Q_OBJECT
public:
    explicit CAbstractItemView(QWidget *parent = nullptr);
    ~CAbstractItemView() override;

    void setModel(QAbstractItemModel *model) override;

    CScrollBarDelegate *GetScrollBarDelegate() const;

    // Re-reads ColumnWidthRole for every column that has it.
    void ApplyColumnWidthsFromModel();

    // Text shown centred in the viewport while the view has no rows.
    void SetEmptyViewText(const QString &text);
    QString GetEmptyViewText() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void OnHeaderDataChanged(Qt::Orientation orientation, int first, int last);

    CScrollBarDelegate *m_scrollBarDelegate = nullptr;
    QString m_emptyViewText;
};

} // namespace Quillon
