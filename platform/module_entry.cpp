#include "calls/runtime.h"
#include "environment.h"
#include "game_end.h"
#include "stay_loaded.h"

// This file is linked into the module itself.

// Node looks up this symbol in every library it loads, on every thread.
extern "C" NAPI_MODULE_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports) {
    static constexpr char IN_THIS_LIBRARY = 0;
    StandIn::StayLoaded(&IN_THIS_LIBRARY);
    return StandIn::LoadModule(env, exports);
}

#ifdef COUNTING_COVERAGE
// Writes the coverage counts of this library before the module ends the process.
extern "C" void __gcov_dump(void);
extern "C" void __gcov_reset(void);

[[noreturn]] void StandIn::Exit(int status) {
    __gcov_dump();
    __gcov_reset();
    StandIn::GameEnd::Arrive(status);
}
#endif
