#pragma once

#include <node_api.h>

#include <array>
#include <cstdint>
#include <string>

#include "want_params.h"

// Reads the arguments that the device's JS has checked.

namespace StandIn {

/// The first `COUNT` arguments of a call; undefined for those that the caller left out.
template <size_t COUNT>
std::array<napi_value, COUNT> Arguments(napi_env env, napi_callback_info info) {
    std::array<napi_value, COUNT> values{};
    size_t count = COUNT;
    (void)napi_get_cb_info(env, info, &count, values.data(), nullptr, nullptr);
    return values;
}

bool IsOfType(napi_env env, napi_value value, napi_valuetype type);
bool IsArray(napi_env env, napi_value value);

template <typename Value>
Value Read(napi_env env, napi_value value);
template <>
inline napi_value Read(napi_env /*env*/, napi_value value) {
    return value;
}
template <>
bool Read(napi_env env, napi_value value);
template <>
int32_t Read(napi_env env, napi_value value);
template <>
uint32_t Read(napi_env env, napi_value value);
template <>
double Read(napi_env env, napi_value value);
template <>
inline uint64_t Read(napi_env env, napi_value value) {
    return static_cast<uint64_t>(Read<double>(env, value));
}
template <>
std::string Read(napi_env env, napi_value value);
template <>
OHOS::AAFwk::WantParams Read(napi_env env, napi_value object);

napi_value ReadElement(napi_env env, napi_value array, uint32_t index);
napi_value ReadProperty(napi_env env, napi_value object, const char* name);

/// Calls `visit` with each element of `array`; with none if it is undefined.
template <typename Visit>
void ForEachElement(napi_env env, napi_value array, const Visit& visit) {
    uint32_t length = 0;
    (void)napi_get_array_length(env, array, &length);
    for (uint32_t i = 0; i < length; ++i) {
        visit(ReadElement(env, array, i));
    }
}

}  // namespace StandIn
