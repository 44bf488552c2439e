#include <memory>
#include <new>
#include <utility>

#include "common/env_registry.h"
#include "common/handle_scope.h"
#include "common/js_value_helpers.h"
#include "common/velmor_log.h"
#include "events/game_player_event_callback.h"

namespace TAVIK::GAME_PLAYER {

namespace {

/// One event on its way to one listener.
struct EventWork : uv_work_t {
    EventWork(std::shared_ptr<const GameEventResult> event, std::weak_ptr<EventCallback> target)
        : uv_work_t(), result(std::move(event)), listener(std::move(target))
    {
    }

    std::shared_ptr<const GameEventResult> result;
    std::weak_ptr<EventCallback> listener;
};

void QueueEvent(std::unique_ptr<EventWork> eventWork, const std::shared_ptr<EnvInfo>& envInfo,
                uv_after_work_cb deliver)
{
    switch (QueueOnLoop(envInfo, eventWork.get(), deliver)) {
        case QueueStatus::QUEUED:
            (void)eventWork.release();
            break;
        case QueueStatus::NO_LOOP:
            GAME_LOGE("OnEventCallback work is nullptr or get loop failed");
            break;
        case QueueStatus::REFUSED:
            GAME_LOGE("OnEventCallback uv_queue_work call failed");
            break;
    }
}

}  // namespace

// Null if the type has no entry.
std::optional<GamePlayerEventCallback::WeakListeners> GamePlayerEventCallback::ListenersFor(
    const GameEventResult& event)
{
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(event.eventType);
    if (entry == events_.end()) {
        return std::nullopt;
    }
    WeakListeners listeners;
    listeners.reserve(entry->second.size());
    for (const auto& listener : entry->second) {
        if (listener->envInfo == event.envInfo && listener->env == event.envInfo->env) {
            listeners.emplace_back(listener);
        }
    }
    return listeners;
}

void GamePlayerEventCallback::OnEventCallback(GameEventResult event)
{
    GAME_LOGI("OnEventCallback enter");
    const auto result = std::make_shared<const GameEventResult>(std::move(event));
    auto listeners = ListenersFor(*result);
    if (!listeners) {
        GAME_LOGW("OnEventCallback eventType %{public}s not existed", result->eventType.c_str());
        return;
    }
    for (auto& listener : *listeners) {
        std::unique_ptr<EventWork> eventWork(new (std::nothrow) EventWork(result, std::move(listener)));
        QueueEvent(std::move(eventWork), result->envInfo, DoGameEventWork);
    }
    GAME_LOGI("OnEventCallback uv_queue_work success");
}

void GamePlayerEventCallback::DoGameEventWork(uv_work_t* work, int /*status*/)
{
    GAME_LOGI("DoGameEventWork enter");
    std::unique_ptr<EventWork> eventWork(static_cast<EventWork*>(work));
    std::shared_ptr<EventCallback> listener = eventWork->listener.lock();
    if (listener == nullptr) {
        return;
    }
    const std::optional<napi_status> status = CallListener(std::move(listener), *eventWork->result);
    eventWork.reset();
    if (status) {
        GAME_LOGI("DoGameEventWork exit, callBack status %{public}d", *status == napi_ok ? 1 : 0);
    }
}

// The status of the call; empty if it was not made. A listener that removes itself goes before it returns.
std::optional<napi_status> GamePlayerEventCallback::CallListener(std::shared_ptr<EventCallback> listener,
                                                                 const GameEventResult& result)
{
    const napi_env env = listener->env;
    HandleScope scope(env);
    if (!scope) {
        GAME_LOGE("DoGameEventWork scope is nullptr");
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

napi_value GamePlayerEventCallback::AssembleEventResult(napi_env env, const GameEventResult& result)
{
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

}  // namespace TAVIK::GAME_PLAYER
