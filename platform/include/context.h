#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "resource_manager.h"

namespace OHOS::AbilityRuntime {

/// A stage-model context: what an application component knows about its surroundings. Always held by shared pointers;
/// callable from any thread.
class Context {
public:
    virtual ~Context() = default;

    /// The context of another module of the same application; empty if there is no such module.
    virtual std::shared_ptr<Context> CreateModuleContext(const std::string& moduleName) = 0;

    /// The same of another application.
    virtual std::shared_ptr<Context> CreateModuleContext(const std::string& bundleName,
                                                         const std::string& moduleName) = 0;

    /// Empty if this context has no resources.
    virtual std::shared_ptr<Global::Resource::ResourceManager> GetResourceManager() const = 0;

    /// Checked conversion to `T`, a class that declares a `CONTEXT_TYPE_ID`; empty if `context` is of another kind.
    template <typename T>
    static std::shared_ptr<T> ConvertTo(const std::shared_ptr<Context>& context) {
        if (context == nullptr || !context->IsContext(T::CONTEXT_TYPE_ID)) return nullptr;
        return std::static_pointer_cast<T>(context);
    }

protected:
    virtual bool IsContext(size_t contextTypeId) const = 0;
};

}  // namespace OHOS::AbilityRuntime
