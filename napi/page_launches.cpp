#include "modal/modal_ui_callback.h"
#include "napi/game_player_extension_ability.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::AAFwk::Want;

namespace {

bool ParseLaunchWelcomeBannerReq(napi_env env, const CallArguments& args, LaunchWelcomeBannerContext& context)
{
    context.greetingInfo = GetStringUtf8(env, args.values[1]);
    return true;
}

void ExecuteLaunchWelcomeBanner(LaunchWelcomeBannerContext& context, Want& want)
{
    want.SetParam("greetingInfo", std::move(context.greetingInfo));
}

bool ParseLaunchCommonPageReq(napi_env env, const CallArguments& args, LaunchCommonPageContext& context)
{
    context.pageInfo = GetStringUtf8(env, args.values[1]);
    return true;
}

void ExecuteLaunchCommonPage(LaunchCommonPageContext& context, Want& want)
{
    want.SetParam("pageInfo", std::move(context.pageInfo));
}

// The caller decides under which request type the answer of the page is routed.
bool ParseLaunchAntiAddictionReq(napi_env env, const CallArguments& args, LaunchAntiAddictionContext& context)
{
    context.requestType = ToInt32(env, args.values[3]);
    context.playableTime = ToInt32(env, args.values[1]);
    context.antiAddictionInfo = GetStringUtf8(env, args.values[2]);
    return true;
}

// No page yet: the timer opens it.
void StartAntiAddiction(const RequestRule& /*rule*/, const std::shared_ptr<BaseContext>& context)
{
    auto& launch = static_cast<LaunchAntiAddictionContext&>(*context);
    ModalUICallback::LaunchAntiAddictionAbility(std::make_shared<ContextOwner>(context),
                                                std::move(launch.antiAddictionInfo), launch.playableTime);
}

}  // namespace

napi_value Manager::LaunchWelcomeBanner(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = PageLaunch("LaunchWelcomeBanner", REQUEST_LAUNCH_WELCOME_BANNER, 2);
    return RunRequest<LaunchWelcomeBannerContext, ParseLaunchWelcomeBannerReq, ExecuteLaunchWelcomeBanner>(
        env, info, RULE);
}

napi_value Manager::LaunchCommonPage(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = PageLaunch("LaunchCommonPage", REQUEST_LAUNCH_COMMON_PAGE, 2);
    return RunRequest<LaunchCommonPageContext, ParseLaunchCommonPageReq, ExecuteLaunchCommonPage>(env, info,
                                                                                                  RULE);
}

napi_value Manager::LaunchAntiAddiction(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = PageLaunch("LaunchAntiAddiction", REQUEST_UNKNOWN, 4);
    static constexpr RequestSteps STEPS =
        MakeSteps<LaunchAntiAddictionContext, ParseLaunchAntiAddictionReq>(StartAntiAddiction);
    return RunRequest(env, info, RULE, STEPS);
}

}  // namespace TAVIK::GAME_PLAYER
