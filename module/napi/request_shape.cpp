#include "napi/request_shape.h"

#include <utility>

#include "analytics/ha_utils.h"
#include "common/js_value_helpers.h"
#include "common/velmor_error.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "modal/modal_ui_callback.h"
#include "napi/game_player_extension_ability.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;

namespace {

void ReportFailure(RequestType type, int64_t startTime) {
    OHOS::Velmor::HaUtils::ReportEnd(FindApiName(type), startTime, ERROR_PARAMETER);
}

int32_t FailureCode(RequestType type) { return HasFlag(type, HIDES_FAILURES) ? ERROR_SUCCESS : ERROR_PARAMETER; }

std::shared_ptr<BaseContext> CreateContext(const RequestRule& rule, const CallArguments& args, int64_t startTime) {
    std::shared_ptr<BaseContext> context = rule.create();
    context->startTime = startTime;
    context->contextValue = args.values[0];
    context->requestType = rule.type;
    if (!rule.isAnswered) context->status.state = RequestState::OPEN;
    return context;
}

bool BuildContext(napi_env env, const ArgumentRule& rule, const CallArguments& args, BaseContext& context,
                  napi_value& promise) {
    if (rule.callbackCount == 0 || args.count != rule.callbackCount) {
        return Manager::BuildContextForPromise(env, context, promise);
    }
    context.callbackValue = args.values[rule.callbackCount - 1];
    return Manager::BuildContextForCallback(env, context);
}

// Builds the context and parses the parameters, in the order of the method.
bool Prepare(napi_env env, const RequestRule& rule, const CallArguments& args, BaseContext& context,
             napi_value& promise) {
    if (rule.parsesFirst && !rule.parse(env, args, context)) return false;
    if (!BuildContext(env, rule.arguments, args, context, promise)) return false;
    return (rule.parsesFirst || rule.parse(env, args, context)) && !IsExceptionPending(env);
}

void FailRequest(napi_env env, const RequestRule& rule, BaseContext& context) {
    if (!rule.isAnswered) {
        GAME_LOGE_AS(rule.method, "%{public}s build context failed", rule.method);
        return;
    }
    ReportFailure(rule.failureType, context.startTime);
    if (IsExceptionPending(env)) return;  // the call ends with the game's own exception: nothing to settle
    context.errCode = FailureCode(rule.type);
    napi_value error = CreateBusinessError(env, context.errCode, "");
    Manager::ReturnCallbackOrPromise(env, context, error, nullptr);
}

// Opens the game-service extension with a Want of the request's type and parameters.
void OpenExtension(const RequestRule& rule, std::shared_ptr<BaseContext> context) {
    GAME_LOGI_AS(rule.executeStep, "begin %{public}s", rule.executeStep);
    OHOS::AAFwk::Want want = MakeGameServiceWant(rule.type);
    rule.addParams(*context, want);
    std::make_shared<ModalUICallback>(std::move(context))->StartUIExtensionAbility(std::move(want));
    GAME_LOGI_AS(rule.executeStep, "end %{public}s", rule.executeStep);
}

}  // namespace

bool CallArguments::Read(napi_env env, napi_callback_info info, size_t maxArgs) {
    size_t passed = maxArgs;
    if (napi_get_undefined(env, &undefined) != napi_ok ||
        napi_get_cb_info(env, info, &passed, values.data(), &thisArg, nullptr) != napi_ok) {
        ThrowBusinessError(env, ERROR_SYSTEM_INTERNAL, "");
        return false;
    }
    count = passed;
    return true;
}

bool CallArguments::ReadIfValid(napi_env env, napi_callback_info info, const char* method, size_t maxArgs) {
    if (!IsValidEnv(gEnvInfo)) {
        GAME_LOGE_AS(method, "%{public}s invalid env", method);
        return false;
    }
    return Read(env, info, maxArgs);
}

napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule) {
    GAME_LOGI_AS(rule.method, "begin %{public}s", rule.method);
    const int64_t startTime = rule.isAnswered ? GetCurrentTimestamp() : 0;
    CallArguments args;
    if (!args.ReadIfValid(env, info, rule.method, rule.arguments.read)) return nullptr;
    if (rule.arguments.isCountLogged) {
        GAME_LOGI_AS(rule.method, "%{public}s params size:%{public}lu", rule.method,
                     static_cast<unsigned long>(args.count));
    }
    if (args.count < rule.arguments.min || args.count > rule.arguments.max) {
        ReportFailure(rule.type, startTime);
        ThrowBusinessError(env, FailureCode(rule.type), "");
        return args.undefined;
    }
    std::shared_ptr<BaseContext> context = CreateContext(rule, args, startTime);
    napi_value result = args.undefined;
    if (!Prepare(env, rule, args, *context, result)) {
        FailRequest(env, rule, *context);
        return result;
    }
    rule.start != nullptr ? rule.start(context) : OpenExtension(rule, std::move(context));
    GAME_LOGI_AS(rule.method, "end %{public}s", rule.method);
    return result;
}

}  // namespace TAVIK::GAME_PLAYER
