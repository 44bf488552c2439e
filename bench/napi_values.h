#pragma once

#include <node_api.h>

#include <cstdint>
#include <cstdlib>
#include <string>

// What the floors and the bare programs share. All on the JS thread of `env`.

namespace Bench {

/// Aborts the process if a call failed: its figure would mean nothing.
inline void Must(napi_status status) {
    if (status != napi_ok) std::abort();
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

}  // namespace Bench
