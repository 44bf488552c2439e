#include <new>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "app_event.h"
#include "napi_base_context.h"
#include "pending.h"
#include "singleton.h"
#include "time_service_client.h"
#include "ui_content.h"

// The calls that make requests, and the delivery of their answers.

namespace Floors {
namespace {

using nlohmann::json;
using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;
using OHOS::AbilityRuntime::AbilityContext;
using OHOS::AbilityRuntime::Context;

// The requests of all benchmarks but the round trip. Nobody answers them.
std::vector<Pending*>& gUnanswered = *new std::vector<Pending*>();

/// In place of the object that reports in the module.
struct Reporter {};

void Answer(Pending& pending, const WantParams& data);

}  // namespace

int64_t Now() { return OHOS::MiscServices::TimeServiceClient::GetInstance()->GetBootTimeMs(); }

Pending& BeginUnanswered() {
    Pending& pending = *gUnanswered.emplace_back(new Pending());
    pending.begin = Now();
    return pending;
}

napi_value Promise(napi_env env, napi_value contextValue, Pending& pending) {
    SAY("BuildContextForPromise", "this is promise api");
    napi_value promise = nullptr;
    Must(napi_create_promise(env, &pending.deferred, &promise));
    CheckType(env, contextValue, napi_object);
    SAY("ParseAbilityContextReq", "begin ParseAbilityContextReq");
    bool isStage = false;
    Must(OHOS::AbilityRuntime::IsStageContext(env, contextValue, isStage));
    pending.context =
        Context::ConvertTo<AbilityContext>(OHOS::AbilityRuntime::GetStageModeContext(env, contextValue));
    SAY("ParseAbilityContextReq", "end ParseAbilityContextReq, get stage model ability context success");
    pending.env = env;
    return promise;
}

Want MakeWant(int32_t requestType) {
    Want want;
    want.SetElementName("com.lumora.tavik.velmor", "GamePlayerUIExtAbility");
    want.SetParam("requestType", requestType);
    return want;
}

void Open(Pending& pending, Want want) {
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
}

namespace {

void Settle(uv_work_t* work, int /*status*/) {
    std::unique_ptr<Pending> pending(static_cast<Pending*>(work));
    napi_env env = pending->env;
    napi_handle_scope scope = nullptr;
    napi_value data = nullptr;
    Must(napi_open_handle_scope(env, &scope));
    SAY("IsParseResultMessage", "IsParseResultMessage requestType=%{public}d", 7);
    SAY("CreateResultMessage", "CreateResultMessage set result[1] to undefined");
    Must(napi_get_undefined(env, &data));
    Must(napi_resolve_deferred(env, pending->deferred, data));
    Must(napi_close_handle_scope(env, scope));
    SAY("~BaseContext", "release enter");
    SAY("~BaseContext", "release deferred");
    SAY("~BaseContext", "release exit");
    pending.reset();
    SAY("DoMessageBackSuccess", "DoMessageBackSuccess release context");
}

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
    uv_loop_t* loop = nullptr;
    Must(napi_get_uv_event_loop(pending.env, &loop));
    if (uv_queue_work(loop, &pending, DoNothing, Settle) != 0) std::abort();
}

std::string ReadPurchase(napi_env env, napi_value purchase, Pending& /*pending*/) {
    json record;
    record["productId"] = ReadText(env, Property(env, purchase, "productId"));
    record["productType"] = ReadInt(env, Property(env, purchase, "productType"));
    record["developerPayload"] = ReadText(env, Property(env, purchase, "developerPayload"));
    record["reservedInfo"] = ReadText(env, Property(env, purchase, "reservedInfo"));
    return record.dump();
}

std::string ReadRole(napi_env env, napi_value role, Pending& /*pending*/) {
    SAY("ParseSavePlayerRoleReq", "begin ParseSavePlayerRoleReq");
    json record;
    for (const char* name :
         {"roleId", "roleName", "serverId", "serverName", "gamePlayerId", "teamPlayerId", "thirdOpenId"}) {
        record[name] = ReadText(env, Property(env, role, name));
    }
    SAY("ParseSavePlayerRoleReq", "end ParseSavePlayerRoleReq");
    return record.dump();
}

}  // namespace

napi_value Init(napi_env env, napi_callback_info info) {
    SAY("Init", "begin %{public}s", "Init");
    const int64_t begin = Now();
    const auto call = ReadCall<2>(env, info);
    SAY("Init", "%{public}s params size:%{public}lu", "Init", static_cast<unsigned long>(call.count));
    ReportEnd("init", begin, 401);
    ThrowError(env, 0, "Success");
    return call.undefined;
}

napi_value BindPlayer(napi_env env, napi_callback_info info) {
    SAY("BindPlayer", "begin %{public}s", "BindPlayer");
    const int64_t begin = Now();
    const auto call = ReadCall<3>(env, info);
    if (call.count < 3) {
        ReportEnd("bindPlayer", begin, 401);
        ThrowError(env, 401, "Parameter error.");
        return call.undefined;
    }
    auto* pending = new Pending();
    pending->begin = begin;
    const napi_value promise = Promise(env, call.values[0], *pending);
    CheckType(env, call.values[1], napi_string);
    std::string openId = ReadText(env, call.values[1]);
    CheckType(env, call.values[2], napi_string);
    std::string teamId = ReadText(env, call.values[2]);
    CheckNoException(env);
    SAY("ExecuteBindPlayer", "begin %{public}s", "ExecuteBindPlayer");
    Want want = MakeWant(7);
    want.SetParam("thirdOpenId", openId);
    want.SetParam("teamPlayerId", teamId);
    Open(*pending, std::move(want));
    SAY("ExecuteBindPlayer", "end %{public}s", "ExecuteBindPlayer");
    SAY("BindPlayer", "end %{public}s", "BindPlayer");
    return promise;
}

napi_value PrePurchase(napi_env env, napi_callback_info info) {
    return Request<3, ReadPurchase>(env, info, "PrePurchase", "ExecutePrePurchase", 4, "tavikExtra");
}

napi_value SavePlayerRole(napi_env env, napi_callback_info info) {
    return Request<3, ReadRole>(env, info, "SavePlayerRole", "ExecuteSavePlayerRole", 3, "tavikExtra");
}

napi_value Forget(napi_env /*env*/, napi_callback_info /*info*/) {
    for (Pending* pending : std::exchange(gUnanswered, {})) {
        delete pending;
    }
    return nullptr;
}

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
    napi_value text = nullptr;
    napi_value number = nullptr;
    napi_value error = nullptr;
    SAY("CreateBusinessError", "CreateBusinessError errCode: %{public}d errMsg: %{public}s", code, message);
    Must(napi_create_string_utf8(env, message, NAPI_AUTO_LENGTH, &text));
    Must(napi_create_int32(env, code, &number));
    Must(napi_create_error(env, number, text, &error));
    SAY("CreateBusinessError", "CreateBusinessError exit");
    Must(napi_throw(env, error));
    SAY("ThrowBusinessError", "ThrowBusinessError napi_throw status %{public}d", napi_ok);
}

}  // namespace Floors
