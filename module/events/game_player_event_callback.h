#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "common/env_registry.h"
#include "common/velmor_log.h"
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

/// One JS listener: its function, and the `this` that `on` was called with. Created, used and destroyed on the JS
/// thread of its environment. Its destructor deletes its references.
///
/// `envInfo` distinguishes environments whose `env` reuses the same address. `env` distinguishes those that share a
/// thread, and therefore an `EnvInfo`.
struct EventCallback {
    const std::shared_ptr<EnvInfo> envInfo = gEnvInfo;
    const napi_env env;
    napi_ref callbackRef = nullptr;
    napi_ref thisArgRef = nullptr;

    explicit EventCallback(napi_env owner) : env(owner) {}
    EventCallback(const EventCallback&) = delete;
    EventCallback& operator=(const EventCallback&) = delete;
    ~EventCallback();
};

/// The listeners of all environments, by event type and in order of registration. One per process: see `WithListeners`.
///
/// The registry owns each listener from `on` until `off` or the end of the listener's environment, both on that
/// environment's JS thread. A queued delivery has only a weak reference: the listener may be gone.
class GamePlayerEventCallback {
public:
    GamePlayerEventCallback();

    /// Adds a listener, unless the same function is already registered. On `env`'s JS thread.
    void RegisterGameEventCallback(napi_env env, const std::string& eventType, napi_value callback, napi_value thisArg);

    /// Removes this environment's listeners of a type: all of them, or only the one with function `callback`. On
    /// `env`'s JS thread.
    void UnRegisterGameEventCallback(napi_env env, const std::string& eventType, napi_value callback = nullptr);

    /// The clean-up hook of an environment: removes its listeners. Owns `hookRecord`. On its JS thread.
    static void CleanupEventCallback(void* hookRecord);

    /// Queues the event for each listener of its type and environment. Callable from any thread. The listeners are
    /// called later, one by one in order of registration, on their JS thread.
    void OnEventCallback(GameEventResult event);

private:
    using Listeners = std::vector<std::shared_ptr<EventCallback>>;
    using WeakListeners = std::optional<std::vector<std::weak_ptr<EventCallback>>>;

    WeakListeners ListenersOf(const std::shared_ptr<EnvInfo>& envInfo, napi_env env, const std::string& eventType);
    void AssembleEventCallback(napi_env env, napi_value callback, napi_value thisArg, EventCallback& eventCallback);
    void RemoveListeners(const std::string& eventType, napi_env env, const EventCallback* only);

    // Guards the map. Nothing is called and no listener is destroyed under it. Only a listener's own JS thread destroys
    // it, so that thread may use its listeners without the lock.
    std::mutex mutex_;
    std::map<std::string, Listeners> events_;
};

/// Runs `use` with the process's listeners. Logs and returns false if they could not be allocated.
template <typename Use>
bool WithListeners(const Use& use) {
    auto listeners = OHOS::DelayedSingleton<GamePlayerEventCallback>::GetInstance();
    if (listeners == nullptr) {
        GAME_LOGE("GamePlayerEventCallback is nullptr");
        return false;
    }
    use(*listeners);
    return true;
}

}  // namespace TAVIK::GAME_PLAYER
