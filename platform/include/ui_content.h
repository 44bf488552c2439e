#pragma once

#include <cstdint>

#include "modal_ui_extension_config.h"

namespace OHOS::Ace {

/// The content of a window. Callable from any thread.
class UIContent {
public:
    virtual ~UIContent() = default;

    /// Opens a modal UI extension over the window. Returns its session ID, above 0; 0 if it was refused.
    virtual int32_t CreateModalUIExtension(const AAFwk::Want& want, const ModalUIExtensionCallbacks& callbacks,
                                           const ModalUIExtensionConfig& config) = 0;

    /// Closes the modal with this session ID. Ignores an unknown or closed one.
    virtual void CloseModalUIExtension(int32_t sessionId) = 0;
};

}  // namespace OHOS::Ace
