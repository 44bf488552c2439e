#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "app_event.h"
#include "app_event_processor_mgr.h"

namespace StandIn {

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

    std::mutex mutex_;
    std::deque<Event> events_;
    std::vector<ReportConfig> processors_;
};

}  // namespace StandIn
