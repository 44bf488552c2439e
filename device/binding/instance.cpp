#include "instance.h"

#include <utility>

namespace StandIn {

bool Instance::Create(napi_env env) {
    auto finalize = [](napi_env /*env*/, void* data, void* /*hint*/) { delete static_cast<Instance*>(data); };
    std::unique_ptr<Instance> instance(new Instance(env));
    if (napi_set_instance_data(env, instance.get(), finalize, nullptr) != napi_ok) return false;
    (void)instance.release();
    return true;
}

Instance& Instance::Of(napi_env env) {
    void* instance = nullptr;
    (void)napi_get_instance_data(env, &instance);
    return *static_cast<Instance*>(instance);
}

void Instance::SetModalHandler(napi_value handler) {
    modalHandler_ = Reference(env_, handler);
    Modals::Get().Watch(this, MakeReceiver(&Instance::CallHandler));
}

void Instance::RemoveModalHandler() {
    Modals::Get().Unwatch(this);
    modalHandler_ = Reference();
}

uint64_t Instance::AwaitModal(napi_value taker) {
    const uint64_t ticket = Modals::Get().Await(this, MakeReceiver(&Instance::CallTaker));
    takers_.emplace(ticket, Reference(env_, taker));
    return ticket;
}

bool Instance::CancelWait(uint64_t ticket) {
    return Modals::Get().CancelWait(ticket) && takers_.erase(ticket) == 1;
}

Modals::Receiver Instance::MakeReceiver(Delivery deliver) const {
    return [env = env_, environment = environment_, deliver](uint64_t ticket,
                                                             const std::shared_ptr<Modal>& modal) {
        return environment->Post(env, MakeJob(env, deliver, ticket, modal));
    };
}

// The instance is there whenever the job runs: both end with the environment, the jobs first.
Environment::Job Instance::MakeJob(napi_env env, Delivery deliver, uint64_t ticket,
                                   const std::shared_ptr<Modal>& modal) {
    return [env, deliver, ticket, modal](bool isEnding) {
        if (!isEnding) (Of(env).*deliver)(ticket, *modal);
    };
}

void Instance::CallHandler(uint64_t ticket, const Modal& modal) {
    if (Modals::Get().IsWatched(ticket)) Call(modalHandler_, modal);
}

void Instance::CallTaker(uint64_t ticket, const Modal& modal) {
    auto taker = takers_.extract(ticket);
    if (!taker.empty()) Call(taker.mapped(), modal);
}

void Instance::Call(const Reference& function, const Modal& modal) const {
    napi_value self = nullptr;
    napi_value record = MakeModalRecord(env_, modal);
    (void)napi_get_undefined(env_, &self);
    if (record != nullptr) {
        // What it throws is left pending, and becomes an uncaught exception.
        (void)napi_call_function(env_, self, function.Value(), 1, &record, nullptr);
    }
}

}  // namespace StandIn
