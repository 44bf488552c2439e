#include "instance.h"

#include <utility>

#include "making.h"

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

// Modals that nobody answered are told of as their environment goes.
Instance::~Instance() {
    Modals::Get().TellSilent(*environment_);
    Modals::Get().DropOwner(this);
    GameEnd::Unhandle(this);
}

void Instance::SetModalHandler(napi_value handler) {
    modalHandler_ = Reference(env_, handler);
    Modals::Get().Watch(this, MakeReceiver(&Instance::CallHandler));
}

void Instance::RemoveModalHandler() {
    Modals::Get().Unwatch(this);
    modalHandler_ = Reference();
}

void Instance::SetExitHandler(napi_value handler) {
    exitHandler_ = Reference(env_, handler);
    GameEnd::Handle(this, [env = env_, environment = environment_](const Occasion& why) {
        return environment->Post(
            env, [env, isTimer = why.isTimer, type = why.requestType, code = why.code](bool isEnding) {
                if (!isEnding) Of(env).CallExitHandler({isTimer, type, code, 0, {}});
            });
    });
}

void Instance::RemoveExitHandler() {
    GameEnd::Unhandle(this);
    exitHandler_ = Reference();
}

uint64_t Instance::AwaitModal(napi_value taker, int32_t requestType) {
    const uint64_t ticket = Modals::Get().Await(this, requestType, MakeReceiver(&Instance::CallTaker));
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

// The instance is there whenever the job runs: both end with the environment, the jobs first. The job holds
// the loop that the modal belongs to, as whoever hears of the modal may answer it.
Environment::Job Instance::MakeJob(napi_env env, Delivery deliver, uint64_t ticket,
                                   const std::shared_ptr<Modal>& modal) {
    auto hold = std::make_shared<LoopHold>(modal->GetEnvironment());
    return [env, deliver, ticket, modal, hold](bool isEnding) {
        if (!isEnding) (Of(env).*deliver)(ticket, *modal);
    };
}

void Instance::CallHandler(uint64_t ticket, const Modal& modal) {
    if (Modals::Get().IsWatched(ticket)) Call(modalHandler_, {MakeModalRecord(env_, modal)});
}

void Instance::CallTaker(uint64_t ticket, const Modal& modal) {
    auto taker = takers_.extract(ticket);
    if (!taker.empty()) Call(taker.mapped(), {MakeModalRecord(env_, modal)});
}

// A reset may have come first.
void Instance::CallExitHandler(const Occasion& why) const {
    if (exitHandler_.IsEmpty()) return;
    Call(exitHandler_,
         {MakeFlag(env_, why.isTimer), MakeNumber(env_, why.requestType), MakeNumber(env_, why.code)});
}

// What the function throws is left pending, and becomes an uncaught exception.
void Instance::Call(const Reference& function, std::initializer_list<napi_value> arguments) const {
    napi_value self = nullptr;
    (void)napi_get_undefined(env_, &self);
    (void)napi_call_function(env_, self, function.Value(), arguments.size(), arguments.begin(), nullptr);
}

}  // namespace StandIn
