#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/env_registry.h"
#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// The codes that the module itself uses. velmor_error.cpp lists all codes that have a message.
enum ErrorCode : int32_t {
    ERROR_SUCCESS = 0,
    ERROR_PERMISSION_DENIED = 202,
    ERROR_PARAMETER = 401,
    ERROR_SYSTEM_INTERNAL = 1002000001,
    ERROR_UNDER_AGE = 1002000006,
    ERROR_AGREEMENT_NOT_AGREED = 1002000011,
    ERROR_PLAYER_INVALID = 1002000015,
};

/// The fixed message of an error code; null for a code without one. Callable from any thread.
const char* FindErrorMessage(int32_t code);

/// Creates a JS Error with `message`, or with the code's fixed message if `message` is empty. Its property `code` is
/// the number `code`. Null if the environment refuses. On `env`'s JS thread.
napi_value CreateBusinessError(const napi_env& env, int32_t code, const std::string& message);

/// The same. If the environment refuses, creates an Error in another way, with the same message and, if possible, code.
/// Null if that fails too. No exception may be pending. On `env`'s JS thread.
napi_value ObtainBusinessError(napi_env env, int32_t code, const std::string& message);

/// Throws a business error into the current JS call. On `env`'s JS thread.
void ThrowBusinessError(const napi_env& env, int32_t code, const std::string& message);

/// The same for an environment that may end meanwhile, from any thread: checked before the error is created and again
/// before it is thrown.
void ThrowBusinessError(const std::shared_ptr<EnvInfo>& envInfo, int32_t code, const std::string& message);

}  // namespace TAVIK::GAME_PLAYER
