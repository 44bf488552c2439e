#pragma once

#include <memory>

#include "context.h"
#include "napi/native_api.h"

namespace OHOS::AbilityRuntime {

/// Stores in `isStage` whether `value` is a context of the stage model. On `env`'s JS thread.
napi_status IsStageContext(napi_env env, napi_value value, bool& isStage);

/// The native context of a JS value that is a context of the stage model; empty if it has none. On `env`'s JS thread.
std::shared_ptr<Context> GetStageModeContext(napi_env env, napi_value value);

}  // namespace OHOS::AbilityRuntime
