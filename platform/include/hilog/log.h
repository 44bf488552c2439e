#pragma once

#include <cstddef>

/// The system log. Callable from any thread.

/// What a source logs under, unless it redefines these two: its service domain, 20 bits, and its subject.
#ifndef LOG_DOMAIN
#define LOG_DOMAIN 0
#endif
#ifndef LOG_TAG
#define LOG_TAG NULL
#endif

enum LogType { LOG_CORE = 3 };

enum LogLevel { LOG_DEBUG = 3, LOG_INFO = 4, LOG_WARN = 5, LOG_ERROR = 6, LOG_FATAL = 7 };

// GCC does not know privacy marks; clang checks formats that contain them.
#ifdef __clang__
#define HILOG_FORMAT_CHECK __attribute__((format(os_log, 5, 6)))
#else
#define HILOG_FORMAT_CHECK
#endif

/// Writes one line. `format` is a printf format whose conversions may carry a privacy mark after the percent sign,
/// `%{public}d` or `%{private}s`. A line is cut off at 4095 bytes. Returns the number of bytes written, or -1 if the
/// tag is null.
extern "C" int HiLogPrint(LogType type, LogLevel level, unsigned int domain, const char* tag, const char* format,
                          ...) HILOG_FORMAT_CHECK;
