#include "making.h"

namespace StandIn {

napi_value Make(napi_env env, double number) {
    napi_value value = nullptr;
    (void)napi_create_double(env, number, &value);
    return value;
}

napi_value Make(napi_env env, bool flag) {
    napi_value value = nullptr;
    (void)napi_get_boolean(env, flag, &value);
    return value;
}

ObjectMaker::ObjectMaker(napi_env env) : env_(env) { (void)napi_create_object(env, &object_); }

ObjectMaker& ObjectMaker::Set(const char* name, napi_value value) {
    if (value != nullptr) (void)napi_set_named_property(env_, object_, name, value);
    return *this;
}

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
