#pragma once

#include <node_api.h>

#include <cstddef>

namespace StandIn {

// Records which methods JS calls and what becomes of each call, for those who watch, and where a request was made, for
// the error that rejects it. All on the JS thread of `env`, without running code of the game. Nothing but the place is
// recorded unless somebody watches when the method is called.

/// Call when the method that this thread serves has read its arguments.
void RecordCall(napi_env env, size_t count, const napi_value* arguments);
/// Call when that method returns.
void RecordEndOfCall(napi_env env);

/// The promise is that of the served call.
void KeepPromise(napi_env env, napi_deferred deferred);
/// The function behind the reference was passed to the served call.
void KeepFunction(napi_ref reference);
void DropFunction(napi_ref reference);
/// `function` is a handle to what is behind the reference.
void KeepHandle(napi_ref reference, napi_value function);

// Where JS made a request.

/// The place from which the current method is called. Null if the environment variable GAMEAPI_STACKS is "off", or on
/// failure.
napi_ref MakeCallSite(napi_env env);

/// Adds the stack of a place to that of `error`, which begins with a call of `method`.
void AddStack(napi_env env, napi_ref site, const char* method, napi_value error);

/// Call before a promise is rejected: adds the place of its request to `error`, if that is an Error.
void AddCallSite(napi_env env, napi_deferred deferred, napi_value error);
/// The promise is settled. `error` is null if it is resolved with `data`.
void RecordSettled(napi_env env, napi_deferred deferred, napi_value error, napi_value data);
/// The served method throws; null if the error is not the module's own.
void RecordThrown(napi_env env, napi_value error);
/// The module calls a function of the game.
void RecordCalledBack(napi_env env, napi_value function, size_t count, const napi_value* arguments);

}  // namespace StandIn
