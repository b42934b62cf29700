#pragma once

#include <QString>
#include <QStyle>
#include <QWidget>

#include <initializer_list>

namespace PreviewPTZControl {
namespace LockFramesPrivate {

struct ThemedName
{
    QWidget *widget;
    QString dark;
    QString white;
};

// The lock pages name their widgets per theme so the host style sheets can address them.
inline void ApplyTheme(bool white, std::initializer_list<ThemedName> names)
{
    for (const ThemedName &name : names) {
        name.widget->setObjectName(white ? name.white : name.dark);
        name.widget->style()->unpolish(name.widget);
        name.widget->style()->polish(name.widget);
    }
}

inline QString FormatClock(int seconds)
{
    return QString::asprintf("%02d:%02d:%02d", seconds / 3600, seconds % 3600 / 60, seconds % 60);
}

} // namespace LockFramesPrivate
} // namespace PreviewPTZControl
