#include "modal/base_context.h"

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {

BaseContext::~BaseContext()
{
    GAME_LOGI("release enter");
    if (callbackRef != nullptr && DeleteReference(envInfo, callbackRef)) {
        callbackRef = nullptr;
        GAME_LOGI("release callback");
    }
    if (deferred != nullptr) {
        deferred = nullptr;
        GAME_LOGI("release deferred");
    }
    GAME_LOGI("release exit");
}

OHOS::Ace::UIContent* BaseContext::FindUIContent() const
{
    if (abilityContext != nullptr) {
        return abilityContext->GetUIContent();
    }
    return extensionContext != nullptr ? extensionContext->GetUIContent() : nullptr;
}

}  // namespace TAVIK::GAME_PLAYER
