#include "device_context.h"

#include <mutex>
#include <set>
#include <utility>

#include "ability_context.h"
#include "faults.h"
#include "modals.h"
#include "napi_base_context.h"
#include "ui_extension_context.h"
#include "wrap/call_site.h"

namespace StandIn {
namespace {

using OHOS::AbilityRuntime::AbilityContext;
using OHOS::AbilityRuntime::Context;
using OHOS::AbilityRuntime::UIExtensionContext;
using OHOS::Global::Resource::ResourceManager;

/// A context of an application with these modules, and of no kind that it could be converted to. `Base` is
/// the class it stands in for.
template <typename Base>
class ApplicationContext : public Base {
public:
    explicit ApplicationContext(std::shared_ptr<const Modules> modules) : modules_(std::move(modules)) {}

    std::shared_ptr<Context> CreateModuleContext(const std::string& moduleName) override;
    std::shared_ptr<ResourceManager> GetResourceManager() const override { return nullptr; }

protected:
    bool IsContext(size_t /*contextTypeId*/) const override { return false; }

private:
    const std::shared_ptr<const Modules> modules_;
};

template <typename Base>
class WindowContext final : public ApplicationContext<Base> {
public:
    WindowContext(std::shared_ptr<const Modules> modules, std::shared_ptr<Window> window)
        : ApplicationContext<Base>(std::move(modules)), window_(std::move(window)) {}

    OHOS::Ace::UIContent* GetUIContent() override { return window_->FindContent(); }

protected:
    bool IsContext(size_t contextTypeId) const override { return contextTypeId == Base::CONTEXT_TYPE_ID; }

private:
    const std::shared_ptr<Window> window_;
};

class ModuleContext final : public ApplicationContext<Context> {
public:
    ModuleContext(std::shared_ptr<const Modules> modules, const std::shared_ptr<const Resources>& resources)
        : ApplicationContext<Context>(std::move(modules)),
          resources_(resources == nullptr ? nullptr : MakeResourceManager(resources)) {}

    std::shared_ptr<ResourceManager> GetResourceManager() const override {
        return Faults::Trip(Call::GetResourceManager) ? nullptr : resources_;
    }

private:
    const std::shared_ptr<ResourceManager> resources_;
};

template <typename Base>
std::shared_ptr<Context> ApplicationContext<Base>::CreateModuleContext(const std::string& moduleName) {
    auto found = modules_->find(moduleName);
    if (Faults::Trip(Call::CreateModuleContext) || found == modules_->end()) return nullptr;
    return std::make_shared<ModuleContext>(modules_, found->second);
}

// Marks the JS objects whose wrapped pointer is a ContextRecord.
constexpr napi_type_tag CONTEXT_TAG = {0x8b1f4a0c6d2e4957, 0xa3c57e19b06d42f8};

bool IsContextObject(napi_env env, napi_value value) {
    napi_valuetype type = napi_undefined;
    bool isTagged = false;
    return napi_typeof(env, value, &type) == napi_ok && type == napi_object &&
           napi_check_object_type_tag(env, value, &CONTEXT_TAG, &isTagged) == napi_ok && isTagged;
}

// Of an object that is tagged as a context.
const ContextRecord* Unwrap(napi_env env, napi_value object) {
    void* record = nullptr;
    (void)napi_unwrap(env, object, &record);
    return static_cast<const ContextRecord*>(record);
}

/// Of those who wait for a window.
struct WindowWaits {
    std::mutex mutex;  // guards the holds
    std::set<std::shared_ptr<LoopHold>> holds;
};

WindowWaits& TheWindowWaits() {
    static WindowWaits& waits = *new WindowWaits();
    return waits;
}

thread_local uint64_t gMissingIn = 0;  // the call of a method that found no window

}  // namespace

Window::Window(const std::shared_ptr<Environment>& environment, bool isShown)
    : environment_(environment), isShown_(isShown) {}

OHOS::Ace::UIContent* Window::FindContent() {
    if (Faults::Trip(Call::GetUIContent) || !isShown_) {
        gMissingIn = CurrentCall();
        return nullptr;
    }
    return this;
}

int32_t Window::CreateModalUIExtension(OHOS::AAFwk::Want want, OHOS::Ace::ModalUIExtensionCallbacks callbacks,
                                       OHOS::Ace::ModalUIExtensionConfig config) {
    if (Faults::Trip(Call::CreateModalUIExtension)) return 0;
    NoteEffect();
    return Modals::Get().Open(
        {std::move(want), std::move(config), std::move(callbacks), environment_.lock()});
}

void Window::CloseModalUIExtension(int32_t sessionId) {
    NoteEffect();
    if (!Faults::Trip(Call::CloseModalUIExtension)) Modals::Get().Close(sessionId);
}

std::shared_ptr<LoopHold> BeginWindowWait() {
    Environment* current = Environment::Current();
    if (current == nullptr || std::exchange(gMissingIn, 0) != CurrentCall() || CurrentCall() == 0)
        return nullptr;
    auto hold = std::make_shared<LoopHold>(current->shared_from_this());
    WindowWaits& waits = TheWindowWaits();
    std::lock_guard<std::mutex> guard(waits.mutex);
    waits.holds.insert(hold);
    return hold;
}

void EndWindowWait(const std::shared_ptr<LoopHold>& hold) {
    WindowWaits& waits = TheWindowWaits();
    std::lock_guard<std::mutex> guard(waits.mutex);
    if (waits.holds.erase(hold) == 1) hold->Drop();
}

void DropWindowWaits() {
    WindowWaits& waits = TheWindowWaits();
    std::lock_guard<std::mutex> guard(waits.mutex);
    for (const auto& hold : waits.holds) {
        hold->Drop();
    }
    waits.holds.clear();
}

ContextRecord MakeContext(ContextKind kind, Modules modules, const std::shared_ptr<Window>& window) {
    auto shared = std::make_shared<const Modules>(std::move(modules));
    switch (kind) {
        case ContextKind::ABILITY:
            return {std::make_shared<WindowContext<AbilityContext>>(shared, window), window};
        case ContextKind::UI_EXTENSION:
            return {std::make_shared<WindowContext<UIExtensionContext>>(shared, window), window};
        case ContextKind::OTHER:
            return {std::make_shared<ApplicationContext<Context>>(shared), nullptr};
        case ContextKind::EMPTY:
            break;
    }
    return {};
}

napi_value MakeContextObject(napi_env env, ContextRecord record) {
    auto owned = std::make_unique<ContextRecord>(std::move(record));
    auto finalize = [](napi_env /*env*/, void* data, void* /*hint*/) {
        delete static_cast<ContextRecord*>(data);
    };
    napi_value object = nullptr;
    if (napi_create_object(env, &object) != napi_ok ||
        napi_type_tag_object(env, object, &CONTEXT_TAG) != napi_ok ||
        napi_wrap(env, object, owned.get(), finalize, nullptr, nullptr) != napi_ok) {
        return nullptr;
    }
    (void)owned.release();
    return object;
}

const ContextRecord* FindContextRecord(napi_env env, napi_value value) {
    return IsContextObject(env, value) ? Unwrap(env, value) : nullptr;
}

}  // namespace StandIn

namespace OHOS::AbilityRuntime {

napi_status IsStageContext(napi_env env, napi_value value, bool& isStage) {
    if (StandIn::Faults::Trip(StandIn::Call::IsStageContext)) return napi_generic_failure;
    isStage = StandIn::IsContextObject(env, value);
    return napi_ok;
}

std::shared_ptr<Context> GetStageModeContext(napi_env env, napi_value value) {
    const StandIn::ContextRecord* record = StandIn::Unwrap(env, value);
    return StandIn::Faults::Trip(StandIn::Call::GetStageModeContext) || record == nullptr ? nullptr
                                                                                          : record->context;
}

}  // namespace OHOS::AbilityRuntime
