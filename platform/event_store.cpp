#include "event_store.h"

#include <utility>

namespace StandIn {

EventStore& EventStore::Get() {
    static EventStore& store = *new EventStore();
    return store;
}

void EventStore::Write(Event event) {
    std::lock_guard<std::mutex> guard(mutex_);
    if (events_.size() == CAPACITY) events_.pop_front();
    events_.push_back(std::move(event));
}

std::deque<EventStore::Event> EventStore::Events() {
    std::lock_guard<std::mutex> guard(mutex_);
    return events_;
}

void EventStore::ClearEvents() {
    std::lock_guard<std::mutex> guard(mutex_);
    events_.clear();
}

int64_t EventStore::AddProcessor(const ReportConfig& config) {
    std::lock_guard<std::mutex> guard(mutex_);
    processors_.push_back(config);
    return static_cast<int64_t>(processors_.size()) - 1;
}

std::vector<EventStore::ReportConfig> EventStore::Processors() {
    std::lock_guard<std::mutex> guard(mutex_);
    return processors_;
}

}  // namespace StandIn
