#include <algorithm>
#include <iterator>
#include <utility>

#include "common/js_value_helpers.h"
#include "common/velmor_log.h"
#include "modal/modal_ui_callback.h"
#include "napi/record_reader.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"
#include "napi/union_login.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;

namespace {

constexpr const char* KEY_EXTRA = "tavikExtra";

// The type of the request says it all.
void ExecuteInit(InitContext& /*context*/, Want& /*want*/) {}
void ExecuteGetLocalPlayer(GetLocalPlayerContext& /*context*/, Want& /*want*/) {}

bool ParseBindPlayerReq(napi_env env, const CallArguments& args, BindPlayerContext& context) {
    context.thirdOpenId = GetStringUtf8(env, args.values[1]);
    context.teamPlayerId = GetStringUtf8(env, args.values[2]);
    return true;
}

void ExecuteBindPlayer(BindPlayerContext& context, Want& want) {
    want.SetParam("thirdOpenId", std::move(context.thirdOpenId));
    want.SetParam("teamPlayerId", std::move(context.teamPlayerId));
}

void ExecuteUnbindPlayer(UnbindPlayerContext& context, Want& want) { ExecuteBindPlayer(context, want); }

// A missing or wrong `thirdOpenId` is sent as an empty one, and left to the extension to judge.
bool ParseVerifyLocalPlayerReq(napi_env env, const CallArguments& args, VerifyLocalPlayerContext& context) {
    GAME_LOGI("begin ParseVerifyLocalPlayerReq");
    ThirdUserInfo& info = context.thirdUserInfo;
    if (!ReadRecord(env, args.values[1], info)) return false;
    if (info.isRealNameSet) GAME_LOGI("has isRealName field");
    if (info.isAdultSet) GAME_LOGI("has isAdult field");
    if (info.ageRangeSet) GAME_LOGI("has ageRange field");
    GAME_LOGI("end ParseVerifyLocalPlayerReq");
    return true;
}

void ExecuteVerifyLocalPlayer(VerifyLocalPlayerContext& context, Want& want) {
    want.SetParam("thirdUserInfo", std::move(context.thirdUserInfo).ToString());
}

// No field is required: an object with none of them is a role of seven empty strings.
bool ParseSavePlayerRoleReq(napi_env env, const CallArguments& args, SavePlayerRoleContext& context) {
    GAME_LOGI("begin ParseSavePlayerRoleReq");
    if (!ReadRecord(env, args.values[1], context.playerRole)) return false;
    GAME_LOGI("end ParseSavePlayerRoleReq");
    return true;
}

void ExecuteSavePlayerRole(SavePlayerRoleContext& context, Want& want) {
    want.SetParam(KEY_EXTRA, std::move(context.playerRole).ToString());
}

bool ParsePrePurchaseReq(napi_env env, const CallArguments& args, PrePurchaseContext& context) {
    return ReadRecord(env, args.values[1], context.purchaseParameter);
}

void ExecutePrePurchase(PrePurchaseContext& context, Want& want) {
    want.SetParam(KEY_EXTRA, std::move(context.purchaseParameter).ToString());
}

bool ParsePostPurchaseReq(napi_env env, const CallArguments& args, PostPurchaseContext& context) {
    return ReadRecord(env, args.values[1], context.purchaseResult);
}

void ExecutePostPurchase(PostPurchaseContext& context, Want& want) {
    want.SetParam(KEY_EXTRA, std::move(context.purchaseResult).ToString());
}

bool ParseQuickGameLoginReq(napi_env env, const CallArguments& args, QuickGameLoginContext& context) {
    return ReadRecord(env, args.values[1], context.quickGameLoginParam);
}

void ExecuteQuickGameLogin(QuickGameLoginContext& context, Want& want) {
    want.SetParam("quickGameLoginParam", std::move(context.quickGameLoginParam).ToString());
}

bool ParseLaunchWelcomeBannerReq(napi_env env, const CallArguments& args,
                                 LaunchWelcomeBannerContext& context) {
    context.greetingInfo = GetStringUtf8(env, args.values[1]);
    return true;
}

void ExecuteLaunchWelcomeBanner(LaunchWelcomeBannerContext& context, Want& want) {
    want.SetParam("greetingInfo", std::move(context.greetingInfo));
}

bool ParseLaunchCommonPageReq(napi_env env, const CallArguments& args, LaunchCommonPageContext& context) {
    context.pageInfo = GetStringUtf8(env, args.values[1]);
    return true;
}

void ExecuteLaunchCommonPage(LaunchCommonPageContext& context, Want& want) {
    want.SetParam("pageInfo", std::move(context.pageInfo));
}

// The caller decides under which request type the answer of the page is routed.
bool ParseLaunchAntiAddictionReq(napi_env env, const CallArguments& args,
                                 LaunchAntiAddictionContext& context) {
    context.requestType = ToInt32(env, args.values[3]);
    context.playableTime = ToInt32(env, args.values[1]);
    context.antiAddictionInfo = GetStringUtf8(env, args.values[2]);
    return true;
}

// No page yet: the timer opens it.
void StartAntiAddiction(const std::shared_ptr<LaunchAntiAddictionContext>& context) {
    std::make_shared<ModalUICallback>(context)->LaunchAntiAddictionAbility(
        std::move(context->antiAddictionInfo), context->playableTime);
}

constexpr RequestRule REQUESTS[] = {
    Request<InitContext, ParseNothing, ExecuteInit>("Init", REQUEST_INIT, WithCallback(1)),
    Request<GetLocalPlayerContext, ParseNothing, ExecuteGetLocalPlayer>(
        "GetLocalPlayer", REQUEST_GET_LOCAL_PLAYER, WithCallback(1)),
    Request<SavePlayerRoleContext, ParseSavePlayerRoleReq, ExecuteSavePlayerRole>(
        "SavePlayerRole", REQUEST_SAVE_PLAYER_ROLE, WithCallback(2)),
    Request<PrePurchaseContext, ParsePrePurchaseReq, ExecutePrePurchase>("PrePurchase", REQUEST_PRE_PURCHASE,
                                                                         WithCallback(2)),
    Request<PostPurchaseContext, ParsePostPurchaseReq, ExecutePostPurchase>(
        "PostPurchase", REQUEST_POST_PURCHASE, WithCallback(2)),
    Request<BindPlayerContext, ParseBindPlayerReq, ExecuteBindPlayer>("BindPlayer", REQUEST_BIND_PLAYER,
                                                                      WithoutCountLog(PromiseOnly(3))),
    Request<UnbindPlayerContext, ParseBindPlayerReq, ExecuteUnbindPlayer>(
        "UnbindPlayer", REQUEST_UNBIND_PLAYER, WithoutCountLog(PromiseOnly(3))),
    Request<VerifyLocalPlayerContext, ParseVerifyLocalPlayerReq, ExecuteVerifyLocalPlayer>(
        "VerifyLocalPlayer", REQUEST_VERIFY_LOCAL_PLAYER, PromiseOnly(2)),
    // Statistics rely on it that a failed union login counts among the calls of unbindPlayer.
    Request<UnionLoginContext, ParseUnionLoginReq, ExecuteUnionLogin>("UnionLogin", REQUEST_UNION_LOGIN,
                                                                      PromiseOnly(2), REQUEST_UNBIND_PLAYER),
    Request<QuickGameLoginContext, ParseQuickGameLoginReq, ExecuteQuickGameLogin>(
        "QuickGameLogin", REQUEST_QUICK_GAME_LOGIN, PromiseOnly(2)),
    PageLaunch<LaunchWelcomeBannerContext, ParseLaunchWelcomeBannerReq, ExecuteLaunchWelcomeBanner>(
        "LaunchWelcomeBanner", REQUEST_LAUNCH_WELCOME_BANNER, 2),
    PageLaunch<LaunchCommonPageContext, ParseLaunchCommonPageReq, ExecuteLaunchCommonPage>(
        "LaunchCommonPage", REQUEST_LAUNCH_COMMON_PAGE, 2),
    PageLaunch<LaunchAntiAddictionContext, ParseLaunchAntiAddictionReq, StartAntiAddiction>(
        "LaunchAntiAddiction", REQUEST_LAUNCH_ANTI_ADDICTION, 4),
};

}  // namespace

const RequestRule& FindRequest(RequestType type) {
    auto isOfType = [type](const RequestRule& rule) { return rule.type == type; };
    return *std::find_if(std::begin(REQUESTS), std::end(REQUESTS), isOfType);
}

}  // namespace TAVIK::GAME_PLAYER
