#include "patrol/ccruisecombobox.h"

#include "quillon/cscrollbar.h"

#include <QEvent>
#include <QListView>

namespace PreviewPTZControl {

CCruiseComboBox::CCruiseComboBox(const Entries &entries, int current_value, QWidget *parent)
    : QComboBox(parent)
{
    auto *scroll_bar = new Quillon::CScrollBar(Qt::Vertical);
    scroll_bar->setObjectName(QStringLiteral("CruiseScrollBar"));
    auto *list = new QListView(this);
    setView(list);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    list->setVerticalScrollBar(scroll_bar);
    for (const Entry &entry : entries) {
        addItem(entry.first, entry.second);
        setItemData(count() - 1, entry.first, Qt::ToolTipRole);
    }
    SetCurrentValue(current_value);
    installEventFilter(this);
}

CCruiseComboBox::~CCruiseComboBox() = default;

void CCruiseComboBox::SetCurrentValue(int value)
{
    const int row = findData(value);
    if (row >= 0)
        setCurrentIndex(row);
    update();
}

int CCruiseComboBox::CurrentValue() const
{
    return currentData().toInt();
}

bool CCruiseComboBox::HasValue(int value) const
{
    return findData(value) >= 0;
}

void CCruiseComboBox::SelectEntry(const Entry &entry)
{
    if (!HasValue(entry.second)) {
        addItem(entry.first, entry.second);
        setItemData(count() - 1, entry.first, Qt::ToolTipRole);
    }
    SetCurrentValue(entry.second);
}

CCruiseComboBox::Entry CCruiseComboBox::CurrentEntry() const
{
    return Entry(currentText(), CurrentValue());
}

bool CCruiseComboBox::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverLeave:
    case QEvent::HoverMove:
        return true;
    default:
        return QComboBox::eventFilter(watched, event);
    }
}

void CCruiseComboBox::mousePressEvent(QMouseEvent *event)
{
    emit SignalPressed();
    QComboBox::mousePressEvent(event);
}

void CCruiseComboBox::focusInEvent(QFocusEvent *event)
{
    emit SignalPressed();
    QComboBox::focusInEvent(event);
}

} // namespace PreviewPTZControl
