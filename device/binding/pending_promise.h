#pragma once

#include <node_api.h>

#include <memory>
#include <string>

#include "environment.h"
#include "js_values.h"

namespace StandIn {

/// A promise that another thread may settle. It keeps the loop of its environment alive until then. One thread at a
/// time owns it; its last owner is its JS thread.
class PendingPromise {
public:
    /// Stores the JS promise in `promise`. Empty on failure. On `env`'s JS thread.
    static std::shared_ptr<PendingPromise> Make(napi_env env, napi_value& promise);

    /// Any thread, before `Settle`. The promise will be rejected with an Error, unless `message` is empty.
    void Fail(std::string message) { failure_ = std::move(message); }
    /// On the JS thread. Rejects the promise now with `error`. `Settle` must not be called.
    void Reject(napi_value error);
    /// Any thread. Has the JS thread settle the promise after everything queued there so far. Only the first call
    /// counts.
    static void Settle(std::shared_ptr<PendingPromise> promise);

private:
    explicit PendingPromise(napi_env env)
        : env_(env),
          environment_(Environment::Of(env)),
          hold_(environment_ == nullptr ? nullptr : environment_->Hold()) {}
    void SettleNow();

    napi_env const env_;
    const std::shared_ptr<Environment> environment_;
    LoopHold hold_;
    napi_deferred deferred_ = nullptr;
    std::string failure_;  // empty: none
};

}  // namespace StandIn
