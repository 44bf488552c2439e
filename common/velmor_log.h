#pragma once

#include "hilog/log.h"

#undef LOG_DOMAIN
#undef LOG_TAG
#define LOG_DOMAIN 0xD00470A
#define LOG_TAG "GAMEAPISDK"

/// The module's log lines. The format is that of `HiLogPrint`, printf with privacy marks; the prefix names
/// the function and the source line. Callable from any thread.
#define GAME_LOG(level, format, ...) GAME_LOG_AS(LOG_TAG, __FUNCTION__, level, format, ##__VA_ARGS__)

/// The same with another tag, and for a function that is known by another name than its own.
#define GAME_LOG_AS(tag, function, level, format, ...)                                                    \
    ((void)HiLogPrint(LOG_CORE, level, LOG_DOMAIN, tag, "[%{public}s(%{public}s:%{public}d)]" format, "", \
                      function, __LINE__, ##__VA_ARGS__))

#define GAME_LOGI(format, ...) GAME_LOG(LOG_INFO, format, ##__VA_ARGS__)
#define GAME_LOGW(format, ...) GAME_LOG(LOG_WARN, format, ##__VA_ARGS__)
#define GAME_LOGE(format, ...) GAME_LOG(LOG_ERROR, format, ##__VA_ARGS__)
