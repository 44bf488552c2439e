#include "common/velmor_log.h"
#include "napi/game_player_extension_ability.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::AAFwk::Want;

namespace {

constexpr const char* KEY_THIRD_OPEN_ID = "thirdOpenId";
constexpr const char* KEY_TEAM_PLAYER_ID = "teamPlayerId";
constexpr const char* KEY_IS_REAL_NAME = "isRealName";
constexpr const char* KEY_IS_ADULT = "isAdult";
constexpr const char* KEY_AGE_RANGE = "ageRange";

template <typename Context>
bool ParseBindPlayerReq(napi_env env, const CallArguments& args, Context& context)
{
    context.thirdOpenId = GetStringUtf8(env, args.values[1]);
    context.teamPlayerId = GetStringUtf8(env, args.values[2]);
    return true;
}

template <typename Context>
void ExecuteBindPlayer(Context& context, Want& want)
{
    want.SetParam(KEY_THIRD_OPEN_ID, std::move(context.thirdOpenId));
    want.SetParam(KEY_TEAM_PLAYER_ID, std::move(context.teamPlayerId));
}

// A missing or wrong `thirdOpenId` is sent as an empty one, and left to the extension to judge.
bool ParseVerifyLocalPlayerReq(napi_env env, const CallArguments& args, VerifyLocalPlayerContext& context)
{
    GAME_LOGI("begin ParseVerifyLocalPlayerReq");
    napi_value object = args.values[1];
    if (!IsObject(env, object)) {
        return false;
    }
    ThirdUserInfo& info = context.thirdUserInfo;
    JsObjectToString(env, object, KEY_THIRD_OPEN_ID, MAX_TEXT_LENGTH, info.thirdOpenId);
    if (HasProperty(env, object, KEY_IS_REAL_NAME)) {
        JsObjectToBool(env, object, KEY_IS_REAL_NAME, info.isRealName);
        info.isRealNameSet = true;
        GAME_LOGI("has isRealName field");
    }
    if (HasProperty(env, object, KEY_IS_ADULT)) {
        JsObjectToBool(env, object, KEY_IS_ADULT, info.isAdult);
        info.isAdultSet = true;
        GAME_LOGI("has isAdult field");
    }
    if (HasProperty(env, object, KEY_AGE_RANGE)) {
        JsObjectToInt(env, object, KEY_AGE_RANGE, info.ageRange);
        info.ageRangeSet = true;
        GAME_LOGI("has ageRange field");
    }
    GAME_LOGI("end ParseVerifyLocalPlayerReq");
    return true;
}

void ExecuteVerifyLocalPlayer(VerifyLocalPlayerContext& context, Want& want)
{
    want.SetParam("thirdUserInfo", std::move(context.thirdUserInfo).ToString());
}

}  // namespace

napi_value Manager::Init(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"Init", REQUEST_INIT, 2, AtLeast(1), CallbackAt(2)};
    return RunRequest<InitContext>(env, info, RULE);
}

napi_value Manager::GetLocalPlayer(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"GetLocalPlayer", REQUEST_GET_LOCAL_PLAYER, 2, AtLeast(1),
                                         CallbackAt(2)};
    return RunRequest<GetLocalPlayerContext>(env, info, RULE);
}

napi_value Manager::BindPlayer(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"BindPlayer", REQUEST_BIND_PLAYER, 3,
                                         Exactly(3),   PROMISE_ONLY,        false};
    return RunRequest<BindPlayerContext, ParseBindPlayerReq, ExecuteBindPlayer>(env, info, RULE);
}

napi_value Manager::UnbindPlayer(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"UnbindPlayer", REQUEST_UNBIND_PLAYER, 3,
                                         Exactly(3),     PROMISE_ONLY,          false};
    return RunRequest<UnbindPlayerContext, ParseBindPlayerReq, ExecuteBindPlayer>(env, info, RULE);
}

napi_value Manager::VerifyLocalPlayer(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"VerifyLocalPlayer", REQUEST_VERIFY_LOCAL_PLAYER, 2, Exactly(2),
                                         PROMISE_ONLY};
    return RunRequest<VerifyLocalPlayerContext, ParseVerifyLocalPlayerReq, ExecuteVerifyLocalPlayer>(
        env, info, RULE);
}

}  // namespace TAVIK::GAME_PLAYER
