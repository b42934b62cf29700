#pragma once

#include "vs_ui_data_controller/hostui_export.h"

#include <QWidget>

namespace vs_ui_data_controller {

// Frameless widget that paints its style-sheet background and border; a plain
// QWidget subclass ignores them unless it draws the widget primitive itself.
class HOSTUI_EXPORT CQssWidget : public QWidget
{
    Q_OBJECT
public:
    explicit CQssWidget(QWidget *parent = nullptr);
    ~CQssWidget() override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace vs_ui_data_controller
