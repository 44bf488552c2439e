#pragma once

#include <node_api.h>

#include <memory>
#include <string>

#include "environment.h"
#include "reference.h"

namespace StandIn {

/// A promise that another thread may settle. It holds the loop of its environment until then. One thread at a
/// time owns it; its last owner is its JS thread.
class PendingPromise {
public:
    /// Stores the JS promise in `promise`. Empty if the environment refuses. On `env`'s JS thread.
    static std::shared_ptr<PendingPromise> Make(napi_env env, napi_value& promise);

    /// Any thread, before `Settle`: the promise will be rejected with an Error, unless `message` is empty.
    void Fail(std::string message) { failure_ = std::move(message); }
    /// On the JS thread, before `Settle`: it will be rejected with `error`.
    void FailWith(napi_value error);
    /// Any thread: hands it over to its JS thread, to be settled after everything queued there so far. The
    /// first time counts.
    static void Settle(std::shared_ptr<PendingPromise> promise);

private:
    explicit PendingPromise(napi_env env)
        : env_(env),
          environment_(Environment::Of(env)),
          hold_(environment_ == nullptr ? nullptr : environment_->Hold()) {}
    void SettleNow();
    napi_value MakeError();

    napi_env const env_;
    const std::shared_ptr<Environment> environment_;
    LoopHold hold_;
    napi_deferred deferred_ = nullptr;
    std::string failure_;  // empty: none
    Reference error_;      // of an array around the error, as not every value can be referred to
};

}  // namespace StandIn
