#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ability_context.h"
#include "common/env_registry.h"
#include "modal/answer_rules.h"
#include "ui_content.h"
#include "ui_extension_context.h"
#include "want_params.h"

namespace TAVIK::GAME_PLAYER {

/// One asynchronous JS call: its environment, its form and its caller. The JS method fills it on its JS thread. It
/// never changes after that, and every holder may read it.
struct RequestOrigin {
    std::shared_ptr<EnvInfo> envInfo = gEnvInfo;  // the environment of the JS call
    napi_deferred deferred = nullptr;             // of the promise, in the promise form
    napi_ref callbackRef = nullptr;               // in the callback form, if the callback is a function
    int32_t errCode = 0;                          // if the request failed before it reached the extension
    napi_value contextValue = nullptr;            // the caller's JS context; this and the next: during the JS call only
    napi_value callbackValue = nullptr;
    std::shared_ptr<OHOS::AbilityRuntime::AbilityContext> abilityContext;        // at most one of these two
    std::shared_ptr<OHOS::AbilityRuntime::UIExtensionContext> extensionContext;  // is set
    int32_t requestType = 0;  // a RequestType, or any number that the game passed
    int64_t startTime = 0;    // in boot milliseconds
};

/// What JS gets. It belongs to the thread that settles the request, which writes it before it queues the result; the
/// delivery reads it.
struct RequestResult {
    OHOS::AAFwk::WantParams resultParams;  // of the extension's answer
    int32_t errorCode = 0;                 // of that answer, or derived from it
    std::string errorMessage;              // for `errorCode`; empty: the code's fixed message
};

/// Everything that the common code knows about one asynchronous JS call, from reading its arguments until its end. Each
/// API with parameters derives a context that adds them. The JS method passes it to a `ModalUICallback`, which owns it
/// from then on, and whose lock guards the members here.
struct BaseContext : RequestOrigin, RequestResult {
    BaseContext() = default;
    BaseContext(const BaseContext&) = delete;
    BaseContext& operator=(const BaseContext&) = delete;
    /// Deletes the callback reference if its environment is alive. Does not settle the request. Any thread.
    virtual ~BaseContext();

    /// The content of the caller's window; null while it has none. Any thread.
    OHOS::Ace::UIContent* FindUIContent() const;

    RequestStatus status;   // OPEN from the start if JS expects no result
    int32_t sessionId = 0;  // of the modal that answers close; 0: none, or not known yet
};

/// Settles a request with the pair (error, data), as a failure if `isFailure`: by its promise, or else by its callback.
/// Without either, does nothing. An exception of the callback is left to the environment; any other failure is
/// returned. On the request's JS thread.
napi_status Settle(napi_env env, const BaseContext& request, bool isFailure, const napi_value (&result)[2]);

}  // namespace TAVIK::GAME_PLAYER
