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

/// Whether the last call on this thread was made to fail; false unless `Faults` is watching.
bool HasFailedOnPurpose();
/// Call when this thread begins a call that is not made to fail.
void ForgetPurpose();

/// Calls `real` for the module, unless `env` does not belong to this thread or the call is made to fail.
template <typename... Params, typename... Args>
napi_status Guarded(Call call, napi_status (*real)(napi_env, Params...), napi_env env, Args... args) {
    if (!Environment::IsOwn(env)) return RefuseForeign(call, env);
    if (Faults::IsWatching()) {
        if (Faults::Trip(call)) return FailOnPurpose();
        ForgetPurpose();
    }
    return real(env, args...);
}

// The functions below record where JS made a request, and add that to the error that rejects it. All on the
// JS thread of `env`. Nothing is recorded if the environment variable GAMEAPI_STACKS is "off".

/// Call when JS calls the module's method of this name.
void BeginMethod(const char* name);
/// The method that this JS thread called last; null on other threads.
const char* LastMethod();
/// The number of that call, which no other call of the process has.
uint64_t CurrentCall();

/// Records that the method called last makes the request of this promise.
void NoteCallSite(napi_env env, napi_deferred deferred);
/// If `error` is an Error, adds the stack of the request to it and drops the record.
void GiveCallSite(napi_env env, napi_deferred deferred, napi_value error);
void DropCallSite(napi_env env, napi_deferred deferred);

}  // namespace StandIn
