#pragma once

#include "context.h"
#include "ui_content.h"

namespace OHOS::AbilityRuntime {

/// The context of a UI extension, shown in a window of its host.
class UIExtensionContext : public Context {
public:
    static constexpr size_t CONTEXT_TYPE_ID = 2;

    /// The window's content, which lives as long as this context; null while the window shows no page.
    virtual Ace::UIContent* GetUIContent() = 0;
};

}  // namespace OHOS::AbilityRuntime
