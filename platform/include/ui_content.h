#pragma once

#include <cstdint>

#include "modal_ui_extension_config.h"

namespace OHOS::Ace {

/// The content of a window. Callable from any thread.
class UIContent {
public:
    virtual ~UIContent() = default;

    /// Opens a modal UI extension over the window. Returns its session id, above 0; 0 if it was refused.
    virtual int32_t CreateModalUIExtension(AAFwk::Want want, ModalUIExtensionCallbacks callbacks,
                                           ModalUIExtensionConfig config) = 0;

    /// Closes the modal of `sessionId`; an unknown or closed one is left alone.
    virtual void CloseModalUIExtension(int32_t sessionId) = 0;
};

}  // namespace OHOS::Ace
