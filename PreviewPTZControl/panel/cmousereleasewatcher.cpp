#include "panel/cmousereleasewatcher.h"

#include <QCoreApplication>
#include <QMouseEvent>

namespace PreviewPTZControl {

CMouseReleaseWatcher::CMouseReleaseWatcher(QObject *parent)
    : QObject(parent)
{
}

CMouseReleaseWatcher::~CMouseReleaseWatcher()
{
    Stop();
}

void CMouseReleaseWatcher::Watch(Qt::MouseButton button)
{
    if (button == Qt::NoButton) {
        Stop();
        return;
    }
    if (!IsWatching() && QCoreApplication::instance())
        QCoreApplication::instance()->installEventFilter(this);
    m_button = button;
}

void CMouseReleaseWatcher::Stop()
{
    if (!IsWatching())
        return;
    m_button = Qt::NoButton;
    if (QCoreApplication::instance())
        QCoreApplication::instance()->removeEventFilter(this);
}

bool CMouseReleaseWatcher::eventFilter(QObject *watched, QEvent *event)
{
    // Seen first by the window, then by the widget under the grab: listeners take it as often as it comes.
    if (event->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent *>(event)->button() == m_button)
        emit SignalReleased();
    return QObject::eventFilter(watched, event);
}

} // namespace PreviewPTZControl
