#include <utility>

#include "common/handle_scope.h"
#include "common/velmor_log.h"
#include "napi/account_icon.h"
#include "napi/game_player_extension_ability.h"
#include "napi/record_reader.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

using Manager = GamePlayerExtensionAbilityManager;
using OHOS::AAFwk::Want;

namespace {

constexpr const char* KEY_ACCOUNTS = "thirdAccountInfos";
constexpr const char* KEY_ICON = "accountIcon";

// The one panel that shows accounts without icons.
constexpr int32_t PANEL_WITHOUT_ICONS = 1;

// False if the account is to be left out: except on the panel without icons, it goes only with one.
bool ReadIcon(napi_env env, napi_value element, const UnionLoginContext& context, ThirdAccountInfo& account)
{
    if (context.unionLoginParam.loginPanelType == PANEL_WITHOUT_ICONS) {
        return true;
    }
    if (!HasProperty(env, element, KEY_ICON)) {
        GAME_LOGW("JsObjectToAccountInfoList has not accountIcon property");
        return false;
    }
    GAME_LOGI("JsObjectToAccountInfoList has accountIcon property, accountName=%{public}s",
              account.accountName.c_str());
    napi_value icon = nullptr;
    (void)napi_get_named_property(env, element, KEY_ICON, &icon);
    account.encodedIcon = GetEncodedAccountIcon(env, icon, context);
    if (account.encodedIcon.empty()) {
        GAME_LOGW("JsObjectToAccountInfoList icon size is 0");
        return false;
    }
    return true;
}

void ReadAccount(napi_env env, napi_value element, UnionLoginContext& context)
{
    ThirdAccountInfo account;
    account.VisitFields(FieldReader(env, element));
    if (ReadIcon(env, element, context, account)) {
        context.unionLoginParam.thirdAccountInfos.push_back(std::move(account));
    }
}

void JsObjectToAccountInfoList(napi_env env, napi_value object, UnionLoginContext& context)
{
    if (!HasProperty(env, object, KEY_ACCOUNTS)) {
        GAME_LOGE("JsObjectToAccountInfoList %{public}s not existed", KEY_ACCOUNTS);
        return;
    }
    napi_value accounts = nullptr;
    (void)napi_get_named_property(env, object, KEY_ACCOUNTS, &accounts);
    bool isArray = false;
    if (napi_is_array(env, accounts, &isArray) != napi_ok || !isArray) {
        GAME_LOGE("JsObjectToAccountInfoList thirdAccountInfos not array");
        return;
    }
    uint32_t length = 0;
    (void)napi_get_array_length(env, accounts, &length);
    HandleScope scope(env);
    for (uint32_t i = 0; i < length; ++i) {
        napi_value element = nullptr;
        (void)napi_get_element(env, accounts, i, &element);
        ReadAccount(env, element, context);
    }
    GAME_LOGI("JsObjectToAccountInfoList end, length=%{public}d", static_cast<int>(length));
}

// Problems with accounts never fail the request.
bool ParseUnionLoginReq(napi_env env, const CallArguments& args, UnionLoginContext& context)
{
    UnionLoginParam& param = context.unionLoginParam;
    if (!ReadRecord(env, args.values[1], param)) {
        return false;
    }
    if (param.hasLoginPanelType) {
        GAME_LOGI("ParseUnionLoginReq hasLoginPanelType");
    }
    JsObjectToAccountInfoList(env, args.values[1], context);
    return true;
}

void ExecuteUnionLogin(UnionLoginContext& context, Want& want)
{
    want.SetParam("unionLoginParam", std::move(context.unionLoginParam).ToString());
}

}  // namespace

napi_value Manager::UnionLogin(napi_env env, napi_callback_info info)
{
    // A call that fails after its count was accepted counts among those of unbindPlayer; statistics rely on
    // it.
    static constexpr auto RULE = Request<UnionLoginContext, ParseUnionLoginReq, ExecuteUnionLogin>(
                                     "UnionLogin", REQUEST_UNION_LOGIN, PromiseOnly(2))
                                     .FailingAs(REQUEST_UNBIND_PLAYER);
    return RunRequest(env, info, RULE);
}

}  // namespace TAVIK::GAME_PLAYER
