#include <string>
#include <utility>

#include "analytics/ha_utils.h"
#include "common/js_value_helpers.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "events/game_player_event_callback.h"
#include "modal/modal_ui_callback.h"
#include "napi/game_player_extension_ability.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::Velmor::HaUtils;

namespace {

bool IsEventType(const std::string& eventType) {
    return eventType == EVENT_PLAYER_CHANGED || eventType == EVENT_GAME_ADDICTION_PREVENTED;
}

bool IsPermitted(const std::string& eventType) {
    return eventType != EVENT_GAME_ADDICTION_PREVENTED || IsSystemAppCalling();
}

int32_t SubscribeListener(napi_env env, const CallArguments& args) {
    if (args.count != 2) return ERROR_PARAMETER;
    const std::string eventType = GetStringUtf8(env, args.values[0]);
    GAME_LOGI_AS("On", "On params size:%{public}lu, eventType == %{public}s",
                 static_cast<unsigned long>(args.count), eventType.c_str());
    if (TypeOf(env, args.values[1]) != napi_function || !IsEventType(eventType)) return ERROR_PARAMETER;
    if (!IsPermitted(eventType)) return ERROR_PERMISSION_DENIED;
    const bool isListening = WithListeners([&](GamePlayerEventCallback& listeners) {
        listeners.RegisterGameEventCallback(env, eventType, args.values[1], args.thisArg);
    });
    return isListening ? ERROR_SUCCESS : ERROR_SYSTEM_INTERNAL;
}

int32_t UnsubscribeListener(napi_env env, const CallArguments& args) {
    const std::string eventType = GetStringUtf8(env, args.values[0]);
    GAME_LOGI_AS("Off", "Off params size:%{public}lu, eventType == %{public}s",
                 static_cast<unsigned long>(args.count), eventType.c_str());
    if (args.count > 2 || !IsEventType(eventType)) return ERROR_PARAMETER;
    if (!IsPermitted(eventType)) return ERROR_PERMISSION_DENIED;
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
