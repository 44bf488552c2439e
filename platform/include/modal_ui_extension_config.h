#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "want.h"

namespace OHOS::Ace {

class ModalUIExtensionProxy;

/// The callbacks for an extension's answers. The platform keeps them for the life of the modal and calls them on the UI
/// thread of the window that hosts it, one at a time.
struct ModalUIExtensionCallbacks {
    std::function<void(int32_t releaseCode)> onRelease;
    std::function<void(int32_t resultCode, const AAFwk::Want& result)> onResult;
    std::function<void(const AAFwk::WantParams& data)> onReceive;
    std::function<void(int32_t code, const std::string& name, const std::string& message)> onError;
    std::function<void(const std::shared_ptr<ModalUIExtensionProxy>& proxy)> onRemoteReady;
    std::function<void()> onDestroy;
};

/// How a modal behaves in its window: two groups of flags, with the one callback between them.
struct ModalUIExtensionConfig {
    bool isProhibitBack = false;
    bool isAsyncModalBinding = false;
    bool isAllowedBeCovered = false;
    std::function<void()> doAfterAsyncModalBinding;
    bool prohibitedRemoveByRouter = false;
    bool isAllowAddChildBelowModalUec = false;
    bool isDensityFollowHost = false;
    bool prohibitedRemoveByNavigation = true;
};

}  // namespace OHOS::Ace
