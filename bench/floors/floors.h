#pragma once

#include <uv.h>

#include <array>
#include <cstdint>
#include <cstdlib>

#include "bench/napi_values.h"
#include "hilog/log.h"
#include "napi/native_api.h"

// The floors make the same calls of the platform, Node-API, libuv and OpenSSL as the module for the
// same work, in the same order, and write the same log lines. They have no layers, request contexts, locks or
// shared ownership, and handle only the arguments that they are measured with.

/// A log line of the module's form. `function` names the function of the module that writes it.
#define LOG_LINE(level, function, format, ...)                  \
    ((void)HiLogPrint(LOG_CORE, level, 0xD00470A, "GAMEAPISDK", \
                      "[%{public}s(%{public}s:%{public}d)]" format, "", function, __LINE__, ##__VA_ARGS__))
#define SAY(function, format, ...) LOG_LINE(LOG_INFO, function, format, ##__VA_ARGS__)

namespace Floors {

using namespace Bench;  // NOLINT(google-build-using-namespace): a program of its own

/// What a call was made with.
template <size_t COUNT>
struct Call {
    napi_value undefined = nullptr;
    napi_value self = nullptr;
    size_t count = COUNT;
    std::array<napi_value, COUNT> values{};
};

template <size_t COUNT>
Call<COUNT> ReadCall(napi_env env, napi_callback_info info) {
    Call<COUNT> call;
    Must(napi_get_undefined(env, &call.undefined));
    Must(napi_get_cb_info(env, info, &call.count, call.values.data(), &call.self, nullptr));
    return call;
}

inline void CheckType(napi_env env, napi_value value, napi_valuetype expected) {
    napi_valuetype type = napi_undefined;
    Must(napi_typeof(env, value, &type));
    if (type != expected) std::abort();
}

inline void CheckNoException(napi_env env) {
    bool isPending = false;
    Must(napi_is_exception_pending(env, &isPending));
    if (isPending) std::abort();
}

/// A property of an object; null if it has none of this name.
inline napi_value Property(napi_env env, napi_value object, const char* name) {
    bool isThere = false;
    napi_value value = nullptr;
    Must(napi_has_named_property(env, object, name, &isThere));
    if (isThere) Must(napi_get_named_property(env, object, name, &value));
    return value;
}

/// The execute step of all work on the loop.
inline void DoNothing(uv_work_t* /*work*/) {}

/// The analytics event at the end of a call.
void ReportEnd(const char* api, int64_t begin, int32_t code);
/// Throws the error of an unusable parameter, or of none.
void ThrowError(napi_env env, int32_t code, const char* message);

// The JS methods: the module's, and two that make room.

/// init(): throws, as it lacks its context.
napi_value Init(napi_env env, napi_callback_info info);
/// bindPlayer(context, openId, teamId); throws without the IDs.
napi_value BindPlayer(napi_env env, napi_callback_info info);
/// prePurchase(context, purchase)
napi_value PrePurchase(napi_env env, napi_callback_info info);
/// savePlayerRole(context, role)
napi_value SavePlayerRole(napi_env env, napi_callback_info info);
/// unionLogin(context, login)
napi_value UnionLogin(napi_env env, napi_callback_info info);
/// forget(): the requests that nobody answers. The device must have forgotten them.
napi_value Forget(napi_env env, napi_callback_info info);
/// listen(listener): for the event below.
napi_value Listen(napi_env env, napi_callback_info info);
/// onEventCallback(result)
napi_value OnEventCallback(napi_env env, napi_callback_info info);

}  // namespace Floors
