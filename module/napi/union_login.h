#pragma once

#include "modal/base_context.h"
#include "napi/records.h"

namespace TAVIK::GAME_PLAYER {

/// Reads the accounts of a joint login into `login`, with their icons from the game's resources. An account
/// that cannot be shown, or whose icon cannot be read, is left out. On `env`'s JS thread.
void JsObjectToAccountInfoList(napi_env env, napi_value object, const RequestOrigin& origin,
                               UnionLoginParam& login);

}  // namespace TAVIK::GAME_PLAYER
