#pragma once

#include <node_api.h>

#include <array>
#include <cstdint>
#include <string>

#include "js_values.h"
#include "want_params.h"

// What the functions of the device read from their JS arguments. Those that answer false leave a JS exception
// pending, which names the argument and what it may be.

namespace StandIn {

/// The first `COUNT` arguments of a call; undefined where the caller gave none.
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
/// A number from `least` to `most`, which a RangeError tells of.
bool ReadNumber(napi_env env, napi_value value, const std::string& name, double least, double most,
                double& number);

/// Typed parameters: a plain object of the types that these have.
bool ReadParams(napi_env env, napi_value value, OHOS::AAFwk::WantParams& params);

}  // namespace StandIn
