#pragma once

#include <QObject>

namespace PreviewPTZControl {

// Reports the release of one mouse button anywhere in the application, whichever widget or
// window receives it, while it watches. The panel uses it to end a held motion that started
// on one of its controls and was released elsewhere.
class CMouseReleaseWatcher : public QObject
{
    Q_OBJECT

public:
    explicit CMouseReleaseWatcher(QObject *parent = nullptr);
    ~CMouseReleaseWatcher() override;

    // Watches `button` (one at a time); watching costs an application event filter, so stop early.
    void Watch(Qt::MouseButton button);
    void Stop();
    bool IsWatching() const { return m_button != Qt::NoButton; }

signals:
    void SignalReleased();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Qt::MouseButton m_button = Qt::NoButton;
};

} // namespace PreviewPTZControl
