#include <utility>

#include "common/js_value_helpers.h"
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
void StartAntiAddiction(const RequestRule& /*rule*/, const RequestRule::Context& context)
{
    auto& launch = static_cast<LaunchAntiAddictionContext&>(*context);
    std::make_shared<ModalUICallback>(context)->LaunchAntiAddictionAbility(
        std::move(launch.antiAddictionInfo), launch.playableTime);
}

}  // namespace

napi_value Manager::LaunchWelcomeBanner(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE =
        PageLaunch<LaunchWelcomeBannerContext, ParseLaunchWelcomeBannerReq, ExecuteLaunchWelcomeBanner>(
            "LaunchWelcomeBanner", REQUEST_LAUNCH_WELCOME_BANNER, 2);
    return RunRequest(env, info, RULE);
}

napi_value Manager::LaunchCommonPage(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE =
        PageLaunch<LaunchCommonPageContext, ParseLaunchCommonPageReq, ExecuteLaunchCommonPage>(
            "LaunchCommonPage", REQUEST_LAUNCH_COMMON_PAGE, 2);
    return RunRequest(env, info, RULE);
}

napi_value Manager::LaunchAntiAddiction(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE =
        PageLaunch<LaunchAntiAddictionContext, ParseLaunchAntiAddictionReq, AddNothing>("LaunchAntiAddiction",
                                                                                        REQUEST_UNKNOWN, 4)
            .StartedBy(StartAntiAddiction);
    return RunRequest(env, info, RULE);
}

}  // namespace TAVIK::GAME_PLAYER
