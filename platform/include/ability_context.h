#pragma once

#include "context.h"
#include "ui_content.h"

namespace OHOS::AbilityRuntime {

/// The context of an ability that owns a window.
class AbilityContext : public Context {
public:
    static constexpr size_t CONTEXT_TYPE_ID = 1;

    /// The window's content, which lives as long as this context; null while the window shows no page.
    virtual Ace::UIContent* GetUIContent() = 0;
};

}  // namespace OHOS::AbilityRuntime
