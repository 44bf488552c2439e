#include "app_event.h"

#include "app_event_processor_mgr.h"
#include "event_store.h"
#include "faults.h"

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
    if (StandIn::Faults::Trip("Write")) return -1;
    StandIn::EventStore::Get().Write(std::move(event));
    return 0;
}

int64_t AppEventProcessorMgr::AddProcessor(const ReportConfig& config) {
    return StandIn::Faults::Trip("AddProcessor") ? -1 : StandIn::EventStore::Get().AddProcessor(config);
}

}  // namespace OHOS::HiviewDFX
