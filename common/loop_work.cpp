#include "common/loop_work.h"

namespace TAVIK::GAME_PLAYER {

QueueStatus QueueOnLoop(napi_env env, uv_work_t* work, uv_after_work_cb after)
{
    uv_loop_t* loop = nullptr;
    if (work == nullptr || napi_get_uv_event_loop(env, &loop) != napi_ok) {
        return QueueStatus::NO_LOOP;
    }
    auto doNothing = [](uv_work_t*) {
    };
    return uv_queue_work(loop, work, doNothing, after) == 0 ? QueueStatus::QUEUED : QueueStatus::REFUSED;
}

}  // namespace TAVIK::GAME_PLAYER
