#ifndef EVENTS_GAME_PLAYER_EVENT_CALLBACK_H
#define EVENTS_GAME_PLAYER_EVENT_CALLBACK_H

#include <uv.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "napi/native_api.h"
#include "singleton.h"

namespace TAVIK::GAME_PLAYER {

inline constexpr const char* EVENT_PLAYER_CHANGED = "playerChanged";
/// For system applications only.
inline constexpr const char* EVENT_GAME_ADDICTION_PREVENTED = "gameAddictionPrevented";

/// One game event: the environment it concerns, its code, type and payload.
struct GameEventResult {
    std::shared_ptr<EnvInfo> envInfo;
    int32_t event = 0;
    std::string eventType;
    std::string resultInfo;
};

/// One JS listener: its function and the `this` that `on` was called with. Made and destroyed on the JS
/// thread of its environment; if that ended unnoticed, its references are left alone.
struct EventCallback {
    std::shared_ptr<EnvInfo> envInfo;
    napi_ref callbackRef = nullptr;
    napi_ref thisArgRef = nullptr;

    explicit EventCallback(std::shared_ptr<EnvInfo> info) : envInfo(std::move(info)) {}
    EventCallback(const EventCallback&) = delete;
    EventCallback& operator=(const EventCallback&) = delete;
    ~EventCallback();
};

/// The listeners of all environments, by event type and in order of registration. One per process: see
/// `WithListeners`.
///
/// The registry owns every listener, from `on` until `off` or the end of the listener's environment, both on
/// that environment's JS thread; a delivery on its way only knows a listener weakly, and finds it gone.
class GamePlayerEventCallback
{
public:
    GamePlayerEventCallback();

    /// Adds a listener, unless the same function listens already. On `env`'s JS thread.
    void RegisterGameEventCallback(napi_env env, const std::string& eventType, napi_value callback,
                                   napi_value thisArg);

    /// Removes this environment's listeners of a type: all of them, or the one of function `callback`. On
    /// `env`'s JS thread.
    void UnRegisterGameEventCallback(napi_env env, const std::string& eventType);
    void UnRegisterGameEventCallback(napi_env env, const std::string& eventType, napi_value callback);

    /// The clean-up hook of an environment: removes its listeners. Owns `hookRecord`.
    static void CleanupEventCallback(void* hookRecord);

    /// Queues the event for each listener of its type and environment. Callable from any thread; the
    /// listeners are called later, one by one in order of registration, on their own JS thread.
    void OnEventCallback(GameEventResult event);

private:
    using Listeners = std::vector<std::shared_ptr<EventCallback>>;

    void AssembleEventCallback(napi_env env, napi_value callback, napi_value thisArg,
                               EventCallback& eventCallback);
    void HookEnvironment(napi_env env);
    static bool IsEventCallbackExisted(napi_env env, const Listeners& listeners, napi_value callback);
    void RemoveListeners(const EnvInfo* envInfo);
    static void DoGameEventWork(uv_work_t* work, int status);
    static napi_value AssembleEventResult(napi_env env, const GameEventResult& result);

    std::mutex mutex_;
    std::map<std::string, Listeners> events_;
};

/// Runs `use` with the listeners of the process, and answers what it answers. False, and logged, if there are
/// none, as memory ran out.
template <typename Use>
bool WithListeners(const Use& use)
{
    auto listeners = OHOS::DelayedSingleton<GamePlayerEventCallback>::GetInstance();
    if (listeners == nullptr) {
        GAME_LOGE("GamePlayerEventCallback is nullptr");
        return false;
    }
    return use(*listeners);
}

}  // namespace TAVIK::GAME_PLAYER

#endif
