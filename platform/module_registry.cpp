#include "environment.h"

namespace StandIn {
namespace {

napi_module* gRecord = nullptr;  // set once, while the library is being loaded
thread_local napi_env gModuleEnv = nullptr;
thread_local napi_ref gExports = nullptr;  // goes with the environment

}  // namespace

napi_env ModuleEnv() { return gModuleEnv; }

napi_value ModuleExports() {
    napi_value exports = nullptr;
    if (gModuleEnv != nullptr) (void)napi_get_reference_value(gModuleEnv, gExports, &exports);
    return exports;
}

napi_value LoadModule(napi_env env, napi_value exports) {
    if (gRecord == nullptr) {
        (void)napi_throw_error(env, nullptr, "The library registered no module when it was loaded.");
        return nullptr;
    }
    (void)Environment::Attach(env);
    if (gModuleEnv == nullptr) {
        gModuleEnv = env;
        (void)napi_create_reference(env, exports, 1, &gExports);
        (void)napi_add_env_cleanup_hook(
            env, [](void*) { gModuleEnv = nullptr; }, nullptr);
    }
    napi_value result = gRecord->nm_register_func(gModuleEnv, exports);
    if (env != gModuleEnv) (void)MovePendingException(gModuleEnv, env);
    return result;
}

}  // namespace StandIn

// Node would tie the record to the load that brought it in, and forget it with that load's environment.
extern "C" void __wrap_napi_module_register(napi_module* record) { StandIn::gRecord = record; }
