#ifndef COMMON_LOOP_WORK_H
#define COMMON_LOOP_WORK_H

#include <uv.h>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

enum class QueueStatus {
    QUEUED,
    NO_LOOP,  // no work request, as memory ran out, or the environment's loop could not be had
    REFUSED,  // the loop did not take the work
};

/// Has `after` called on `env`'s JS thread with `work`, a zeroed work request or null, which is then
/// `after`'s to delete. Unless the status is QUEUED, it stays the caller's. Callable from any thread.
QueueStatus QueueOnLoop(napi_env env, uv_work_t* work, uv_after_work_cb after);

}  // namespace TAVIK::GAME_PLAYER

#endif
