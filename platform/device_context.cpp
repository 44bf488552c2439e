#include "device_context.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "ability_context.h"
#include "faults.h"
#include "forever.h"
#include "ipc_skeleton.h"
#include "modals.h"
#include "napi_base_context.h"
#include "served_call.h"
#include "tokenid_kit.h"
#include "ui_extension_context.h"

namespace StandIn {
namespace {

using OHOS::AbilityRuntime::AbilityContext;
using OHOS::AbilityRuntime::Context;
using OHOS::AbilityRuntime::UIExtensionContext;
using OHOS::Global::Resource::NOT_FOUND;
using OHOS::Global::Resource::ResourceManager;
using OHOS::Global::Resource::RState;
using OHOS::Global::Resource::SUCCESS;
using Data = std::unique_ptr<uint8_t[]>;

/// Copies the bytes that a read found. `bytes` is null if it found none.
RState CopyOut(const Bytes* bytes, size_t& length, Data& data) {
    length = 0;
    if (bytes == nullptr) return NOT_FOUND;
    length = bytes->size();
    data = std::make_unique<uint8_t[]>(length);
    std::copy(bytes->begin(), bytes->end(), data.get());
    return SUCCESS;
}

template <typename Key>
const Bytes* Find(Call call, const std::map<Key, Bytes>& resources, const Key& key) {
    auto found = resources.find(key);
    return Faults::Trip(call) || found == resources.end() ? nullptr : &found->second;
}

class ModuleResources final : public ResourceManager {
public:
    explicit ModuleResources(std::shared_ptr<const Resources> resources) : resources_(std::move(resources)) {}

    RState GetMediaDataById(uint32_t id, size_t& length, Data& data, uint32_t /*density*/) override {
        return CopyOut(Find(Call::GetMediaDataById, resources_->mediaById, id), length, data);
    }

    RState GetMediaDataByName(const char* name, size_t& length, Data& data, uint32_t /*density*/) override {
        return CopyOut(Find(Call::GetMediaDataByName, resources_->mediaByName, std::string(name)), length, data);
    }

    RState GetRawFileFromHap(const std::string& name, size_t& length, Data& data) override {
        return CopyOut(Find(Call::GetRawFileFromHap, resources_->rawFiles, name), length, data);
    }

private:
    const std::shared_ptr<const Resources> resources_;
};

/// A context of an application with these modules, and with the resources of one module or none. It converts to no
/// class, unless a subclass allows it. `Base` is the class it implements.
template <typename Base>
class ModuleContext : public Base {
public:
    explicit ModuleContext(std::shared_ptr<const Modules> modules, std::shared_ptr<ResourceManager> resources = nullptr)
        : modules_(std::move(modules)), resources_(std::move(resources)) {}

    std::shared_ptr<Context> CreateModuleContext(const std::string& moduleName) override {
        auto found = modules_->find(moduleName);
        if (Faults::Trip(Call::CreateModuleContext) || found == modules_->end()) return nullptr;
        auto resources = found->second == nullptr ? nullptr : std::make_shared<ModuleResources>(found->second);
        return std::make_shared<ModuleContext<Context>>(modules_, resources);
    }
    // No other application is installed.
    std::shared_ptr<Context> CreateModuleContext(const std::string& /*bundleName*/,
                                                 const std::string& /*moduleName*/) override {
        return nullptr;
    }
    std::shared_ptr<ResourceManager> GetResourceManager() const override {
        return Faults::Trip(Call::GetResourceManager) ? nullptr : resources_;
    }

protected:
    bool IsContext(size_t /*contextTypeId*/) const override { return false; }

private:
    const std::shared_ptr<const Modules> modules_;
    const std::shared_ptr<ResourceManager> resources_;
};

template <typename Base>
class WindowContext final : public ModuleContext<Base> {
public:
    WindowContext(std::shared_ptr<const Modules> modules, std::shared_ptr<Window> window)
        : ModuleContext<Base>(std::move(modules)), window_(std::move(window)) {}

    OHOS::Ace::UIContent* GetUIContent() override { return window_->FindContent(); }

protected:
    bool IsContext(size_t contextTypeId) const override { return contextTypeId == Base::CONTEXT_TYPE_ID; }

private:
    const std::shared_ptr<Window> window_;
};

// Marks the JS objects whose wrapped pointer is a ContextBacking.
constexpr napi_type_tag CONTEXT_TAG = {0x8b1f4a0c6d2e4957, 0xa3c57e19b06d42f8};
constexpr uint64_t APPLICATION_TOKEN = 0x20010001;
constexpr uint64_t SYSTEM_APP_MASK = uint64_t{1} << 32;
std::atomic<uint64_t> gCallingToken{APPLICATION_TOKEN};

/// The loop holds of the threads that wait for a window.
struct WindowWaits {
    std::mutex mutex;                    // guards the holds
    std::map<uint64_t, LoopHold> holds;  // by the thread's thread number
};

}  // namespace

Window::Window(const std::shared_ptr<Environment>& environment, bool isShown)
    : environment_(environment), isShown_(isShown) {}

OHOS::Ace::UIContent* Window::FindContent() {
    if (Faults::Trip(Call::GetUIContent) || !isShown_) {
        if (Served() != nullptr) Served()->isWindowMissing = true;
        return nullptr;
    }
    return this;
}

int32_t Window::CreateModalUIExtension(const OHOS::AAFwk::Want& want,
                                       const OHOS::Ace::ModalUIExtensionCallbacks& callbacks,
                                       const OHOS::Ace::ModalUIExtensionConfig& config) {
    if (Faults::Trip(Call::CreateModalUIExtension)) return 0;
    MarkEffect();
    const uint64_t call = Served() != nullptr ? Served()->number : 0;
    return Modals::Get().Open({want, config, callbacks, environment_.lock(), call});
}

void Window::CloseModalUIExtension(int32_t sessionId) {
    MarkEffect();
    if (!Faults::Trip(Call::CloseModalUIExtension)) Modals::Get().Close(sessionId);
}

void BeginWindowWait(uint64_t thread) {
    Environment* current = Environment::Current();
    ServedCall* served = Served();
    if (current == nullptr || served == nullptr || !std::exchange(served->isWindowMissing, false)) return;
    auto& waits = Forever<WindowWaits>();
    std::lock_guard<std::mutex> guard(waits.mutex);
    waits.holds.emplace(thread, current->Hold());
}

void EndWindowWait(uint64_t thread) {
    auto& waits = Forever<WindowWaits>();
    std::lock_guard<std::mutex> guard(waits.mutex);
    waits.holds.erase(thread);
}

void DropWindowWaits() {
    auto& waits = Forever<WindowWaits>();
    std::lock_guard<std::mutex> guard(waits.mutex);
    waits.holds.clear();
}

void SetSystemApp(bool isSystem) { gCallingToken = isSystem ? APPLICATION_TOKEN | SYSTEM_APP_MASK : APPLICATION_TOKEN; }

ContextBacking MakeWindowContext(bool isOfExtension, Modules modules, const std::shared_ptr<Window>& window) {
    auto shared = std::make_shared<const Modules>(std::move(modules));
    if (isOfExtension) return {std::make_shared<WindowContext<UIExtensionContext>>(shared, window), window};
    return {std::make_shared<WindowContext<AbilityContext>>(shared, window), window};
}

ContextBacking MakeOtherContext() {
    return {std::make_shared<ModuleContext<Context>>(std::make_shared<const Modules>()), nullptr};
}

napi_value MakeContextObject(napi_env env, ContextBacking backing) {
    auto owned = std::make_unique<ContextBacking>(std::move(backing));
    auto finalize = [](napi_env /*env*/, void* data, void* /*hint*/) { delete static_cast<ContextBacking*>(data); };
    napi_value object = nullptr;
    if (napi_create_object(env, &object) != napi_ok || napi_type_tag_object(env, object, &CONTEXT_TAG) != napi_ok ||
        napi_wrap(env, object, owned.get(), finalize, nullptr, nullptr) != napi_ok) {
        return nullptr;
    }
    (void)owned.release();
    return object;
}

const ContextBacking* FindBacking(napi_env env, napi_value value) {
    napi_valuetype type = napi_undefined;
    bool isTagged = false;
    void* backing = nullptr;
    if (napi_typeof(env, value, &type) == napi_ok && type == napi_object &&
        napi_check_object_type_tag(env, value, &CONTEXT_TAG, &isTagged) == napi_ok && isTagged) {
        (void)napi_unwrap(env, value, &backing);
    }
    return static_cast<const ContextBacking*>(backing);
}

}  // namespace StandIn

namespace OHOS::AbilityRuntime {

napi_status IsStageContext(napi_env env, napi_value value, bool& isStage) {
    if (StandIn::Faults::Trip(StandIn::Call::IsStageContext)) return napi_generic_failure;
    isStage = StandIn::FindBacking(env, value) != nullptr;
    return napi_ok;
}

std::shared_ptr<Context> GetStageModeContext(napi_env env, napi_value value) {
    if (StandIn::Faults::Trip(StandIn::Call::GetStageModeContext)) return nullptr;
    const StandIn::ContextBacking* backing = StandIn::FindBacking(env, value);
    return backing == nullptr ? nullptr : backing->context;
}

}  // namespace OHOS::AbilityRuntime

namespace OHOS {

uint64_t IPCSkeleton::GetCallingFullTokenID() { return StandIn::gCallingToken; }

bool Security::AccessToken::TokenIdKit::IsSystemAppByFullTokenID(uint64_t tokenId) {
    return (tokenId & StandIn::SYSTEM_APP_MASK) != 0;
}

}  // namespace OHOS
