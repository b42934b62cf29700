#pragma once

#include "previewptzcontrol_export.h"

#include <QComboBox>
#include <QPair>
#include <QStandardItemModel>
#include <QString>
#include <QVector>

namespace PreviewPTZControl {

// Drop-down of one cell of the patrol path editor: a fixed list of entries, each a text and
// an integer value (preset number, speed or dwell seconds). Hover events are swallowed so the
// editor's rows do not flicker under the mouse.
class PREVIEWPTZCONTROL_EXPORT CCruiseComboBox : public QComboBox
{
    Q_OBJECT
public:
    using Entry = QPair<QString, int>;
    using Entries = QVector<Entry>;

    CCruiseComboBox(const Entries &entries, int current_value, QWidget *parent = nullptr);
    // Shows entries kept in a model shared by many drop-downs (text in Qt::DisplayRole, value in
    // Qt::UserRole), which is far cheaper than copying them into each one.
    CCruiseComboBox(QAbstractItemModel *shared_entries, int current_value, QWidget *parent = nullptr);
    // A model of entries, as the shared constructor takes it.
    static QStandardItemModel *BuildEntryModel(const Entries &entries, QObject *parent);
    ~CCruiseComboBox() override;

    // Selects the first entry holding the value; leaves the selection alone when none does.
    void SetCurrentValue(int value);
    int CurrentValue() const;
    // Selects the value, adding the entry first when the list lacks it (a point whose preset
    // left the camera keeps showing what it was).
    void SelectEntry(const Entry &entry);
    Entry CurrentEntry() const;
    bool HasValue(int value) const;

    // The pop-up list with the library's scroll bar. Built when the list first opens: an editor
    // holds up to 96 drop-downs, and building every pop-up at once would make opening it slow.
    void EnsurePopupView();
    void showPopup() override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    // The user pressed on the drop-down: its row becomes the editor's current row.
    void SignalPressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    bool popup_view_ready_ = false;
    bool shared_model_ = false;
};

} // namespace PreviewPTZControl
