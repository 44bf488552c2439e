#pragma once

#include <node_api.h>

#include <array>

#include "bench/napi_values.h"

// Minimal implementations of the module's work without the device: they have no modals, Wants, log lines or
// analytics.

namespace Bare {

using namespace Bench;  // NOLINT(google-build-using-namespace): a program of its own

template <size_t COUNT = 1>
std::array<napi_value, COUNT> Arguments(napi_env env, napi_callback_info info) {
    std::array<napi_value, COUNT> values{};
    size_t count = COUNT;
    Must(napi_get_cb_info(env, info, &count, values.data(), nullptr, nullptr));
    return values;
}

inline napi_value Property(napi_env env, napi_value object, const char* name) {
    napi_value value = nullptr;
    Must(napi_get_named_property(env, object, name, &value));
    return value;
}

inline napi_value Undefined(napi_env env) {
    napi_value value = nullptr;
    Must(napi_get_undefined(env, &value));
    return value;
}

inline void Define(napi_env env, napi_value exports, const char* name, napi_callback callback) {
    napi_value function = nullptr;
    Must(napi_create_function(env, name, NAPI_AUTO_LENGTH, callback, nullptr, &function));
    Must(napi_set_named_property(env, exports, name, function));
}

/// Defines trip(), listen(listener) and raise(text).
void DefineDeliveries(napi_env env, napi_value exports);

}  // namespace Bare
