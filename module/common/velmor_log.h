#pragma once

#include "hilog/log.h"

#undef LOG_DOMAIN
#undef LOG_TAG
#define LOG_DOMAIN 0xD00470A
#define LOG_TAG "GAMEAPISDK"

/// One log line. The format is that of `HiLogPrint`, printf with privacy marks; the prefix names a function and the
/// source line. Callable from any thread.
#define GAME_LOG(tag, level, function, format, ...)                                                                 \
    ((void)HiLogPrint(LOG_CORE, level, LOG_DOMAIN, tag, "[%{public}s(%{public}s:%{public}d)]" format, "", function, \
                      __LINE__, ##__VA_ARGS__))

#define GAME_LOGI(format, ...) GAME_LOGI_AS(__FUNCTION__, format, ##__VA_ARGS__)
#define GAME_LOGW(format, ...) GAME_LOGW_AS(__FUNCTION__, format, ##__VA_ARGS__)
#define GAME_LOGE(format, ...) GAME_LOGE_AS(__FUNCTION__, format, ##__VA_ARGS__)

/// The same in code that several functions share. `function` is the one that it runs for.
#define GAME_LOGI_AS(function, format, ...) GAME_LOG(LOG_TAG, LOG_INFO, function, format, ##__VA_ARGS__)
#define GAME_LOGW_AS(function, format, ...) GAME_LOG(LOG_TAG, LOG_WARN, function, format, ##__VA_ARGS__)
#define GAME_LOGE_AS(function, format, ...) GAME_LOG(LOG_TAG, LOG_ERROR, function, format, ##__VA_ARGS__)
