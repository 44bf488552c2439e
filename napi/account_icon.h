#ifndef NAPI_ACCOUNT_ICON_H
#define NAPI_ACCOUNT_ICON_H

#include <string>

#include "modal/base_context.h"
#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// The icon that a resource descriptor of the game names, in base64 (RFC 4648, one line). Empty if there is
/// none. Looked for, in this order: by the descriptor's `id`; then, for each name of its `params`, the media
/// of the part after the last dot, and the raw file of the whole name. On `env`'s JS thread.
std::string GetEncodedAccountIcon(napi_env env, napi_value icon, const BaseContext& context);

}  // namespace TAVIK::GAME_PLAYER

#endif
