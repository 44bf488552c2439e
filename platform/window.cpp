#include "window.h"

#include "environment.h"
#include "faults.h"
#include "modals.h"

namespace StandIn {

Window::Window(const std::shared_ptr<Environment>& environment, bool isShown)
    : environment_(environment), isShown_(isShown)
{
}

OHOS::Ace::UIContent* Window::FindContent()
{
    if (Faults::Trip("GetUIContent") || !isShown_) {
        Environment::NoteWindowMissing();
        return nullptr;
    }
    return this;
}

int32_t Window::CreateModalUIExtension(const OHOS::AAFwk::Want& want,
                                       const OHOS::Ace::ModalUIExtensionCallbacks& callbacks,
                                       const OHOS::Ace::ModalUIExtensionConfig& config)
{
    if (Faults::Trip("CreateModalUIExtension")) {
        return 0;
    }
    return Modals::Get().Open({want, config, callbacks, Environment::HoldRequest(environment_.lock())});
}

void Window::CloseModalUIExtension(int32_t sessionId)
{
    if (!Faults::Trip("CloseModalUIExtension")) {
        Modals::Get().Close(sessionId);
    }
}

}  // namespace StandIn
