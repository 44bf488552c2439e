#pragma once

#include "napi/native_api.h"
#include "napi/request_contexts.h"
#include "napi/request_shape.h"
#include "want.h"

namespace TAVIK::GAME_PLAYER {

// The steps of unionLogin, which reads the icons of the game's accounts from the game's own resources.

bool ParseUnionLoginReq(napi_env env, const CallArguments& args, UnionLoginContext& context);
void ExecuteUnionLogin(UnionLoginContext& context, OHOS::AAFwk::Want& want);

}  // namespace TAVIK::GAME_PLAYER
