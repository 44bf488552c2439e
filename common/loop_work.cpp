#include "common/loop_work.h"

#include <memory>
#include <new>

namespace TAVIK::GAME_PLAYER {

QueueStatus QueueOnLoop(napi_env env, void* data, uv_after_work_cb after)
{
    std::unique_ptr<uv_work_t> work(new (std::nothrow) uv_work_t());
    uv_loop_t* loop = nullptr;
    if (work == nullptr || napi_get_uv_event_loop(env, &loop) != napi_ok) {
        return QueueStatus::NO_LOOP;
    }
    work->data = data;
    auto doNothing = [](uv_work_t*) {
    };
    if (uv_queue_work(loop, work.get(), doNothing, after) != 0) {
        return QueueStatus::REFUSED;
    }
    (void)work.release();
    return QueueStatus::QUEUED;
}

}  // namespace TAVIK::GAME_PLAYER
