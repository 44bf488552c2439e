#pragma once

#include <node_api.h>

namespace StandIn {

/// The module's environment on the calling JS thread; null if the module was never loaded there.
napi_env ModuleEnv();

/// Runs the register function of the record that the module's load-time constructor handed in. On the device
/// a JS thread has one environment, so a second load on the same thread is given the first one again.
napi_value LoadModule(napi_env env, napi_value exports);

}  // namespace StandIn
