// The stand-in device where no JS reaches it: its clock, its log and the typed parameters.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "clock.h"
#include "faults.h"
#include "hilog/log.h"
#include "records.h"
#include "want.h"

using namespace std::chrono_literals;
using OHOS::AAFwk::Want;
using OHOS::AAFwk::WantParams;
using StandIn::Clock;

namespace {

std::string LastLine() { return StandIn::LogStore::Get().All().back().message; }

/// A thread that sleeps twice and notes when it woke.
std::thread StartSleeper(const std::string& name, Clock::Nanoseconds span, std::vector<std::string>& trace) {
    return std::thread([name, span, &trace, start = Clock::Get().NowMs()] {
        for (int round = 0; round < 2; ++round) {
            std::this_thread::sleep_for(span);
            trace.push_back(name + std::to_string(Clock::Get().NowMs() - start));
        }
    });
}

}  // namespace

TEST(ManualClock, WakesInOrderOfDeadlineThenBirth) {
    Clock& clock = Clock::Get();
    clock.SetManual();
    const int64_t start = clock.NowMs();
    std::vector<std::string> trace;  // one thread at a time is awake
    std::vector<std::thread> threads;
    for (auto [name, span] : {std::pair{"a", 30ms}, {"b", 10ms}, {"c", 30ms}, {"d", 20ms}}) {
        threads.push_back(StartSleeper(name, span, trace));
    }
    EXPECT_EQ(clock.Sleepers(), 4U);
    EXPECT_TRUE(clock.Advance(29ms));
    EXPECT_EQ(trace, (std::vector<std::string>{"b10", "b20", "d20"}));
    EXPECT_TRUE(clock.Advance(100ms));
    EXPECT_EQ(trace, (std::vector<std::string>{"b10", "b20", "d20", "a30", "c30", "d40", "a60", "c60"}));
    EXPECT_EQ(clock.NowMs() - start, 129);
    for (std::thread& thread : threads) {
        thread.join();
    }
    clock.Reset();
    EXPECT_FALSE(clock.Advance(1ms));
}

TEST(Log, FormatsWithoutPrivacyMarks) {
    HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "%{public}s%s is %{private}d%% of %{public}lu, %x", "a", "b", -5,
               10UL, 255U);
    EXPECT_EQ(LastLine(), "ab is -5% of 10, ff");
    HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "%-4d|%{public}05zu|%.2s|%{private}s", -3, size_t{7}, "long",
               static_cast<const char*>(nullptr));
    EXPECT_EQ(LastLine(), "-3  |00007|lo|(null)");
    HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "100%%{public}s");
    EXPECT_EQ(LastLine(), "100%{public}s") << "no mark: the percent sign is one to be printed";
}

TEST(Log, CutsLongLinesAndRefusesNoTag) {
    const std::string longText(5000, 'x');
    HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "%{public}s%{public}s%{public}d", longText.c_str(), "y", 1);
    EXPECT_EQ(LastLine(), longText.substr(0, 4095));
    HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "short again");
    EXPECT_EQ(LastLine(), "short again");
    EXPECT_LT(HiLogPrint(LOG_CORE, LOG_INFO, 1, nullptr, "no tag"), 0);
    EXPECT_EQ(LastLine(), "short again");
}

TEST(Log, KeepsTheLastLines) {
    StandIn::LogStore::Get().Clear();
    constexpr int COUNT = 10000;
    for (int i = 0; i < COUNT; ++i) {
        HiLogPrint(LOG_CORE, LOG_INFO, 1, "TAG", "%{public}d", i);
    }
    auto lines = StandIn::LogStore::Get().All();
    ASSERT_EQ(lines.size(), 8192U);
    EXPECT_EQ(lines.front().message, std::to_string(COUNT - 8192));
    EXPECT_EQ(lines.back().message, std::to_string(COUNT - 1));
}

TEST(WantParams, AnswersByTypeOnly) {
    Want want;
    want.SetParam("number", 7).SetParam("text", "seven");
    const WantParams& params = want.GetParams();
    EXPECT_EQ(params.GetIntParam("number", -1), 7);
    EXPECT_EQ(params.GetIntParam("text", -1), -1);
    EXPECT_EQ(params.GetIntParam("none", -1), -1);
    EXPECT_EQ(params.GetStringParam("text"), "seven");
    EXPECT_EQ(params.GetStringParam("number"), "");
    want.SetParam("number", "now a text");
    EXPECT_EQ(want.GetParams().GetStringParam("number"), "now a text");
}

TEST(Faults, SkipThenFailThenForget) {
    using StandIn::Call;
    using StandIn::Faults;
    EXPECT_FALSE(Faults::Arm("no_such_call", 0, 1));
    ASSERT_TRUE(Faults::Arm("uv_queue_work", 2, 2));
    std::vector<bool> trips;
    for (int i = 0; i < 6; ++i) {
        EXPECT_FALSE(Faults::Trip(Call::napi_throw));
        trips.push_back(Faults::Trip(Call::uv_queue_work));
    }
    EXPECT_EQ(trips, (std::vector<bool>{false, false, true, true, false, false}));
}
