#pragma once

#include <node_api.h>

namespace StandIn {

// The functions of the binding by group. Each definer adds its group to `exports`; false if a Node-API call fails.

bool DefineContextFunctions(napi_env env, napi_value exports);
bool DefineModalFunctions(napi_env env, napi_value exports);
bool DefineAnswerFunctions(napi_env env, napi_value exports);
bool DefineClockFunctions(napi_env env, napi_value exports);
bool DefineRecordFunctions(napi_env env, napi_value exports);
bool DefineControlFunctions(napi_env env, napi_value exports);

}  // namespace StandIn
