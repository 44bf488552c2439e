#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "common/js_value_helpers.h"
#include "common/velmor_log.h"
#include "modal/modal_ui_callback.h"
#include "napi/records.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;

namespace {

constexpr const char* KEY_EXTRA = "tavikExtra";

// The methods, each with its parameters, the steps that read and send them, and its rule.

struct InitContext : BaseContext {};
constexpr RequestRule InitRule = Request<InitContext, ParseNothing, SendNothing>(WithCallback(1));

struct GetLocalPlayerContext : BaseContext {};
constexpr RequestRule GetLocalPlayerRule = Request<GetLocalPlayerContext, ParseNothing, SendNothing>(WithCallback(1));

struct SavePlayerRoleContext : BaseContext {
    RVQPlayerRole playerRole;
};
// No field is required: an empty object is a role of seven empty strings.
bool ParseSavePlayerRoleReq(napi_env env, const CallArguments& args, SavePlayerRoleContext& context) {
    GAME_LOGI("begin ParseSavePlayerRoleReq");
    if (!context.playerRole.Read(env, args.values[1])) return false;
    GAME_LOGI("end ParseSavePlayerRoleReq");
    return true;
}
void ExecuteSavePlayerRole(SavePlayerRoleContext& context, Want& want) {
    want.SetParam(KEY_EXTRA, std::move(context.playerRole).ToString());
}
constexpr RequestRule SavePlayerRoleRule =
    Request<SavePlayerRoleContext, ParseSavePlayerRoleReq, ExecuteSavePlayerRole>(WithCallback(2));

struct PrePurchaseContext : BaseContext {
    PurchaseParameter purchaseParameter;
};
bool ParsePrePurchaseReq(napi_env env, const CallArguments& args, PrePurchaseContext& context) {
    return context.purchaseParameter.Read(env, args.values[1]);
}
void ExecutePrePurchase(PrePurchaseContext& context, Want& want) {
    want.SetParam(KEY_EXTRA, std::move(context.purchaseParameter).ToString());
}
constexpr RequestRule PrePurchaseRule =
    Request<PrePurchaseContext, ParsePrePurchaseReq, ExecutePrePurchase>(WithCallback(2));

struct PostPurchaseContext : BaseContext {
    CreatePurchaseResult purchaseResult;
};
bool ParsePostPurchaseReq(napi_env env, const CallArguments& args, PostPurchaseContext& context) {
    return context.purchaseResult.Read(env, args.values[1]);
}
void ExecutePostPurchase(PostPurchaseContext& context, Want& want) {
    want.SetParam(KEY_EXTRA, std::move(context.purchaseResult).ToString());
}
constexpr RequestRule PostPurchaseRule =
    Request<PostPurchaseContext, ParsePostPurchaseReq, ExecutePostPurchase>(WithCallback(2));

struct BindPlayerContext : BaseContext {
    std::string thirdOpenId;
    std::string teamPlayerId;
};
bool ParseBindPlayerReq(napi_env env, const CallArguments& args, BindPlayerContext& context) {
    context.thirdOpenId = GetStringUtf8(env, args.values[1]);
    context.teamPlayerId = GetStringUtf8(env, args.values[2]);
    return true;
}
void ExecuteBindPlayer(BindPlayerContext& context, Want& want) {
    want.SetParam("thirdOpenId", context.thirdOpenId);
    want.SetParam("teamPlayerId", context.teamPlayerId);
}
constexpr RequestRule BindPlayerRule =
    Request<BindPlayerContext, ParseBindPlayerReq, ExecuteBindPlayer>(PromiseOnly(3, false));

struct UnbindPlayerContext : BindPlayerContext {};
constexpr RequestRule UnbindPlayerRule =
    Request<UnbindPlayerContext, ParseBindPlayerReq, ExecuteBindPlayer>(PromiseOnly(3, false));

struct VerifyLocalPlayerContext : BaseContext {
    ThirdUserInfo thirdUserInfo;
};
// A missing or wrong `thirdOpenId` is sent as an empty string; the extension decides whether to accept it.
bool ParseVerifyLocalPlayerReq(napi_env env, const CallArguments& args, VerifyLocalPlayerContext& context) {
    GAME_LOGI("begin ParseVerifyLocalPlayerReq");
    if (!context.thirdUserInfo.Read(env, args.values[1])) return false;
    GAME_LOGI("end ParseVerifyLocalPlayerReq");
    return true;
}
void ExecuteVerifyLocalPlayer(VerifyLocalPlayerContext& context, Want& want) {
    want.SetParam("thirdUserInfo", std::move(context.thirdUserInfo).ToString());
}
constexpr RequestRule VerifyLocalPlayerRule =
    Request<VerifyLocalPlayerContext, ParseVerifyLocalPlayerReq, ExecuteVerifyLocalPlayer>(PromiseOnly(2));

struct UnionLoginContext : BaseContext {
    UnionLoginParam unionLoginParam;
};
bool ParseUnionLoginReq(napi_env env, const CallArguments& args, UnionLoginContext& context) {
    if (!context.unionLoginParam.Read(env, args.values[1])) return false;
    if (context.unionLoginParam.hasLoginPanelType) GAME_LOGI("ParseUnionLoginReq hasLoginPanelType");
    JsObjectToAccountInfoList(env, args.values[1], context, context.unionLoginParam);
    return true;
}
void ExecuteUnionLogin(UnionLoginContext& context, Want& want) {
    want.SetParam("unionLoginParam", std::move(context.unionLoginParam).ToString());
}
// Statistics rely on failed union logins being counted as calls of unbindPlayer.
constexpr RequestRule UnionLoginRule =
    Request<UnionLoginContext, ParseUnionLoginReq, ExecuteUnionLogin>(PromiseOnly(2), REQUEST_UNBIND_PLAYER);

struct QuickGameLoginContext : BaseContext {
    QuickGameLoginParam quickGameLoginParam;
};
bool ParseQuickGameLoginReq(napi_env env, const CallArguments& args, QuickGameLoginContext& context) {
    return context.quickGameLoginParam.Read(env, args.values[1]);
}
void ExecuteQuickGameLogin(QuickGameLoginContext& context, Want& want) {
    want.SetParam("quickGameLoginParam", std::move(context.quickGameLoginParam).ToString());
}
constexpr RequestRule QuickGameLoginRule =
    Request<QuickGameLoginContext, ParseQuickGameLoginReq, ExecuteQuickGameLogin>(PromiseOnly(2));

struct LaunchWelcomeBannerContext : BaseContext {
    std::string greetingInfo;
};
bool ParseLaunchWelcomeBannerReq(napi_env env, const CallArguments& args, LaunchWelcomeBannerContext& context) {
    context.greetingInfo = GetStringUtf8(env, args.values[1]);
    return true;
}
void ExecuteLaunchWelcomeBanner(LaunchWelcomeBannerContext& context, Want& want) {
    want.SetParam("greetingInfo", context.greetingInfo);
}
constexpr RequestRule LaunchWelcomeBannerRule =
    PageLaunch<LaunchWelcomeBannerContext, ParseLaunchWelcomeBannerReq, ExecuteLaunchWelcomeBanner>(2);

struct LaunchCommonPageContext : BaseContext {
    std::string pageInfo;
};
bool ParseLaunchCommonPageReq(napi_env env, const CallArguments& args, LaunchCommonPageContext& context) {
    context.pageInfo = GetStringUtf8(env, args.values[1]);
    return true;
}
void ExecuteLaunchCommonPage(LaunchCommonPageContext& context, Want& want) {
    want.SetParam("pageInfo", context.pageInfo);
}
constexpr RequestRule LaunchCommonPageRule =
    PageLaunch<LaunchCommonPageContext, ParseLaunchCommonPageReq, ExecuteLaunchCommonPage>(2, true);

struct LaunchAntiAddictionContext : BaseContext {
    std::string antiAddictionInfo;  // the text of the page
    int32_t playableTime = 0;       // in seconds
};
// The caller chooses the request type under which the page's answers are handled; so it is read first.
bool ParseLaunchAntiAddictionReq(napi_env env, const CallArguments& args, LaunchAntiAddictionContext& context) {
    context.requestType = ToInt32(env, args.values[3]);
    context.playableTime = ToInt32(env, args.values[1]);
    context.antiAddictionInfo = GetStringUtf8(env, args.values[2]);
    return true;
}
// No page opens yet: the timer opens it.
void StartAntiAddiction(const std::shared_ptr<BaseContext>& base) {
    auto& context = static_cast<LaunchAntiAddictionContext&>(*base);
    std::make_shared<ModalUICallback>(base)->LaunchAntiAddictionAbility(std::move(context.antiAddictionInfo),
                                                                        context.playableTime);
}
constexpr RequestRule LaunchAntiAddictionRule =
    PageLaunch<LaunchAntiAddictionContext, ParseLaunchAntiAddictionReq, SendNothing>(4, false, StartAntiAddiction);

constexpr RequestRule Named(RequestType type, const char* method, const char* executeStep, RequestRule rule) {
    rule.type = type;
    rule.method = method;
    rule.executeStep = executeStep;
    if (rule.failureType == REQUEST_UNKNOWN) rule.failureType = type;
    return rule;
}

constexpr RequestRule REQUESTS[] = {
#define REQUEST(type, number, Method, name, flags) Named(type, #Method, "Execute" #Method, Method##Rule),
#define RESERVED(type, number, name)
#include "common/requests.def"
};

}  // namespace

const RequestRule& FindRequest(RequestType type) {
    auto isOfType = [type](const RequestRule& rule) { return rule.type == type; };
    return *std::find_if(std::begin(REQUESTS), std::end(REQUESTS), isOfType);
}

}  // namespace TAVIK::GAME_PLAYER
