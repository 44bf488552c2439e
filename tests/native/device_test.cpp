// A part of the stand-in device that JS cannot reach: the formats of its log.

#include <gtest/gtest.h>

#include <string>

#include "hilog/log.h"
#include "log.h"

// Logs a line, with a tag, a format and its arguments. Its value is the latest one. A macro, so that clang checks
// formats.
#define LOGGED(...) \
    ((void)HiLogPrint(LOG_CORE, LOG_INFO, 1, __VA_ARGS__), StandIn::LogStore::Get().All().back().message)

TEST(Log, TakesPrivacyMarksCutsLongLinesAndKeepsTheLast) {
    EXPECT_EQ(LOGGED("TAG", "%{public}s%-3d|%{private}05zu%%, %x", "a", -5, size_t{7}, 255U), "a-5 |00007%, ff");
    EXPECT_EQ(LOGGED("TAG", "100%%{public}s"), "100%{public}s") << "a percent sign to be printed, and no mark";
    const std::string text(5000, 'x');
    EXPECT_EQ(LOGGED("TAG", "%{public}s%{public}d", text.c_str(), 1), text.substr(0, 4095));
    EXPECT_EQ(LOGGED("TAG", "short"), "short");
    EXPECT_EQ(LOGGED(nullptr, "no tag"), "short");
    for (int i = 0; i < 8191; ++i) {
        (void)HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "%{public}d", i);
    }
    EXPECT_EQ(StandIn::LogStore::Get().All().front().message, "short");
    EXPECT_EQ(LOGGED("TAG", "last"), "last");
    EXPECT_EQ(StandIn::LogStore::Get().All().front().message, "0");
}
