#pragma once

#include "previewptzcontrol_export.h"

#include "quillon/citemdatarole.h"
#include "quillon/ctableview.h"

namespace PreviewPTZControl {

// Table of the preset tab. Turns clicks on the call, edit and delete pixmaps
// into their own signals and keeps the three columns laid out.
class PREVIEWPTZCONTROL_EXPORT CPresetTableView : public Quillon::CTableView
{
    Q_OBJECT
public:
    explicit CPresetTableView(QWidget *parent = nullptr);
    ~CPresetTableView() override;

    // Width of the action column for a device pixel ratio.
    static int ActionColumnWidth(double device_pixel_ratio);

    // Lays out type, name and action columns for the viewport width (three-column models only).
    void LayoutColumns();
    void SetWhiteTheme(bool white);

    // Ratio used for the layout; 0 or less follows the widget's screen.
    void SetDevicePixelRatioOverride(double ratio);
    double DevicePixelRatio() const;

signals:
    void SignalPlayPreset(QModelIndex miIndex);
    void SignalEditPreset(QModelIndex miIndex);
    void SignalDeletePreset(QModelIndex miIndex);

public slots:
    void OnTableViewClicked(const QModelIndex &index, Quillon::CItemDataRole enumTypeRole);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    double dpr_override_ = 0.0;
};

} // namespace PreviewPTZControl
