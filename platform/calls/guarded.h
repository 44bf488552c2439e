#pragma once

#include <node_api.h>

#include <cstdint>

#include "environment.h"
#include "faults.h"

namespace StandIn {

/// Refuses and logs a call that was made off the JS thread of `env`, or after `env` has ended.
napi_status RefuseForeign(Call call, napi_env env);

/// The status of an injected failure. `napi_get_last_error_info` reports the failure until the next call.
napi_status FailOnPurpose();

/// Whether the last call on this thread was made to fail; false unless `Faults` are armed.
bool HasFailedOnPurpose();
/// Call when this thread begins a call that is not made to fail.
void ForgetPurpose();

/// Calls `real` for the module, unless `env` does not belong to this thread or the call is made to fail.
template <typename... Params, typename... Args>
napi_status Guarded(Call call, napi_status (*real)(napi_env, Params...), napi_env env, Args... args) {
    if (!Environment::IsOwn(env)) return RefuseForeign(call, env);
    if (Faults::AreArmed()) {
        if (Faults::Trip(call)) return FailOnPurpose();
        ForgetPurpose();
    }
    return real(env, args...);
}

}  // namespace StandIn
