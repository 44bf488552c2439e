// The stand-in device where no JS reaches it: the order of its clock, and the formats of its log.

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "clock.h"
#include "hilog/log.h"
#include "records.h"

using namespace std::chrono_literals;
using StandIn::Clock;

namespace {

/// Logs a line. Returns the latest one.
template <typename... Arguments>
std::string Log(const char* tag, const char* format, Arguments... arguments) {
    (void)HiLogPrint(LOG_CORE, LOG_INFO, 1, tag, format, arguments...);
    return StandIn::LogStore::Get().All().back().message;
}

}  // namespace

TEST(ManualClock, WakesInOrderOfDeadlineThenBirth) {
    Clock& clock = Clock::Get();
    clock.SetManual();
    std::vector<std::string> trace;  // one thread at a time is awake
    std::vector<std::thread> threads;
    auto sleepTwice = [&, start = clock.NowMs()](const std::string& name, Clock::Nanoseconds span) {
        for (int round = 0; round < 2; ++round) {
            std::this_thread::sleep_for(span);
            trace.push_back(name + std::to_string(clock.NowMs() - start));
        }
    };
    for (auto [name, span] : {std::pair{"a", 30ms}, {"b", 10ms}, {"c", 30ms}, {"d", 20ms}}) {
        threads.emplace_back(sleepTwice, name, span);
    }
    EXPECT_EQ(clock.Sleepers(), 4U);
    EXPECT_TRUE(clock.Advance(29ms));
    EXPECT_EQ(trace, (std::vector<std::string>{"b10", "b20", "d20"}));
    EXPECT_TRUE(clock.Advance(100ms));
    EXPECT_EQ(trace, (std::vector<std::string>{"b10", "b20", "d20", "a30", "c30", "d40", "a60", "c60"}));
    for (std::thread& thread : threads) {
        thread.join();
    }
    clock.Reset();
    EXPECT_FALSE(clock.Advance(1ms));
}

TEST(Log, TakesPrivacyMarksCutsLongLinesAndKeepsTheLast) {
    EXPECT_EQ(Log("TAG", "%{public}s%-3d|%{private}05zu%%, %x", "a", -5, size_t{7}, 255U), "a-5 |00007%, ff");
    EXPECT_EQ(Log("TAG", "100%%{public}s"), "100%{public}s") << "a percent sign to be printed, and no mark";
    const std::string text(5000, 'x');
    EXPECT_EQ(Log("TAG", "%{public}s%{public}d", text.c_str(), 1), text.substr(0, 4095));
    EXPECT_EQ(Log("TAG", "short"), "short");
    EXPECT_EQ(Log(nullptr, "no tag"), "short");
    for (int i = 0; i < 8191; ++i) {
        (void)HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "%{public}d", i);
    }
    EXPECT_EQ(StandIn::LogStore::Get().All().front().message, "short");
    EXPECT_EQ(Log("TAG", "last"), "last");
    EXPECT_EQ(StandIn::LogStore::Get().All().front().message, "0");
}
