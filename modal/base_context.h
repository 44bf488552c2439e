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

/// Everything the common machinery knows of one asynchronous JS call, from the reading of its arguments until
/// its end. Each API that carries parameters derives a context that adds them.
///
/// The JS method fills it on its JS thread and hands it over to a `ModalUICallback`, which owns it from then
/// on. The first group of members never changes after that; whoever holds the context may read it. The second
/// belongs to the thread that settles the request: it writes them before it queues the result, and the
/// delivery reads them. The third is guarded by the session's lock.
struct BaseContext {
    BaseContext() = default;
    BaseContext(const BaseContext&) = delete;
    BaseContext& operator=(const BaseContext&) = delete;
    /// Deletes the callback reference while its environment lives; settles nothing. Any thread.
    virtual ~BaseContext();

    /// The content of the caller's window; null while it has none. Any thread.
    OHOS::Ace::UIContent* FindUIContent() const;

    std::shared_ptr<EnvInfo> envInfo = gEnvInfo;  // the environment of the JS call
    napi_deferred deferred = nullptr;             // of the promise, in the promise form
    napi_ref callbackRef = nullptr;               // in the callback form, if the callback is a function
    int32_t errCode = 0;                          // of a request that failed before it reached the extension
    napi_value contextValue = nullptr;  // the caller's JS context; this and the next within the JS call only
    napi_value callbackValue = nullptr;
    std::shared_ptr<OHOS::AbilityRuntime::AbilityContext> abilityContext;        // of these two, at most one
    std::shared_ptr<OHOS::AbilityRuntime::UIExtensionContext> extensionContext;  // is set
    int32_t requestType = 0;  // a RequestType, or whatever number the game gave
    int64_t startTime = 0;    // boot milliseconds

    OHOS::AAFwk::WantParams resultParams;  // of the extension's answer
    int32_t errorCode = 0;                 // of that answer, or assembled for it
    std::string errorMessage;              // goes with `errorCode`; empty: the code's fixed text

    int32_t sessionId = 0;              // of the modal that answers close; 0: none, or not known yet
    bool isResetContext = true;         // the request ends once JS has its result
    bool hasMsgBack = false;            // JS has its result, or expects none
    bool needMessageBack = true;        // no error of the extension has come yet
    bool antiAddictionRunning = false;  // a timer keeps the request from ending
};

/// Settles a request by its promise, else by its callback, else not at all, with the pair (error, data): as a
/// failure if `isFailure`. What the callback throws is left to the environment; any other refusal is
/// returned. On the request's JS thread.
napi_status Settle(napi_env env, const BaseContext& request, bool isFailure, const napi_value (&result)[2]);

}  // namespace TAVIK::GAME_PLAYER
