#include "pending_promise.h"

#include "js_values.h"

namespace StandIn {

std::shared_ptr<PendingPromise> PendingPromise::Make(napi_env env, napi_value& promise) {
    std::shared_ptr<PendingPromise> pending(new PendingPromise(env));
    if (pending->environment_ == nullptr || napi_create_promise(env, &pending->deferred_, &promise) != napi_ok) {
        return nullptr;
    }
    return pending;
}

void PendingPromise::FailWith(napi_value error) {
    napi_value holder = nullptr;
    if (napi_create_array(env_, &holder) == napi_ok && napi_set_element(env_, holder, 0, error) == napi_ok) {
        error_ = Reference(env_, holder);
    }
}

void PendingPromise::Settle(std::shared_ptr<PendingPromise> promise) {
    const auto environment = promise->environment_;
    napi_env env = promise->env_;
    (void)environment->Post(env, [promise = std::move(promise)](bool isEnding) {
        if (!isEnding) promise->SettleNow();
    });
}

void PendingPromise::SettleNow() {
    if (napi_value error = MakeError()) {
        (void)napi_reject_deferred(env_, deferred_, error);
    } else {
        napi_value undefined = nullptr;
        (void)napi_get_undefined(env_, &undefined);
        (void)napi_resolve_deferred(env_, deferred_, undefined);
    }
    error_ = Reference();
    hold_.reset();
}

napi_value PendingPromise::MakeError() {
    napi_value error = nullptr;
    if (!error_.IsEmpty()) {
        (void)napi_get_element(env_, error_.Value(), 0, &error);
    } else if (!failure_.empty()) {
        (void)napi_create_error(env_, nullptr, StandIn::Make(env_, failure_), &error);
    }
    return error;
}

}  // namespace StandIn
