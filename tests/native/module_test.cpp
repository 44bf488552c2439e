// What JS cannot see of the module: its record, its environments, and its methods in one that has ended.

#include <thread>

#include "calls/runtime.h"
#include "common/request_types.h"
#include "common/velmor_error.h"
#include "common/velmor_util.h"
#include "fake_node.h"
#include "log.h"

namespace {

napi_module* gRegistered = nullptr;

std::shared_ptr<EnvInfo> MakeEnv(size_t number) { return std::make_shared<EnvInfo>(AsHandle<napi_env>(number)); }

std::string LastMessage() {
    const std::string message = StandIn::LogStore::Get().All().back().message;
    return message.substr(message.find(']') + 1);
}

}  // namespace

// The module's constructor calls it before main.
void StandIn::RegisterModule(napi_module* record) { gRegistered = record; }

using Module = FakeNodeTest;

TEST_F(Module, IsRegisteredByARecordWhenTheLibraryIsLoaded) {
    ASSERT_NE(gRegistered, nullptr);
    EXPECT_STREQ(gRegistered->nm_modname, "core.velmor.gamePlayerExtensionAbility");
    EXPECT_EQ(gRegistered->nm_version, 1);
    EXPECT_EQ(gRegistered->nm_flags, 0U);
    EXPECT_EQ(gRegistered->nm_filename, nullptr);
    EXPECT_EQ(gRegistered->nm_priv, nullptr);
    for (void* pointer : gRegistered->reserved) {
        EXPECT_EQ(pointer, nullptr);
    }
}

// Most Node-API functions are stubs that would end this process.
TEST_F(Module, DoesNothingInAnEnvironmentThatIsGone) {
    std::thread([this] {
        for (int load = 0; load < 2; ++load) {
            EXPECT_EQ(gRegistered->nm_register_func(envInfo->env, AsHandle(7)), AsHandle(7));
        }
        EXPECT_TRUE(IsValidEnv(gEnvInfo));
        EXPECT_EQ(RunHooks(), 1U);
        EXPECT_FALSE(IsValidEnv(gEnvInfo));
        EXPECT_EQ(gMethods.size(), 18U);
        for (const napi_property_descriptor& method : gMethods) {
            std::string name = method.utf8name;
            if (name == "on" || name == "off" || name == "syncTraceId") continue;  // they do not check it
            name[0] = static_cast<char>(name[0] - 'a' + 'A');
            EXPECT_EQ(method.method(envInfo->env, nullptr), nullptr);
            EXPECT_EQ(LastMessage(), name + " invalid env");
        }
    }).join();
}

TEST_F(Module, SetsItsTraceWithoutALockHeld) {
    SetTraceId("trace");
    EXPECT_EQ(GetTraceId(), "trace");
}

TEST(EnvRegistry, KnowsWhatIsRegisteredAndNothingElse) {
    const auto first = MakeEnv(1);
    const auto second = MakeEnv(2);
    for (const auto& info : {first, first, second}) {
        SaveEnvInfo(info);
    }
    const auto unknown = MakeEnv(1);
    DeleteEnvInfo(unknown.get());
    EXPECT_FALSE(IsValidEnv(unknown));
    for (bool isStillThere : {true, false}) {
        DeleteEnvInfo(first.get());
        EXPECT_EQ(IsValidEnv(first), isStillThere) << "it was registered twice";
    }
    EXPECT_TRUE(IsValidEnv(second));
    const auto next = MakeEnv(2);
    SaveEnvInfo(next);
    EXPECT_FALSE(IsValidEnv(second)) << "its handle is in use again";
    EXPECT_TRUE(IsValidEnv(next));
    DeleteEnvInfo(next.get());
}

TEST(WhatIsUnknown, HasAPlainNameNoTextAndNoIcon) {
    EXPECT_STREQ(FindApiName(16), "undefined");
    EXPECT_EQ(FindErrorMessage(200), nullptr);
    const uint8_t byte = 0;
    for (auto [data, length] : {std::pair<const uint8_t*, size_t>{nullptr, 1}, {&byte, 0}}) {
        EXPECT_EQ(Base64Encode(data, length), "");
        EXPECT_EQ(LastMessage(), "Base64Encode error: invalid input param.");
        StandIn::LogStore::Get().Clear();
    }
}

TEST(EnvRegistry, LogsNull) {
    SaveEnvInfo(nullptr);
    EXPECT_EQ(LastMessage(), "SaveEnvInfo envInfo is nullptr");
    DeleteEnvInfo(nullptr);
    EXPECT_EQ(LastMessage(), "DeleteEnvInfo envInfo is nullptr");
    EXPECT_FALSE(IsValidEnv(nullptr));
    EXPECT_EQ(LastMessage(), "IsValidEnv envInfo is nullptr");
}
