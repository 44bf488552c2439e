#pragma once

#include "hilog/log.h"

/// The module's log lines. The format is that of `HiLogPrint`, printf with privacy marks; the prefix names
/// the function and the source line. Callable from any thread.
#define GAME_LOG(level, format, ...)                                                                \
    ((void)HiLogPrint(LOG_CORE, level, TAVIK::GAME_PLAYER::LOG_DOMAIN, TAVIK::GAME_PLAYER::LOG_TAG, \
                      "[%{public}s(%{public}s:%{public}d)]" format, "", __FUNCTION__, __LINE__,     \
                      ##__VA_ARGS__))

#define GAME_LOGI(format, ...) GAME_LOG(LOG_INFO, format, ##__VA_ARGS__)
#define GAME_LOGW(format, ...) GAME_LOG(LOG_WARN, format, ##__VA_ARGS__)
#define GAME_LOGE(format, ...) GAME_LOG(LOG_ERROR, format, ##__VA_ARGS__)

namespace TAVIK::GAME_PLAYER {

inline constexpr unsigned int LOG_DOMAIN = 0xD00470A;
inline constexpr const char* LOG_TAG = "GAMEAPISDK";

}  // namespace TAVIK::GAME_PLAYER
