#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/citemdatarole.h"
#include "quillon/ctableview.h"

namespace PreviewPTZControl {

// Table of the pattern tab. A click on a row's first pixmap asks to play or stop the pattern,
// on the second to start or stop recording it, on the third to delete it; what the click asks
// for follows the row's current state.
class PREVIEWPTZCONTROL_EXPORT CPatternTableView : public Quillon::CTableView
{
    Q_OBJECT
public:
    explicit CPatternTableView(QWidget *parent = nullptr);
    ~CPatternTableView() override;

    // Lays out the name and action columns for the viewport width (two-column models only).
    void LayoutColumns();
    // Row look of the theme; a pattern model shown here takes the theme's icons.
    void SetWhiteTheme(bool white);

signals:
    void SignalPattenPlayControl(QModelIndex miIndex, bool bPlayPatten);
    void SignalPattenRecordControl(QModelIndex miIndex, bool bRecordPatten);
    void SignalPattenDeleteControl(QModelIndex miIndex);

public slots:
    void OnTableViewClicked(const QModelIndex &index, Quillon::CItemDataRole enumType);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
};

} // namespace PreviewPTZControl
