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

constexpr const char* KEY_EXTRA = "tavikExtra";

// No field is required: an object with none of them is a role of seven empty strings.
bool ParseSavePlayerRoleReq(napi_env env, const CallArguments& args, SavePlayerRoleContext& context)
{
    GAME_LOGI("begin ParseSavePlayerRoleReq");
    if (!ReadRecord(env, args.values[1], context.playerRole)) {
        return false;
    }
    GAME_LOGI("end ParseSavePlayerRoleReq");
    return true;
}

void ExecuteSavePlayerRole(SavePlayerRoleContext& context, Want& want)
{
    want.SetParam(KEY_EXTRA, std::move(context.playerRole).ToString());
}

bool ParsePrePurchaseReq(napi_env env, const CallArguments& args, PrePurchaseContext& context)
{
    return ReadRecord(env, args.values[1], context.purchaseParameter);
}

void ExecutePrePurchase(PrePurchaseContext& context, Want& want)
{
    want.SetParam(KEY_EXTRA, std::move(context.purchaseParameter).ToString());
}

bool ParsePostPurchaseReq(napi_env env, const CallArguments& args, PostPurchaseContext& context)
{
    return ReadRecord(env, args.values[1], context.purchaseResult);
}

void ExecutePostPurchase(PostPurchaseContext& context, Want& want)
{
    want.SetParam(KEY_EXTRA, std::move(context.purchaseResult).ToString());
}

bool ParseQuickGameLoginReq(napi_env env, const CallArguments& args, QuickGameLoginContext& context)
{
    return ReadRecord(env, args.values[1], context.quickGameLoginParam);
}

void ExecuteQuickGameLogin(QuickGameLoginContext& context, Want& want)
{
    want.SetParam("quickGameLoginParam", std::move(context.quickGameLoginParam).ToString());
}

}  // namespace

napi_value Manager::SavePlayerRole(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE =
        Request<SavePlayerRoleContext, ParseSavePlayerRoleReq, ExecuteSavePlayerRole>(
            "SavePlayerRole", REQUEST_SAVE_PLAYER_ROLE, WithCallback(2));
    return RunRequest(env, info, RULE);
}

napi_value Manager::PrePurchase(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE = Request<PrePurchaseContext, ParsePrePurchaseReq, ExecutePrePurchase>(
        "PrePurchase", REQUEST_PRE_PURCHASE, WithCallback(2));
    return RunRequest(env, info, RULE);
}

napi_value Manager::PostPurchase(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE = Request<PostPurchaseContext, ParsePostPurchaseReq, ExecutePostPurchase>(
        "PostPurchase", REQUEST_POST_PURCHASE, WithCallback(2));
    return RunRequest(env, info, RULE);
}

napi_value Manager::QuickGameLogin(napi_env env, napi_callback_info info)
{
    static constexpr auto RULE =
        Request<QuickGameLoginContext, ParseQuickGameLoginReq, ExecuteQuickGameLogin>(
            "QuickGameLogin", REQUEST_QUICK_GAME_LOGIN, PromiseOnly(2));
    return RunRequest(env, info, RULE);
}

}  // namespace TAVIK::GAME_PLAYER
