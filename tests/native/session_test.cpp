// The life of a request on a platform that answers whenever it likes: from within its own calls, on the
// calling thread or on one that it waits for, and faster than JS gets its result.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "clock.h"
#include "common/request_types.h"
#include "common/velmor_util.h"
#include "events/game_player_event_callback.h"
#include "fake_node.h"
#include "modal/modal_ui_callback.h"
#include "records.h"

using namespace TAVIK::GAME_PLAYER;
using namespace OHOS;
using namespace std::chrono_literals;
using testing::Values;

namespace {

using Callbacks = FakeContent::Callbacks;
using AnswerFunction = std::function<void(const Callbacks& callbacks)>;

const auto RESULT = [](int32_t code) {
    return [code](const Callbacks& callbacks) { callbacks.onResult(code, AAFwk::Want()); };
};
const auto RELEASE = [](int32_t code) {
    return [code](const Callbacks& callbacks) { callbacks.onRelease(code); };
};
const auto ERROR = [](int32_t code) {
    return [code](const Callbacks& callbacks) { callbacks.onError(code, "", ""); };
};

void Receive(const Callbacks& callbacks, int32_t code, int32_t playableTime = 0) {
    AAFwk::WantParams data;
    data.SetParam("resultCode", code);
    data.SetParam("playableTime", playableTime);
    callbacks.onReceive(data);
}

size_t CountEnds() { return StandIn::EventStore::Get().All().size(); }

}  // namespace

/// The parameter tells whether the platform answers on a thread that it waits for.
class Session : public FakeNodeTest, public testing::WithParamInterface<bool> {
protected:
    void TearDown() override {
        StandIn::Clock::Get().Reset();
        (void)WithListeners([this](GamePlayerEventCallback& listeners) {
            listeners.UnRegisterGameEventCallback(envInfo->env, EVENT_PLAYER_CHANGED);
        });
        FakeNodeTest::TearDown();
    }

    /// Starts a request of a type; what becomes of its record is seen in `observed`.
    void Start(int32_t requestType, bool isAnswered = true) {
        auto request = MakeRequest(content, requestType);
        request->hasMsgBack = !isAnswered;
        observed = request;
        std::make_shared<ModalUICallback>(std::move(request))
            ->StartUIExtensionAbility(MakeGameServiceWant(requestType));
    }

    void Listen() const {
        (void)WithListeners([this](GamePlayerEventCallback& listeners) {
            listeners.RegisterGameEventCallback(envInfo->env, EVENT_PLAYER_CHANGED, AsHandle(5), AsHandle(6));
        });
    }

    /// Gives an answer of the latest modal from within a call of the platform.
    std::function<void()> Answering(const AnswerFunction& answer) {
        return [this, answer] {
            const Callbacks callbacks = content.opened.back();
            if (GetParam()) {
                std::thread(answer, callbacks).join();
            } else {
                answer(callbacks);
            }
        };
    }

    FakeContent content;
    std::weak_ptr<BaseContext> observed;
};

INSTANTIATE_TEST_SUITE_P(OnTheCallersThread, Session, Values(false));
INSTANTIATE_TEST_SUITE_P(OnAThreadThatIsWaitedFor, Session, Values(true));

TEST_P(Session, IsSettledOnceThoughAnAnswerComesFromWithinTheCloseCall) {
    for (const AnswerFunction& nested : std::vector<AnswerFunction>{RESULT(0), ERROR(5), RELEASE(1)}) {
        const size_t before = CountEnds();
        content.whileClosing = Answering(nested);
        Start(REQUEST_BIND_PLAYER);
        content.opened.back().onResult(0, AAFwk::Want());
        EXPECT_EQ(RunLoop(), (Deeds{"open", "resolve", "close"}));
        EXPECT_EQ(CountEnds() - before, 1U);
        EXPECT_TRUE(observed.expired());
    }
    EXPECT_EQ(content.closed, (std::vector<int32_t>{1, 2, 3})) << "each modal once";
}

TEST_P(Session, IsClosedOnceItsIdIsKnownIfAnAnswerFromWithinTheOpeningWantsThat) {
    content.whileOpening = Answering(RELEASE(1));
    Start(REQUEST_BIND_PLAYER);
    EXPECT_EQ(content.closed, std::vector<int32_t>{1});
    EXPECT_EQ(RunLoop(), Deeds{}) << "a release never answers";
    content.whileOpening = Answering(RESULT(1002000012));
    Start(REQUEST_BIND_PLAYER);
    EXPECT_EQ(content.closed, (std::vector<int32_t>{1, 2}));
    EXPECT_EQ(RunLoop(), (Deeds{"open", "reject", "close"}));
    EXPECT_TRUE(observed.expired());
}

TEST_P(Session, StaysOpenIfNoAnswerFromWithinTheOpeningWantsItClosed) {
    content.whileOpening = Answering(RELEASE(0));
    Start(REQUEST_BIND_PLAYER);
    EXPECT_FALSE(observed.expired());
    EXPECT_TRUE(content.closed.empty());
}

TEST_P(Session, EndsWithAPageThatIsReleasedFromWithinTheOpening) {
    content.whileOpening = Answering(RELEASE(0));
    Start(REQUEST_LAUNCH_COMMON_PAGE, false);
    EXPECT_EQ(content.closed, std::vector<int32_t>{1});
    EXPECT_TRUE(observed.expired());
}

// A close call that waits for the thread that answers would wait for ever if the request were locked
// meanwhile.
TEST_P(Session, LetsAReleaseFromWithinTheCloseCallOfItsTimerEndIt) {
    StandIn::Clock::Get().SetManual();
    auto request = MakeRequest(content, REQUEST_QUICK_GAME_LOGIN);
    request->hasMsgBack = true;
    observed = request;
    content.whileClosing = Answering(RELEASE(0));
    std::make_shared<ModalUICallback>(std::move(request))->LaunchAntiAddictionAbility("over", 0);
    ASSERT_TRUE(StandIn::Clock::Get().Advance(30s));
    EXPECT_EQ(content.closed, std::vector<int32_t>{1});
    EXPECT_TRUE(observed.expired());
}

TEST_P(Session, ClosesTheModalBeforeUntilTheIdOfItsAntiAddictionPageIsKnown) {
    StandIn::Clock::Get().SetManual();
    Start(REQUEST_VERIFY_LOCAL_PLAYER);
    Receive(content.opened[0], 0, 1);
    EXPECT_EQ(RunLoop(), (Deeds{"open", "resolve", "close"}));
    content.whileOpening = Answering(RELEASE(0));
    ASSERT_TRUE(StandIn::Clock::Get().Advance(75s));
    EXPECT_EQ(content.closed, std::vector<int32_t>{1});
    content.opened[1].onRelease(0);
    EXPECT_EQ(content.closed, (std::vector<int32_t>{1, 2}));
}

TEST_P(Session, RaisesEventsUntilItsResultIsDelivered) {
    Listen();
    Start(REQUEST_BIND_PLAYER);
    content.opened[0].onResult(0, AAFwk::Want());
    content.opened[0].onResult(9, AAFwk::Want());
    Receive(content.opened[0], 9);
    Receive(content.opened[0], 1002000015);
    EXPECT_EQ(RunLoop(), (Deeds{"open", "resolve", "close", "open", "call", "close", "open", "call", "close",
                                "open", "call", "close"}));
    Receive(content.opened[0], 9);
    EXPECT_EQ(RunLoop(), Deeds{}) << "the request has ended";
}

TEST_P(Session, ClosesWithoutALockWhatItCannotDeliver) {
    content.whileClosing = Answering(ERROR(5));
    Start(REQUEST_VERIFY_LOCAL_PLAYER);
    RefuseNextWork();
    Receive(content.opened[0], 0);
    EXPECT_EQ(RunLoop(), Deeds{"throw"});
    EXPECT_EQ(content.closed, std::vector<int32_t>{1});
    EXPECT_TRUE(observed.expired());
}

TEST_P(Session, TellsItsPageTheTraceOfItsTime) {
    SetTraceId("trace");
    Start(REQUEST_LAUNCH_COMMON_PAGE, false);
    EXPECT_EQ(content.wants.back().GetParams().GetStringParam("traceId"), "trace");
    SetTraceId("");
}

TEST_P(Session, HandsItsCallbackOverToTheThreadThatOwnsIt) {
    auto request = MakeRequest(content, REQUEST_VERIFY_LOCAL_PLAYER);
    request->deferred = nullptr;
    ASSERT_EQ(napi_create_reference(envInfo->env, AsHandle(5), 1, &request->callbackRef), napi_ok);
    std::make_shared<ModalUICallback>(std::move(request))
        ->StartUIExtensionAbility(MakeGameServiceWant(REQUEST_VERIFY_LOCAL_PLAYER));
    Receive(content.opened[0], 0);
    EXPECT_EQ(RunLoop(), (Deeds{"open", "call", "close"}));
    Answering(RELEASE(0))();
    EXPECT_EQ(RunLoop(), Deeds{"delete"});
}
