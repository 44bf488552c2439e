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

// Modals that nobody answered are reported when their environment ends.
Instance::~Instance() {
    Modals::Get().TellSilent(*environment_);
    Modals::Get().Unwatch(this);
    GameEnd::Unhandle(this);
    Watching::End(this);
}

// The instance exists whenever a job runs: both end with the environment, the jobs first. A job holds the
// loop of the modal's environment, because the handler may answer the modal.
std::pair<int32_t, int32_t> Instance::SetModalHandler(napi_value handler) {
    modalHandler_ = Reference(env_, handler);
    auto post = [env = env_, environment = environment_](const std::shared_ptr<Modal>& modal) {
        (void)environment->Post(env, [env, modal, hold = modal->HoldLoop()](bool isEnding) {
            if (!isEnding) Of(env).CallModalHandler(*modal);
        });
    };
    return Modals::Get().Watch(this, post);
}

void Instance::RemoveModalHandler() {
    Modals::Get().Unwatch(this);
    modalHandler_ = Reference();
}

void Instance::SetExitHandler(napi_value handler) {
    exitHandler_ = Reference(env_, handler);
    GameEnd::Handle(this, [env = env_, environment = environment_](const Occasion& why) {
        (void)environment->Post(
            env, [env, isTimer = why.isTimer, type = why.requestType, code = why.code](bool isEnding) {
                if (!isEnding) Of(env).CallExitHandler({isTimer, type, code, 0, {}});
            });
    });
}

void Instance::RemoveExitHandler() {
    GameEnd::Unhandle(this);
    exitHandler_ = Reference();
}

void Instance::SetRecordHandler(napi_value handler) {
    recordHandler_ = Reference(env_, handler);
    Watching::Begin(this, [env = env_, environment = environment_,
                           number = ++recordHandlers_](const Happening& happening) {
        (void)environment->Post(env, [env, happening, number](bool isEnding) {
            if (!isEnding) Of(env).CallRecordHandler(happening, number);
        });
    });
}

void Instance::RemoveRecordHandler() {
    Watching::End(this);
    recordHandler_ = Reference();
}

// What happened while an earlier handler was set is not for this one.
void Instance::CallRecordHandler(const Happening& happening, uint64_t number) const {
    if (recordHandler_.IsEmpty() || number != recordHandlers_) return;
    Call(recordHandler_, {MakeRecord(env_, happening)});
}

void Instance::CallModalHandler(const Modal& modal) const {
    if (!modalHandler_.IsEmpty()) Call(modalHandler_, {MakeModalRecord(env_, modal)});
}

// A reset may have removed the handler first.
void Instance::CallExitHandler(const Occasion& why) const {
    if (exitHandler_.IsEmpty()) return;
    Call(exitHandler_,
         {MakeFlag(env_, why.isTimer), MakeNumber(env_, why.requestType), MakeNumber(env_, why.code)});
}

// What the function throws stays pending and becomes an uncaught exception.
void Instance::Call(const Reference& function, std::initializer_list<napi_value> arguments) const {
    napi_value self = nullptr;
    (void)napi_get_undefined(env_, &self);
    (void)napi_call_function(env_, self, function.Value(), arguments.size(), arguments.begin(), nullptr);
}

}  // namespace StandIn
