#pragma once

#include <node_api.h>

namespace StandIn {

// Where JS made a request. All on the JS thread of `env`.

/// The place from which the current method is called. Null if the environment variable GAMEAPI_STACKS is "off", or on
/// failure.
napi_ref MakeCallSite(napi_env env);

/// Adds the stack of a place to that of `error`, which begins with a call of `method`.
void AddStack(napi_env env, napi_ref site, const char* method, napi_value error);

}  // namespace StandIn
