#include "napi/request_shape.h"

#include "analytics/ha_utils.h"
#include "common/velmor_log.h"
#include "modal/game_service_want.h"
#include "modal/modal_ui_callback.h"
#include "napi/game_player_extension_ability.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;

namespace {

void ReportFailure(RequestType type, int64_t startTime)
{
    OHOS::Velmor::HaUtils::ReportEnd(FindApiName(type), startTime, ERROR_PARAMETER);
}

int32_t FailureCode(const RequestRule& rule)
{
    return IsFailureHidden(rule.type) ? ERROR_SUCCESS : ERROR_PARAMETER;
}

bool BuildContext(napi_env env, const RequestRule& rule, const CallArguments& args, BaseContext& context,
                  napi_value& promise)
{
    if (rule.callbackCount == PROMISE_ONLY || args.count != rule.callbackCount) {
        return Manager::BuildContextForPromise(env, context, promise);
    }
    context.callbackValue = args.values[rule.callbackCount - 1];
    return Manager::BuildContextForCallback(env, context);
}

void FailRequest(napi_env env, const RequestRule& rule, BaseContext& context)
{
    if (rule.answer == Answer::NONE) {
        GAME_LOGE("%{public}s build context failed", rule.method);
        return;
    }
    ReportFailure(rule.failureType, context.startTime);
    if (IsExceptionPending(env)) {
        return;
    }
    context.errCode = FailureCode(rule);
    napi_value error = CreateBusinessError(env, context.errCode, "");
    Manager::ReturnCallbackOrPromise(env, context, error, nullptr);
}

}  // namespace

bool CallArguments::Read(napi_env env, napi_callback_info info, size_t maxArgs)
{
    size_t passed = maxArgs;
    if (napi_get_undefined(env, &undefined) != napi_ok ||
        napi_get_cb_info(env, info, &passed, values.data(), &thisArg, nullptr) != napi_ok) {
        ThrowBusinessError(env, ERROR_SYSTEM_INTERNAL, "");
        return false;
    }
    count = passed;
    return true;
}

void OpenExtension(const RequestRule& rule, const std::shared_ptr<BaseContext>& context,
                   void (*addParams)(BaseContext& context, OHOS::AAFwk::Want& want))
{
    GAME_LOGI("begin Execute%{public}s", rule.method);
    OHOS::AAFwk::Want want = MakeGameServiceWant(rule.type);
    addParams(*context, want);
    ModalUICallback::StartUIExtensionAbility(std::move(want), std::make_shared<ContextOwner>(context));
    GAME_LOGI("end Execute%{public}s", rule.method);
}

napi_value RunRequest(napi_env env, napi_callback_info info, const RequestRule& rule,
                      const RequestSteps& steps)
{
    GAME_LOGI("begin %{public}s", rule.method);
    const int64_t startTime = rule.answer == Answer::EXPECTED ? GetCurrentTimestamp() : 0;
    if (!IsValidEnv(gEnvInfo)) {
        GAME_LOGE("%{public}s invalid env", rule.method);
        return nullptr;
    }
    CallArguments args;
    if (!args.Read(env, info, rule.maxArgs)) {
        return nullptr;
    }
    if (rule.isCountLogged) {
        GAME_LOGI("%{public}s params size:%{public}lu", rule.method, static_cast<unsigned long>(args.count));
    }
    if (!rule.counts.Accepts(args.count)) {
        ReportFailure(rule.type, startTime);
        ThrowBusinessError(env, FailureCode(rule), "");
        return args.undefined;
    }
    std::shared_ptr<BaseContext> context = steps.create(rule.type, startTime, args.values[0]);
    context->hasMsgBack = rule.answer == Answer::NONE;
    napi_value result = args.undefined;
    if (!BuildContext(env, rule, args, *context, result) || !steps.parse(env, args, *context) ||
        IsExceptionPending(env)) {
        FailRequest(env, rule, *context);
        return result;
    }
    steps.execute(rule, context);
    GAME_LOGI("end %{public}s", rule.method);
    return result;
}

}  // namespace TAVIK::GAME_PLAYER
