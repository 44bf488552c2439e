#include "napi/game_player_extension_ability.h"

#include <iterator>

#include "common/env_registry.h"
#include "common/js_value_helpers.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "napi_base_context.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::AbilityRuntime::AbilityContext;
using OHOS::AbilityRuntime::Context;
using OHOS::AbilityRuntime::UIExtensionContext;

namespace {

constexpr napi_property_descriptor AsProperty(const char* name, napi_callback method) {
    return {name, nullptr, method, nullptr, nullptr, nullptr, napi_default, nullptr};
}

constexpr napi_property_descriptor METHODS[] = {
#define REQUEST(type, number, Method, name, flags) AsProperty(name, Manager::Method),
#define RESERVED(type, number, name)
#include "common/requests.def"
    AsProperty("syncTraceId", Manager::SyncTraceId),
    AsProperty("on", Manager::On),
    AsProperty("off", Manager::Off),
    AsProperty("reportEventOperation", Manager::ReportEventOperation),
    AsProperty("onEventCallback", Manager::OnEventCallback),
};

// One environment per thread is expected: a later one on the same thread is not registered. An environment
// without a clean-up hook works like any other; `SaveEnvInfo` removes it when its handle is reused.
void RegisterEnvironment(napi_env env) {
    static thread_local bool hooked = false;
    if (hooked) return;
    hooked = true;
    gEnvInfo = std::make_shared<EnvInfo>(env);
    auto unregister = [](void* info) { DeleteEnvInfo(static_cast<EnvInfo*>(info)); };
    (void)napi_add_env_cleanup_hook(env, unregister, gEnvInfo.get());
    SaveEnvInfo(gEnvInfo);
}

// Like the platform's own status check: throws a plain error, unless an exception is already pending.
void ThrowLastError(napi_env env) {
    const napi_extended_error_info* info = nullptr;
    (void)napi_get_last_error_info(env, &info);
    // Read now, because the next call clears what `info` points to.
    const char* message = info != nullptr ? info->error_message : nullptr;
    if (!IsExceptionPending(env)) {
        (void)napi_throw_error(env, nullptr, message != nullptr ? message : "empty error message");
    }
}

}  // namespace

napi_value Manager::Entry(napi_env env, napi_value exports) {
    GAME_LOGI("begin Entry");
    RegisterEnvironment(env);
    if (napi_define_properties(env, exports, std::size(METHODS), METHODS) != napi_ok) {
        ThrowBusinessError(env, ERROR_SYSTEM_INTERNAL, "");
        return nullptr;
    }
    GAME_LOGI("end Entry");
    return exports;
}

bool Manager::BuildContextForCallback(napi_env env, BaseContext& context) {
    GAME_LOGI("this is callback api");
    const std::optional<napi_valuetype> type = TypeOf(env, context.callbackValue);
    if (!type) return false;
    if (type == napi_function &&
        napi_create_reference(env, context.callbackValue, 1, &context.callbackRef) != napi_ok) {
        return false;
    }
    return ParseAbilityContextReq(env, context.contextValue, context);
}

bool Manager::BuildContextForPromise(napi_env env, BaseContext& context, napi_value& promise) {
    GAME_LOGI("this is promise api");
    if (napi_create_promise(env, &context.deferred, &promise) != napi_ok) return false;
    return ParseAbilityContextReq(env, context.contextValue, context);
}

bool Manager::ParseAbilityContextReq(napi_env env, napi_value value, BaseContext& context) {
    if (!ValidateTypeNotEmpty(env, value)) return false;
    GAME_LOGI("begin ParseAbilityContextReq");
    bool isStage = false;
    if (OHOS::AbilityRuntime::IsStageContext(env, value, isStage) != napi_ok || !isStage) {
        GAME_LOGE("it is not a stage mode");
        return false;
    }
    std::shared_ptr<Context> stageContext = OHOS::AbilityRuntime::GetStageModeContext(env, value);
    if (stageContext == nullptr) {
        GAME_LOGE("get context failed");
        return false;
    }
    context.abilityContext = Context::ConvertTo<AbilityContext>(stageContext);
    if (context.abilityContext != nullptr) {
        GAME_LOGI("end ParseAbilityContextReq, get stage model ability context success");
        return true;
    }
    context.extensionContext = Context::ConvertTo<UIExtensionContext>(stageContext);
    if (context.extensionContext != nullptr) {
        GAME_LOGI("end ParseAbilityContextReq, get stage model extension context success");
        return true;
    }
    GAME_LOGI("end ParseAbilityContextReq");
    return false;
}

void Manager::ReturnCallbackOrPromise(napi_env env, const BaseContext& context, napi_value error,
                                      napi_value data) {
    napi_value result[] = {error, data};
    napi_status status = napi_get_null(env, &result[context.errCode == ERROR_SUCCESS ? 0 : 1]);
    if (status == napi_ok) status = Settle(env, context, context.errCode != ERROR_SUCCESS, result);
    if (status != napi_ok) ThrowLastError(env);
}

}  // namespace TAVIK::GAME_PLAYER
