// Calls Node-API as the module does not, but as Node-API allows: without what is optional.

#include <iterator>

#include "environment.h"

namespace {

napi_value MakeNumber(napi_env env, size_t number) {
    napi_value value = nullptr;
    (void)napi_create_int32(env, static_cast<int32_t>(number), &value);
    return value;
}

/// The number of arguments, which are not read, and the data of the method.
napi_value Sum(napi_env env, napi_callback_info info) {
    size_t count = 0;
    void* data = nullptr;
    (void)napi_get_cb_info(env, info, &count, nullptr, nullptr, nullptr);
    (void)napi_get_cb_info(env, info, nullptr, nullptr, nullptr, &data);
    return MakeNumber(env, count + *static_cast<size_t*>(data));
}

/// Calls its argument without arguments. The status of that, and of defining nothing, and a property that is not there.
napi_value Call(napi_env env, napi_callback_info info) {
    size_t count = 1;
    napi_value function = nullptr;
    napi_value self = nullptr;
    (void)napi_get_cb_info(env, info, &count, &function, &self, nullptr);
    const napi_status called = napi_call_function(env, self, function, 0, nullptr, nullptr);
    const napi_status nothing = napi_define_properties(env, self, 0, nullptr);
    return MakeNumber(env, 100 * called + 10 * nothing + napi_define_properties(env, self, 1, nullptr));
}

}  // namespace

NAPI_MODULE_INIT() {
    (void)StandIn::Environment::Attach(env);
    static size_t ten = 10;
    static size_t twenty = 20;
    const napi_property_descriptor properties[] = {
        {"sum10", nullptr, Sum, nullptr, nullptr, nullptr, napi_default, &ten},
        {"sum20", nullptr, Sum, nullptr, nullptr, nullptr, napi_default, &twenty},
        {"call", nullptr, Call, nullptr, nullptr, nullptr, napi_default, nullptr},
    };
    (void)napi_define_properties(env, exports, std::size(properties), properties);
    return exports;
}
