#include "analytics.h"

#include "faults.h"
#include "forever.h"
#include "record_stream.h"
#include "served_call.h"

namespace StandIn {

template <>
EventStore& EventStore::Get() {
    return Forever<EventStore>();
}
template <>
ProcessorStore& ProcessorStore::Get() {
    return Forever<ProcessorStore>();
}

}  // namespace StandIn

namespace OHOS::HiviewDFX::HiAppEvent {

Event::Event(const std::string& domain, const std::string& name, EventType type)
    : domain_(domain), name_(name), type_(type) {}

#define ADD_PARAM(type) \
    void Event::AddParam(const std::string& key, type value) { params_.emplace_back(key, value); }
ADD_PARAM(bool)
ADD_PARAM(int32_t)
ADD_PARAM(int64_t)
ADD_PARAM(double)
ADD_PARAM(const std::string&)
ADD_PARAM(const std::vector<bool>&)
ADD_PARAM(const std::vector<int32_t>&)
ADD_PARAM(const std::vector<int64_t>&)
ADD_PARAM(const std::vector<double>&)
ADD_PARAM(const std::vector<std::string>&)

int Write(const Event& event) {
    if (StandIn::Faults::Trip(StandIn::Call::Write)) return -1;
    StandIn::MarkEffect();
    if (StandIn::RecordStream::HasSubscribers()) StandIn::RecordStream::Publish({"reported", {{"event", event}}});
    (void)StandIn::EventStore::Get().Append(event);
    return 0;
}

int64_t AppEventProcessorMgr::AddProcessor(const ReportConfig& config) {
    if (StandIn::Faults::Trip(StandIn::Call::AddProcessor)) return -1;
    return static_cast<int64_t>(StandIn::ProcessorStore::Get().Append(config));
}

}  // namespace OHOS::HiviewDFX::HiAppEvent
