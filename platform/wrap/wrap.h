#pragma once

#include <node_api.h>

#include "environment.h"
#include "faults.h"

namespace StandIn {

/// Refuses a call made off the JS thread of `env`, or after its end, and logs it.
napi_status RefuseForeign(Call call, napi_env env);

/// The failure of a call that `Faults` lets fail; `napi_get_last_error_info` tells of it until the next call.
napi_status FailOnPurpose();

/// Whether the last call of this thread failed on purpose. Kept only while `Faults` watches.
bool& HasFailedOnPurpose();

/// Calls `real` on behalf of the module, unless the environment is not this thread's or the call is to fail.
template <typename... Params, typename... Args>
napi_status Guarded(Call call, napi_status (*real)(napi_env, Params...), napi_env env, Args... args) {
    if (!Environment::IsOwn(env)) return RefuseForeign(call, env);
    if (Faults::IsWatching()) {
        if (Faults::Trip(call)) return FailOnPurpose();
        HasFailedOnPurpose() = false;
    }
    return real(env, args...);
}

}  // namespace StandIn
