#include "events/game_player_event_callback.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {

namespace {

struct EventCallbackHook {
    napi_env env;
    GamePlayerEventCallback* registry;
};

// Whether a listener is of this thread's `env`.
auto IsOf(napi_env env)
{
    return [env](const std::shared_ptr<EventCallback>& listener) {
        return listener->envInfo == gEnvInfo && listener->env == env;
    };
}

// The listener whose function is strictly equal to `callback`; null if there is none. `complaint` is logged
// for those whose function cannot be had.
EventCallback* FindListener(napi_env env, const std::vector<EventCallback*>& listeners, napi_value callback,
                            const char* complaint)
{
    for (EventCallback* listener : listeners) {
        napi_value function = nullptr;
        (void)napi_get_reference_value(env, listener->callbackRef, &function);
        if (function == nullptr) {
            GAME_LOGW("%{public}s", complaint);
            continue;
        }
        bool isSame = false;
        (void)napi_strict_equals(env, function, callback, &isSame);
        if (isSame) {
            return listener;
        }
    }
    return nullptr;
}

bool IsEventCallbackExisted(napi_env env, const std::vector<EventCallback*>& listeners, napi_value callback)
{
    return FindListener(env, listeners, callback, "IsEventCallbackExisted get callback reference failed.") !=
           nullptr;
}

// Moves the elements that `predicate` holds for out of a list, the order of both kept.
template <typename List, typename Predicate>
List TakeIf(List& list, Predicate predicate)
{
    auto first = std::stable_partition(list.begin(), list.end(), std::not_fn(predicate));
    List taken(std::make_move_iterator(first), std::make_move_iterator(list.end()));
    list.erase(first, list.end());
    return taken;
}

}  // namespace

EventCallback::~EventCallback()
{
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

GamePlayerEventCallback::GamePlayerEventCallback()
{
    GAME_LOGI("GamePlayerEventCallback clear all cache events.");
}

// Null if the type has no entry.
std::optional<std::vector<EventCallback*>> GamePlayerEventCallback::ListenersOf(napi_env env,
                                                                                const std::string& eventType)
{
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(eventType);
    if (entry == events_.end()) {
        return std::nullopt;
    }
    std::vector<EventCallback*> listeners;
    for (const auto& listener : entry->second) {
        if (IsOf(env)(listener)) {
            listeners.push_back(listener.get());
        }
    }
    return listeners;
}

void GamePlayerEventCallback::RegisterGameEventCallback(napi_env env, const std::string& eventType,
                                                        napi_value callback, napi_value thisArg)
{
    const auto listeners = ListenersOf(env, eventType);
    if (listeners && IsEventCallbackExisted(env, *listeners, callback)) {
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
    if (isFirst) {
        GAME_LOGI("RegisterGameEventCallback first register succeeded");
    } else {
        GAME_LOGI("RegisterGameEventCallback callback register succeeded");
    }
}

// The first environment of a thread alone gets a hook.
void GamePlayerEventCallback::AssembleEventCallback(napi_env env, napi_value callback, napi_value thisArg,
                                                    EventCallback& eventCallback)
{
    static thread_local bool isHooked = false;
    (void)napi_create_reference(env, callback, 1, &eventCallback.callbackRef);
    (void)napi_create_reference(env, thisArg, 1, &eventCallback.thisArgRef);
    if (isHooked) {
        return;
    }
    isHooked = true;
    auto hook = std::make_unique<EventCallbackHook>(EventCallbackHook{env, this});
    if (napi_add_env_cleanup_hook(env, CleanupEventCallback, hook.get()) == napi_ok) {
        (void)hook.release();
    }
    GAME_LOGI("AssembleEventCallback add env hook succeeded");
}

// Null if the type has no entry, which goes with its last listener.
template <typename Predicate>
std::optional<GamePlayerEventCallback::Listeners> GamePlayerEventCallback::TakeListeners(
    const std::string& eventType, Predicate predicate)
{
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(eventType);
    if (entry == events_.end()) {
        return std::nullopt;
    }
    Listeners taken = TakeIf(entry->second, predicate);
    if (entry->second.empty()) {
        events_.erase(entry);
    }
    return taken;
}

void GamePlayerEventCallback::UnRegisterGameEventCallback(napi_env env, const std::string& eventType)
{
    auto removed = TakeListeners(eventType, IsOf(env));
    if (!removed) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s not existed", eventType.c_str());
        return;
    }
    removed.reset();
    GAME_LOGI("UnRegisterGameEventCallback eventType %{public}s succeeded", eventType.c_str());
}

void GamePlayerEventCallback::UnRegisterGameEventCallback(napi_env env, const std::string& eventType,
                                                          napi_value callback)
{
    const auto listeners = ListenersOf(env, eventType);
    if (!listeners) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s not existed", eventType.c_str());
        return;
    }
    const EventCallback* found =
        FindListener(env, *listeners, callback, "UnRegisterGameEventCallback get callback reference failed");
    if (found == nullptr) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s callback not existed", eventType.c_str());
        return;
    }
    (void)TakeListeners(eventType, [found](const auto& listener) { return listener.get() == found; });
    GAME_LOGI("UnRegisterGameEventCallback eventType %{public}s succeeded", eventType.c_str());
}

void GamePlayerEventCallback::CleanupEventCallback(void* hookRecord)
{
    GAME_LOGI("CleanupEventCallback enter");
    std::unique_ptr<EventCallbackHook> hook(static_cast<EventCallbackHook*>(hookRecord));
    if (hook == nullptr) {
        GAME_LOGW("CleanupEventCallback eventCallbackHook is nullptr");
        return;
    }
    hook->registry->RemoveListeners(hook->env);
    GAME_LOGI("CleanupEventCallback end");
}

// Types without listeners keep their entries.
void GamePlayerEventCallback::RemoveListeners(napi_env env)
{
    std::vector<std::pair<std::string, Listeners>> removed;
    {
        std::lock_guard<std::mutex> guard(mutex_);
        for (auto& [eventType, listeners] : events_) {
            removed.emplace_back(eventType, TakeIf(listeners, IsOf(env)));
        }
    }
    for (auto& [eventType, listeners] : removed) {
        listeners.clear();
        GAME_LOGI("CleanupEventCallback delete %{public}s finished", eventType.c_str());
    }
}

}  // namespace TAVIK::GAME_PLAYER
