#pragma once

#include <cstdarg>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

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

/// The latest records of one kind; the oldest are dropped first. Thread-safe.
template <typename Record, size_t CAPACITY>
class Latest {
public:
    static Latest& Get();

    /// Returns its index among the records that are kept.
    size_t Append(Record record) {
        std::lock_guard<std::mutex> guard(mutex_);
        if (records_.size() == CAPACITY) records_.pop_front();
        records_.push_back(std::move(record));
        return records_.size() - 1;
    }
    /// A copy of the records, oldest first.
    std::deque<Record> All() {
        std::lock_guard<std::mutex> guard(mutex_);
        return records_;
    }
    void Clear() {
        std::lock_guard<std::mutex> guard(mutex_);
        records_.clear();
    }

private:
    std::mutex mutex_;  // guards the records
    std::deque<Record> records_;
};

/// The log and the application events.
using LogStore = Latest<LogLine, 8192>;
using EventStore = Latest<OHOS::HiviewDFX::HiAppEvent::Event, 65536>;
/// The processors that would report the events; a processor's index is its ID. Never forgotten.
using ProcessorStore = Latest<OHOS::HiviewDFX::HiAppEvent::ReportConfig, 1024>;

/// `HiLogPrint` with its arguments in a `va_list`. Any thread.
int WriteLog(LogLevel level, unsigned int domain, const char* tag, const char* format, va_list arguments);

/// Prints a warning for testers to stderr, as a line "game device: TEXT", unless the environment variable
/// GAMEAPI_LOG is "off". Any thread.
void Say(const std::string& text);

}  // namespace StandIn
