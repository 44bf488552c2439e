#pragma once

#include <memory>

#include "context.h"
#include "napi/native_api.h"

namespace OHOS::AbilityRuntime {

/// Tells in `isStage` whether the JS value is a context of the stage model. On `env`'s JS thread.
napi_status IsStageContext(napi_env env, napi_value value, bool& isStage);

/// The context behind a JS value that `IsStageContext` says yes to; empty if there is none. On `env`'s JS
/// thread.
std::shared_ptr<Context> GetStageModeContext(napi_env env, napi_value value);

}  // namespace OHOS::AbilityRuntime
