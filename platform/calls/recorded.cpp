#include <algorithm>
#include <vector>

#include "calls/call_records.h"
#include "calls/guarded.h"
#include "served_call.h"

// The module's Node-API calls that show what the game asks for and what it gets. Some also behave differently on Node
// and on the device.

namespace StandIn {
namespace {

// Reading a property of `undefined` or `null` leaves a TypeError pending on Node, but not on the device.
napi_status DropTypeError(napi_env env, napi_status status) {
    if (status == napi_object_expected) {
        napi_value error = nullptr;
        (void)napi_get_and_clear_last_exception(env, &error);
    }
    return status;
}

napi_status CallFunction(napi_env env, napi_value self, napi_value function, size_t count, const napi_value* args,
                         napi_value* result) {
    RecordCalledBack(env, function, count, args);
    return napi_call_function(env, self, function, count, args, result);
}

// On the device, a null handle reads as `undefined`.
napi_status CallWithWholeArguments(napi_env env, napi_value self, napi_value function, size_t count,
                                   const napi_value* args, napi_value* result) {
    std::vector<napi_value> whole(args, args + count);
    for (napi_value& arg : whole) {
        if (arg == nullptr) (void)napi_get_undefined(env, &arg);
    }
    return CallFunction(env, self, function, count, whole.data(), result);
}

// What is thrown is recorded first: with an exception pending, nothing can be read.
napi_status Throw(napi_env env, napi_value error) {
    RecordThrown(env, error);
    return napi_throw(env, error);
}

napi_status ThrowPlain(napi_env env, const char* code, const char* message) {
    RecordThrown(env, nullptr);
    return napi_throw_error(env, code, message);
}

}  // namespace
}  // namespace StandIn

using StandIn::Call;
using StandIn::Environment;
using StandIn::Guarded;

extern "C" {

napi_status device_napi_define_properties(napi_env env, napi_value object, size_t count,
                                          const napi_property_descriptor* properties) {
    std::vector<napi_property_descriptor> served;
    if (properties != nullptr) served.assign(properties, properties + count);
    StandIn::ServeMethods(served);
    return Guarded(Call::napi_define_properties, napi_define_properties, env, object, count, served.data());
}

napi_status device_napi_get_cb_info(napi_env env, napi_callback_info info, size_t* count, napi_value* args,
                                    napi_value* self, void** data) {
    const size_t capacity = count != nullptr && args != nullptr ? *count : 0;
    napi_status status = Guarded(Call::napi_get_cb_info, napi_get_cb_info, env, info, count, args, self, data);
    const StandIn::ServedCall* served = StandIn::Served();
    if (status != napi_ok || served == nullptr || served->info != info) return status;
    if (data != nullptr) *data = served->data;
    StandIn::RecordCall(env, count != nullptr ? std::min(capacity, *count) : 0, args);
    return napi_ok;
}

napi_status device_napi_create_promise(napi_env env, napi_deferred* deferred, napi_value* promise) {
    napi_status status = Guarded(Call::napi_create_promise, napi_create_promise, env, deferred, promise);
    if (status == napi_ok) StandIn::KeepPromise(env, *deferred);
    return status;
}

napi_status device_napi_resolve_deferred(napi_env env, napi_deferred deferred, napi_value value) {
    napi_status status = Guarded(Call::napi_resolve_deferred, napi_resolve_deferred, env, deferred, value);
    if (status == napi_ok) StandIn::RecordSettled(env, deferred, nullptr, value);
    return status;
}

napi_status device_napi_reject_deferred(napi_env env, napi_deferred deferred, napi_value error) {
    if (Environment::IsOwn(env)) StandIn::AddCallSite(env, deferred, error);
    napi_status status = Guarded(Call::napi_reject_deferred, napi_reject_deferred, env, deferred, error);
    if (status == napi_ok) StandIn::RecordSettled(env, deferred, error, nullptr);
    return status;
}

napi_status device_napi_delete_reference(napi_env env, napi_ref reference) {
    if (Environment::IsOwn(env)) {
        StandIn::DropFunction(reference);
        return Guarded(Call::napi_delete_reference, napi_delete_reference, env, reference);
    }
    auto environment = Environment::Of(env);
    if (environment == nullptr) return napi_invalid_arg;
    auto remove = [env, reference](bool isEnding) {
        if (isEnding) return;
        StandIn::DropFunction(reference);
        (void)napi_delete_reference(env, reference);
    };
    return environment->Post(env, remove) ? napi_ok : napi_invalid_arg;
}

napi_status device_napi_create_reference(napi_env env, napi_value value, uint32_t count, napi_ref* reference) {
    napi_status status = Guarded(Call::napi_create_reference, napi_create_reference, env, value, count, reference);
    if (status == napi_ok) StandIn::KeepFunction(*reference);
    return status;
}

napi_status device_napi_get_reference_value(napi_env env, napi_ref reference, napi_value* value) {
    napi_status status = Guarded(Call::napi_get_reference_value, napi_get_reference_value, env, reference, value);
    if (status == napi_ok) StandIn::KeepHandle(reference, *value);
    return status;
}

napi_status device_napi_call_function(napi_env env, napi_value self, napi_value function, size_t count,
                                      const napi_value* args, napi_value* result) {
    const bool isWhole = args == nullptr || std::find(args, args + count, nullptr) == args + count;
    auto real = isWhole ? StandIn::CallFunction : StandIn::CallWithWholeArguments;
    return Guarded(Call::napi_call_function, real, env, self, function, count, args, result);
}

napi_status device_napi_has_named_property(napi_env env, napi_value object, const char* name, bool* answer) {
    return StandIn::DropTypeError(
        env, Guarded(Call::napi_has_named_property, napi_has_named_property, env, object, name, answer));
}

napi_status device_napi_get_named_property(napi_env env, napi_value object, const char* name, napi_value* value) {
    napi_status status = Guarded(Call::napi_get_named_property, napi_get_named_property, env, object, name, value);
    if (status == napi_ok) StandIn::KeepProperty(*value, name);
    return StandIn::DropTypeError(env, status);
}

napi_status device_napi_get_element(napi_env env, napi_value array, uint32_t index, napi_value* element) {
    napi_status status = Guarded(Call::napi_get_element, napi_get_element, env, array, index, element);
    if (status == napi_ok) StandIn::KeepElement(*element, index);
    return status;
}

napi_status device_napi_throw(napi_env env, napi_value error) {
    return Guarded(Call::napi_throw, StandIn::Throw, env, error);
}

napi_status device_napi_throw_error(napi_env env, const char* code, const char* message) {
    return Guarded(Call::napi_throw_error, StandIn::ThrowPlain, env, code, message);
}

}  // extern "C"
