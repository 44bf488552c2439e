#include "events/game_player_event_callback.h"

#include <algorithm>

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {

namespace {

struct EventCallbackHook {
    std::shared_ptr<EnvInfo> envInfo;
    GamePlayerEventCallback* registry;
};

thread_local bool gIsHooked = false;

napi_value FunctionOf(napi_env env, const EventCallback& listener)
{
    napi_value function = nullptr;
    (void)napi_get_reference_value(env, listener.callbackRef, &function);
    return function;
}

// The listener of this thread's environment whose function is strictly equal to `callback`. `complaint` is
// logged for those whose function cannot be had.
template <typename List>
auto FindListener(napi_env env, List& listeners, napi_value callback, const char* complaint)
{
    for (auto listener = listeners.begin(); listener != listeners.end(); ++listener) {
        if ((*listener)->envInfo != gEnvInfo) {
            continue;
        }
        napi_value function = FunctionOf(env, **listener);
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
    return listeners.end();
}

auto IsOf(const EnvInfo* envInfo)
{
    return [envInfo](const std::shared_ptr<EventCallback>& listener) {
        return listener->envInfo.get() == envInfo;
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
    if (IsValidEnv(envInfo)) {
        if (callbackRef != nullptr) {
            (void)napi_delete_reference(envInfo->env, callbackRef);
            GAME_LOGI("EventCallback release callbackRef");
        }
        if (thisArgRef != nullptr) {
            (void)napi_delete_reference(envInfo->env, thisArgRef);
            GAME_LOGI("EventCallback release thisArgRef");
        }
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
    auto eventCallback = std::make_shared<EventCallback>(gEnvInfo);
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
    return FindListener(env, listeners, callback, "IsEventCallbackExisted get callback reference failed.") !=
           listeners.end();
}

void GamePlayerEventCallback::AssembleEventCallback(napi_env env, napi_value callback, napi_value thisArg,
                                                    EventCallback& eventCallback)
{
    (void)napi_create_reference(env, callback, 1, &eventCallback.callbackRef);
    (void)napi_create_reference(env, thisArg, 1, &eventCallback.thisArgRef);
    HookEnvironment(env);
}

void GamePlayerEventCallback::HookEnvironment(napi_env env)
{
    if (gIsHooked) {
        return;
    }
    auto hook = std::make_unique<EventCallbackHook>(EventCallbackHook{gEnvInfo, this});
    if (napi_add_env_cleanup_hook(env, CleanupEventCallback, hook.get()) != napi_ok) {
        GAME_LOGE("AssembleEventCallback add env hook failed");
        return;
    }
    (void)hook.release();
    gIsHooked = true;
    GAME_LOGI("AssembleEventCallback add env hook succeeded");
}

void GamePlayerEventCallback::UnRegisterGameEventCallback(napi_env /*env*/, const std::string& eventType)
{
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(eventType);
    if (entry == events_.end()) {
        GAME_LOGW("UnRegisterGameEventCallback eventType %{public}s not existed", eventType.c_str());
        return;
    }
    EraseIf(entry->second, IsOf(gEnvInfo.get()));
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
    auto found =
        FindListener(env, listeners, callback, "UnRegisterGameEventCallback get callback reference failed");
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
    hook->registry->RemoveListeners(hook->envInfo.get());
    GAME_LOGI("CleanupEventCallback end");
}

void GamePlayerEventCallback::RemoveListeners(const EnvInfo* envInfo)
{
    std::lock_guard<std::mutex> guard(mutex_);
    for (auto& [eventType, listeners] : events_) {
        EraseIf(listeners, IsOf(envInfo));
        GAME_LOGI("CleanupEventCallback delete %{public}s finished", eventType.c_str());
    }
}

}  // namespace TAVIK::GAME_PLAYER
