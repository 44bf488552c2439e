#pragma once

#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

/// The module's eighteen JS methods, and the code between a JS call and its request context. Stateless; everything runs
/// on the JS thread of the calling environment.
///
/// In an environment that is no longer registered, every method except `on`, `off` and `syncTraceId` returns
/// `undefined`. A method throws business error 1002000001 if its arguments cannot be read.
class GamePlayerExtensionAbilityManager {
    template <RequestType TYPE>
    static napi_value Run(napi_env env, napi_callback_info info) {
        return RunRequest(env, info, FindRequest(TYPE));
    }

public:
    /// Registers the environment of this thread, once, and defines the methods on `exports`. Returns `exports`, or
    /// throws a business error and returns null if they could not be defined.
    static napi_value Entry(napi_env env, napi_value exports);

#define REQUEST(type, number, Method, name, flags) static constexpr napi_callback Method = Run<type>;
#define RESERVED(type, number, name)
#include "common/requests.def"
    static napi_value SyncTraceId(napi_env env, napi_callback_info info);
    static napi_value On(napi_env env, napi_callback_info info);
    static napi_value Off(napi_env env, napi_callback_info info);
    static napi_value ReportEventOperation(napi_env env, napi_callback_info info);
    static napi_value OnEventCallback(napi_env env, napi_callback_info info);

    /// Prepares a context for the callback form; its `contextValue` and `callbackValue` must be set. False if the
    /// request cannot continue. A callback that is not a function is not a failure, but is never called.
    static bool BuildContextForCallback(napi_env env, BaseContext& context);

    /// Prepares a context for the promise form; its `contextValue` must be set. False if the request cannot continue;
    /// even then, `promise` may have been created.
    static bool BuildContextForPromise(napi_env env, BaseContext& context, napi_value& promise);

    /// Settles a request that failed before it reached the extension, by its promise or else its callback. With
    /// `errCode` 0, `data` is the result, otherwise `error`. If the environment refuses, throws a plain error.
    static void ReturnCallbackOrPromise(napi_env env, const BaseContext& context, napi_value error, napi_value data);

private:
    static bool ParseAbilityContextReq(napi_env env, napi_value value, BaseContext& context);
};

}  // namespace TAVIK::GAME_PLAYER
