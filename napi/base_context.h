#ifndef NAPI_BASE_CONTEXT_H
#define NAPI_BASE_CONTEXT_H

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "ability_context.h"
#include "common/velmor_util.h"
#include "napi/native_api.h"
#include "ui_extension_context.h"
#include "want_params.h"

namespace TAVIK::GAME_PLAYER {

/// Everything the common machinery knows of one asynchronous JS call, from the reading of its arguments until
/// its end. Each API that carries parameters derives a context that adds them.
///
/// The JS method fills it on its JS thread; from the hand-over to the session on, it is used only through its
/// `ContextOwner`. Members that never change after the hand-over (`envInfo`, `deferred`, `callbackRef`, the
/// two runtime contexts, `requestType`, `startTime`) may be read by whoever holds the context.
struct BaseContext {
    BaseContext(int32_t type, int64_t start, napi_value context);
    BaseContext(const BaseContext&) = delete;
    BaseContext& operator=(const BaseContext&) = delete;
    /// Deletes the callback reference while its environment lives; settles nothing. Any thread.
    virtual ~BaseContext();

    std::shared_ptr<EnvInfo> envInfo;  // the environment of the JS call
    napi_deferred deferred = nullptr;  // of the promise, in the promise form
    napi_ref callbackRef = nullptr;    // to the callback, in the callback form if it is a function
    int32_t errCode = 0;               // of a request that failed before it reached the extension
    napi_value contextValue;           // the caller's JS context; valid within the JS call only
    napi_value callbackValue = nullptr;
    OHOS::AAFwk::WantParams resultParams;                                        // of the extension's answer
    std::shared_ptr<OHOS::AbilityRuntime::AbilityContext> abilityContext;        // of these two, at most one
    std::shared_ptr<OHOS::AbilityRuntime::UIExtensionContext> extensionContext;  // is set
    int32_t requestType;
    int32_t errorCode = 0;              // of the extension's answer, or assembled for it
    std::string errorMessage;           // goes with `errorCode`
    int32_t sessionId = 0;              // above 0 while a modal is open; or a SESSION_
    int64_t startTime;                  // boot milliseconds
    bool isResetContext = true;         // the session may close the modal and end the request
    bool hasMsgBack = false;            // JS has its result, or it is on its way, or JS expects none
    bool needMessageBack = true;        // an error of the extension may still be reported
    bool antiAddictionRunning = false;  // a timer needs the context

private:
    void ReleaseCallback();
};

/// Session ids of a modal that the platform is opening: its own is not known yet, and an answer that came
/// already wants it closed.
inline constexpr int32_t SESSION_OPENING = -1;
inline constexpr int32_t SESSION_UNWANTED = -2;

/// Exclusive use of a context that keeps it from being freed; false if the request has ended.
class LockedContext
{
public:
    LockedContext(std::recursive_mutex& mutex, const std::shared_ptr<BaseContext>& context)
        : lock_(mutex), context_(context)
    {
    }

    explicit operator bool() const { return context_ != nullptr; }
    BaseContext* operator->() const { return context_.get(); }
    BaseContext& operator*() const { return *context_; }
    const std::shared_ptr<BaseContext>& Share() const { return context_; }

    /// Gives the context back before this object's end.
    void Unlock()
    {
        context_.reset();
        lock_.unlock();
    }

private:
    std::unique_lock<std::recursive_mutex> lock_;
    std::shared_ptr<BaseContext> context_;
};

/// The one owner of a request's context, itself shared by the sessions, deliveries, starts and timers that
/// serve the request. The context lives until `Release`, or until the last of those is gone; whoever uses it
/// meanwhile holds the lock or a share, and finds it gone afterwards. Thread-safe.
///
/// The lock may be taken again by its holder: the platform may answer from within the call that opens or
/// closes a modal. It is never held while JS runs, nor while a modal opens.
class ContextOwner
{
public:
    explicit ContextOwner(std::shared_ptr<BaseContext> context) : context_(std::move(context)) {}

    LockedContext Lock() { return LockedContext(mutex_, context_); }

    /// A share of the context for the members that never change; empty if the request has ended.
    std::shared_ptr<BaseContext> Get() { return Lock().Share(); }

    /// Ends the request: nobody gets at the context any more.
    void Release();

private:
    std::recursive_mutex mutex_;
    std::shared_ptr<BaseContext> context_;
};

}  // namespace TAVIK::GAME_PLAYER

#endif
