#pragma once

#include <node_api.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "device_context.h"

// Makes the JS values that the functions of the device return. Null on failure, as in an environment that is ending.

namespace StandIn {

inline napi_value Make(napi_env /*env*/, napi_value value) { return value; }
napi_value Make(napi_env env, bool flag);
napi_value Make(napi_env env, double number);
inline napi_value Make(napi_env env, int32_t number) { return Make(env, static_cast<double>(number)); }
inline napi_value Make(napi_env env, uint32_t number) { return Make(env, static_cast<double>(number)); }
inline napi_value Make(napi_env env, int64_t number) { return Make(env, static_cast<double>(number)); }
inline napi_value Make(napi_env env, uint64_t number) { return Make(env, static_cast<double>(number)); }
inline napi_value Make(napi_env env, const std::string& text) { return MakeText(env, text); }

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

/// An array of all items of a container.
template <typename Items, typename = typename Items::const_iterator>
napi_value Make(napi_env env, const Items& items) {
    return MakeArray(env, items, [env](const auto& item) { return Make(env, item); });
}

/// Builds a plain object. Null values are left out.
class ObjectMaker {
public:
    explicit ObjectMaker(napi_env env);

    ObjectMaker& Set(const char* name, napi_value value);
    ObjectMaker& Set(const char* name, const char* text) { return Set(name, MakeText(env_, text)); }
    template <typename Value>
    ObjectMaker& Set(const char* name, const Value& value) {
        return Set(name, Make(env_, value));
    }

    napi_value Object() const { return object_; }

private:
    napi_env env_;
    napi_value object_ = nullptr;
};

struct Function {
    const char* name;
    napi_callback callback;
};

/// Defines the functions on `target`; false if a Node-API call fails.
bool DefineFunctions(napi_env env, napi_value target, std::initializer_list<Function> functions);

}  // namespace StandIn
