#pragma once

#include "napi/native_api.h"
#include "want_params.h"

namespace OHOS::AppExecFwk {

/// Makes a JS object of `params`: one property per parameter, with the JS counterpart of its type (number, boolean,
/// string, array of strings, object). Null on failure. On `env`'s JS thread.
napi_value WrapWantParams(napi_env env, const AAFwk::WantParams& params);

}  // namespace OHOS::AppExecFwk
