#include <string>
#include <variant>

#include "analytics.h"
#include "functions.h"
#include "instance.h"
#include "internals.h"
#include "log.h"

namespace StandIn {
namespace {

using OHOS::HiviewDFX::HiAppEvent::Event;
using OHOS::HiviewDFX::HiAppEvent::EventConfig;
using OHOS::HiviewDFX::HiAppEvent::EventType;
using OHOS::HiviewDFX::HiAppEvent::ReportConfig;
using OHOS::HiviewDFX::HiAppEvent::TriggerCondition;
using StandIn::Make;

const char* NameOf(EventType type) {
    switch (type) {
        case EventType::FAULT:
            return "FAULT";
        case EventType::STATISTIC:
            return "STATISTIC";
        case EventType::SECURITY:
            return "SECURITY";
        case EventType::BEHAVIOR:
            break;
    }
    return "BEHAVIOR";
}

napi_value MakePair(napi_env env, const std::string& key, napi_value value) {
    const napi_value pair[] = {Make(env, key), value};
    return MakeArray(env, pair, [](napi_value item) { return item; });
}

napi_value Make(napi_env env, const Event& event) {
    napi_value params = MakeArray(env, Internals::ParamsOf(event), [env](const auto& param) {
        return MakePair(env, param.first,
                        std::visit([env](const auto& value) { return Make(env, value); }, param.second));
    });
    return ObjectMaker(env)
        .Set("domain", Internals::DomainOf(event))
        .Set("name", Internals::NameOf(event))
        .Set("type", NameOf(Internals::TypeOf(event)))
        .Set("params", params)
        .Object();
}

napi_value MakeTriggerCondition(napi_env env, const TriggerCondition& condition) {
    return ObjectMaker(env)
        .Set("row", condition.row)
        .Set("size", condition.size)
        .Set("timeout", condition.timeout)
        .Set("onStartup", condition.onStartup)
        .Set("onBackground", condition.onBackground)
        .Object();
}

napi_value MakeEventConfig(napi_env env, const EventConfig& config) {
    return ObjectMaker(env)
        .Set("domain", config.domain)
        .Set("name", config.name)
        .Set("isRealTime", config.isRealTime)
        .Object();
}

napi_value MakeProcessor(napi_env env, const ReportConfig& config) {
    napi_value eventConfigs =
        MakeArray(env, config.eventConfigs, [env](const EventConfig& event) { return MakeEventConfig(env, event); });
    return ObjectMaker(env)
        .Set("name", config.name)
        .Set("debugMode", config.debugMode)
        .Set("routeInfo", config.routeInfo)
        .Set("appId", config.appId)
        .Set("triggerCond", MakeTriggerCondition(env, config.triggerCond))
        .Set("userIdNames", config.userIdNames)
        .Set("userPropertyNames", config.userPropertyNames)
        .Set("eventConfigs", eventConfigs)
        .Object();
}

napi_value MakeLogLine(napi_env env, const LogLine& line) {
    return ObjectMaker(env)
        .Set("level", std::string(1, line.Letter()))
        .Set("domain", line.domain)
        .Set("tag", line.tag)
        .Set("message", line.message)
        .Object();
}

napi_value Logs(napi_env env) {
    return MakeArray(env, LogStore::Get().All(), [env](const LogLine& line) { return MakeLogLine(env, line); });
}

napi_value AnalyticsEvents(napi_env env) {
    return MakeArray(env, EventStore::Get().All(), [env](const Event& event) { return Make(env, event); });
}

napi_value AnalyticsProcessors(napi_env env) {
    auto make = [env](const ReportConfig& config) { return MakeProcessor(env, config); };
    return MakeArray(env, ProcessorStore::Get().All(), make);
}

}  // namespace

napi_value MakeRecord(napi_env env, const DeviceRecord& record) {
    ObjectMaker object(env);
    object.Set("kind", record.kind).Set("time", record.time);
    for (const auto& [name, value] : record.fields) {
        object.Set(name, std::visit([env](const auto& field) { return Make(env, field); }, value));
    }
    return object.Object();
}

bool DefineRecordFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"logs", Exposed<Logs>},
                            {"analyticsEvents", Exposed<AnalyticsEvents>},
                            {"analyticsProcessors", Exposed<AnalyticsProcessors>},
                            {"onRecord", On<&Instance::OnRecord>}});
}

}  // namespace StandIn
