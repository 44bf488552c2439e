#include <condition_variable>
#include <memory>
#include <thread>
#include <utility>

#include "bare.h"
#include "inbox.h"

namespace Bare {
namespace {

void Settle(napi_env env, const napi_deferred& deferred) {
    Must(napi_resolve_deferred(env, deferred, Undefined(env)));
}

/// One thread that answers requests as they arrive.
class Responder {
public:
    explicit Responder(napi_env env) : inbox_(env) { std::thread(&Responder::Run, this).detach(); }

    void Post(napi_deferred request) {
        {
            std::lock_guard<std::mutex> guard(mutex_);
            requests_.push_back(request);
        }
        arrived_.notify_one();
    }

private:
    void Run() {
        for (;;) {
            std::vector<napi_deferred> batch = Take();
            inbox_.Post(batch);
        }
    }

    /// Waits for a request, then takes all that have arrived.
    std::vector<napi_deferred> Take() {
        std::unique_lock<std::mutex> lock(mutex_);
        arrived_.wait(lock, [this] { return !requests_.empty(); });
        return std::exchange(requests_, {});
    }

    Inbox<napi_deferred, Settle> inbox_;
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<napi_deferred> requests_;
};

struct Delivery {
    napi_ref listener;
    std::shared_ptr<const std::string> text;
};

void CallListener(napi_env env, const Delivery& delivery) {
    napi_value argument = nullptr;
    napi_value listener = nullptr;
    Must(napi_create_object(env, &argument));
    SetInt(env, argument, "event", 0);
    Must(napi_set_named_property(env, argument, "resultInfo", MakeText(env, *delivery.text)));
    Must(napi_get_reference_value(env, delivery.listener, &listener));
    Must(napi_call_function(env, Undefined(env), listener, 1, &argument, nullptr));
}

struct Listeners {
    explicit Listeners(napi_env env) : inbox(env) {}

    std::vector<napi_ref> all;
    Inbox<Delivery, CallListener> inbox;
};

// The addon supports only one environment, the one that loads it.
Responder* gResponder = nullptr;
Listeners* gListeners = nullptr;

/// trip(): returns a promise that resolves after a round trip to the other thread.
napi_value Trip(napi_env env, napi_callback_info /*info*/) {
    napi_deferred deferred = nullptr;
    napi_value promise = nullptr;
    Must(napi_create_promise(env, &deferred, &promise));
    gResponder->Post(deferred);
    return promise;
}

/// listen(listener)
napi_value Listen(napi_env env, napi_callback_info info) {
    napi_ref listener = nullptr;
    Must(napi_create_reference(env, Arguments(env, info)[0], 1, &listener));
    gListeners->all.push_back(listener);
    return nullptr;
}

/// raise(text): calls each listener asynchronously with { event: 0, resultInfo: text }.
napi_value Raise(napi_env env, napi_callback_info info) {
    auto text = std::make_shared<const std::string>(ReadText(env, Arguments(env, info)[0]));
    std::vector<Delivery> deliveries;
    deliveries.reserve(gListeners->all.size());
    for (napi_ref listener : gListeners->all) {
        deliveries.push_back({listener, text});
    }
    gListeners->inbox.Post(deliveries);
    return nullptr;
}

}  // namespace

void DefineDeliveries(napi_env env, napi_value exports) {
    gResponder = new Responder(env);
    gListeners = new Listeners(env);
    Define(env, exports, "trip", Trip);
    Define(env, exports, "listen", Listen);
    Define(env, exports, "raise", Raise);
}

}  // namespace Bare
