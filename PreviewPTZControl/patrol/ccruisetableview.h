#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/citemdatarole.h"
#include "quillon/ctableview.h"

namespace PreviewPTZControl {

// The patrol list of the patrol tab. Turns clicks on the play or stop, edit and delete
// pixmaps into their own signals and keeps the name and action columns laid out.
class PREVIEWPTZCONTROL_EXPORT CCruiseTableView : public Quillon::CTableView
{
    Q_OBJECT
public:
    explicit CCruiseTableView(QWidget *parent = nullptr);
    ~CCruiseTableView() override;

    void SetWhiteTheme(bool white);
    // Lays out the two columns for the viewport width (two-column models only).
    void LayoutColumns();
    // Ratio used for the layout; 0 or less follows the widget's screen.
    void SetDevicePixelRatioOverride(double ratio);
    double DevicePixelRatio() const;

signals:
    // bPlayPatrol: true asks to start the row's patrol, false to stop it.
    void SignalPatrolPlayControl(QModelIndex miIndex, bool bPlayPatrol);
    void SignalPatrolEdit(QModelIndex miIndex);
    void SignalPatrolDelete(QModelIndex miIndex);

public slots:
    void OnTableViewClicked(const QModelIndex &index, Quillon::CItemDataRole enumTypeRole);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    double dpr_override_ = 0.0;
};

} // namespace PreviewPTZControl
