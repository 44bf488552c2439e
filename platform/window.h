#pragma once

#include <atomic>
#include <memory>

#include "ui_content.h"

namespace StandIn {

class Environment;

/// A window. Its content object is always there, but is found only while the window shows a page.
/// Thread-safe.
class Window final : public OHOS::Ace::UIContent {
public:
    /// The window of a context that lives in `environment`.
    Window(const std::shared_ptr<Environment>& environment, bool isShown);

    void Show() { isShown_ = true; }
    void Hide() { isShown_ = false; }
    /// The content as the module finds it: null while the window shows no page.
    OHOS::Ace::UIContent* FindContent();

    int32_t CreateModalUIExtension(OHOS::AAFwk::Want want, OHOS::Ace::ModalUIExtensionCallbacks callbacks,
                                   OHOS::Ace::ModalUIExtensionConfig config) override;
    void CloseModalUIExtension(int32_t sessionId) override;

private:
    const std::weak_ptr<Environment> environment_;
    std::atomic<bool> isShown_;
};

}  // namespace StandIn
