// What JS cannot test about listeners: several environments on one thread, and that the module holds no lock while it
// calls the platform or JS, or takes another lock. The fixture checks the latter.

#include <thread>

#include "fake_node.h"
#include "modal/modal_ui_callback.h"

class Listeners : public FakeNodeTest {
protected:
    Deeds Raise() const {
        ModalUICallback::DoGameEvent(envInfo, 0, EVENT_PLAYER_CHANGED, "who");
        return RunLoop();
    }

    const Deeds oneGoes = {"delete", "delete"};  // the references of its function and its receiver
};

TEST_F(Listeners, ComeHearAndGoWithoutALockHeld) {
    On(envInfo->env, 1);
    On(envInfo->env, 2);
    On(envInfo->env, 1);
    EXPECT_EQ(Raise(), (Deeds{"open", "call", "close", "open", "call", "close"}));
    EXPECT_EQ(Off(envInfo->env, 3), Deeds{});
    EXPECT_EQ(Off(envInfo->env, 1), oneGoes);
    EXPECT_EQ(Off(envInfo->env), oneGoes);
    EXPECT_EQ(Raise(), Deeds{});
}

TEST_F(Listeners, OfOneThreadAreToldApartByTheirEnvironment) {
    const auto second = AsHandle<napi_env>(1);
    const auto third = AsHandle<napi_env>(2);
    On(second, 1);
    EXPECT_EQ(Raise(), Deeds{}) << "the event is the first one's";
    DeleteEnvInfo(envInfo.get());
    EXPECT_EQ(Off(third, 1), Deeds{}) << "nor is a reference of the second one read";
    On(third, 1);
    EXPECT_EQ(Off(third), oneGoes);
    EXPECT_EQ(Off(second, 1), oneGoes) << "though its thread's first environment has ended";
}

TEST_F(Listeners, GoWithTheFirstEnvironmentOfTheirThreadByOneHook) {
    std::thread([this] {
        gEnvInfo = envInfo;
        On(envInfo->env, 1);
        On(envInfo->env, 2);
        On(AsHandle<napi_env>(1), 1);
        EXPECT_EQ(RunHooks(), 1U);
        EXPECT_EQ(RunLoop(), (Deeds{"delete", "delete", "delete", "delete"}));
        EXPECT_EQ(Off(AsHandle<napi_env>(1)), oneGoes);
    }).join();
}
