// What of the module no JS can see: its record, and the registries that outlive every environment.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/env_registry.h"
#include "common/request_types.h"
#include "common/velmor_error.h"
#include "napi/native_api.h"
#include "records.h"

using namespace TAVIK::GAME_PLAYER;

namespace {

napi_module* gRegistered = nullptr;

// A handle that nobody follows.
napi_env AsEnv(size_t number) {
    static char handles[3];
    return reinterpret_cast<napi_env>(&handles[number]);
}

std::vector<std::string> TakeLog() {
    std::vector<std::string> messages;
    for (const StandIn::LogLine& line : StandIn::LogStore::Get().All()) {
        messages.push_back(line.message.substr(line.message.find(']') + 1));
    }
    StandIn::LogStore::Get().Clear();
    return messages;
}

}  // namespace

// In Node's place: called by the module's constructor before main.
extern "C" void napi_module_register(napi_module* record) { gRegistered = record; }

TEST(ModuleRecord, IsRegisteredWhenTheLibraryIsLoaded) {
    ASSERT_NE(gRegistered, nullptr);
    EXPECT_STREQ(gRegistered->nm_modname, "core.velmor.gamePlayerExtensionAbility");
    EXPECT_EQ(gRegistered->nm_version, 1);
    EXPECT_EQ(gRegistered->nm_flags, 0U);
    EXPECT_EQ(gRegistered->nm_filename, nullptr);
    EXPECT_NE(gRegistered->nm_register_func, nullptr);
    EXPECT_EQ(gRegistered->nm_priv, nullptr);
    for (void* pointer : gRegistered->reserved) {
        EXPECT_EQ(pointer, nullptr);
    }
}

TEST(EnvRegistry, KnowsWhatIsRegisteredAndNothingElse) {
    auto first = std::make_shared<EnvInfo>(EnvInfo{AsEnv(1)});
    auto second = std::make_shared<EnvInfo>(EnvInfo{AsEnv(2)});
    SaveEnvInfo(first);
    SaveEnvInfo(second);
    EXPECT_TRUE(IsValidEnv(first) && IsValidEnv(second));
    DeleteEnvInfo(first.get());
    EXPECT_FALSE(IsValidEnv(first));
    EXPECT_TRUE(IsValidEnv(second));
    DeleteEnvInfo(second.get());
    EXPECT_FALSE(IsValidEnv(second));
}

TEST(EnvRegistry, TakesOneOfTwoEntriesAway) {
    auto info = std::make_shared<EnvInfo>();
    SaveEnvInfo(info);
    SaveEnvInfo(info);
    DeleteEnvInfo(info.get());
    EXPECT_TRUE(IsValidEnv(info));
    DeleteEnvInfo(info.get());
    EXPECT_FALSE(IsValidEnv(info));
}

TEST(EnvRegistry, DropsAnEnvironmentWhoseHandleIsInUseAgain) {
    auto unnoticed = std::make_shared<EnvInfo>(EnvInfo{AsEnv(1)});
    auto next = std::make_shared<EnvInfo>(EnvInfo{AsEnv(1)});
    SaveEnvInfo(unnoticed);
    SaveEnvInfo(next);
    EXPECT_FALSE(IsValidEnv(unnoticed));
    EXPECT_TRUE(IsValidEnv(next));
    DeleteEnvInfo(next.get());
}

TEST(EnvRegistry, GivesNoAddressAwayThatIsStillHeld) {
    auto held = std::make_shared<EnvInfo>();
    SaveEnvInfo(held);
    DeleteEnvInfo(held.get());
    for (int i = 0; i < 1000; ++i) {
        auto other = std::make_shared<EnvInfo>();
        ASSERT_NE(other, held);
    }
}

TEST(EnvRegistry, LogsNullAndPassesOverTheUnknown) {
    (void)TakeLog();
    SaveEnvInfo(nullptr);
    DeleteEnvInfo(nullptr);
    EXPECT_FALSE(IsValidEnv(nullptr));
    EnvInfo unknown;
    DeleteEnvInfo(&unknown);
    EXPECT_FALSE(IsValidEnv(&unknown));
    const std::vector<std::string> expected = {"SaveEnvInfo envInfo is nullptr",
                                               "DeleteEnvInfo envInfo is nullptr",
                                               "IsValidEnv envInfo is nullptr"};
    EXPECT_EQ(TakeLog(), expected);
}

TEST(ErrorTable, HasNoTextForOtherCodes) {
    for (int32_t code : {-1, 1, 9, 10, 200, 100015, 1002000000, 1002000018}) {
        EXPECT_EQ(FindErrorMessage(code), nullptr) << code;
    }
    EXPECT_STREQ(FindApiName(16), "undefined");
    EXPECT_STREQ(FindApiName(-1), "undefined");
}
