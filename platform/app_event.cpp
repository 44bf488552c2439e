#include "app_event.h"

#include <utility>

#include "faults.h"
#include "modals.h"
#include "records.h"

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

namespace OHOS::HiviewDFX {

Event::Event(std::string domain, std::string name, EventType type)
    : domain_(std::move(domain)), name_(std::move(name)), type_(type) {
    params_.reserve(USUAL_PARAMS);
}

void Event::AddParam(std::string key, int32_t value) { params_.emplace_back(std::move(key), value); }

void Event::AddParam(std::string key, int64_t value) { params_.emplace_back(std::move(key), value); }

void Event::AddParam(std::string key, std::string value) {
    params_.emplace_back(std::move(key), std::move(value));
}

int Write(Event event) {
    if (StandIn::Faults::Trip(StandIn::Call::Write)) return -1;
    StandIn::NoteEffect();
    StandIn::EventStore::Get().Write(std::move(event));
    return 0;
}

int64_t AppEventProcessorMgr::AddProcessor(const ReportConfig& config) {
    return StandIn::Faults::Trip(StandIn::Call::AddProcessor)
               ? -1
               : StandIn::EventStore::Get().AddProcessor(config);
}

}  // namespace OHOS::HiviewDFX
