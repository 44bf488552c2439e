#pragma once

#include <memory>

#include "common/env_info.h"
#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// The environment of this JS thread, set when the module is first loaded; empty on other threads.
extern thread_local std::shared_ptr<EnvInfo> gEnvInfo;

/// Registers a live environment. Removes one with the same `env`, which has ended unnoticed. Any thread.
void SaveEnvInfo(const std::shared_ptr<EnvInfo>& info);

/// Removes an environment from the registry, if it is registered. Any thread. Null is logged.
void DeleteEnvInfo(const EnvInfo* info);

/// Whether an environment is registered; false for null. Off its thread, it may end right after. Any thread.
bool IsValidEnv(const EnvInfo* info);
inline bool IsValidEnv(const std::shared_ptr<EnvInfo>& info) { return IsValidEnv(info.get()); }

/// Deletes a reference of an environment: immediately on its JS thread, otherwise later on that thread. False if it
/// cannot: the environment has ended, or its event loop accepts no work. Any thread.
bool DeleteReference(const std::shared_ptr<EnvInfo>& info, napi_ref reference);

}  // namespace TAVIK::GAME_PLAYER
