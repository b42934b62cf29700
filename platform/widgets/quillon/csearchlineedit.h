#pragma once

#include "quillon/quillon_export.h"

#include <QLineEdit>

class QTimer;

namespace Quillon {

// Search field for filtering lists: a magnifier at the left, a clear button,
// and SignalSearchTextChanged once typing pauses (at once with a delay of 0).
class QUILLON_EXPORT CSearchLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    explicit CSearchLineEdit(QWidget *parent = nullptr);
    ~CSearchLineEdit() override;

    // Pause after the last key before the search text is reported, in ms.
    void SetSearchDelay(int msecs);
    int GetSearchDelay() const;

signals:
    void SignalSearchTextChanged(const QString &text);

private:
    void OnTextEdited();
    void ReportSearchText();

    QTimer *m_delay = nullptr;
    QString m_reported;
};

} // namespace Quillon
