#pragma once

#include <node_api.h>

#include <memory>

#include "environment.h"
#include "functions.h"
#include "modals.h"
#include "record_stream.h"
#include "subscription.h"

namespace StandIn {

/// The binding's state in one JS environment that loaded it. Use it only on that environment's JS thread.
class Instance {
public:
    /// Makes the instance of `env`, which lives as long as `env`. False if a Node-API call fails.
    static bool Create(napi_env env);
    static Instance& Of(napi_env env);

    ~Instance();

    const std::shared_ptr<Environment>& GetEnvironment() const { return environment_; }

    // Each has a JS function called from now on; null: no longer.

    /// With the snapshot of every modal opened.
    void OnModal(napi_value handler);
    /// Whenever a modal was opened, also after a reset.
    void OnOpening(napi_value handler);
    /// With { isTimer, requestType, code } when the game ends: whether a timer ended it, and the code of the answer.
    void OnExit(napi_value handler);
    /// With a record of everything that happens.
    void OnRecord(napi_value handler);

private:
    explicit Instance(napi_env env);
    template <typename Item, typename Taken, typename Convert>
    static void Set(Receivers<Item>& receivers, Subscription& subscription, napi_value handler, Convert convert,
                    napi_value (*make)(napi_env env, const Taken& taken));

    const std::shared_ptr<Environment> environment_;
    Subscription modals_;
    Subscription openings_;
    Subscription exit_;
    Subscription records_;
};

/// The binding's function that passes a JS function, or null, to one of the above.
template <void (Instance::*SUBSCRIBE)(napi_value handler)>
napi_value On(napi_env env, napi_callback_info info) {
    const napi_value handler = Arguments<1>(env, info)[0];
    (Instance::Of(env).*SUBSCRIBE)(IsOfType(env, handler, napi_function) ? handler : nullptr);
    return nullptr;
}

/// A record for JS: { kind, time } and the fields of its kind. Null if a Node-API call fails.
napi_value MakeRecord(napi_env env, const DeviceRecord& record);

/// A modal for JS: { id, generation, want, config }. Null if there is none, or a Node-API call fails.
napi_value Make(napi_env env, const std::shared_ptr<Modal>& modal);

}  // namespace StandIn
