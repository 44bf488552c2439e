#pragma once

#include <atomic>
#include <memory>

#include "common/loop_work.h"
#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// One JS environment. The object lives as long as anything refers to it, so its address is not reused while
/// a late answer still checks it. The environment itself is alive only while it is registered.
struct EnvInfo {
    explicit EnvInfo(napi_env jsEnv) : env(jsEnv) {}
    const napi_env env;
    std::atomic<bool> isRegistered{false};  // set by the registry alone
    const std::shared_ptr<LoopQueue> queue = std::make_shared<LoopQueue>();
};

/// The environment of this JS thread, set when the module is first loaded; empty on other threads.
extern thread_local std::shared_ptr<EnvInfo> gEnvInfo;

/// Registers a live environment. Removes one with the same `env`, which has ended unnoticed. Any thread.
void SaveEnvInfo(const std::shared_ptr<EnvInfo>& info);

/// Removes an environment from the registry, if it is registered. Any thread. Null is logged.
void DeleteEnvInfo(const EnvInfo* info);

/// Whether an environment is registered; false for null. Off its thread, it may end right after. Any thread.
bool IsValidEnv(const EnvInfo* info);
inline bool IsValidEnv(const std::shared_ptr<EnvInfo>& info) { return IsValidEnv(info.get()); }

enum class QueueStatus {
    QUEUED,
    NO_LOOP,  // `work` is null, the environment has ended, or its event loop could not be found
    REFUSED,  // the event loop did not accept the work
};

/// Queues `work`, which may be null, to run on the JS thread of `info`, after all that was queued for it
/// before. Takes it if the status is QUEUED; otherwise `work` stays the caller's. The environment cannot end
/// meanwhile. Any thread.
QueueStatus QueueOnLoop(const std::shared_ptr<EnvInfo>& info, std::unique_ptr<LoopWork>& work);

/// Deletes a reference of an environment: immediately on its JS thread, otherwise later on that thread. False
/// if it cannot: the environment has ended, or its event loop accepts no work. Any thread.
bool DeleteReference(const std::shared_ptr<EnvInfo>& info, napi_ref reference);

}  // namespace TAVIK::GAME_PLAYER
