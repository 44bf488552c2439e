#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/env_registry.h"
#include "modal/base_context.h"
#include "modal_ui_extension_config.h"
#include "napi/native_api.h"
#include "ui_content.h"

// A platform for native tests: Node-API with one loop, and windows that do what a test wants. It fails the
// test in which the module calls it, or takes another lock, while it holds one; only work may be queued under
// one.

/// A value that a test knows by its address.
template <typename Handle = napi_value>
Handle AsHandle(size_t number) {
    static char handles[8];
    return reinterpret_cast<Handle>(&handles[number]);
}

/// The loop refuses the work that is queued next.
void RefuseNextWork();

/// A test on one JS environment, whose thread this is.
class FakeNodeTest : public testing::Test {
protected:
    using Deeds = std::vector<std::string>;

    void SetUp() override;
    void TearDown() override;

    /// Delivers what is queued. Returns what was asked of JS since the last time: "resolve", "reject",
    /// "call", "throw", "delete".
    static Deeds RunLoop();

    const std::shared_ptr<TAVIK::GAME_PLAYER::EnvInfo> envInfo =
        std::make_shared<TAVIK::GAME_PLAYER::EnvInfo>(TAVIK::GAME_PLAYER::EnvInfo{AsHandle<napi_env>(0)});
};

/// A window that numbers its modals from 1 on.
class FakeContent final : public OHOS::Ace::UIContent {
public:
    using Callbacks = OHOS::Ace::ModalUIExtensionCallbacks;

    int32_t CreateModalUIExtension(OHOS::AAFwk::Want want, Callbacks callbacks,
                                   OHOS::Ace::ModalUIExtensionConfig config) override;
    void CloseModalUIExtension(int32_t sessionId) override;

    std::function<void()> whileOpening = [] {};  // run with the modal's callbacks among `opened`
    std::function<void()> whileClosing = [] {};
    std::vector<OHOS::AAFwk::Want> wants;
    std::vector<Callbacks> opened;
    std::vector<int32_t> closed;
};

/// A request in promise form, over `content`.
std::shared_ptr<TAVIK::GAME_PLAYER::BaseContext> MakeRequest(FakeContent& content, int32_t requestType);
