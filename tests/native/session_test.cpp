// The life of a request on a platform that may answer at any time: from within its own calls, on the calling thread or
// on one that it waits for, and before JS has the result.

#include <algorithm>
#include <thread>

#include "analytics.h"
#include "clock.h"
#include "common/request_types.h"
#include "fake_node.h"
#include "log.h"
#include "modal/modal_ui_callback.h"

using namespace std::chrono_literals;

namespace {

using Ids = std::vector<int32_t>;

constexpr AnswerKind RESULT = AnswerKind::RESULT, RECEIVE = AnswerKind::RECEIVE;
constexpr AnswerKind ERROR = AnswerKind::ERROR, RELEASE = AnswerKind::RELEASE;

bool HasLogged(const std::string& text) {
    const auto lines = StandIn::LogStore::Get().All();
    return std::any_of(lines.begin(), lines.end(),
                       [&](const auto& line) { return line.message.find(text) != std::string::npos; });
}

}  // namespace

/// The parameter: whether the platform answers on another thread, for which it waits.
class Session : public FakeNodeTest, public testing::WithParamInterface<bool> {
protected:
    void TearDown() override {
        StandIn::Clock::Get().Reset();
        FakeNodeTest::TearDown();
    }

    /// Creates a request. `observed` shows whether its context still exists.
    std::shared_ptr<ModalUICallback> Make(int32_t requestType, bool isAnswered = true) {
        StandIn::Clock::Get().SetRate(0);
        auto request = std::make_shared<BaseContext>();
        request->requestType = requestType;
        if (!isAnswered) request->status.state = RequestState::OPEN;
        request->abilityContext = {std::shared_ptr<void>(), &window};  // not owned
        request->deferred = AsHandle<napi_deferred>(2);
        observed = request;
        return std::make_shared<ModalUICallback>(std::move(request));
    }

    void Start(int32_t requestType, bool isAnswered = true) {
        Make(requestType, isAnswered)->StartUIExtensionAbility(MakeGameServiceWant(requestType));
    }

    /// Answers the latest modal, on this thread.
    void Give(const Answer& answer) const {
        const auto callbacks = window.opened.back();
        const int32_t code = answer.code;
        OHOS::AAFwk::Want answered;
        answered.SetParam("resultCode", code);
        answered.SetParam("playableTime", answer.playableTime);
        const OHOS::AAFwk::WantParams& data = answered.GetParams();
        if (answer.kind == RESULT) callbacks.onResult(code, {});
        if (answer.kind == RECEIVE) callbacks.onReceive(data);
        if (answer.kind == ERROR) callbacks.onError(code, "", "");
        if (answer.kind == RELEASE) callbacks.onRelease(code);
    }

    /// Answers from within a call of the platform.
    std::function<void()> Answering(Answer answer) const {
        return [this, answer] { GetParam() ? std::thread([&] { Give(answer); }).join() : Give(answer); };
    }

    FakeWindow window;
    std::weak_ptr<BaseContext> observed;
};

INSTANTIATE_TEST_SUITE_P(OnAnotherThread, Session, testing::Bool());

TEST_P(Session, IsSettledOnceThoughAnAnswerComesFromWithinTheCloseCall) {
    for (const Answer& nested : {Answer{RESULT, 0}, Answer{ERROR, 5}, Answer{RELEASE, 1}}) {
        StandIn::EventStore::Get().Clear();
        window.whileClosing = Answering(nested);
        Start(REQUEST_BIND_PLAYER);
        Give({RESULT, 0});
        EXPECT_EQ(RunLoop(), (Deeds{"open", "resolve", "close"}));
        EXPECT_EQ(StandIn::EventStore::Get().All().size(), 1U);
        EXPECT_TRUE(observed.expired());
    }
    EXPECT_EQ(window.closed, (Ids{1, 2, 3})) << "each modal once";
}

TEST_P(Session, IsClosedOnceItsIdIsKnownIfAnAnswerFromWithinTheOpeningWantsThat) {
    const Deeds rejects = {"open", "reject", "close"};
    Ids closed;
    for (const auto& [requestType, isAnswered, answer, deeds, isClosed, hasEnded] :
         {std::tuple{REQUEST_BIND_PLAYER, true, Answer{RELEASE, 1}, Deeds{}, true, false},
          {REQUEST_BIND_PLAYER, true, Answer{RESULT, 1002000012}, rejects, true, true},
          {REQUEST_BIND_PLAYER, true, Answer{RELEASE, 0}, Deeds{}, false, false},
          {REQUEST_LAUNCH_COMMON_PAGE, false, Answer{RELEASE, 0}, Deeds{}, true, true}}) {
        window.whileOpening = Answering(answer);
        Start(requestType, isAnswered);
        if (isClosed) closed.push_back(static_cast<int32_t>(window.opened.size()));
        EXPECT_EQ(window.closed, closed);
        EXPECT_EQ(RunLoop(), deeds);
        EXPECT_EQ(observed.expired(), hasEnded);
    }
}

// If the request were locked during the close call, that call would wait for the answering thread for ever.
TEST_P(Session, LetsAReleaseFromWithinTheCloseCallOfItsTimerEndItAfterItsEvent) {
    On(envInfo->env, 5, EVENT_GAME_ADDICTION_PREVENTED);
    window.whileClosing = [this] {
        EXPECT_EQ(gQueue.size(), 1U) << "the event is raised before";
        Answering({RELEASE, 0})();
    };
    Make(REQUEST_QUICK_GAME_LOGIN, false)->LaunchAntiAddictionAbility("over", 0);
    ASSERT_TRUE(StandIn::Clock::Get().Advance(30s));
    EXPECT_EQ(window.closed, Ids{1});
    EXPECT_TRUE(observed.expired());
    EXPECT_EQ(RunLoop(), (Deeds{"open", "call", "close"}));
    EXPECT_EQ(Off(envInfo->env, 5, EVENT_GAME_ADDICTION_PREVENTED), (Deeds{"delete", "delete"}));
}

TEST_P(Session, ClosesTheModalBeforeUntilTheIdOfItsAntiAddictionPageIsKnown) {
    Start(REQUEST_VERIFY_LOCAL_PLAYER);
    Give({RECEIVE, 0, 1});
    EXPECT_EQ(RunLoop(), (Deeds{"open", "resolve", "close"}));
    window.whileOpening = Answering({RELEASE, 0});
    ASSERT_TRUE(StandIn::Clock::Get().Advance(75s));
    EXPECT_EQ(window.closed, Ids{1});
    Give({RELEASE, 0});
    EXPECT_EQ(window.closed, (Ids{1, 2}));
}

TEST_P(Session, ClosesWithoutALockWhatItCannotDeliver) {
    window.whileClosing = Answering({ERROR, 5});
    Start(REQUEST_VERIFY_LOCAL_PLAYER);
    gIsRefusing = true;
    Give({RECEIVE, 0});
    EXPECT_EQ(RunLoop(), Deeds{"throw"});
    EXPECT_EQ(window.closed, Ids{1});
    EXPECT_TRUE(observed.expired());
}

TEST_P(Session, ThrowsNothingIntoAnEnvironmentThatEndsWhileTheErrorIsCreated) {
    Start(REQUEST_VERIFY_LOCAL_PLAYER);
    gIsRefusing = true;
    gWhileCreatingAnError = [this] { DeleteEnvInfo(envInfo.get()); };
    Answering({RECEIVE, 0})();
    gWhileCreatingAnError = [] {};
    EXPECT_EQ(RunLoop(), Deeds{});
    EXPECT_TRUE(observed.expired());
}

TEST_P(Session, OpensNoPageAndLogsNoneIfItEndsWhileItsWindowIsFound) {
    Start(REQUEST_VERIFY_LOCAL_PLAYER);
    Give({RECEIVE, 0, 1});
    StandIn::LogStore::Get().Clear();
    window.whileFinding = [this, isFirst = true]() mutable {
        if (!std::exchange(isFirst, false)) return;
        DeleteEnvInfo(envInfo.get());
        EXPECT_EQ(RunLoop(), Deeds{}) << "the result is dropped";
        SaveEnvInfo(envInfo);
    };
    ASSERT_TRUE(StandIn::Clock::Get().Advance(75s));
    EXPECT_EQ(window.opened.size(), 1U);
    EXPECT_TRUE(HasLogged("launched anti-addiction ability."));
    EXPECT_FALSE(HasLogged("create modal succeeded"));
}

TEST_P(Session, HandsItsCallbackOverToTheThreadThatOwnsItUnlessThatHasEnded) {
    for (const Deeds& last : {Deeds{"delete"}, Deeds{}}) {
        Start(REQUEST_VERIFY_LOCAL_PLAYER);
        observed.lock()->deferred = nullptr;
        ASSERT_EQ(napi_create_reference(envInfo->env, AsHandle(5), 1, &observed.lock()->callbackRef), napi_ok);
        Give({RECEIVE, 0});
        EXPECT_EQ(RunLoop(), (Deeds{"open", "call", "close"}));
        if (last.empty()) DeleteEnvInfo(envInfo.get());
        Answering({RELEASE, 0})();
        EXPECT_TRUE(observed.expired());
        EXPECT_EQ(HasLogged("release callback"), !last.empty());
        EXPECT_EQ(RunLoop(), last);
        StandIn::LogStore::Get().Clear();
    }
}
