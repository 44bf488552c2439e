#include <utility>

#include "common/velmor_log.h"
#include "napi/game_player_extension_ability.h"
#include "napi/record_reader.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::AAFwk::Want;

namespace {

// The type of the request says it all.
void ExecuteInit(InitContext& /*context*/, Want& /*want*/) {}
void ExecuteGetLocalPlayer(GetLocalPlayerContext& /*context*/, Want& /*want*/) {}

bool ParseBindPlayerReq(napi_env env, const CallArguments& args, BindPlayerContext& context)
{
    context.thirdOpenId = GetStringUtf8(env, args.values[1]);
    context.teamPlayerId = GetStringUtf8(env, args.values[2]);
    return true;
}

void ExecuteBindPlayer(BindPlayerContext& context, Want& want)
{
    want.SetParam("thirdOpenId", std::move(context.thirdOpenId));
    want.SetParam("teamPlayerId", std::move(context.teamPlayerId));
}

void ExecuteUnbindPlayer(UnbindPlayerContext& context, Want& want)
{
    ExecuteBindPlayer(context, want);
}

// A missing or wrong `thirdOpenId` is sent as an empty one, and left to the extension to judge.
bool ParseVerifyLocalPlayerReq(napi_env env, const CallArguments& args, VerifyLocalPlayerContext& context)
{
    GAME_LOGI("begin ParseVerifyLocalPlayerReq");
    ThirdUserInfo& info = context.thirdUserInfo;
    if (!ReadRecord(env, args.values[1], info)) {
        return false;
    }
    if (info.isRealNameSet) {
        GAME_LOGI("has isRealName field");
    }
    if (info.isAdultSet) {
        GAME_LOGI("has isAdult field");
    }
    if (info.ageRangeSet) {
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
    static constexpr auto RULE =
        Request<InitContext, ParseNothing, ExecuteInit>("Init", REQUEST_INIT, WithCallback(1));
    return RunRequest(env, info, RULE);
}

napi_value Manager::GetLocalPlayer(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE = Request<GetLocalPlayerContext, ParseNothing, ExecuteGetLocalPlayer>(
        "GetLocalPlayer", REQUEST_GET_LOCAL_PLAYER, WithCallback(1));
    return RunRequest(env, info, RULE);
}

napi_value Manager::BindPlayer(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE = Request<BindPlayerContext, ParseBindPlayerReq, ExecuteBindPlayer>(
                                     "BindPlayer", REQUEST_BIND_PLAYER, PromiseOnly(3))
                                     .WithoutCountLog();
    return RunRequest(env, info, RULE);
}

napi_value Manager::UnbindPlayer(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE = Request<UnbindPlayerContext, ParseBindPlayerReq, ExecuteUnbindPlayer>(
                                     "UnbindPlayer", REQUEST_UNBIND_PLAYER, PromiseOnly(3))
                                     .WithoutCountLog();
    return RunRequest(env, info, RULE);
}

napi_value Manager::VerifyLocalPlayer(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE =
        Request<VerifyLocalPlayerContext, ParseVerifyLocalPlayerReq, ExecuteVerifyLocalPlayer>(
            "VerifyLocalPlayer", REQUEST_VERIFY_LOCAL_PLAYER, PromiseOnly(2));
    return RunRequest(env, info, RULE);
}

}  // namespace TAVIK::GAME_PLAYER
