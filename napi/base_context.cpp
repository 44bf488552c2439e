#include "napi/base_context.h"

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {

BaseContext::BaseContext(int32_t type, int64_t start, napi_value context)
    : envInfo(gEnvInfo), contextValue(context), requestType(type), startTime(start)
{
}

BaseContext::~BaseContext()
{
    GAME_LOGI("release enter");
    if (callbackRef != nullptr) {
        ReleaseCallback();
    }
    if (deferred != nullptr) {
        deferred = nullptr;
        GAME_LOGI("release deferred");
    }
    GAME_LOGI("release exit");
}

// A reference whose environment has ended is left alone.
void BaseContext::ReleaseCallback()
{
    LiveEnv isLive(envInfo);
    if (!isLive) {
        return;
    }
    (void)napi_delete_reference(envInfo->env, callbackRef);
    callbackRef = nullptr;
    GAME_LOGI("release callback");
}

void ContextOwner::Release()
{
    std::shared_ptr<BaseContext> ended;
    std::lock_guard<std::recursive_mutex> guard(mutex_);
    ended.swap(context_);
}

}  // namespace TAVIK::GAME_PLAYER
