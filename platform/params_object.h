#pragma once

#include <node_api.h>

#include "want_params.h"

namespace StandIn {

/// Makes a JS object of `params`, as `WrapWantParams` does for the module, but never fails on purpose.
/// Null if the environment refuses. On `env`'s JS thread.
napi_value MakeParamsObject(napi_env env, const OHOS::AAFwk::WantParams& params);

}  // namespace StandIn
