// Listeners where no JS can bring them: two environments on one thread, and none of the module's locks held
// while the platform, JS or another lock of the module is called (the fixture looks at that).

#include <gtest/gtest.h>

#include <memory>

#include "events/game_player_event_callback.h"
#include "fake_node.h"
#include "modal/modal_ui_callback.h"

using namespace TAVIK::GAME_PLAYER;

class Listeners : public FakeNodeTest {
protected:
    static void On(napi_env env, size_t function) {
        (void)WithListeners([&](GamePlayerEventCallback& listeners) {
            listeners.RegisterGameEventCallback(env, EVENT_PLAYER_CHANGED, AsHandle(function), AsHandle(0));
        });
    }

    static Deeds Off(napi_env env, size_t function = 0) {
        (void)WithListeners([&](GamePlayerEventCallback& listeners) {
            if (function == 0) {
                listeners.UnRegisterGameEventCallback(env, EVENT_PLAYER_CHANGED);
            } else {
                listeners.UnRegisterGameEventCallback(env, EVENT_PLAYER_CHANGED, AsHandle(function));
            }
        });
        return RunLoop();
    }

    Deeds Raise() const {
        ModalUICallback::DoGameEvent(envInfo, 0, EVENT_PLAYER_CHANGED, "who");
        return RunLoop();
    }
};

TEST_F(Listeners, ComeHearAndGoWithoutALockHeld) {
    On(envInfo->env, 1);
    On(envInfo->env, 2);
    On(envInfo->env, 1);
    EXPECT_EQ(Raise(), (Deeds{"open", "call", "close", "open", "call", "close"}));
    EXPECT_EQ(Off(envInfo->env, 3), Deeds{});
    EXPECT_EQ(Off(envInfo->env, 1), (Deeds{"delete", "delete"}));
    EXPECT_EQ(Off(envInfo->env), (Deeds{"delete", "delete"}));
    EXPECT_EQ(Raise(), Deeds{});
}

TEST_F(Listeners, OfOneThreadAreToldApartByTheirEnvironment) {
    const auto second = AsHandle<napi_env>(1);
    const auto third = AsHandle<napi_env>(2);
    DeleteEnvInfo(envInfo.get());
    On(second, 1);
    EXPECT_EQ(Off(third, 1), Deeds{}) << "nor is a reference of the second one read";
    On(third, 1);
    EXPECT_EQ(Off(third), (Deeds{"delete", "delete"}));
    EXPECT_EQ(Off(second, 1), (Deeds{"delete", "delete"}))
        << "though its thread's first environment has ended";
}

TEST_F(Listeners, OfASecondEnvironmentHearNothingOfTheFirst) {
    const auto second = AsHandle<napi_env>(1);
    On(second, 1);
    EXPECT_EQ(Raise(), Deeds{});
    EXPECT_EQ(Off(second), (Deeds{"delete", "delete"}));
}
