#ifndef COMMON_LOOP_WORK_H
#define COMMON_LOOP_WORK_H

#include <uv.h>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

enum class QueueStatus {
    QUEUED,
    NO_LOOP,  // out of memory, or the environment's loop could not be had
    REFUSED,  // the loop did not take the work
};

/// Has `after` called on `env`'s JS thread with a work request whose `data` is `data`; `after` then owns
/// both, and deletes the request. Unless the status is QUEUED, `data` stays the caller's. Callable from any
/// thread.
QueueStatus QueueOnLoop(napi_env env, void* data, uv_after_work_cb after);

}  // namespace TAVIK::GAME_PLAYER

#endif
