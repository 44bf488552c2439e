#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace OHOS::HiviewDFX::HiAppEvent {

/// An event that a processor reports: immediately if `isRealTime`, otherwise with the next batch.
struct EventConfig {
    std::string domain;
    std::string name;
    bool isRealTime = false;
};

/// When a processor reports a batch: after `row` events, `size` bytes or `timeout` seconds; 0 disables a rule.
struct TriggerCondition {
    int row = 0;
    int size = 0;
    int timeout = 0;
    bool onStartup = false;
    bool onBackground = false;
};

/// What a processor reports, where it sends it, and when.
struct ReportConfig {
    std::string name;
    bool debugMode = false;
    std::string routeInfo;
    std::string appId;
    TriggerCondition triggerCond;
    std::unordered_set<std::string> userIdNames;
    std::unordered_set<std::string> userPropertyNames;
    std::vector<EventConfig> eventConfigs;
};

}  // namespace OHOS::HiviewDFX::HiAppEvent
