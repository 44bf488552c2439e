#include "instance.h"

#include <utility>

#include "game_end.h"
#include "making.h"

namespace StandIn {
namespace {

/// A modal on its way to JS. Holds the loop of the modal's environment, because the handler may answer it.
struct OpenedModal {
    std::shared_ptr<Modal> modal;
    LoopHold hold;
};

napi_value MakeOpened(napi_env env, const OpenedModal& opened) { return Make(env, opened.modal); }

napi_value MakeOpening(napi_env /*env*/, const LoopHold& /*hold*/) { return nullptr; }

napi_value MakeExit(napi_env env, const Occasion& why) {
    return ObjectMaker(env)
        .Set("isTimer", why.isTimer)
        .Set("requestType", why.requestType)
        .Set("code", why.code)
        .Object();
}

}  // namespace

Instance::Instance(napi_env env)
    : environment_(Environment::Attach(env)),
      modals_(env, environment_),
      openings_(env, environment_, Subscription::Reset::IS_IGNORED),
      exit_(env, environment_),
      records_(env, environment_) {}

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
    Modals::Get().ReportSilent(*environment_);
    OnModal(nullptr);
    OnOpening(nullptr);
    OnExit(nullptr);
    OnRecord(nullptr);
}

void Instance::OnModal(napi_value handler) {
    modals_.End();
    if (handler == nullptr) return Modals::Get().Unsubscribe(&modals_);
    Modals::Get().Subscribe(&modals_, [deliver = modals_.Begin(handler, MakeOpened)](const auto& modal) {
        deliver({modal, modal->HoldLoop()});
    });
}

void Instance::OnOpening(napi_value handler) {
    openings_.End();
    if (handler == nullptr) return Modals::Get().Unsubscribe(&openings_);
    Modals::Get().Subscribe(&openings_, [deliver = openings_.Begin(handler, MakeOpening)](const auto& modal) {
        deliver(modal->HoldLoop());
    });
}

void Instance::OnExit(napi_value handler) {
    exit_.End();
    if (handler == nullptr) return GameEnd::Unhandle(this);
    GameEnd::Handle(this, [deliver = exit_.Begin(handler, MakeExit)](const Occasion& why) {
        deliver({why.isTimer, why.requestType, why.code, 0, {}});
    });
}

void Instance::OnRecord(napi_value handler) {
    records_.End();
    if (handler == nullptr) return RecordStream::Unsubscribe(this);
    RecordStream::Subscribe(this, records_.Begin(handler, MakeRecord));
}

}  // namespace StandIn
