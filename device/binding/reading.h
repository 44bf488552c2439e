#pragma once

#include <node_api.h>

#include <array>
#include <cstdint>
#include <string>

#include "js_values.h"
#include "want_params.h"

// Reads the JS arguments of the device's functions. The Read functions leave a JS exception pending when they
// return false. It names the argument and says what it may be.

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

bool ReadFlag(napi_env env, napi_value value, const std::string& name, bool& flag);
bool ReadInt32(napi_env env, napi_value value, const std::string& name, int32_t& number);
/// An integer of at least `least`.
bool ReadCount(napi_env env, napi_value value, const std::string& name, uint64_t least, uint64_t& count);
/// A number from `least` to `most`. A number outside that range throws a RangeError.
bool ReadNumber(napi_env env, napi_value value, const std::string& name, double least, double most,
                double& number);

/// A plain object whose values have the types that `WantParams` supports.
bool ReadParams(napi_env env, napi_value value, OHOS::AAFwk::WantParams& params);

}  // namespace StandIn
