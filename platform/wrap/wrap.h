#pragma once

#include <node_api.h>

#include <cstdint>

#include "environment.h"
#include "faults.h"

namespace StandIn {

/// Refuses a call made off the JS thread of `env`, or after its end, and logs it.
napi_status RefuseForeign(Call call, napi_env env);

/// The failure of a call that `Faults` lets fail; `napi_get_last_error_info` tells of it until the next call.
napi_status FailOnPurpose();

/// Whether the last call of this thread failed on purpose; false unless `Faults` watches.
bool HasFailedOnPurpose();
/// A call of this thread begins, which does not fail on purpose.
void ForgetPurpose();

/// Calls `real` on behalf of the module, unless the environment is not this thread's or the call is to fail.
template <typename... Params, typename... Args>
napi_status Guarded(Call call, napi_status (*real)(napi_env, Params...), napi_env env, Args... args) {
    if (!Environment::IsOwn(env)) return RefuseForeign(call, env);
    if (Faults::IsWatching()) {
        if (Faults::Trip(call)) return FailOnPurpose();
        ForgetPurpose();
    }
    return real(env, args...);
}

// Where JS made a request, for the error that it is rejected with. All on the JS thread of `env`. Nothing is
// noted if the environment variable GAMEAPI_STACKS is "off".

/// JS calls the module's method of this name.
void BeginMethod(const char* name);
/// The method that this JS thread called last; null on other threads.
const char* LastMethod();
/// The number of that call on this thread, from 1 on.
uint64_t CurrentCall();

/// The method called last makes the request of this promise.
void NoteCallSite(napi_env env, napi_deferred deferred);
/// Gives `error`, if it is one, the stack of the request, and forgets that.
void GiveCallSite(napi_env env, napi_deferred deferred, napi_value error);
void DropCallSite(napi_env env, napi_deferred deferred);

}  // namespace StandIn
