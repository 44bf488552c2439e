#include <string>
#include <variant>

#include "analytics.h"
#include "functions.h"
#include "instance.h"
#include "internals.h"
#include "log.h"
#include "making.h"
#include "reading.h"

namespace StandIn {
namespace {

using OHOS::HiviewDFX::HiAppEvent::Event;
using OHOS::HiviewDFX::HiAppEvent::EventConfig;
using OHOS::HiviewDFX::HiAppEvent::EventType;
using OHOS::HiviewDFX::HiAppEvent::ReportConfig;
using OHOS::HiviewDFX::HiAppEvent::TriggerCondition;

struct ParamMaker {
    napi_env env;

    napi_value operator()(bool flag) const { return MakeFlag(env, flag); }
    napi_value operator()(double number) const { return MakeNumber(env, number); }
    napi_value operator()(int32_t number) const { return MakeNumber(env, number); }
    napi_value operator()(int64_t number) const { return MakeNumber(env, static_cast<double>(number)); }
    napi_value operator()(const std::string& text) const { return MakeText(env, text); }
    template <typename Value>
    napi_value operator()(const std::vector<Value>& values) const {
        return MakeArray(env, values, [this](const Value& value) { return (*this)(value); });
    }
};

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
    const napi_value pair[] = {MakeText(env, key), value};
    return MakeArray(env, pair, [](napi_value item) { return item; });
}

napi_value MakeEvent(napi_env env, const Event& event) {
    napi_value params = MakeArray(env, Internals::ParamsOf(event), [env](const auto& param) {
        return MakePair(env, param.first, std::visit(ParamMaker{env}, param.second));
    });
    return ObjectMaker(env)
        .Text("domain", Internals::DomainOf(event))
        .Text("name", Internals::NameOf(event))
        .Text("type", NameOf(Internals::TypeOf(event)))
        .Set("params", params)
        .Object();
}

template <typename Texts>
napi_value MakeTexts(napi_env env, const Texts& texts) {
    return MakeArray(env, texts, [env](const std::string& text) { return MakeText(env, text); });
}

struct FieldMaker {
    napi_env env;

    napi_value operator()(double number) const { return MakeNumber(env, number); }
    napi_value operator()(const std::string& text) const { return MakeText(env, text); }
    napi_value operator()(const std::vector<std::string>& texts) const { return MakeTexts(env, texts); }
    napi_value operator()(const OHOS::AAFwk::WantParams& params) const { return MakeParamsObject(env, params); }
    napi_value operator()(const Event& event) const { return MakeEvent(env, event); }
};

napi_value MakeTriggerCondition(napi_env env, const TriggerCondition& condition) {
    return ObjectMaker(env)
        .Number("row", condition.row)
        .Number("size", condition.size)
        .Number("timeout", condition.timeout)
        .Flag("onStartup", condition.onStartup)
        .Flag("onBackground", condition.onBackground)
        .Object();
}

napi_value MakeEventConfig(napi_env env, const EventConfig& config) {
    return ObjectMaker(env)
        .Text("domain", config.domain)
        .Text("name", config.name)
        .Flag("isRealTime", config.isRealTime)
        .Object();
}

napi_value MakeProcessor(napi_env env, const ReportConfig& config) {
    napi_value eventConfigs =
        MakeArray(env, config.eventConfigs, [env](const EventConfig& event) { return MakeEventConfig(env, event); });
    return ObjectMaker(env)
        .Text("name", config.name)
        .Flag("debugMode", config.debugMode)
        .Text("routeInfo", config.routeInfo)
        .Text("appId", config.appId)
        .Set("triggerCond", MakeTriggerCondition(env, config.triggerCond))
        .Set("userIdNames", MakeTexts(env, config.userIdNames))
        .Set("userPropertyNames", MakeTexts(env, config.userPropertyNames))
        .Set("eventConfigs", eventConfigs)
        .Object();
}

napi_value MakeLogLine(napi_env env, const LogLine& line) {
    return ObjectMaker(env)
        .Text("level", std::string(1, line.Letter()))
        .Number("domain", line.domain)
        .Text("tag", line.tag)
        .Text("message", line.message)
        .Object();
}

napi_value Logs(napi_env env, napi_callback_info /*info*/) {
    return MakeArray(env, LogStore::Get().All(), [env](const LogLine& line) { return MakeLogLine(env, line); });
}

napi_value AnalyticsEvents(napi_env env, napi_callback_info /*info*/) {
    return MakeArray(env, EventStore::Get().All(), [env](const Event& event) { return MakeEvent(env, event); });
}

napi_value AnalyticsProcessors(napi_env env, napi_callback_info /*info*/) {
    return MakeArray(env, ProcessorStore::Get().All(),
                     [env](const ReportConfig& config) { return MakeProcessor(env, config); });
}

}  // namespace

napi_value MakeRecord(napi_env env, const DeviceRecord& record) {
    ObjectMaker object(env);
    object.Text("kind", record.kind).Number("time", static_cast<double>(record.time));
    for (const auto& [name, value] : record.fields) {
        object.Set(name, std::visit(FieldMaker{env}, value));
    }
    return object.Object();
}

bool DefineRecordFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"logs", Logs},
                            {"analyticsEvents", AnalyticsEvents},
                            {"analyticsProcessors", AnalyticsProcessors},
                            {"onRecord", On<&Instance::OnRecord>}});
}

}  // namespace StandIn
