#include "app_event.h"

#include "app_event_processor_mgr.h"
#include "event_store.h"
#include "faults.h"

namespace OHOS::HiviewDFX {

Event::Event(std::string domain, std::string name, EventType type)
    : domain_(std::move(domain)), name_(std::move(name)), type_(type)
{
}

void Event::AddParam(const std::string& key, int32_t value)
{
    params_.emplace_back(key, value);
}

void Event::AddParam(const std::string& key, int64_t value)
{
    params_.emplace_back(key, value);
}

void Event::AddParam(const std::string& key, const std::string& value)
{
    params_.emplace_back(key, value);
}

int Write(const Event& event)
{
    if (StandIn::Faults::Trip("Write")) {
        return -1;
    }
    StandIn::EventStore::Get().Write(event);
    return 0;
}

int64_t AppEventProcessorMgr::AddProcessor(const ReportConfig& config)
{
    return StandIn::Faults::Trip("AddProcessor") ? -1 : StandIn::EventStore::Get().AddProcessor(config);
}

}  // namespace OHOS::HiviewDFX
