#include <node_api.h>

#include <vector>

#include "functions.h"
#include "instance.h"
#include "stay_loaded.h"

namespace StandIn {

bool DefineFunctions(napi_env env, napi_value target, std::initializer_list<Function> functions) {
    std::vector<napi_property_descriptor> properties;
    for (const Function& function : functions) {
        napi_property_descriptor property{};
        property.utf8name = function.name;
        property.method = function.callback;
        property.attributes = napi_enumerable;
        properties.push_back(property);
    }
    return napi_define_properties(env, target, properties.size(), properties.data()) == napi_ok;
}

}  // namespace StandIn

NAPI_MODULE_INIT() {
    using namespace StandIn;
    static constexpr char IN_THIS_LIBRARY = 0;
    StayLoaded(&IN_THIS_LIBRARY);
    const bool isDefined = Instance::Create(env) && DefineModalFunctions(env, exports) &&
                           DefineAnswerFunctions(env, exports) && DefineRecordFunctions(env, exports) &&
                           DefineControlFunctions(env, exports);
    if (!isDefined) (void)napi_throw_error(env, nullptr, "This JS environment cannot drive the stand-in device.");
    return exports;
}
