#include <uv.h>

#include "calls/guarded.h"
#include "hilog/log.h"
#include "served_call.h"

// The module's calls that behave differently on Node and on the device.

namespace StandIn {
namespace {

constexpr unsigned int LOG_DOMAIN_DEVICE = 0xD0FFFFF;

// Whether the last call on this thread was made to fail, for napi_get_last_error_info.
thread_local bool gHasFailedOnPurpose = false;

constexpr napi_extended_error_info PURPOSE_INFO = {"Unknown failure", nullptr, 0, napi_generic_failure};

napi_status CreateErrorWithNumber(napi_env env, napi_value code, napi_value message, napi_value* error) {
    napi_valuetype type = napi_undefined;
    if (code != nullptr && napi_typeof(env, code, &type) == napi_ok && type != napi_number) {
        return napi_create_error(env, code, message, error);
    }
    napi_status status = napi_create_error(env, nullptr, message, error);
    if (status != napi_ok || code == nullptr) return status;
    return napi_set_named_property(env, *error, "code", code);
}

}  // namespace

bool HasFailedOnPurpose() { return Faults::AreArmed() && gHasFailedOnPurpose; }

void ForgetPurpose() { gHasFailedOnPurpose = false; }

napi_status FailOnPurpose() {
    gHasFailedOnPurpose = true;
    return napi_generic_failure;
}

napi_status RefuseForeign(Call call, napi_env env) {
    ForgetPurpose();
    const char* reason = Environment::Of(env) == nullptr ? "the environment has ended" : "not on its JS thread";
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

napi_status device_napi_get_last_error_info(napi_env env, const napi_extended_error_info** info) {
    const bool hasFailedOnPurpose = StandIn::HasFailedOnPurpose();
    napi_status status = Guarded(Call::napi_get_last_error_info, napi_get_last_error_info, env, info);
    if (status == napi_ok && hasFailedOnPurpose) {
        *info = &StandIn::PURPOSE_INFO;
        (void)StandIn::FailOnPurpose();  // reported until another function is called
    }
    return status;
}

// Node aborts if a call from JS leaves a scope open, so the scope is closed even if the call is made to fail.
napi_status device_napi_close_handle_scope(napi_env env, napi_handle_scope scope) {
    napi_status status = Guarded(Call::napi_close_handle_scope, napi_close_handle_scope, env, scope);
    if (StandIn::HasFailedOnPurpose()) (void)napi_close_handle_scope(env, scope);
    return status;
}

napi_status device_napi_create_error(napi_env env, napi_value code, napi_value message, napi_value* error) {
    return Guarded(Call::napi_create_error, StandIn::CreateErrorWithNumber, env, code, message, error);
}

napi_status device_napi_get_uv_event_loop(napi_env env, uv_loop_t** loop) {
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
int device_uv_queue_work(uv_loop_t* loop, uv_work_t* work, uv_work_cb run, uv_after_work_cb after) {
    if (run == nullptr || Faults::Trip(Call::uv_queue_work)) return run == nullptr ? UV_EINVAL : UV_ENOMEM;
    StandIn::MarkEffect();
    work->loop = loop;
    work->work_cb = run;
    work->after_work_cb = after;
    auto job = [work](bool isEnding) {
        const StandIn::ServedCallScope scope({});
        work->work_cb(work);
        if (work->after_work_cb != nullptr) work->after_work_cb(work, isEnding ? UV_ECANCELED : 0);
    };
    return Environment::PostTo(loop, job) ? 0 : UV_ECANCELED;
}

}  // extern "C"
