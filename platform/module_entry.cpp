#include "environment.h"

// Node looks this name up in every library it loads, on every thread; it is linked into the module itself.
extern "C" NAPI_MODULE_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports) {
    return StandIn::LoadModule(env, exports);
}
