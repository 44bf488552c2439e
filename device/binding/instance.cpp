#include "instance.h"

#include <utility>

#include "game_end.h"
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
    Modals::Get().ReportSilentOf(*environment_);
    OnModal(nullptr);
    OnOpening(nullptr);
    OnExit(nullptr);
    OnRecord(nullptr);
}

// From now on, `receivers` get what `convert` makes of an item, and `handler` is called with what `make` makes of that.
template <typename Item, typename Taken, typename Convert>
void Instance::Set(Receivers<Item>& receivers, Subscription& subscription, napi_value handler, Convert convert,
                   napi_value (*make)(napi_env env, const Taken& taken)) {
    subscription.End();
    if (handler == nullptr) return receivers.Remove(&subscription);
    auto deliver = subscription.Begin(handler, make);
    receivers.Add(&subscription, [deliver, convert](const Item& item) { deliver(convert(item)); });
}

void Instance::OnModal(napi_value handler) {
    auto hold = [](const std::shared_ptr<Modal>& modal) { return OpenedModal{modal, modal->HoldLoop()}; };
    Set(Modals::Get().Openings(), modals_, handler, hold, MakeOpened);
}

void Instance::OnOpening(napi_value handler) {
    auto hold = [](const std::shared_ptr<Modal>& modal) { return modal->HoldLoop(); };
    Set(Modals::Get().Openings(), openings_, handler, hold, MakeOpening);
}

void Instance::OnExit(napi_value handler) {
    auto withoutFunction = [](const Occasion& why) { return Occasion{why.isTimer, why.requestType, why.code, 0, {}}; };
    Set(GameEnd::Handlers(), exit_, handler, withoutFunction, MakeExit);
}

void Instance::OnRecord(napi_value handler) {
    auto copy = [](const DeviceRecord& record) { return record; };
    Set(RecordStream::Get(), records_, handler, copy, MakeRecord);
}

}  // namespace StandIn
