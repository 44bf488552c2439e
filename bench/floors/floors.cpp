#include <uv.h>

#include <cstring>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "ability_context.h"
#include "app_event.h"
#include "environment.h"
#include "floors.h"
#include "napi_base_context.h"
#include "singleton.h"
#include "time_service_client.h"
#include "want.h"

// The module's methods, and the delivery of answers and events. The addon serves the one environment that loads it: the
// main thread's, for as long as the process lives.

namespace Floors {
namespace {

using nlohmann::json;
using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;
using OHOS::AbilityRuntime::AbilityContext;

/// A request that waits for its answer, and the work that brings that to JS.
struct Pending : uv_work_t {
    napi_env env = nullptr;
    napi_deferred deferred = nullptr;
    std::shared_ptr<AbilityContext> context;
    int32_t sessionId = 0;
    int64_t begin = 0;  // in boot milliseconds
};

struct Listener {
    napi_ref function = nullptr;
    napi_ref self = nullptr;
};

/// An event on its way to one listener.
struct Delivery : uv_work_t {
    napi_env env = nullptr;
    Listener listener;
    std::shared_ptr<const std::string> info;
};

/// In place of the object that reports in the module.
struct Reporter {};

std::vector<Listener>& gListeners = *new std::vector<Listener>();
// The requests of all benchmarks but the round trip. Nobody answers them.
std::vector<std::unique_ptr<Pending>>& gUnanswered = *new std::vector<std::unique_ptr<Pending>>();

int64_t Now() { return OHOS::MiscServices::TimeServiceClient::GetInstance()->GetBootTimeMs(); }

/// The analytics event at the end of a call.
void ReportEnd(const char* api, int64_t begin, int32_t code) {
    using namespace OHOS::HiviewDFX::HiAppEvent;
    const auto reporter = OHOS::DelayedSingleton<Reporter>::GetInstance();
    Event event("api_diagnostic", "api_exec_end", BEHAVIOR);
    event.AddParam("trans_id", "transId_" + std::to_string(std::rand()));  // NOLINT(concurrency-mt-unsafe)
    event.AddParam("api_name", std::string(api));
    event.AddParam("sdk_name", std::string("VelmorKit"));
    event.AddParam("begin_time", begin);
    event.AddParam("end_time", Now());
    event.AddParam("result", int32_t{0});
    event.AddParam("error_code", code);
    (void)Write(event);
}

void ThrowError(napi_env env, int32_t code, const char* message) {
    SAY("CreateBusinessError", "CreateBusinessError errCode: %{public}d errMsg: %{public}s", code, message);
    napi_value text = Get(napi_create_string_utf8, env, message, NAPI_AUTO_LENGTH);
    napi_value number = Get(napi_create_int32, env, code);
    napi_value error = Get(napi_create_error, env, number, text);
    SAY("CreateBusinessError", "CreateBusinessError exit");
    Must(napi_throw(env, error));
    SAY("ThrowBusinessError", "ThrowBusinessError napi_throw status %{public}d", napi_ok);
}

void CheckType(napi_env env, napi_value value, napi_valuetype expected) {
    if (Get<napi_valuetype>(napi_typeof, env, value) != expected) std::abort();
}

/// The promise of a request in the context that JS passed.
napi_value Promise(napi_env env, napi_value contextValue, Pending& pending) {
    using namespace OHOS::AbilityRuntime;
    SAY("BuildContextForPromise", "this is promise api");
    napi_value promise = Get(napi_create_promise, env, &pending.deferred);
    CheckType(env, contextValue, napi_object);
    SAY("ParseAbilityContextReq", "begin ParseAbilityContextReq");
    bool isStage = false;
    Must(IsStageContext(env, contextValue, isStage));
    pending.context = Context::ConvertTo<AbilityContext>(GetStageModeContext(env, contextValue));
    SAY("ParseAbilityContextReq", "end ParseAbilityContextReq, get stage model ability context success");
    pending.env = env;
    return promise;
}

void Settle(uv_work_t* work, int /*status*/) {
    std::unique_ptr<Pending> pending(static_cast<Pending*>(work));
    napi_env env = pending->env;
    const auto scope = Get<napi_handle_scope>(napi_open_handle_scope, env);
    SAY("IsParseResultMessage", "IsParseResultMessage requestType=%{public}d", 7);
    SAY("CreateResultMessage", "CreateResultMessage set result[1] to undefined");
    Must(napi_resolve_deferred(env, pending->deferred, Get(napi_get_undefined, env)));
    Must(napi_close_handle_scope(env, scope));
    SAY("~BaseContext", "release enter");
    SAY("~BaseContext", "release deferred");
    SAY("~BaseContext", "release exit");
    pending.reset();
    SAY("DoMessageBackSuccess", "DoMessageBackSuccess release context");
}

void DoNothing(uv_work_t* /*work*/) {}

// On the UI thread. An answer that comes while its modal still opens finds no ID yet, and closes nothing.
void Answer(Pending& pending, const WantParams& data) {
    SAY("OnReceive", "OnReceive enter");
    if (data.GetIntParam("resultCode", 0) != 0) std::abort();
    LOG_LINE(LOG_WARN, "DealResponseForReceive", "DealResponseForReceive API not supported");
    SAY("SendMessageBack", "SendMessageBack %{public}s", "bindPlayer");
    SAY("SendMessageBack", "SendMessageBack isResetContext is true and close modal");
    pending.context->GetUIContent()->CloseModalUIExtension(pending.sessionId);
    SAY("CloseModalUIExtension", "CloseModalUIExtension closed");
    ReportEnd("bindPlayer", pending.begin, 0);
    // The module allocates a record of the delivery here. This one is the request itself.
    operator delete(operator new(sizeof(Pending), std::nothrow));
    auto* loop = Get<uv_loop_t*>(napi_get_uv_event_loop, pending.env);
    if (uv_queue_work(loop, &pending, DoNothing, Settle) != 0) std::abort();
}

/// Opens the modal. `step` is the module's function that does: "Execute" and the name of the method.
void Open(Pending& pending, const char* step, int32_t type, Want want) {
    SAY(step, "begin %{public}s", step);
    want.SetElementName("com.lumora.tavik.velmor", "GamePlayerUIExtAbility");
    want.SetParam("requestType", type);
    SAY("ModalUICallback", "constructor ModalUICallback");
    want.SetParam("ability.want.params.uiExtensionType", std::string("sys/commonUI"));
    want.SetParam("traceId", std::string());
    SAY("GetUIContent", "GetUIContent abilityContext is not nullptr");
    OHOS::Ace::ModalUIExtensionCallbacks callbacks;
    callbacks.onRelease = [](int32_t) {};
    callbacks.onResult = [](int32_t, const Want&) {};
    callbacks.onReceive = [&pending](const WantParams& data) { Answer(pending, data); };
    callbacks.onError = [](int32_t, const std::string&, const std::string&) {};
    OHOS::Ace::ModalUIExtensionConfig config;
    config.isProhibitBack = config.isAllowedBeCovered = true;
    config.prohibitedRemoveByRouter = config.prohibitedRemoveByNavigation = true;
    pending.sessionId = pending.context->GetUIContent()->CreateModalUIExtension(want, callbacks, config);
    SAY("StartUIExtensionAbility", "StartUIExtensionAbility create modal succeeded");
    SAY(step, "end %{public}s", step);
    const char* method = step + std::strlen("Execute");
    SAY(method, "end %{public}s", method);
}

std::string ReadPurchase(napi_env env, napi_value purchase, AbilityContext& /*context*/) {
    json record;
    record["productId"] = ReadText(env, Property(env, purchase, "productId"));
    record["productType"] = ReadInt(env, Property(env, purchase, "productType"));
    record["developerPayload"] = ReadText(env, Property(env, purchase, "developerPayload"));
    record["reservedInfo"] = ReadText(env, Property(env, purchase, "reservedInfo"));
    return record.dump();
}

std::string ReadRole(napi_env env, napi_value role, AbilityContext& /*context*/) {
    SAY("ParseSavePlayerRoleReq", "begin ParseSavePlayerRoleReq");
    json record;
    for (const char* name :
         {"roleId", "roleName", "serverId", "serverName", "gamePlayerId", "teamPlayerId", "thirdOpenId"}) {
        record[name] = ReadText(env, Property(env, role, name));
    }
    SAY("ParseSavePlayerRoleReq", "end ParseSavePlayerRoleReq");
    return record.dump();
}

/// A request that sends one record under `key`, which READ makes of the second argument. Nobody answers it.
template <std::string (*READ)(napi_env env, napi_value object, AbilityContext& context)>
napi_value Request(napi_env env, napi_callback_info info, const char* step, int32_t type, const char* key) {
    const char* method = step + std::strlen("Execute");
    SAY(method, "begin %{public}s", method);
    Pending& pending = *gUnanswered.emplace_back(std::make_unique<Pending>());
    pending.begin = Now();
    const Call call = ReadCall(env, info);
    SAY(method, "%{public}s params size:%{public}zu", method, call.count);
    const napi_value promise = Promise(env, call.values[0], pending);
    CheckType(env, call.values[1], napi_object);
    Want want;
    want.SetParam(key, READ(env, call.values[1], *pending.context));
    CheckNoException(env);
    Open(pending, step, type, std::move(want));
    return promise;
}

/// init(): throws, as it lacks its context.
napi_value Init(napi_env env, napi_callback_info info) {
    SAY("Init", "begin %{public}s", "Init");
    const int64_t begin = Now();
    const Call call = ReadCall(env, info);
    SAY("Init", "%{public}s params size:%{public}zu", "Init", call.count);
    ReportEnd("init", begin, 401);
    ThrowError(env, 0, "Success");
    return call.undefined;
}

/// bindPlayer(context, openId, teamId); throws without the IDs.
napi_value BindPlayer(napi_env env, napi_callback_info info) {
    SAY("BindPlayer", "begin %{public}s", "BindPlayer");
    const int64_t begin = Now();
    const Call call = ReadCall(env, info);
    if (call.count < 3) {
        ReportEnd("bindPlayer", begin, 401);
        ThrowError(env, 401, "Parameter error.");
        return call.undefined;
    }
    auto* pending = new Pending();
    pending->begin = begin;
    const napi_value promise = Promise(env, call.values[0], *pending);
    CheckType(env, call.values[1], napi_string);
    Want want;
    want.SetParam("thirdOpenId", ReadText(env, call.values[1]));
    CheckType(env, call.values[2], napi_string);
    want.SetParam("teamPlayerId", ReadText(env, call.values[2]));
    CheckNoException(env);
    Open(*pending, "ExecuteBindPlayer", 7, std::move(want));
    return promise;
}

/// prePurchase(context, purchase)
napi_value PrePurchase(napi_env env, napi_callback_info info) {
    return Request<ReadPurchase>(env, info, "ExecutePrePurchase", 4, "tavikExtra");
}

/// savePlayerRole(context, role)
napi_value SavePlayerRole(napi_env env, napi_callback_info info) {
    return Request<ReadRole>(env, info, "ExecuteSavePlayerRole", 3, "tavikExtra");
}

/// unionLogin(context, login)
napi_value UnionLogin(napi_env env, napi_callback_info info) {
    return Request<ReadLogin>(env, info, "ExecuteUnionLogin", 10, "unionLoginParam");
}

/// forget(): the requests that nobody answers. The device must have forgotten them.
napi_value Forget(napi_env /*env*/, napi_callback_info /*info*/) {
    gUnanswered.clear();
    return nullptr;
}

napi_value MakeEvent(napi_env env, const std::string& info) {
    napi_value event = Get(napi_create_object, env);
    Must(napi_set_named_property(env, event, "event", Get(napi_create_int32, env, 0)));
    napi_value text = Get(napi_create_string_utf8, env, info.data(), info.size());
    Must(napi_set_named_property(env, event, "resultInfo", text));
    return event;
}

void Deliver(uv_work_t* work, int /*status*/) {
    SAY("DoGameEventWork", "DoGameEventWork enter");
    std::unique_ptr<Delivery> delivery(static_cast<Delivery*>(work));
    napi_env env = delivery->env;
    const auto scope = Get<napi_handle_scope>(napi_open_handle_scope, env);
    napi_value event = MakeEvent(env, *delivery->info);
    napi_value self = Get(napi_get_reference_value, env, delivery->listener.self);
    napi_value function = Get(napi_get_reference_value, env, delivery->listener.function);
    Must(napi_call_function(env, self, function, 1, &event, nullptr));
    Must(napi_close_handle_scope(env, scope));
    delivery.reset();
    SAY("DoGameEventWork", "DoGameEventWork exit, callBack status %{public}d", 1);
}

/// listen(listener): for the event below.
napi_value Listen(napi_env env, napi_callback_info info) {
    const Call call = ReadCall(env, info);
    const auto keep = [env](napi_value value) { return Get<napi_ref>(napi_create_reference, env, value, 1); };
    gListeners.push_back({keep(call.values[0]), keep(call.self)});
    return call.undefined;
}

/// onEventCallback(result)
napi_value OnEventCallback(napi_env env, napi_callback_info info) {
    SAY("OnEventCallback", "begin OnEventCallback");
    const Call call = ReadCall(env, info);
    const napi_value result = call.values[0];
    if (ReadInt(env, Property(env, result, "resultCode")) != 1002000015) std::abort();
    auto resultInfo = std::make_shared<const std::string>(ReadText(env, Property(env, result, "resultInfo")));
    CheckNoException(env);
    SAY("DoGameEvent", "DoGameEvent %{public}s[%{public}d] called", "playerChanged", 0);
    SAY("OnEventCallback", "OnEventCallback enter");
    for (const Listener& listener : gListeners) {
        auto* delivery = new (std::nothrow) Delivery{{}, env, listener, resultInfo};
        auto* loop = Get<uv_loop_t*>(napi_get_uv_event_loop, env);
        if (uv_queue_work(loop, delivery, DoNothing, Deliver) != 0) std::abort();
    }
    SAY("OnEventCallback", "OnEventCallback uv_queue_work success");
    SAY("~BaseContext", "release enter");
    SAY("~BaseContext", "release exit");
    SAY("OnEventCallback", "OnEventCallback switch game account event callback end");
    SAY("OnEventCallback", "end OnEventCallback");
    return call.undefined;
}

}  // namespace

NAPI_MODULE_INIT() {
    (void)StandIn::Environment::Attach(env);
    const std::pair<const char*, napi_callback> methods[] = {
        {"init", Init},
        {"bindPlayer", BindPlayer},
        {"prePurchase", PrePurchase},
        {"savePlayerRole", SavePlayerRole},
        {"unionLogin", UnionLogin},
        {"forget", Forget},
        {"listen", Listen},
        {"onEventCallback", OnEventCallback},
    };
    for (const auto& [name, callback] : methods) {
        const auto function = Get(napi_create_function, env, name, NAPI_AUTO_LENGTH, callback, nullptr);
        Must(napi_set_named_property(env, exports, name, function));
    }
    return exports;
}

}  // namespace Floors
