#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace OHOS::HiviewDFX {

/// An event that a processor reports: immediately if `isRealTime`, otherwise with the next batch.
struct EventConfig {
    std::string domain;
    std::string name;
    bool isRealTime = false;
};

/// When a processor reports a batch: after `row` events or `timeout` seconds; 0 disables a rule.
struct TriggerCondition {
    int32_t row = 0;
    int32_t timeout = 0;
    bool onStartup = false;
    bool onBackground = false;
};

/// What a processor reports, where it sends it, and when.
struct ReportConfig {
    std::string name;
    std::string debugMode;
    std::string routeInfo;
    std::string appId;
    TriggerCondition triggerCond;
    std::map<std::string, std::string> userIds;
    std::map<std::string, std::string> userProperties;
    std::vector<EventConfig> eventConfigs;
};

class AppEventProcessorMgr {
public:
    /// Registers a processor. Returns its ID, 0 or above; negative if it was refused. Callable from any
    /// thread.
    static int64_t AddProcessor(const ReportConfig& config);
};

}  // namespace OHOS::HiviewDFX
