#include "calls/guarded.h"

// The module's Node-API calls that behave the same on Node and on the device.

using StandIn::Call;
using StandIn::Guarded;

#define GUARD(name, params, ...) \
    extern "C" napi_status device_##name params { return Guarded(Call::name, name, __VA_ARGS__); }

GUARD(napi_add_env_cleanup_hook, (napi_env env, void (*hook)(void*), void* data), env, hook, data)
GUARD(napi_create_int32, (napi_env env, int32_t number, napi_value* value), env, number, value)
GUARD(napi_create_object, (napi_env env, napi_value* value), env, value)
GUARD(napi_create_string_utf8, (napi_env env, const char* text, size_t length, napi_value* value), env, text, length,
      value)
GUARD(napi_get_and_clear_last_exception, (napi_env env, napi_value* error), env, error)
GUARD(napi_get_array_length, (napi_env env, napi_value array, uint32_t* length), env, array, length)
GUARD(napi_get_null, (napi_env env, napi_value* value), env, value)
GUARD(napi_get_undefined, (napi_env env, napi_value* value), env, value)
GUARD(napi_get_value_bool, (napi_env env, napi_value value, bool* flag), env, value, flag)
GUARD(napi_get_value_int32, (napi_env env, napi_value value, int32_t* number), env, value, number)
GUARD(napi_is_array, (napi_env env, napi_value value, bool* answer), env, value, answer)
GUARD(napi_is_exception_pending, (napi_env env, bool* answer), env, answer)
GUARD(napi_open_handle_scope, (napi_env env, napi_handle_scope* scope), env, scope)
GUARD(napi_set_named_property, (napi_env env, napi_value object, const char* name, napi_value value), env, object, name,
      value)
GUARD(napi_strict_equals, (napi_env env, napi_value left, napi_value right, bool* answer), env, left, right, answer)
GUARD(napi_typeof, (napi_env env, napi_value value, napi_valuetype* type), env, value, type)
