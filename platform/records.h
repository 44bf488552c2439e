#pragma once

#include <cstdarg>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "app_event.h"
#include "app_event_processor_mgr.h"
#include "hilog/log.h"

namespace StandIn {

struct LogLine {
    LogLevel level = LOG_DEBUG;
    unsigned int domain = 0;
    std::string tag;
    std::string message;

    /// 'D', 'I', 'W', 'E' or 'F'.
    char Letter() const;
};

/// The latest lines of the log, oldest forgotten first. Thread-safe.
class LogStore {
public:
    static LogStore& Get();

    void Append(LogLine line);
    /// A copy of the lines, oldest first.
    std::deque<LogLine> Lines();
    void Clear();

private:
    static constexpr size_t CAPACITY = 8192;

    std::mutex mutex_;  // guards the lines
    std::deque<LogLine> lines_;
};

/// `HiLogPrint` with its arguments in a list. Any thread.
int WriteLog(LogLevel level, unsigned int domain, const char* tag, const char* format, va_list arguments);

/// Tells the people who test a game what they did not ask for, as a line "game device: TEXT" on stderr,
/// unless the environment variable GAMEAPI_LOG is "off". Any thread.
void Say(const std::string& text);

/// The application events written so far, oldest forgotten first, and the processors that would report them.
/// Thread-safe.
class EventStore {
public:
    using Event = OHOS::HiviewDFX::Event;
    using ReportConfig = OHOS::HiviewDFX::ReportConfig;

    static EventStore& Get();

    void Write(Event event);
    /// A copy of the events, oldest first.
    std::deque<Event> Events();
    void ClearEvents();

    /// Returns the processor's id. A processor stays for the life of the process.
    int64_t AddProcessor(const ReportConfig& config);
    /// A copy of the processors in the order of their ids, the first of which is 0.
    std::vector<ReportConfig> Processors();

private:
    static constexpr size_t CAPACITY = 65536;

    std::mutex mutex_;  // guards what follows
    std::deque<Event> events_;
    std::vector<ReportConfig> processors_;
};

}  // namespace StandIn
