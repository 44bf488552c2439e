#ifndef COMMON_VELMOR_ERROR_H
#define COMMON_VELMOR_ERROR_H

#include <cstdint>
#include <string>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// The codes that the module itself gives a meaning to. The table in velmor_error.cpp has all that have a
/// text.
enum ErrorCode : int32_t {
    ERROR_SUCCESS = 0,
    ERROR_PERMISSION_DENIED = 202,
    ERROR_PARAMETER = 401,
    ERROR_SYSTEM_INTERNAL = 1002000001,
    ERROR_UNDER_AGE = 1002000006,
    ERROR_AGREEMENT_NOT_AGREED = 1002000011,
    ERROR_PLAYER_INVALID = 1002000015,
};

/// Which API a request belongs to, as the game-service extension numbers them.
enum RequestType : int32_t {
    REQUEST_UNKNOWN = 0,
    REQUEST_INIT = 1,
    REQUEST_GET_LOCAL_PLAYER = 2,
    REQUEST_SAVE_PLAYER_ROLE = 3,
    REQUEST_PRE_PURCHASE = 4,
    REQUEST_POST_PURCHASE = 5,
    REQUEST_LAUNCH_ANTI_ADDICTION = 6,
    REQUEST_BIND_PLAYER = 7,
    REQUEST_UNBIND_PLAYER = 8,
    REQUEST_VERIFY_LOCAL_PLAYER = 9,
    REQUEST_UNION_LOGIN = 10,
    REQUEST_ON = 11,
    REQUEST_OFF = 12,
    REQUEST_LAUNCH_WELCOME_BANNER = 13,
    REQUEST_QUICK_GAME_LOGIN = 14,
    REQUEST_LAUNCH_COMMON_PAGE = 15,
};

/// The fixed text of an error code; null for a code without one. Callable from any thread.
const char* FindErrorMessage(int32_t code);

/// The JS name of a request type; "undefined" for a number that is none. Callable from any thread.
const char* FindApiName(int32_t requestType);

/// Whether requests of this type report success where others report a failure found on the device:
/// init and savePlayerRole never fail for the game.
bool IsFailureHidden(int32_t requestType);

/// A new JS Error with `message`, or the code's fixed text if that is empty, and the number `code` as its
/// property `code`. Null if the environment refuses. On `env`'s JS thread.
napi_value CreateBusinessError(const napi_env& env, int32_t code, const std::string& message);

/// Throws such an error into the current JS call. On `env`'s JS thread.
void ThrowBusinessError(const napi_env& env, int32_t code, const std::string& message);

}  // namespace TAVIK::GAME_PLAYER

#endif
