#pragma once

#include <node_api.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "environment.h"
#include "js_values.h"

namespace StandIn {

/// A JS function that gets what other threads hand over, until another one takes its place, it is removed, or the
/// device is reset. What was handed over before that and not delivered yet is dropped. Unless stated otherwise, use it
/// only on the JS thread of its environment, with which it ends.
class Subscription {
public:
    enum class Reset { ENDS, IS_IGNORED };

    Subscription(napi_env env, std::shared_ptr<Environment> environment, Reset reset = Reset::ENDS)
        : env_(env), environment_(std::move(environment)), reset_(reset) {}

    /// Returns a function for any thread, which has the JS thread call `handler` with what `make` makes of the item, or
    /// without an argument if that is null.
    template <typename Item>
    std::function<void(Item item)> Begin(napi_value handler, napi_value (*make)(napi_env env, const Item& item)) {
        handler_ = Reference(env_, handler);
        // The subscription exists whenever a job runs: both end with the environment, the jobs first.
        return [this, number = ++number_, resets = resets_.load(), make](Item item) {
            (void)environment_->Post(env_, [this, number, resets, make, item = std::move(item)](bool isEnding) {
                if (!isEnding && number == number_ && IsSince(resets)) Call(make(env_, item));
            });
        };
    }
    void End() {
        ++number_;
        handler_ = Reference();
    }

    /// Ends the subscriptions of all environments, but for those that ignore it. Any thread.
    static void EndAll() { ++resets_; }

private:
    bool IsSince(uint64_t resets) const { return reset_ == Reset::IS_IGNORED || resets == resets_; }

    // What the function throws stays pending and becomes an uncaught exception.
    void Call(napi_value argument) const {
        napi_value self = nullptr;
        (void)napi_get_undefined(env_, &self);
        (void)napi_call_function(env_, self, handler_.Value(), argument != nullptr ? 1 : 0, &argument, nullptr);
    }

    napi_env const env_;
    const std::shared_ptr<Environment> environment_;
    Reference handler_;
    const Reset reset_;
    uint64_t number_ = 0;  // of the present handler
    static inline std::atomic<uint64_t> resets_{0};
};

}  // namespace StandIn
