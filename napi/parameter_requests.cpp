#include "common/velmor_log.h"
#include "napi/game_player_extension_ability.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::AAFwk::Want;

namespace {

constexpr const char* KEY_EXTRA = "tavikExtra";

void ReadText(napi_env env, napi_value object, const char* name, std::string& output)
{
    JsObjectToString(env, object, name, MAX_TEXT_LENGTH, output);
}

// No field is required: an object with none of them is a role of seven empty texts.
bool ParseSavePlayerRoleReq(napi_env env, const CallArguments& args, SavePlayerRoleContext& context)
{
    GAME_LOGI("begin ParseSavePlayerRoleReq");
    napi_value object = args.values[1];
    if (!IsObject(env, object)) {
        return false;
    }
    RVQPlayerRole& role = context.playerRole;
    ReadText(env, object, "roleId", role.roleId);
    ReadText(env, object, "roleName", role.roleName);
    ReadText(env, object, "serverId", role.serverId);
    ReadText(env, object, "serverName", role.serverName);
    ReadText(env, object, "gamePlayerId", role.gamePlayerId);
    ReadText(env, object, "teamPlayerId", role.teamPlayerId);
    ReadText(env, object, "thirdOpenId", role.thirdOpenId);
    GAME_LOGI("end ParseSavePlayerRoleReq");
    return true;
}

void ExecuteSavePlayerRole(SavePlayerRoleContext& context, Want& want)
{
    want.SetParam(KEY_EXTRA, std::move(context.playerRole).ToString());
}

bool ParsePrePurchaseReq(napi_env env, const CallArguments& args, PrePurchaseContext& context)
{
    napi_value object = args.values[1];
    if (!IsObject(env, object)) {
        return false;
    }
    PurchaseParameter& purchase = context.purchaseParameter;
    ReadText(env, object, "productId", purchase.productId);
    JsObjectToInt(env, object, "productType", purchase.productType);
    ReadText(env, object, "developerPayload", purchase.developerPayload);
    ReadText(env, object, "reservedInfo", purchase.reservedInfo);
    return true;
}

void ExecutePrePurchase(PrePurchaseContext& context, Want& want)
{
    want.SetParam(KEY_EXTRA, std::move(context.purchaseParameter).ToString());
}

bool ParsePostPurchaseReq(napi_env env, const CallArguments& args, PostPurchaseContext& context)
{
    napi_value object = args.values[1];
    if (!IsObject(env, object)) {
        return false;
    }
    ReadText(env, object, "purchaseData", context.purchaseResult.purchaseData);
    return true;
}

void ExecutePostPurchase(PostPurchaseContext& context, Want& want)
{
    want.SetParam(KEY_EXTRA, std::move(context.purchaseResult).ToString());
}

bool ParseQuickGameLoginReq(napi_env env, const CallArguments& args, QuickGameLoginContext& context)
{
    napi_value object = args.values[1];
    if (!IsObject(env, object)) {
        return false;
    }
    ReadText(env, object, "gameAppId", context.quickGameLoginParam.gameAppId);
    return true;
}

void ExecuteQuickGameLogin(QuickGameLoginContext& context, Want& want)
{
    want.SetParam("quickGameLoginParam", std::move(context.quickGameLoginParam).ToString());
}

}  // namespace

napi_value Manager::SavePlayerRole(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"SavePlayerRole", REQUEST_SAVE_PLAYER_ROLE, 3, AtLeast(2),
                                         CallbackAt(3)};
    return RunRequest<SavePlayerRoleContext, ParseSavePlayerRoleReq, ExecuteSavePlayerRole>(env, info, RULE);
}

napi_value Manager::PrePurchase(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"PrePurchase", REQUEST_PRE_PURCHASE, 3, AtLeast(2), CallbackAt(3)};
    return RunRequest<PrePurchaseContext, ParsePrePurchaseReq, ExecutePrePurchase>(env, info, RULE);
}

napi_value Manager::PostPurchase(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"PostPurchase", REQUEST_POST_PURCHASE, 3, AtLeast(2), CallbackAt(3)};
    return RunRequest<PostPurchaseContext, ParsePostPurchaseReq, ExecutePostPurchase>(env, info, RULE);
}

napi_value Manager::QuickGameLogin(napi_env env, napi_callback_info info)
{
    static constexpr RequestRule RULE = {"QuickGameLogin", REQUEST_QUICK_GAME_LOGIN, 2, Exactly(2),
                                         PROMISE_ONLY};
    return RunRequest<QuickGameLoginContext, ParseQuickGameLoginReq, ExecuteQuickGameLogin>(env, info, RULE);
}

}  // namespace TAVIK::GAME_PLAYER
