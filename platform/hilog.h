#ifndef PLATFORM_HILOG_H
#define PLATFORM_HILOG_H

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "hilog/log.h"

namespace StandIn {

struct LogLine {
    LogLevel level = LOG_DEBUG;
    unsigned int domain = 0;
    std::string tag;
    std::string message;
};

/// 'D', 'I', 'W', 'E' or 'F'.
char LetterOf(LogLevel level);

/// The latest lines of the log, oldest forgotten first. Thread-safe.
class LogStore
{
public:
    static LogStore& Get();

    void Append(LogLevel level, unsigned int domain, std::string_view tag, std::string_view message);
    /// A copy of the lines, oldest first.
    std::vector<LogLine> Lines();
    void Clear();

private:
    static constexpr size_t CAPACITY = 8192;

    std::mutex mutex_;
    std::vector<LogLine> slots_;  // a ring; its texts keep their memory for the lines to come
    size_t written_ = 0;          // lines since the last clear
};

}  // namespace StandIn

#endif
