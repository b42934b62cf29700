#pragma once

#include "previewptzcontrol_export.h"

#include <QComboBox>
#include <QPair>
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
    ~CCruiseComboBox() override;

    // Selects the first entry holding the value; leaves the selection alone when none does.
    void SetCurrentValue(int value);
    int CurrentValue() const;
    // Selects the value, adding the entry first when the list lacks it (a point whose preset
    // left the camera keeps showing what it was).
    void SelectEntry(const Entry &entry);
    Entry CurrentEntry() const;
    bool HasValue(int value) const;

signals:
    // The user pressed on the drop-down: its row becomes the editor's current row.
    void SignalPressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
};

} // namespace PreviewPTZControl
