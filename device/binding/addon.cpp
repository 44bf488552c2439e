#include <node_api.h>

#include "functions.h"
#include "instance.h"

NAPI_MODULE_INIT() {
    using namespace StandIn;
    const bool isDefined = Instance::Create(env) && DefineContextFunctions(env, exports) &&
                           DefineModalFunctions(env, exports) && DefineAnswerFunctions(env, exports) &&
                           DefineClockFunctions(env, exports) && DefineRecordFunctions(env, exports) &&
                           DefineControlFunctions(env, exports);
    if (!isDefined) (void)napi_throw_error(env, nullptr, "This JS environment cannot drive the stand-in device.");
    return exports;
}
