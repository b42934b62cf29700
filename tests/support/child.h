#pragma once

#include <QObject>
#include <QString>

// The descendant of `parent` with this object name, or null.
template <typename T>
T *child(const QObject *parent, const QString &objectName)
{
    return parent ? parent->findChild<T *>(objectName) : nullptr;
}

template <typename T>
T *child(const QObject *parent, const char *objectName)
{
    return child<T>(parent, QString::fromLatin1(objectName));
}
