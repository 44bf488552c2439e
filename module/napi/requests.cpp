#include <algorithm>
#include <iterator>
#include <utility>

#include "common/js_value_helpers.h"
#include "common/velmor_log.h"
#include "modal/modal_ui_callback.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::AAFwk::Want;

namespace {

constexpr const char KEY_EXTRA[] = "tavikExtra";
constexpr const char KEY_THIRD_USER_INFO[] = "thirdUserInfo";
constexpr const char KEY_UNION_LOGIN[] = "unionLoginParam";
constexpr const char KEY_QUICK_GAME_LOGIN[] = "quickGameLoginParam";
constexpr const char KEY_GREETING_INFO[] = "greetingInfo";
constexpr const char KEY_PAGE_INFO[] = "pageInfo";

std::string TakeString(std::string& string) { return std::move(string); }
template <typename Record>
std::string TakeString(Record& record) {
    return std::move(record).ToString();
}

template <typename Context, typename Parameter>
Context OwnerOf(Parameter Context::*member);

// The two steps of a method with one parameter, which is its second argument and one entry of the Want.
template <auto PARAMETER, typename Context = decltype(OwnerOf(PARAMETER))>
bool Parse(napi_env env, const CallArguments& args, Context& context) {
    return ReadParameter(env, args.values[1], context.*PARAMETER);
}
template <auto PARAMETER, const char* KEY, typename Context = decltype(OwnerOf(PARAMETER))>
void Send(Context& context, Want& want) {
    want.SetParam(KEY, TakeString(context.*PARAMETER));
}

// The request type is enough.
void ExecuteInit(InitContext& /*context*/, Want& /*want*/) {}
void ExecuteGetLocalPlayer(GetLocalPlayerContext& /*context*/, Want& /*want*/) {}

bool ParseBindPlayerReq(napi_env env, const CallArguments& args, BindPlayerContext& context) {
    return ReadParameter(env, args.values[1], context.thirdOpenId) &&
           ReadParameter(env, args.values[2], context.teamPlayerId);
}

void ExecuteBindPlayer(BindPlayerContext& context, Want& want) {
    want.SetParam("thirdOpenId", context.thirdOpenId);
    want.SetParam("teamPlayerId", context.teamPlayerId);
}

void ExecuteUnbindPlayer(UnbindPlayerContext& context, Want& want) { ExecuteBindPlayer(context, want); }

// A missing or wrong `thirdOpenId` is sent as an empty string; the extension decides whether to accept it.
bool ParseVerifyLocalPlayerReq(napi_env env, const CallArguments& args, VerifyLocalPlayerContext& context) {
    GAME_LOGI("begin ParseVerifyLocalPlayerReq");
    if (TypeOf(env, args.values[1]) != napi_object) return false;
    const FieldReader read(env, args.values[1]);
    context.thirdUserInfo.VisitFields([&read](const char* name, auto& field, auto&... isSet) {
        read(name, field, isSet...);
        if ((isSet || ...)) GAME_LOGI_AS("ParseVerifyLocalPlayerReq", "has %{public}s field", name);
    });
    GAME_LOGI("end ParseVerifyLocalPlayerReq");
    return true;
}
constexpr auto ExecuteVerifyLocalPlayer = Send<&VerifyLocalPlayerContext::thirdUserInfo, KEY_THIRD_USER_INFO>;

// No field is required: an empty object is a role of seven empty strings.
bool ParseSavePlayerRoleReq(napi_env env, const CallArguments& args, SavePlayerRoleContext& context) {
    GAME_LOGI("begin ParseSavePlayerRoleReq");
    if (!Parse<&SavePlayerRoleContext::playerRole>(env, args, context)) return false;
    GAME_LOGI("end ParseSavePlayerRoleReq");
    return true;
}
constexpr auto ExecuteSavePlayerRole = Send<&SavePlayerRoleContext::playerRole, KEY_EXTRA>;

constexpr auto ParsePrePurchaseReq = Parse<&PrePurchaseContext::purchaseParameter>;
constexpr auto ExecutePrePurchase = Send<&PrePurchaseContext::purchaseParameter, KEY_EXTRA>;

constexpr auto ParsePostPurchaseReq = Parse<&PostPurchaseContext::purchaseResult>;
constexpr auto ExecutePostPurchase = Send<&PostPurchaseContext::purchaseResult, KEY_EXTRA>;

bool ParseUnionLoginReq(napi_env env, const CallArguments& args, UnionLoginContext& context) {
    if (!Parse<&UnionLoginContext::unionLoginParam>(env, args, context)) return false;
    if (context.unionLoginParam.hasLoginPanelType) GAME_LOGI("ParseUnionLoginReq hasLoginPanelType");
    JsObjectToAccountInfoList(env, args.values[1], context);
    return true;
}
constexpr auto ExecuteUnionLogin = Send<&UnionLoginContext::unionLoginParam, KEY_UNION_LOGIN>;

constexpr auto ParseQuickGameLoginReq = Parse<&QuickGameLoginContext::quickGameLoginParam>;
constexpr auto ExecuteQuickGameLogin =
    Send<&QuickGameLoginContext::quickGameLoginParam, KEY_QUICK_GAME_LOGIN>;

constexpr auto ParseLaunchWelcomeBannerReq = Parse<&LaunchWelcomeBannerContext::greetingInfo>;
constexpr auto ExecuteLaunchWelcomeBanner =
    Send<&LaunchWelcomeBannerContext::greetingInfo, KEY_GREETING_INFO>;

constexpr auto ParseLaunchCommonPageReq = Parse<&LaunchCommonPageContext::pageInfo>;
constexpr auto ExecuteLaunchCommonPage = Send<&LaunchCommonPageContext::pageInfo, KEY_PAGE_INFO>;

// The caller chooses the request type under which the page's answers are handled.
bool ParseLaunchAntiAddictionReq(napi_env env, const CallArguments& args,
                                 LaunchAntiAddictionContext& context) {
    context.requestType = ToInt32(env, args.values[3]);
    context.playableTime = ToInt32(env, args.values[1]);
    return ReadParameter(env, args.values[2], context.antiAddictionInfo);
}

// No page opens yet: the timer opens it.
void StartAntiAddiction(const std::shared_ptr<LaunchAntiAddictionContext>& context) {
    std::make_shared<ModalUICallback>(context)->LaunchAntiAddictionAbility(
        std::move(context->antiAddictionInfo), context->playableTime);
}

#define NAMES(method) #method, "Execute" #method

constexpr RequestRule REQUESTS[] = {
    Request<InitContext, ParseNothing, ExecuteInit>(NAMES(Init), REQUEST_INIT, WithCallback(1)),
    Request<GetLocalPlayerContext, ParseNothing, ExecuteGetLocalPlayer>(
        NAMES(GetLocalPlayer), REQUEST_GET_LOCAL_PLAYER, WithCallback(1)),
    Request<SavePlayerRoleContext, ParseSavePlayerRoleReq, ExecuteSavePlayerRole>(
        NAMES(SavePlayerRole), REQUEST_SAVE_PLAYER_ROLE, WithCallback(2)),
    Request<PrePurchaseContext, ParsePrePurchaseReq, ExecutePrePurchase>(
        NAMES(PrePurchase), REQUEST_PRE_PURCHASE, WithCallback(2)),
    Request<PostPurchaseContext, ParsePostPurchaseReq, ExecutePostPurchase>(
        NAMES(PostPurchase), REQUEST_POST_PURCHASE, WithCallback(2)),
    Request<BindPlayerContext, ParseBindPlayerReq, ExecuteBindPlayer>(NAMES(BindPlayer), REQUEST_BIND_PLAYER,
                                                                      WithoutCountLog(PromiseOnly(3))),
    Request<UnbindPlayerContext, ParseBindPlayerReq, ExecuteUnbindPlayer>(
        NAMES(UnbindPlayer), REQUEST_UNBIND_PLAYER, WithoutCountLog(PromiseOnly(3))),
    Request<VerifyLocalPlayerContext, ParseVerifyLocalPlayerReq, ExecuteVerifyLocalPlayer>(
        NAMES(VerifyLocalPlayer), REQUEST_VERIFY_LOCAL_PLAYER, PromiseOnly(2)),
    // Statistics rely on failed union logins being counted as calls of unbindPlayer.
    Request<UnionLoginContext, ParseUnionLoginReq, ExecuteUnionLogin>(NAMES(UnionLogin), REQUEST_UNION_LOGIN,
                                                                      PromiseOnly(2), REQUEST_UNBIND_PLAYER),
    Request<QuickGameLoginContext, ParseQuickGameLoginReq, ExecuteQuickGameLogin>(
        NAMES(QuickGameLogin), REQUEST_QUICK_GAME_LOGIN, PromiseOnly(2)),
    PageLaunch<LaunchWelcomeBannerContext, ParseLaunchWelcomeBannerReq, ExecuteLaunchWelcomeBanner>(
        NAMES(LaunchWelcomeBanner), REQUEST_LAUNCH_WELCOME_BANNER, 2),
    ParsedFirst(PageLaunch<LaunchCommonPageContext, ParseLaunchCommonPageReq, ExecuteLaunchCommonPage>(
        NAMES(LaunchCommonPage), REQUEST_LAUNCH_COMMON_PAGE, 2)),
    PageLaunch<LaunchAntiAddictionContext, ParseLaunchAntiAddictionReq, StartAntiAddiction>(
        NAMES(LaunchAntiAddiction), REQUEST_LAUNCH_ANTI_ADDICTION, 4),
};

}  // namespace

const RequestRule& FindRequest(RequestType type) {
    auto isOfType = [type](const RequestRule& rule) { return rule.type == type; };
    return *std::find_if(std::begin(REQUESTS), std::end(REQUESTS), isOfType);
}

}  // namespace TAVIK::GAME_PLAYER
