#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "want.h"

namespace OHOS::Ace {

/// The callbacks for an extension's answers. The platform keeps them for the life of the modal and calls them
/// on the UI thread of the window that hosts it, one at a time.
struct ModalUIExtensionCallbacks {
    std::function<void(int32_t releaseCode)> onRelease;
    std::function<void(int32_t resultCode, const AAFwk::Want& result)> onResult;
    std::function<void(const AAFwk::WantParams& data)> onReceive;
    std::function<void(int32_t code, const std::string& name, const std::string& message)> onError;
    std::function<void()> onRemoteReady;
    std::function<void()> onDestroy;
};

/// How a modal behaves in its window: two groups of flags, with the one callback between them.
struct ModalUIExtensionConfig {
    bool isBackBlocked = false;
    bool isKeyboardAvoided = false;
    bool isBoundAsync = false;
    std::function<void()> doAfterBinding;
    bool isCoverable = false;
    bool isFocusKept = false;
    bool isTransparent = false;
    bool isKeptByRouter = false;
};

}  // namespace OHOS::Ace
