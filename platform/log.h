#pragma once

#include <cstdarg>
#include <string>

#include "hilog/log.h"
#include "latest.h"

namespace StandIn {

struct LogLine {
    LogLevel level = LOG_DEBUG;
    unsigned int domain = 0;
    std::string tag;
    std::string message;

    /// 'D', 'I', 'W', 'E' or 'F'.
    char Letter() const;
};

using LogStore = Latest<LogLine, 8192>;
template <>
LogStore& LogStore::Get();

/// `HiLogPrint` with its arguments in a `va_list`. Any thread.
int WriteLog(LogLevel level, unsigned int domain, const char* tag, const char* format, va_list arguments);

}  // namespace StandIn
