#include "events/game_player_event_callback.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

#include "common/js_value_helpers.h"

namespace TAVIK::GAME_PLAYER {
namespace {

struct EventCallbackHook {
    napi_env env;
    GamePlayerEventCallback* registry;
};

auto IsOf(const std::shared_ptr<EnvInfo>& envInfo, napi_env env) {
    return [envInfo = envInfo.get(), env](const std::shared_ptr<EventCallback>& listener) {
        return listener->envInfo.get() == envInfo && listener->env == env;
    };
}

// Moves the elements that satisfy `predicate` out of a list. Both keep their order.
template <typename List, typename Predicate>
List TakeIf(List& list, Predicate predicate) {
    auto first = std::stable_partition(list.begin(), list.end(), std::not_fn(predicate));
    List taken(std::make_move_iterator(first), std::make_move_iterator(list.end()));
    list.erase(first, list.end());
    return taken;
}

// Finds the listener, among an environment's own, whose function is strictly equal to `callback`; null if there is
// none. For `finder`, which complains of each listener whose function cannot be read.
const EventCallback* FindListener(const char* finder, napi_env env,
                                  const std::vector<std::weak_ptr<EventCallback>>& listeners, napi_value callback,
                                  const char* complaint) {
    for (const auto& weak : listeners) {
        const EventCallback* listener = weak.lock().get();  // only this thread destroys it
        napi_value function = nullptr;
        (void)napi_get_reference_value(env, listener->callbackRef, &function);
        if (function == nullptr) {
            GAME_LOGW_AS(finder, "%{public}s", complaint);
            continue;
        }
        bool isSame = false;
        (void)napi_strict_equals(env, function, callback, &isSame);
        if (isSame) return listener;
    }
    return nullptr;
}

napi_value AssembleEventResult(napi_env env, const GameEventResult& result) {
    napi_value value = nullptr;
    if (result.eventType == EVENT_GAME_ADDICTION_PREVENTED) {
        (void)napi_create_string_utf8(env, result.resultInfo.c_str(), NAPI_AUTO_LENGTH, &value);
        return value;
    }
    (void)napi_create_object(env, &value);
    (void)SetIntProperty(env, value, "event", result.event);
    (void)SetStringProperty(env, value, "resultInfo", result.resultInfo);
    return value;
}

// The status of the call; empty if there was none. A listener that removes itself dies before it returns.
std::optional<napi_status> CallListener(std::shared_ptr<EventCallback> listener, const GameEventResult& result) {
    const napi_env env = listener->env;
    HandleScope scope(env);
    if (!scope) {
        GAME_LOGE_AS("DoGameEventWork", "DoGameEventWork scope is nullptr");
        return std::nullopt;
    }
    napi_value argument = AssembleEventResult(env, result);
    napi_value thisArg = nullptr;
    napi_value callback = nullptr;
    if (napi_get_reference_value(env, listener->thisArgRef, &thisArg) != napi_ok ||
        napi_get_reference_value(env, listener->callbackRef, &callback) != napi_ok) {
        return std::nullopt;
    }
    listener.reset();
    return napi_call_function(env, thisArg, callback, 1, &argument, nullptr);
}

void DoGameEventWork(std::shared_ptr<EventCallback> listener, const GameEventResult& result) {
    GAME_LOGI("DoGameEventWork enter");
    if (listener == nullptr) return;
    const std::optional<napi_status> status = CallListener(std::move(listener), result);
    if (status) GAME_LOGI("DoGameEventWork exit, callBack status %{public}d", *status == napi_ok ? 1 : 0);
}

}  // namespace

EventCallback::~EventCallback() {
    if (callbackRef != nullptr) {
        (void)napi_delete_reference(env, callbackRef);
        GAME_LOGI("EventCallback release callbackRef");
    }
    if (thisArgRef != nullptr) {
        (void)napi_delete_reference(env, thisArgRef);
        GAME_LOGI("EventCallback release thisArgRef");
    }
    GAME_LOGI("EventCallback release exit");
}

GamePlayerEventCallback::GamePlayerEventCallback() { GAME_LOGI("GamePlayerEventCallback clear all cache events."); }

// Empty if there is no entry for the type.
GamePlayerEventCallback::WeakListeners GamePlayerEventCallback::ListenersOf(const std::shared_ptr<EnvInfo>& envInfo,
                                                                            napi_env env,
                                                                            const std::string& eventType) {
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(eventType);
    if (entry == events_.end()) return std::nullopt;
    std::vector<std::weak_ptr<EventCallback>> listeners;
    listeners.reserve(entry->second.size());
    std::copy_if(entry->second.begin(), entry->second.end(), std::back_inserter(listeners), IsOf(envInfo, env));
    return listeners;
}

void GamePlayerEventCallback::RegisterGameEventCallback(napi_env env, const std::string& eventType, napi_value callback,
                                                        napi_value thisArg) {
    const WeakListeners own = ListenersOf(gEnvInfo, env, eventType);
    if (own && FindListener("IsEventCallbackExisted", env, *own, callback,
                            "IsEventCallbackExisted get callback reference failed.") != nullptr) {
        GAME_LOGI("RegisterGameEventCallback current callback existed");
        return;
    }
    auto eventCallback = std::make_shared<EventCallback>(env);
    AssembleEventCallback(env, callback, thisArg, *eventCallback);
    bool isFirst = false;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        auto inserted = events_.try_emplace(eventType);
        inserted.first->second.push_back(std::move(eventCallback));
        isFirst = inserted.second;
    }
    GAME_LOGI("RegisterGameEventCallback %{public}s register succeeded", isFirst ? "first" : "callback");
}

// Only the first environment of a thread gets a hook.
void GamePlayerEventCallback::AssembleEventCallback(napi_env env, napi_value callback, napi_value thisArg,
                                                    EventCallback& eventCallback) {
    static thread_local bool isHooked = false;
    (void)napi_create_reference(env, callback, 1, &eventCallback.callbackRef);
    (void)napi_create_reference(env, thisArg, 1, &eventCallback.thisArgRef);
    if (isHooked) return;
    isHooked = true;
    auto hook = std::make_unique<EventCallbackHook>(EventCallbackHook{env, this});
    if (napi_add_env_cleanup_hook(env, CleanupEventCallback, hook.get()) == napi_ok) (void)hook.release();
    GAME_LOGI("AssembleEventCallback add env hook succeeded");
}

void GamePlayerEventCallback::UnRegisterGameEventCallback(napi_env env, const std::string& eventType,
                                                          napi_value callback) {
    const WeakListeners own = ListenersOf(gEnvInfo, env, eventType);
    if (!own) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s not existed", eventType.c_str());
        return;
    }
    constexpr const char* COMPLAINT = "UnRegisterGameEventCallback get callback reference failed";
    const auto* found = callback != nullptr ? FindListener(__FUNCTION__, env, *own, callback, COMPLAINT) : nullptr;
    if (callback != nullptr && found == nullptr) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s callback not existed", eventType.c_str());
        return;
    }
    RemoveListeners(eventType, env, found);
    GAME_LOGI("UnRegisterGameEventCallback eventType %{public}s succeeded", eventType.c_str());
}

// Removes all of the environment's listeners or `only` one, and the type's entry with its last listener.
void GamePlayerEventCallback::RemoveListeners(const std::string& eventType, napi_env env, const EventCallback* only) {
    Listeners removed;  // destroyed after the lock is released
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(eventType);
    if (entry == events_.end()) return;
    removed = TakeIf(entry->second, [only, isOwn = IsOf(gEnvInfo, env)](const auto& listener) {
        return isOwn(listener) && (only == nullptr || listener.get() == only);
    });
    if (entry->second.empty()) events_.erase(entry);
}

// Types keep their entries even without listeners.
void GamePlayerEventCallback::CleanupEventCallback(void* hookRecord) {
    GAME_LOGI("CleanupEventCallback enter");
    std::unique_ptr<EventCallbackHook> hook(static_cast<EventCallbackHook*>(hookRecord));
    if (hook == nullptr) {
        GAME_LOGW("CleanupEventCallback eventCallbackHook is nullptr");
        return;
    }
    std::map<std::string, Listeners> removed;
    {
        std::lock_guard<std::mutex> guard(hook->registry->mutex_);
        for (auto& [eventType, listeners] : hook->registry->events_) {
            removed[eventType] = TakeIf(listeners, IsOf(gEnvInfo, hook->env));
        }
    }
    for (auto& [eventType, listeners] : removed) {
        listeners.clear();
        GAME_LOGI("CleanupEventCallback delete %{public}s finished", eventType.c_str());
    }
    GAME_LOGI("CleanupEventCallback end");
}

void GamePlayerEventCallback::OnEventCallback(GameEventResult event) {
    GAME_LOGI("OnEventCallback enter");
    const auto result = std::make_shared<const GameEventResult>(std::move(event));
    const std::shared_ptr<EnvInfo>& envInfo = result->envInfo;
    WeakListeners listeners = ListenersOf(envInfo, envInfo->env, result->eventType);
    if (!listeners) {
        GAME_LOGW("OnEventCallback eventType %{public}s not existed", result->eventType.c_str());
        return;
    }
    for (auto& listener : *listeners) {
        auto work =
            MakeLoopWork([result, listener = std::move(listener)] { DoGameEventWork(listener.lock(), *result); });
        const QueueStatus status = envInfo->Queue(work);
        if (status == QueueStatus::NO_LOOP) {
            GAME_LOGE("OnEventCallback work is nullptr or get loop failed");
        } else if (status == QueueStatus::REFUSED) {
            GAME_LOGE("OnEventCallback uv_queue_work call failed");
        }
    }
    GAME_LOGI("OnEventCallback uv_queue_work success");
}

}  // namespace TAVIK::GAME_PLAYER
