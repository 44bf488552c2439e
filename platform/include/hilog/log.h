#ifndef PLATFORM_HILOG_LOG_H
#define PLATFORM_HILOG_LOG_H

#include <cstdint>

/// The system log. Callable from any thread.

enum LogType { LOG_CORE = 3 };

enum LogLevel { LOG_DEBUG = 3, LOG_INFO = 4, LOG_WARN = 5, LOG_ERROR = 6, LOG_FATAL = 7 };

/// Writes one line. `format` is a printf format whose conversions carry a privacy mark after the percent
/// sign,
/// `%{public}d` or `%{private}s`; `domain` is the 20-bit service domain and `tag` the subject, at most 31
/// bytes. A line is cut at 4095 bytes. Returns the bytes of the line, below 0 if it could not be formatted.
extern "C" int HiLogPrint(LogType type, LogLevel level, unsigned int domain, const char* tag,
                          const char* format, ...);

#endif
