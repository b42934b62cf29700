#include "tarn/base/logging.h"

#include <QMutex>
#include <QMutexLocker>
#include <QString>

#include <cstdarg>

namespace Tarn {
namespace Base {

Q_LOGGING_CATEGORY(lcClientInfo, "ZephClientInfo")

namespace {
QMutex g_lastMutex;
QString g_lastLine;

QString format(const char *fmt, va_list args)
{
    QString line = QString::vasprintf(fmt, args);
    QMutexLocker lock(&g_lastMutex);
    g_lastLine = line;
    return line;
}
} // namespace

const QLoggingCategory &clientInfoCategory()
{
    return lcClientInfo();
}

void LogInfo(const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const QString line = format(fmt, args);
    va_end(args);
    qCInfo(lcClientInfo).noquote() << line;
}

void LogWarning(const char *fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const QString line = format(fmt, args);
    va_end(args);
    qCWarning(lcClientInfo).noquote() << line;
}

QString LastLogLine()
{
    QMutexLocker lock(&g_lastMutex);
    return g_lastLine;
}

} // namespace Base
} // namespace Tarn
