#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "hilog/log.h"
#include "napi/native_api.h"

// The floors make the same calls of the platform, Node-API, libuv and OpenSSL as the module for the same work, in the
// same order, and write the same log lines. They have no layers, request contexts, locks or shared ownership, and
// handle only the arguments that they are measured with.

/// A log line of the module's form. `function` names the function of the module that writes it.
#define LOG_LINE(level, function, format, ...)                                                                    \
    ((void)HiLogPrint(LOG_CORE, level, 0xD00470A, "GAMEAPISDK", "[%{public}s(%{public}s:%{public}d)]" format, "", \
                      function, __LINE__, ##__VA_ARGS__))
#define SAY(function, format, ...) LOG_LINE(LOG_INFO, function, format, ##__VA_ARGS__)

namespace OHOS::AbilityRuntime {
class AbilityContext;
}

namespace Floors {

namespace std = StandIn::RedirectedStd;

/// Aborts the process if a call failed: its figure would mean nothing.
inline void Must(napi_status status) {
    if (status != napi_ok) std::abort();
}

/// What a function of Node-API gives by its last parameter.
template <typename Result = napi_value, typename Function, typename... Args>
Result Get(Function function, napi_env env, Args... args) {
    Result result{};
    Must(function(env, args..., &result));
    return result;
}

/// What a call was made with.
struct Call {
    napi_value undefined = nullptr;
    napi_value self = nullptr;
    std::array<napi_value, 3> values{};
    size_t count = values.size();
};

inline Call ReadCall(napi_env env, napi_callback_info info) {
    Call call;
    call.undefined = Get(napi_get_undefined, env);
    Must(napi_get_cb_info(env, info, &call.count, call.values.data(), &call.self, nullptr));
    return call;
}

inline void CheckNoException(napi_env env) {
    if (Get<bool>(napi_is_exception_pending, env)) std::abort();
}

/// A property of an object; null if it has none of this name.
inline napi_value Property(napi_env env, napi_value object, const char* name) {
    const bool isThere = Get<bool>(napi_has_named_property, env, object, name);
    return isThere ? Get(napi_get_named_property, env, object, name) : nullptr;
}

inline int32_t ReadInt(napi_env env, napi_value value) { return Get<int32_t>(napi_get_value_int32, env, value); }

/// Reads a string as the module does: at most 4096 bytes of it.
inline std::string ReadText(napi_env env, napi_value value) {
    char buffer[4097];
    const auto length = Get<size_t>(napi_get_value_string_utf8, env, value, buffer, sizeof(buffer));
    return std::string(buffer, length);
}

/// The record of a union login.
std::string ReadLogin(napi_env env, napi_value login, OHOS::AbilityRuntime::AbilityContext& context);

}  // namespace Floors
