#include "modal/base_context.h"

#include <iterator>

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {

BaseContext::~BaseContext() {
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

OHOS::Ace::UIContent* BaseContext::FindUIContent() const {
    if (abilityContext != nullptr) return abilityContext->GetUIContent();
    return extensionContext != nullptr ? extensionContext->GetUIContent() : nullptr;
}

napi_status Settle(napi_env env, const BaseContext& request, bool isFailure, const napi_value (&result)[2]) {
    if (request.deferred != nullptr) {
        return isFailure ? napi_reject_deferred(env, request.deferred, result[0])
                         : napi_resolve_deferred(env, request.deferred, result[1]);
    }
    if (request.callbackRef == nullptr) return napi_ok;
    napi_value receiver = nullptr;
    napi_value callback = nullptr;
    napi_status status = napi_get_undefined(env, &receiver);
    if (status == napi_ok) status = napi_get_reference_value(env, request.callbackRef, &callback);
    if (status == napi_ok) (void)napi_call_function(env, receiver, callback, std::size(result), result, nullptr);
    return status;
}

}  // namespace TAVIK::GAME_PLAYER
