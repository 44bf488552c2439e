#include "napi/game_player_extension_ability.h"

#include <iterator>
#include <string>
#include <utility>

#include "analytics/ha_utils.h"
#include "common/js_value_helpers.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "events/game_player_event_callback.h"
#include "modal/modal_ui_callback.h"
#include "napi/request_shape.h"
#include "napi_base_context.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::AbilityRuntime::AbilityContext;
using OHOS::AbilityRuntime::Context;
using OHOS::AbilityRuntime::UIExtensionContext;
using OHOS::Velmor::HaUtils;

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

// One environment per thread is expected: a later one on the same thread is not registered. An environment without a
// clean-up hook works like any other; `SaveEnvInfo` removes it when its handle is reused.
void RegisterEnvironment(napi_env env) {
    static thread_local bool hooked = false;
    if (hooked) return;
    hooked = true;
    gEnvInfo = std::make_shared<EnvInfo>(env);
    auto unregister = [](void* info) { DeleteEnvInfo(static_cast<EnvInfo*>(info)); };
    (void)napi_add_env_cleanup_hook(env, unregister, gEnvInfo.get());
    SaveEnvInfo(gEnvInfo);
}

bool ValidateTypeNotEmpty(napi_env env, napi_value value) {
    const napi_valuetype type = TypeOf(env, value).value_or(napi_undefined);
    if (type == napi_undefined || type == napi_null) {
        GAME_LOGE("param invalid");
        return false;
    }
    return true;
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

int32_t CheckEventType(const std::string& eventType) {
    if (eventType == EVENT_PLAYER_CHANGED) return ERROR_SUCCESS;
    if (eventType != EVENT_GAME_ADDICTION_PREVENTED) return ERROR_PARAMETER;
    return IsSystemAppCalling() ? ERROR_SUCCESS : ERROR_PERMISSION_DENIED;
}

int32_t SubscribeListener(napi_env env, const CallArguments& args) {
    if (args.count != 2) return ERROR_PARAMETER;
    const std::string eventType = GetStringUtf8(env, args.values[0]);
    GAME_LOGI_AS("On", "On params size:%{public}lu, eventType == %{public}s", static_cast<unsigned long>(args.count),
                 eventType.c_str());
    if (TypeOf(env, args.values[1]) != napi_function) return ERROR_PARAMETER;
    if (const int32_t code = CheckEventType(eventType)) return code;
    const bool isListening = WithListeners([&](GamePlayerEventCallback& listeners) {
        listeners.RegisterGameEventCallback(env, eventType, args.values[1], args.thisArg);
    });
    return isListening ? ERROR_SUCCESS : ERROR_SYSTEM_INTERNAL;
}

int32_t UnsubscribeListener(napi_env env, const CallArguments& args) {
    const std::string eventType = GetStringUtf8(env, args.values[0]);
    GAME_LOGI_AS("Off", "Off params size:%{public}lu, eventType == %{public}s", static_cast<unsigned long>(args.count),
                 eventType.c_str());
    if (args.count > 2) return ERROR_PARAMETER;
    if (const int32_t code = CheckEventType(eventType)) return code;
    const bool isOfAll = args.count < 2;
    if (!isOfAll && TypeOf(env, args.values[1]) != napi_function) {
        GAME_LOGE_AS("Off", "Off eventType: %{public}s or callback function invalid", eventType.c_str());
        return ERROR_PARAMETER;
    }
    const bool isRemoved = WithListeners([&](GamePlayerEventCallback& listeners) {
        listeners.UnRegisterGameEventCallback(env, eventType, isOfAll ? nullptr : args.values[1]);
    });
    return isRemoved ? ERROR_SUCCESS : ERROR_SYSTEM_INTERNAL;
}

// Reports the call to analytics before it throws an error.
napi_value RunListenerCall(napi_env env, napi_callback_info info, const char* method, RequestType api,
                           int32_t (*run)(napi_env env, const CallArguments& args)) {
    GAME_LOGI_AS(method, "begin %{public}s", method);
    const int64_t startTime = GetCurrentTimestamp();
    CallArguments args;
    if (!args.Read(env, info, 2)) return nullptr;
    const int32_t code = run(env, args);
    HaUtils::ReportEnd(FindApiName(api), startTime, code);
    if (code == ERROR_SUCCESS) {
        GAME_LOGI_AS(method, "end %{public}s", method);
    } else {
        ThrowBusinessError(env, code, "");
    }
    return args.undefined;
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

void Manager::ReturnCallbackOrPromise(napi_env env, const BaseContext& context, napi_value error, napi_value data) {
    napi_value result[] = {error, data};
    napi_status status = napi_get_null(env, &result[context.errCode == ERROR_SUCCESS ? 0 : 1]);
    if (status == napi_ok) status = Settle(env, context, context.errCode != ERROR_SUCCESS, result);
    if (status != napi_ok) ThrowLastError(env);
}

napi_value Manager::On(napi_env env, napi_callback_info info) {
    return RunListenerCall(env, info, "On", REQUEST_ON, SubscribeListener);
}

napi_value Manager::Off(napi_env env, napi_callback_info info) {
    return RunListenerCall(env, info, "Off", REQUEST_OFF, UnsubscribeListener);
}

napi_value Manager::OnEventCallback(napi_env env, napi_callback_info info) {
    GAME_LOGI("begin OnEventCallback");
    CallArguments args;
    if (!args.ReadIfValid(env, info, "OnEventCallback", 1)) return nullptr;
    int32_t resultCode = ERROR_SUCCESS;
    JsObjectToInt(env, args.values[0], "resultCode", resultCode);
    if (resultCode != ERROR_PLAYER_INVALID) return args.undefined;
    std::string resultInfo;
    JsObjectToString(env, args.values[0], "resultInfo", MAX_STRING_LENGTH, resultInfo);
    if (IsExceptionPending(env)) return nullptr;
    {
        const BaseContext context;  // for its environment, and for the two log lines of its end
        ModalUICallback::DoGameEvent(context.envInfo, 0, EVENT_PLAYER_CHANGED, std::move(resultInfo));
    }
    GAME_LOGI("OnEventCallback switch game account event callback end");
    GAME_LOGI("end OnEventCallback");
    return args.undefined;
}

napi_value Manager::ReportEventOperation(napi_env env, napi_callback_info info) {
    GAME_LOGI("begin ReportEventOperation");
    CallArguments args;
    if (!args.ReadIfValid(env, info, "ReportEventOperation", 3)) return nullptr;
    if (args.count != 3) return args.undefined;
    const int32_t errorCode = ToInt32(env, args.values[2]);
    const int32_t costTime = ToInt32(env, args.values[1]);
    const std::string apiName = GetStringUtf8(env, args.values[0]);
    HaUtils::ReportEnd(apiName, GetCurrentTimestamp() - costTime, errorCode);
    GAME_LOGI("end ReportEventOperation");
    return args.undefined;
}

napi_value Manager::SyncTraceId(napi_env env, napi_callback_info info) {
    GAME_LOGI("begin SyncTraceId");
    CallArguments args;
    if (!args.Read(env, info, 1)) return nullptr;
    SetTraceId(GetStringUtf8(env, args.values[0]));
    GAME_LOGI("end SyncTraceId");
    return args.undefined;
}

}  // namespace TAVIK::GAME_PLAYER
