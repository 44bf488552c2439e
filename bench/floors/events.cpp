#include <uv.h>

#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "floors.h"

// Listeners of one event, and its way to them.

namespace Floors {
namespace {

struct Listener {
    napi_ref function = nullptr;
    napi_ref self = nullptr;
};

/// An event on its way to one listener.
struct Delivery : uv_work_t {
    napi_env env = nullptr;
    Listener listener;
    std::shared_ptr<const std::string> info;
};

// The addon serves the one environment that loads it.
std::vector<Listener>& gListeners = *new std::vector<Listener>();

napi_value MakeEvent(napi_env env, const std::string& info) {
    napi_value event = nullptr;
    Must(napi_create_object(env, &event));
    SetInt(env, event, "event", 0);
    Must(napi_set_named_property(env, event, "resultInfo", MakeText(env, info)));
    return event;
}

void Deliver(uv_work_t* work, int /*status*/) {
    SAY("DoGameEventWork", "DoGameEventWork enter");
    std::unique_ptr<Delivery> delivery(static_cast<Delivery*>(work));
    napi_env env = delivery->env;
    napi_handle_scope scope = nullptr;
    Must(napi_open_handle_scope(env, &scope));
    napi_value event = MakeEvent(env, *delivery->info);
    napi_value self = nullptr;
    napi_value function = nullptr;
    Must(napi_get_reference_value(env, delivery->listener.self, &self));
    Must(napi_get_reference_value(env, delivery->listener.function, &function));
    Must(napi_call_function(env, self, function, 1, &event, nullptr));
    Must(napi_close_handle_scope(env, scope));
    delivery.reset();
    SAY("DoGameEventWork", "DoGameEventWork exit, callBack status %{public}d", 1);
}

}  // namespace

napi_value Listen(napi_env env, napi_callback_info info) {
    const auto call = ReadCall<1>(env, info);
    Listener listener;
    Must(napi_create_reference(env, call.values[0], 1, &listener.function));
    Must(napi_create_reference(env, call.self, 1, &listener.self));
    gListeners.push_back(listener);
    return call.undefined;
}

napi_value OnEventCallback(napi_env env, napi_callback_info info) {
    SAY("OnEventCallback", "begin OnEventCallback");
    const auto call = ReadCall<1>(env, info);
    const napi_value result = call.values[0];
    if (ReadInt(env, Property(env, result, "resultCode")) != 1002000015) std::abort();
    auto resultInfo = std::make_shared<const std::string>(ReadText(env, Property(env, result, "resultInfo")));
    CheckNoException(env);
    SAY("DoGameEvent", "DoGameEvent %{public}s[%{public}d] called", "playerChanged", 0);
    SAY("OnEventCallback", "OnEventCallback enter");
    for (const Listener& listener : gListeners) {
        auto* delivery = new (std::nothrow) Delivery{{}, env, listener, resultInfo};
        uv_loop_t* loop = nullptr;
        Must(napi_get_uv_event_loop(env, &loop));
        if (uv_queue_work(loop, delivery, DoNothing, Deliver) != 0) std::abort();
    }
    SAY("OnEventCallback", "OnEventCallback uv_queue_work success");
    SAY("~BaseContext", "release enter");
    SAY("~BaseContext", "release exit");
    SAY("OnEventCallback", "OnEventCallback switch game account event callback end");
    SAY("OnEventCallback", "end OnEventCallback");
    return call.undefined;
}

}  // namespace Floors
