#pragma once

#include <node_api.h>

#include <cstddef>

namespace StandIn {

// Tells watchers which methods JS calls and what each call comes to. All on the JS thread of `env`, and
// without running code of the game. Nothing is recorded unless somebody watches when the method is called.

/// Call when JS calls the method whose number is `CurrentCall()`.
void TellCall(napi_env env, const char* method, size_t count, const napi_value* arguments);

/// The promise belongs to the method that was called last.
void NotePromise(napi_deferred deferred);
/// The function behind the reference was passed to the method that was called last.
void NoteFunction(napi_ref reference);
/// The module is about to use the reference.
void NoteUse(napi_ref reference);
void DropFunction(napi_ref reference);

void TellResolved(napi_env env, napi_deferred deferred, napi_value value);
void TellRejected(napi_env env, napi_deferred deferred, napi_value error);
/// The method that was called last ends with an exception; null if it is not the module's own.
void TellThrown(napi_env env, napi_value error);
/// The module calls the function of the reference that it used last.
void TellCalledBack(napi_env env, size_t count, const napi_value* arguments);

}  // namespace StandIn
