#include <algorithm>
#include <vector>

#include "watching.h"
#include "wrap/call_records.h"
#include "wrap/wrap.h"

// The module's Node-API calls that show what the game asks for and what it gets. The linker redirects them
// here. Some also behave differently on Node and on the device.

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

napi_status CallFunction(napi_env env, napi_value self, napi_value function, size_t count,
                         const napi_value* args, napi_value* result) {
    TellCalledBack(env, count, args);
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

// What is thrown is told first: with an exception pending, nothing can be read.
napi_status Throw(napi_env env, napi_value error) {
    TellThrown(env, error);
    return napi_throw(env, error);
}

napi_status ThrowPlain(napi_env env, const char* code, const char* message) {
    TellThrown(env, nullptr);
    return napi_throw_error(env, code, message);
}

}  // namespace
}  // namespace StandIn

using StandIn::Call;
using StandIn::Environment;
using StandIn::Guarded;

extern "C" {

// The module attaches no data to its methods. Here each method gets its name as data, so that
// napi_get_cb_info sees which one is called.
napi_status __wrap_napi_define_properties(napi_env env, napi_value object, size_t count,
                                          const napi_property_descriptor* properties) {
    std::vector<napi_property_descriptor> named(properties, properties + count);
    for (napi_property_descriptor& property : named) {
        property.data = const_cast<char*>(property.utf8name);
    }
    return Guarded(Call::napi_define_properties, napi_define_properties, env, object, count, named.data());
}

napi_status __wrap_napi_get_cb_info(napi_env env, napi_callback_info info, size_t* count, napi_value* args,
                                    napi_value* self, void** /*data*/) {
    void* method = nullptr;
    const size_t capacity = *count;
    napi_status status =
        Guarded(Call::napi_get_cb_info, napi_get_cb_info, env, info, count, args, self, &method);
    if (status != napi_ok) return status;
    const char* name = static_cast<const char*>(method);
    StandIn::BeginMethod(name);
    StandIn::TellCall(env, name, std::min(capacity, *count), args);
    return napi_ok;
}

napi_status __wrap_napi_create_promise(napi_env env, napi_deferred* deferred, napi_value* promise) {
    napi_status status = Guarded(Call::napi_create_promise, napi_create_promise, env, deferred, promise);
    if (status != napi_ok) return status;
    StandIn::NoteCallSite(env, *deferred);
    StandIn::NotePromise(*deferred);
    return napi_ok;
}

napi_status __wrap_napi_resolve_deferred(napi_env env, napi_deferred deferred, napi_value value) {
    if (Environment::IsOwn(env)) StandIn::DropCallSite(env, deferred);
    napi_status status = Guarded(Call::napi_resolve_deferred, napi_resolve_deferred, env, deferred, value);
    if (status == napi_ok) StandIn::TellResolved(env, deferred, value);
    return status;
}

napi_status __wrap_napi_reject_deferred(napi_env env, napi_deferred deferred, napi_value error) {
    if (Environment::IsOwn(env)) StandIn::GiveCallSite(env, deferred, error);
    napi_status status = Guarded(Call::napi_reject_deferred, napi_reject_deferred, env, deferred, error);
    if (status == napi_ok) StandIn::TellRejected(env, deferred, error);
    return status;
}

napi_status __wrap_napi_delete_reference(napi_env env, napi_ref reference) {
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

napi_status __wrap_napi_create_reference(napi_env env, napi_value value, uint32_t count,
                                         napi_ref* reference) {
    napi_status status =
        Guarded(Call::napi_create_reference, napi_create_reference, env, value, count, reference);
    if (status == napi_ok) StandIn::NoteFunction(*reference);
    return status;
}

napi_status __wrap_napi_get_reference_value(napi_env env, napi_ref reference, napi_value* value) {
    StandIn::NoteUse(reference);
    return Guarded(Call::napi_get_reference_value, napi_get_reference_value, env, reference, value);
}

napi_status __wrap_napi_call_function(napi_env env, napi_value self, napi_value function, size_t count,
                                      const napi_value* args, napi_value* result) {
    const bool isWhole = std::find(args, args + count, nullptr) == args + count;
    auto real = isWhole ? StandIn::CallFunction : StandIn::CallWithWholeArguments;
    return Guarded(Call::napi_call_function, real, env, self, function, count, args, result);
}

napi_status __wrap_napi_has_named_property(napi_env env, napi_value object, const char* name, bool* answer) {
    return StandIn::DropTypeError(
        env, Guarded(Call::napi_has_named_property, napi_has_named_property, env, object, name, answer));
}

// A getter of the game may throw: then the method ends with that exception. What the status is depends on the
// Node.
napi_status __wrap_napi_get_named_property(napi_env env, napi_value object, const char* name,
                                           napi_value* value) {
    napi_status status =
        Guarded(Call::napi_get_named_property, napi_get_named_property, env, object, name, value);
    const bool isThrown = status == napi_generic_failure || status == napi_pending_exception;
    if (isThrown && !StandIn::HasFailedOnPurpose()) StandIn::TellThrown(env, nullptr);
    return StandIn::DropTypeError(env, status);
}

napi_status __wrap_napi_throw(napi_env env, napi_value error) {
    return Guarded(Call::napi_throw, StandIn::Throw, env, error);
}

napi_status __wrap_napi_throw_error(napi_env env, const char* code, const char* message) {
    return Guarded(Call::napi_throw_error, StandIn::ThrowPlain, env, code, message);
}

}  // extern "C"
