#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ability_context.h"
#include "common/env_registry.h"
#include "ui_content.h"
#include "ui_extension_context.h"
#include "want_params.h"

namespace TAVIK::GAME_PLAYER {

/// Everything that the common code knows about one asynchronous JS call, from reading its arguments until its
/// end. Each API with parameters derives a context that adds them.
///
/// The JS method fills it on its JS thread and passes it to a `ModalUICallback`, which owns it from then on.
/// The first group of members never changes after that; every holder of the context may read it. The second
/// belongs to the thread that settles the request. It writes them before it queues the result, and the
/// delivery reads them. The third is guarded by the session's lock.
struct BaseContext {
    BaseContext() = default;
    BaseContext(const BaseContext&) = delete;
    BaseContext& operator=(const BaseContext&) = delete;
    /// Deletes the callback reference if its environment is alive. Does not settle the request. Any thread.
    virtual ~BaseContext();

    /// The content of the caller's window; null while it has none. Any thread.
    OHOS::Ace::UIContent* FindUIContent() const;

    std::shared_ptr<EnvInfo> envInfo = gEnvInfo;  // the environment of the JS call
    napi_deferred deferred = nullptr;             // of the promise, in the promise form
    napi_ref callbackRef = nullptr;               // in the callback form, if the callback is a function
    int32_t errCode = 0;                          // if the request failed before it reached the extension
    napi_value contextValue = nullptr;  // the caller's JS context; this and the next: during the JS call only
    napi_value callbackValue = nullptr;
    std::shared_ptr<OHOS::AbilityRuntime::AbilityContext> abilityContext;        // at most one of these two
    std::shared_ptr<OHOS::AbilityRuntime::UIExtensionContext> extensionContext;  // is set
    int32_t requestType = 0;  // a RequestType, or any number that the game passed
    int64_t startTime = 0;    // in boot milliseconds

    OHOS::AAFwk::WantParams resultParams;  // of the extension's answer
    int32_t errorCode = 0;                 // of that answer, or derived from it
    std::string errorMessage;              // for `errorCode`; empty: the code's fixed message

    int32_t sessionId = 0;              // of the modal that answers close; 0: none, or not known yet
    bool isResetContext = true;         // the request ends after JS has its result
    bool hasMsgBack = false;            // JS has its result, or expects none
    bool needMessageBack = true;        // the extension has not reported an error yet
    bool antiAddictionRunning = false;  // a timer keeps the request from ending
};

/// Settles a request with the pair (error, data), as a failure if `isFailure`: by its promise, or else by its
/// callback. Without either, does nothing. An exception of the callback is left to the environment; any other
/// failure is returned. On the request's JS thread.
napi_status Settle(napi_env env, const BaseContext& request, bool isFailure, const napi_value (&result)[2]);

}  // namespace TAVIK::GAME_PLAYER
