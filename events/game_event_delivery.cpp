#include <memory>
#include <new>
#include <utility>

#include "common/handle_scope.h"
#include "common/loop_work.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
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

void QueueEvent(napi_env env, std::unique_ptr<EventWork> eventWork, uv_after_work_cb deliver)
{
    switch (QueueOnLoop(env, eventWork.get(), deliver)) {
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

// Queued under the lock, so that events raised at once on two threads reach all listeners in one order.
void GamePlayerEventCallback::OnEventCallback(GameEventResult event)
{
    GAME_LOGI("OnEventCallback enter");
    const auto result = std::make_shared<const GameEventResult>(std::move(event));
    std::lock_guard<std::mutex> guard(mutex_);
    auto entry = events_.find(result->eventType);
    if (entry == events_.end()) {
        GAME_LOGW("OnEventCallback eventType %{public}s not existed", result->eventType.c_str());
        return;
    }
    for (const auto& listener : entry->second) {
        if (listener->envInfo == result->envInfo) {
            std::unique_ptr<EventWork> eventWork(new (std::nothrow) EventWork(result, listener));
            QueueEvent(result->envInfo->env, std::move(eventWork), DoGameEventWork);
        }
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
    napi_env env = listener->envInfo->env;
    HandleScope scope(env);
    if (!scope) {
        GAME_LOGE("DoGameEventWork scope is nullptr");
        return;
    }
    napi_value argument = AssembleEventResult(env, *eventWork->result);
    napi_value thisArg = nullptr;
    napi_value callback = nullptr;
    if (napi_get_reference_value(env, listener->thisArgRef, &thisArg) != napi_ok ||
        napi_get_reference_value(env, listener->callbackRef, &callback) != napi_ok) {
        return;
    }
    listener.reset();
    napi_status status = napi_call_function(env, thisArg, callback, 1, &argument, nullptr);
    GAME_LOGI("DoGameEventWork exit, callBack status %{public}d", status == napi_ok ? 1 : 0);
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
