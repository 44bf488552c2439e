#pragma once

#include <uv.h>

#include <memory>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// One JS environment. It lives as long as anybody holds it, so that its address cannot come to name another
/// environment while a late answer still asks for this one; it is alive only while it is registered.
struct EnvInfo {
    napi_env env = nullptr;
};

/// The environment of this JS thread, from the first load of the module on; empty on other threads.
extern thread_local std::shared_ptr<EnvInfo> gEnvInfo;

/// Registers a live environment, and takes one off that ended unnoticed, as its `env` shows. Any thread.
void SaveEnvInfo(const std::shared_ptr<EnvInfo>& info);

/// Takes an environment off the registry; one that is not on it is left alone. Any thread; null is logged.
void DeleteEnvInfo(const EnvInfo* info);

/// Whether an environment is registered; null is not. On another thread it may end right after. Any thread.
bool IsValidEnv(const EnvInfo* info);
inline bool IsValidEnv(const std::shared_ptr<EnvInfo>& info) { return IsValidEnv(info.get()); }

enum class QueueStatus {
    QUEUED,
    NO_LOOP,  // no work request, as memory ran out; the environment has ended, or its loop cannot be had
    REFUSED,  // the loop did not take the work
};

/// Has `after` called on the JS thread of `info` with `work`, a zeroed work request or null, which is then
/// `after`'s to delete. Unless the status is QUEUED, it stays the caller's. The environment cannot end
/// meanwhile. Any thread.
QueueStatus QueueOnLoop(const std::shared_ptr<EnvInfo>& info, uv_work_t* work, uv_after_work_cb after);

/// Deletes a reference of an environment: at once on its own JS thread, else there and later. False if it is
/// left alone: the environment has ended, or its loop takes no work. Any thread.
bool DeleteReference(const std::shared_ptr<EnvInfo>& info, napi_ref reference);

}  // namespace TAVIK::GAME_PLAYER
