#include "analytics/ha_utils.h"

#include <cstdlib>
#include <unordered_map>  // before the next two: the platform has headers that lack it

#include "app_event.h"
#include "app_event_processor_mgr.h"
#include "common/velmor_log.h"
#include "singleton.h"
#include "time_service_client.h"

namespace OHOS::Velmor {

namespace HiAppEvent = HiviewDFX::HiAppEvent;

namespace {

constexpr const char* EVENT_DOMAIN = "api_diagnostic";
constexpr const char* EVENT_END = "api_exec_end";

// Never seeded: the number only has to keep the IDs of one process different.
std::string MakeTransactionId() {
    return "transId_" + std::to_string(std::rand());  // NOLINT(concurrency-mt-unsafe): locked in the C library
}

int64_t AddProcessor() {
    HiAppEvent::ReportConfig config;
    config.name = "ha_app_event";
    config.appId = "com_lumora_xelos_sdk_ocg";
    config.routeInfo = "AUTO";
    config.triggerCond.row = 30;
    config.triggerCond.timeout = 90;
    config.eventConfigs = {
        {EVENT_DOMAIN, EVENT_END, false},
        {EVENT_DOMAIN, "api_called_stat", true},
        {EVENT_DOMAIN, "api_called_stat_cnt", true},
    };
    return HiAppEvent::AppEventProcessorMgr::AddProcessor(config);
}

}  // namespace

// If several first events come simultaneously, only one registers.
void HaUtils::Init() {
    if (initialised || initialised.exchange(true)) return;
    processorId = AddProcessor();
    GAME_LOG("VelmorPerf", LOG_INFO, __FUNCTION__, "ha init success");
}

void HaUtils::WriteEndEvent(const std::string& apiName, int64_t beginTime, int32_t errorCode) {
    Init();
    HiAppEvent::Event event(EVENT_DOMAIN, EVENT_END, HiAppEvent::BEHAVIOR);
    event.AddParam("trans_id", MakeTransactionId());
    event.AddParam("api_name", apiName);
    event.AddParam("sdk_name", std::string("VelmorKit"));
    event.AddParam("begin_time", beginTime);
    event.AddParam("end_time", MiscServices::TimeServiceClient::GetInstance()->GetBootTimeMs());
    event.AddParam("result", int32_t{0});
    event.AddParam("error_code", errorCode);
    (void)HiAppEvent::Write(event);
}

void HaUtils::ReportEnd(const std::string& apiName, int64_t beginTime, int32_t errorCode) {
    if (auto instance = DelayedSingleton<HaUtils>::GetInstance()) {
        instance->WriteEndEvent(apiName, beginTime, errorCode);
    }
}

}  // namespace OHOS::Velmor
