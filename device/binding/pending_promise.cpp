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

void PendingPromise::Reject(napi_value error) {
    (void)napi_reject_deferred(env_, deferred_, error);
    hold_.reset();
}

void PendingPromise::Settle(std::shared_ptr<PendingPromise> promise) {
    const auto environment = promise->environment_;
    napi_env env = promise->env_;
    (void)environment->Post(env, [promise = std::move(promise)](bool isEnding) {
        if (!isEnding) promise->SettleNow();
    });
}

void PendingPromise::SettleNow() {
    napi_value value = nullptr;
    if (!failure_.empty()) {
        (void)napi_create_error(env_, nullptr, StandIn::Make(env_, failure_), &value);
        return Reject(value);
    }
    (void)napi_get_undefined(env_, &value);
    (void)napi_resolve_deferred(env_, deferred_, value);
    hold_.reset();
}

}  // namespace StandIn
