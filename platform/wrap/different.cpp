#include <uv.h>

#include <algorithm>
#include <vector>

#include "hilog/log.h"
#include "modals.h"
#include "wrap/wrap.h"

// The module's calls that behave differently on Node and on the device, or that the stand-in watches. The
// linker redirects them here.

namespace StandIn {
namespace {

constexpr unsigned int LOG_DOMAIN_DEVICE = 0xD0FFFFF;

// Whether the last call on this thread was made to fail, for napi_get_last_error_info.
thread_local bool gHasFailedOnPurpose = false;

constexpr napi_extended_error_info PURPOSE_INFO = {"Unknown failure", nullptr, 0, napi_generic_failure};

// Reading a property of `undefined` or `null` leaves a TypeError pending on Node, but not on the device.
napi_status DropTypeError(napi_env env, napi_status status) {
    if (status == napi_object_expected) {
        napi_value error = nullptr;
        (void)napi_get_and_clear_last_exception(env, &error);
    }
    return status;
}

napi_status CreateErrorWithNumber(napi_env env, napi_value code, napi_value message, napi_value* error) {
    napi_valuetype type = napi_undefined;
    if (code != nullptr && napi_typeof(env, code, &type) == napi_ok && type != napi_number) {
        return napi_create_error(env, code, message, error);
    }
    napi_status status = napi_create_error(env, nullptr, message, error);
    if (status != napi_ok || code == nullptr) return status;
    return napi_set_named_property(env, *error, "code", code);
}

napi_status CallWithWholeArguments(napi_env env, napi_value self, napi_value function, size_t count,
                                   const napi_value* args, napi_value* result) {
    std::vector<napi_value> whole(args, args + count);
    for (napi_value& arg : whole) {
        if (arg == nullptr) (void)napi_get_undefined(env, &arg);
    }
    return napi_call_function(env, self, function, count, whole.data(), result);
}

}  // namespace

bool HasFailedOnPurpose() { return Faults::IsWatching() && gHasFailedOnPurpose; }

void ForgetPurpose() { gHasFailedOnPurpose = false; }

napi_status FailOnPurpose() {
    gHasFailedOnPurpose = true;
    return napi_generic_failure;
}

napi_status RefuseForeign(Call call, napi_env env) {
    ForgetPurpose();
    const char* reason =
        Environment::Of(env) == nullptr ? "the environment has ended" : "not on its JS thread";
    (void)HiLogPrint(LOG_CORE, LOG_ERROR, LOG_DOMAIN_DEVICE, "DEVICE", "%{public}s refused: %{public}s",
                     Faults::NameOf(call), reason);
    return napi_invalid_arg;
}

}  // namespace StandIn

using StandIn::Call;
using StandIn::Environment;
using StandIn::Faults;
using StandIn::Guarded;

extern "C" {

napi_status __wrap_napi_get_last_error_info(napi_env env, const napi_extended_error_info** info) {
    const bool hasFailedOnPurpose = StandIn::HasFailedOnPurpose();
    napi_status status = Guarded(Call::napi_get_last_error_info, napi_get_last_error_info, env, info);
    if (status == napi_ok && hasFailedOnPurpose) {
        *info = &StandIn::PURPOSE_INFO;
        (void)StandIn::FailOnPurpose();  // reported until another function is called
    }
    return status;
}

// Node aborts if a call from JS leaves a scope open, so the scope is closed even if the call is made to fail.
napi_status __wrap_napi_close_handle_scope(napi_env env, napi_handle_scope scope) {
    napi_status status = Guarded(Call::napi_close_handle_scope, napi_close_handle_scope, env, scope);
    if (StandIn::HasFailedOnPurpose()) (void)napi_close_handle_scope(env, scope);
    return status;
}

napi_status __wrap_napi_create_error(napi_env env, napi_value code, napi_value message, napi_value* error) {
    return Guarded(Call::napi_create_error, StandIn::CreateErrorWithNumber, env, code, message, error);
}

napi_status __wrap_napi_call_function(napi_env env, napi_value self, napi_value function, size_t count,
                                      const napi_value* args, napi_value* result) {
    const bool isWhole = std::find(args, args + count, nullptr) == args + count;
    auto real = isWhole ? napi_call_function : StandIn::CallWithWholeArguments;
    return Guarded(Call::napi_call_function, real, env, self, function, count, args, result);
}

napi_status __wrap_napi_has_named_property(napi_env env, napi_value object, const char* name, bool* answer) {
    return StandIn::DropTypeError(
        env, Guarded(Call::napi_has_named_property, napi_has_named_property, env, object, name, answer));
}

napi_status __wrap_napi_get_named_property(napi_env env, napi_value object, const char* name,
                                           napi_value* value) {
    return StandIn::DropTypeError(
        env, Guarded(Call::napi_get_named_property, napi_get_named_property, env, object, name, value));
}

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
    napi_status status =
        Guarded(Call::napi_get_cb_info, napi_get_cb_info, env, info, count, args, self, &method);
    if (status == napi_ok) StandIn::BeginMethod(static_cast<const char*>(method));
    return status;
}

napi_status __wrap_napi_create_promise(napi_env env, napi_deferred* deferred, napi_value* promise) {
    napi_status status = Guarded(Call::napi_create_promise, napi_create_promise, env, deferred, promise);
    if (status == napi_ok) StandIn::NoteCallSite(env, *deferred);
    return status;
}

napi_status __wrap_napi_resolve_deferred(napi_env env, napi_deferred deferred, napi_value value) {
    if (Environment::IsOwn(env)) StandIn::DropCallSite(env, deferred);
    return Guarded(Call::napi_resolve_deferred, napi_resolve_deferred, env, deferred, value);
}

napi_status __wrap_napi_reject_deferred(napi_env env, napi_deferred deferred, napi_value error) {
    if (Environment::IsOwn(env)) StandIn::GiveCallSite(env, deferred, error);
    return Guarded(Call::napi_reject_deferred, napi_reject_deferred, env, deferred, error);
}

napi_status __wrap_napi_delete_reference(napi_env env, napi_ref reference) {
    if (Environment::IsOwn(env)) {
        return Guarded(Call::napi_delete_reference, napi_delete_reference, env, reference);
    }
    auto environment = Environment::Of(env);
    if (environment == nullptr) return napi_invalid_arg;
    auto remove = [env, reference](bool isEnding) {
        if (!isEnding) (void)napi_delete_reference(env, reference);
    };
    return environment->Post(env, remove) ? napi_ok : napi_invalid_arg;
}

napi_status __wrap_napi_get_uv_event_loop(napi_env env, uv_loop_t** loop) {
    if (Faults::Trip(Call::napi_get_uv_event_loop)) return StandIn::FailOnPurpose();
    if (Environment::IsOwn(env)) {
        *loop = Environment::Current()->Loop();
        return napi_ok;
    }
    auto environment = Environment::Of(env);
    if (environment == nullptr) return StandIn::RefuseForeign(Call::napi_get_uv_event_loop, env);
    *loop = environment->Loop();
    return napi_ok;
}

// Callable from any thread. The work runs in FIFO order on the loop's own thread, never on the thread pool.
int __wrap_uv_queue_work(uv_loop_t* loop, uv_work_t* work, uv_work_cb run, uv_after_work_cb after) {
    if (run == nullptr || Faults::Trip(Call::uv_queue_work)) return run == nullptr ? UV_EINVAL : UV_ENOMEM;
    StandIn::NoteEffect();
    work->loop = loop;
    work->work_cb = run;
    work->after_work_cb = after;
    auto job = [work](bool isEnding) {
        work->work_cb(work);
        if (work->after_work_cb != nullptr) work->after_work_cb(work, isEnding ? UV_ECANCELED : 0);
    };
    return Environment::PostTo(loop, job) ? 0 : UV_ECANCELED;
}

}  // extern "C"
