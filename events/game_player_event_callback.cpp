#include "events/game_player_event_callback.h"

#include <algorithm>

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER
{

namespace
{

struct EventCallbackHook {
    napi_env env;
    GamePlayerEventCallback* registry;
};

thread_local bool gIsHooked = false;

enum class Match { SAME, OTHER, UNKNOWN };

Match MatchFunction(const EventCallback& listener, napi_value callback)
{
    napi_value function = nullptr;
    if (napi_get_reference_value(listener.env, listener.callbackRef, &function) != napi_ok ||
        function == nullptr) {
        return Match::UNKNOWN;
    }
    bool isSame = false;
    (void)napi_strict_equals(listener.env, function, callback, &isSame);
    return isSame ? Match::SAME : Match::OTHER;
}

auto IsOf(napi_env env)
{
    return [env](const std::shared_ptr<EventCallback>& listener) {
        return listener->env == env;
    };
}

template <typename List, typename Predicate>
void EraseIf(List& list, Predicate predicate)
{
    list.erase(std::remove_if(list.begin(), list.end(), predicate), list.end());
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

void GamePlayerEventCallback::RegisterGameEventCallback(napi_env env, const std::string& eventType,
                                                        napi_value callback, napi_value thisArg)
{
    std::lock_guard<std::mutex> guard(mutex_);
    auto [entry, isFirst] = events_.try_emplace(eventType);
    if (!isFirst && IsEventCallbackExisted(env, entry->second, callback)) {
        GAME_LOGI("RegisterGameEventCallback current callback existed");
        return;
    }
    auto eventCallback = std::make_shared<EventCallback>();
    AssembleEventCallback(env, callback, thisArg, *eventCallback);
    entry->second.push_back(std::move(eventCallback));
    if (isFirst) {
        GAME_LOGI("RegisterGameEventCallback first register succeeded");
    } else {
        GAME_LOGI("RegisterGameEventCallback callback register succeeded");
    }
}

bool GamePlayerEventCallback::IsEventCallbackExisted(napi_env env, const Listeners& listeners,
                                                     napi_value callback)
{
    for (const auto& listener : listeners) {
        if (listener->env != env) {
            continue;
        }
        switch (MatchFunction(*listener, callback)) {
            case Match::SAME:
                return true;
            case Match::UNKNOWN:
                GAME_LOGW("IsEventCallbackExisted get callback reference failed.");
                break;
            case Match::OTHER:
                break;
        }
    }
    return false;
}

void GamePlayerEventCallback::AssembleEventCallback(napi_env env, napi_value callback, napi_value thisArg,
                                                    EventCallback& eventCallback)
{
    eventCallback.env = env;
    (void)napi_create_reference(env, callback, 1, &eventCallback.callbackRef);
    (void)napi_create_reference(env, thisArg, 1, &eventCallback.thisArgRef);
    HookEnvironment(env);
}

void GamePlayerEventCallback::HookEnvironment(napi_env env)
{
    if (gIsHooked) {
        return;
    }
    gIsHooked = true;
    auto* hook = new EventCallbackHook{env, this};
    (void)napi_add_env_cleanup_hook(env, CleanupEventCallback, hook);
    GAME_LOGI("AssembleEventCallback add env hook succeeded");
}

void GamePlayerEventCallback::UnRegisterGameEventCallback(napi_env env, const std::string& eventType)
{
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(eventType);
    if (entry == events_.end()) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s not existed", eventType.c_str());
        return;
    }
    EraseIf(entry->second, IsOf(env));
    if (entry->second.empty()) {
        events_.erase(entry);
    }
    GAME_LOGI("UnRegisterGameEventCallback eventType %{public}s succeeded", eventType.c_str());
}

void GamePlayerEventCallback::UnRegisterGameEventCallback(napi_env env, const std::string& eventType,
                                                          napi_value callback)
{
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(eventType);
    if (entry == events_.end()) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s not existed", eventType.c_str());
        return;
    }
    Listeners& listeners = entry->second;
    auto isWanted = [env, callback](const std::shared_ptr<EventCallback>& listener) {
        if (listener->env != env) {
            return false;
        }
        Match match = MatchFunction(*listener, callback);
        if (match == Match::UNKNOWN) {
            GAME_LOGW("UnRegisterGameEventCallback get callback reference failed");
        }
        return match == Match::SAME;
    };
    auto found = std::find_if(listeners.begin(), listeners.end(), isWanted);
    if (found == listeners.end()) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s callback not existed", eventType.c_str());
        return;
    }
    listeners.erase(found);
    if (listeners.empty()) {
        events_.erase(entry);
    }
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

void GamePlayerEventCallback::RemoveListeners(napi_env env)
{
    std::lock_guard<std::mutex> guard(mutex_);
    for (auto& [eventType, listeners] : events_) {
        EraseIf(listeners, IsOf(env));
        GAME_LOGI("CleanupEventCallback delete %{public}s finished", eventType.c_str());
    }
}

}  // namespace TAVIK::GAME_PLAYER
