#pragma once

#include <node_api.h>

#include <string>

#include "want_params.h"

namespace StandIn {

// Both null if the environment refuses. On `env`'s JS thread.

napi_value MakeText(napi_env env, const std::string& text);

/// Makes a JS object of `params`, as `WrapWantParams` does for the module, but never fails on purpose.
napi_value MakeParamsObject(napi_env env, const OHOS::AAFwk::WantParams& params);

}  // namespace StandIn
