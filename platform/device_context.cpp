#include "device_context.h"

#include <utility>

#include "ability_context.h"
#include "faults.h"
#include "ui_extension_context.h"

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
        return Faults::Trip("GetResourceManager") ? nullptr : resources_;
    }

private:
    const std::shared_ptr<ResourceManager> resources_;
};

template <typename Base>
std::shared_ptr<Context> ApplicationContext<Base>::CreateModuleContext(const std::string& moduleName) {
    auto found = modules_->find(moduleName);
    if (Faults::Trip("CreateModuleContext") || found == modules_->end()) return nullptr;
    return std::make_shared<ModuleContext>(modules_, found->second);
}

}  // namespace

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

}  // namespace StandIn
