#pragma once

#include "tarn/base/tarn_base_export.h"

#include <QLoggingCategory>

namespace Tarn {
namespace Base {

TARN_BASE_EXPORT const QLoggingCategory &clientInfoCategory();

// printf-style formatting into one log line on the "ZephClientInfo" channel.
TARN_BASE_EXPORT void LogInfo(const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(1, 2);
TARN_BASE_EXPORT void LogWarning(const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(1, 2);

// Last line written, for tests of the line format.
TARN_BASE_EXPORT QString LastLogLine();

} // namespace Base
} // namespace Tarn

// Every line starts with "[<qualified function>(<line>)] - ".
#define ZEPH_LOG_INFO(fmt, ...) ::Tarn::Base::LogInfo("[%s(%d)] - " fmt, Q_FUNC_INFO, __LINE__, ##__VA_ARGS__)
#define ZEPH_LOG_WARN(fmt, ...) ::Tarn::Base::LogWarning("[%s(%d)] - " fmt, Q_FUNC_INFO, __LINE__, ##__VA_ARGS__)
