#include "vs_ui_data_controller/cqsswidget.h"

#include <QPainter>
#include <QStyleOption>

namespace vs_ui_data_controller {

CQssWidget::CQssWidget(QWidget *parent)
    : QWidget(parent)
{
    setWindowFlag(Qt::FramelessWindowHint, true);
    setWindowFlag(Qt::WindowSystemMenuHint, false);
    setWindowFlag(Qt::WindowMinMaxButtonsHint, false);
}

CQssWidget::~CQssWidget() = default;

void CQssWidget::paintEvent(QPaintEvent *)
{
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

} // namespace vs_ui_data_controller
