#pragma once

#include <node_api.h>

#include <array>
#include <cstdlib>
#include <string>

// The floors: each is a minimal, hand-written implementation of work that the module does, without its
// layers, checks, log lines and analytics. A failed call aborts the process: its figure would mean nothing.

namespace Floors {

inline void Must(napi_status status) {
    if (status != napi_ok) std::abort();
}

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

/// Reads a string as the module does: at most 4096 bytes of it.
inline std::string ReadText(napi_env env, napi_value value) {
    char buffer[4097];
    size_t length = 0;
    Must(napi_get_value_string_utf8(env, value, buffer, sizeof(buffer), &length));
    return std::string(buffer, length);
}

inline int32_t ReadInt(napi_env env, napi_value value) {
    int32_t number = 0;
    Must(napi_get_value_int32(env, value, &number));
    return number;
}

inline napi_value MakeText(napi_env env, const std::string& text) {
    napi_value value = nullptr;
    Must(napi_create_string_utf8(env, text.data(), text.size(), &value));
    return value;
}

inline void SetInt(napi_env env, napi_value object, const char* name, int32_t number) {
    napi_value value = nullptr;
    Must(napi_create_int32(env, number, &value));
    Must(napi_set_named_property(env, object, name, value));
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

}  // namespace Floors
