#include "window.h"

#include <utility>

#include "faults.h"
#include "modals.h"
#include "request_hold.h"

namespace StandIn {

Window::Window(const std::shared_ptr<Environment>& environment, bool isShown)
    : environment_(environment), isShown_(isShown) {}

OHOS::Ace::UIContent* Window::FindContent() {
    if (Faults::Trip("GetUIContent") || !isShown_) {
        RequestHold::NoteWindowMissing();
        return nullptr;
    }
    return this;
}

int32_t Window::CreateModalUIExtension(OHOS::AAFwk::Want want, OHOS::Ace::ModalUIExtensionCallbacks callbacks,
                                       OHOS::Ace::ModalUIExtensionConfig config) {
    if (Faults::Trip("CreateModalUIExtension")) return 0;
    return Modals::Get().Open(
        {std::move(want), std::move(config), std::move(callbacks), RequestHold::Take(environment_.lock())});
}

void Window::CloseModalUIExtension(int32_t sessionId) {
    if (!Faults::Trip("CloseModalUIExtension")) Modals::Get().Close(sessionId);
}

}  // namespace StandIn
