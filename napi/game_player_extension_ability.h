#pragma once

#include "napi/request_shape.h"

namespace TAVIK::GAME_PLAYER {

/// The module's eighteen JS methods, and the plumbing between a JS call and its request context. Stateless;
/// everything runs on the JS thread of the calling environment.
///
/// Every method but `on`, `off` and `syncTraceId` returns `undefined` in an environment that is not
/// registered any more, and throws business error 1002000001 if its arguments cannot be read.
class GamePlayerExtensionAbilityManager {
    template <RequestType TYPE>
    static napi_value Run(napi_env env, napi_callback_info info) {
        return RunRequest(env, info, FindRequest(TYPE));
    }

public:
    /// Registers the environment of this thread, once, and defines the methods on `exports`. Returns
    /// `exports`; null, with a business error thrown, if they could not be defined.
    static napi_value Entry(napi_env env, napi_value exports);

    static constexpr napi_callback Init = Run<REQUEST_INIT>;
    static constexpr napi_callback GetLocalPlayer = Run<REQUEST_GET_LOCAL_PLAYER>;
    static constexpr napi_callback SavePlayerRole = Run<REQUEST_SAVE_PLAYER_ROLE>;
    static constexpr napi_callback PrePurchase = Run<REQUEST_PRE_PURCHASE>;
    static constexpr napi_callback PostPurchase = Run<REQUEST_POST_PURCHASE>;
    static constexpr napi_callback BindPlayer = Run<REQUEST_BIND_PLAYER>;
    static constexpr napi_callback UnbindPlayer = Run<REQUEST_UNBIND_PLAYER>;
    static constexpr napi_callback VerifyLocalPlayer = Run<REQUEST_VERIFY_LOCAL_PLAYER>;
    static constexpr napi_callback UnionLogin = Run<REQUEST_UNION_LOGIN>;
    static constexpr napi_callback LaunchWelcomeBanner = Run<REQUEST_LAUNCH_WELCOME_BANNER>;
    static constexpr napi_callback LaunchAntiAddiction = Run<REQUEST_LAUNCH_ANTI_ADDICTION>;
    static constexpr napi_callback QuickGameLogin = Run<REQUEST_QUICK_GAME_LOGIN>;
    static constexpr napi_callback LaunchCommonPage = Run<REQUEST_LAUNCH_COMMON_PAGE>;
    static napi_value SyncTraceId(napi_env env, napi_callback_info info);
    static napi_value On(napi_env env, napi_callback_info info);
    static napi_value Off(napi_env env, napi_callback_info info);
    static napi_value ReportEventOperation(napi_env env, napi_callback_info info);
    static napi_value OnEventCallback(napi_env env, napi_callback_info info);

    /// Prepares a context whose `contextValue` and `callbackValue` are set for the callback form. False if
    /// the request cannot go on. A callback that is no function is no failure: nothing settles then.
    static bool BuildContextForCallback(napi_env env, BaseContext& context);

    /// Prepares a context whose `contextValue` is set for the promise form. False if the request cannot go
    /// on; `promise` may have been made all the same.
    static bool BuildContextForPromise(napi_env env, BaseContext& context, napi_value& promise);

    /// Settles a request that failed before it reached the extension: by its promise, else by its callback,
    /// else not at all. With `errCode` 0 `data` is the result, otherwise `error`. A refusal by the
    /// environment is thrown as a plain JS error.
    static void ReturnCallbackOrPromise(napi_env env, const BaseContext& context, napi_value error,
                                        napi_value data);

private:
    static bool ParseAbilityContextReq(napi_env env, napi_value value, BaseContext& context);
};

}  // namespace TAVIK::GAME_PLAYER
