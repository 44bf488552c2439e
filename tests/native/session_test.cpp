// A platform whose UI thread answers while it is still opening the modal.

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "ability_context.h"
#include "common/velmor_error.h"
#include "modal/game_service_want.h"
#include "modal/modal_ui_callback.h"
#include "napi/request_contexts.h"

using namespace TAVIK::GAME_PLAYER;
using namespace OHOS;

namespace {

constexpr int32_t SESSION_ID = 7;

/// Has the UI thread answer with a release, and waits for that.
class HastyContent final : public Ace::UIContent
{
public:
    explicit HastyContent(int32_t releaseCode) : releaseCode_(releaseCode) {}

    int32_t CreateModalUIExtension(AAFwk::Want /*want*/, Ace::ModalUIExtensionCallbacks callbacks,
                                   Ace::ModalUIExtensionConfig /*config*/) override
    {
        std::thread(callbacks.onRelease, releaseCode_).join();
        return SESSION_ID;
    }
    void CloseModalUIExtension(int32_t sessionId) override { closed.push_back(sessionId); }

    std::vector<int32_t> closed;

private:
    const int32_t releaseCode_;
};

class HastyContext final : public AbilityRuntime::AbilityContext
{
public:
    explicit HastyContext(Ace::UIContent& content) : content_(content) {}

    Ace::UIContent* GetUIContent() override { return &content_; }
    std::shared_ptr<Context> CreateModuleContext(const std::string& /*name*/) override { return nullptr; }
    std::shared_ptr<Global::Resource::ResourceManager> GetResourceManager() const override { return nullptr; }

protected:
    bool IsContext(size_t /*contextTypeId*/) const override { return true; }

private:
    Ace::UIContent& content_;
};

/// Launches a page over `content`, and returns the owner of its context.
std::shared_ptr<ContextOwner> Launch(HastyContent& content)
{
    auto context = std::make_shared<LaunchAntiAddictionContext>(REQUEST_LAUNCH_ANTI_ADDICTION, 0, nullptr);
    context->envInfo = std::make_shared<EnvInfo>();
    context->abilityContext = std::make_shared<HastyContext>(content);
    context->hasMsgBack = true;
    auto owner = std::make_shared<ContextOwner>(context);
    SaveEnvInfo(context->envInfo);
    ModalUICallback::StartUIExtensionAbility(MakeGameServiceWant(REQUEST_LAUNCH_ANTI_ADDICTION), owner);
    DeleteEnvInfo(context->envInfo.get());
    return owner;
}

}  // namespace

TEST(Session, IsClosedOnceItsIdIsKnownIfItWasReleasedWithAnErrorBefore)
{
    HastyContent content(1);
    EXPECT_EQ(Launch(content)->Get(), nullptr);
    EXPECT_EQ(content.closed, std::vector<int32_t>{SESSION_ID});
}

TEST(Session, StaysOpenIfItWasReleasedWithSuccessBefore)
{
    HastyContent content(0);
    const std::shared_ptr<BaseContext> context = Launch(content)->Get();
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(context->sessionId, SESSION_ID);
    EXPECT_TRUE(content.closed.empty());
}
