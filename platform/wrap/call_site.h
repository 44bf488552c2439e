#pragma once

#include <node_api.h>

#include <cstdint>

namespace StandIn {

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
