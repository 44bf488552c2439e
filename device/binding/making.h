#pragma once

#include <node_api.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "device_context.h"

// Makes the JS values that the functions of the device return. Null on failure, as in an environment that is ending.

namespace StandIn {

napi_value MakeNumber(napi_env env, double number);
napi_value MakeFlag(napi_env env, bool flag);

/// Builds a plain object. Null values are left out.
class ObjectMaker {
public:
    explicit ObjectMaker(napi_env env);

    ObjectMaker& Set(const char* name, napi_value value);
    ObjectMaker& Text(const char* name, const std::string& text) { return Set(name, MakeText(env_, text)); }
    ObjectMaker& Number(const char* name, double number) { return Set(name, MakeNumber(env_, number)); }
    ObjectMaker& Flag(const char* name, bool flag) { return Set(name, MakeFlag(env_, flag)); }

    napi_value Object() const { return object_; }

private:
    napi_env env_;
    napi_value object_ = nullptr;
};

/// Makes an array of the results of `make` for each of `items`.
template <typename Items, typename Make>
napi_value MakeArray(napi_env env, const Items& items, const Make& make) {
    napi_value array = nullptr;
    (void)napi_create_array(env, &array);
    uint32_t index = 0;
    for (const auto& item : items) {
        napi_handle_scope scope = nullptr;  // frees each item's handles: an array may be long
        (void)napi_open_handle_scope(env, &scope);
        (void)napi_set_element(env, array, index++, make(item));
        (void)napi_close_handle_scope(env, scope);
    }
    return array;
}

struct Function {
    const char* name;
    napi_callback callback;
};

/// Defines the functions on `target`; false if a Node-API call fails.
bool DefineFunctions(napi_env env, napi_value target, std::initializer_list<Function> functions);

}  // namespace StandIn
