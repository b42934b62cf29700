#include "patrol/ccruisecombobox.h"

#include "quillon/cscrollbar.h"

#include <QEvent>
#include <QListView>

namespace PreviewPTZControl {

CCruiseComboBox::CCruiseComboBox(const Entries &entries, int current_value, QWidget *parent)
    : QComboBox(parent)
{
    setModel(BuildEntryModel(entries, this));
    SetCurrentValue(current_value);
    installEventFilter(this);
}

CCruiseComboBox::CCruiseComboBox(QAbstractItemModel *shared_entries, int current_value, QWidget *parent)
    : QComboBox(parent)
    , shared_model_(true)
{
    setModel(shared_entries);
    SetCurrentValue(current_value);
    installEventFilter(this);
}

QStandardItemModel *CCruiseComboBox::BuildEntryModel(const Entries &entries, QObject *parent)
{
    auto *model = new QStandardItemModel(parent);
    QList<QStandardItem *> items;
    items.reserve(entries.size());
    for (const Entry &entry : entries) {
        auto *item = new QStandardItem(entry.first);
        item->setData(entry.second, Qt::UserRole);
        item->setToolTip(entry.first);
        items << item;
    }
    model->invisibleRootItem()->appendRows(items);
    return model;
}

CCruiseComboBox::~CCruiseComboBox() = default;

QSize CCruiseComboBox::sizeHint() const
{
    // The cell gives the width; measuring every entry, as a combo box does, would cost more than
    // the rest of opening the editor.
    return QSize(48, fontMetrics().height() + 8);
}

QSize CCruiseComboBox::minimumSizeHint() const
{
    return sizeHint();
}

void CCruiseComboBox::EnsurePopupView()
{
    if (popup_view_ready_)
        return;
    popup_view_ready_ = true;
    auto *scroll_bar = new Quillon::CScrollBar(Qt::Vertical);
    scroll_bar->setObjectName(QStringLiteral("CruiseScrollBar"));
    auto *list = new QListView(this);
    setView(list);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    list->setVerticalScrollBar(scroll_bar);
}

void CCruiseComboBox::showPopup()
{
    EnsurePopupView();
    QComboBox::showPopup();
}

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
        if (shared_model_) {
            // Others show the shared entries: this one gets its own copy before it grows.
            Entries own;
            for (int row = 0; row < count(); ++row)
                own.append({itemText(row), itemData(row).toInt()});
            const int current = currentIndex();
            setModel(BuildEntryModel(own, this));
            setCurrentIndex(current);
            shared_model_ = false;
        }
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
