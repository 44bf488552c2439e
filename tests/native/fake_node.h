#pragma once

#include <gtest/gtest.h>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <uv.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ability_context.h"
#include "events/game_player_event_callback.h"
#include "modal_ui_extension_config.h"
#include "napi/native_api.h"

#include <redirected_calls.h>

// A platform for native tests: Node-API with one loop, and a window that a test controls. A test fails if the module
// calls this platform, or takes another lock, while it holds one. It may only queue work under a lock. The platform
// itself takes no lock: a test that starts a thread waits for it. From here on, the names of Node-API are those of the
// functions that the module calls instead.

using namespace TAVIK::GAME_PLAYER;

/// A value that tests recognise by its address.
template <typename Handle = napi_value>
Handle AsHandle(size_t number) {
    static char handles[8];
    return reinterpret_cast<Handle>(&handles[number]);
}

inline std::deque<std::pair<uv_work_t*, uv_after_work_cb>> gQueue;  // the loop's
inline bool gIsRefusing = false;                                    // the loop refuses the next work
inline std::function<void()> gWhileCreatingAnError = [] {};
inline std::vector<napi_property_descriptor> gMethods;  // defined last by the module

/// A test with one JS environment, on its JS thread.
class FakeNodeTest : public testing::Test {
protected:
    using Deeds = std::vector<std::string>;

    void SetUp() override;
    void TearDown() override;

    /// Delivers what is queued. Returns the deeds since the last time: "open", "close", "resolve", "reject", "call",
    /// "throw", "delete".
    static Deeds RunLoop();
    /// Runs the clean-up hooks and returns their number.
    static size_t RunHooks();

    /// `On` adds a listener. `Off` removes it, or all if `function` is 0, and delivers what is queued.
    static void On(napi_env env, size_t function, const char* type = EVENT_PLAYER_CHANGED);
    static Deeds Off(napi_env env, size_t function = 0, const char* type = EVENT_PLAYER_CHANGED);

    const std::shared_ptr<EnvInfo> envInfo = std::make_shared<EnvInfo>(AsHandle<napi_env>(0));
};

/// A window that numbers its modals from 1, and the context of its ability.
class FakeWindow final : public OHOS::Ace::UIContent, public OHOS::AbilityRuntime::AbilityContext {
public:
    using Callbacks = OHOS::Ace::ModalUIExtensionCallbacks;

    UIContent* GetUIContent() override;
    int32_t CreateModalUIExtension(const OHOS::AAFwk::Want& want, const Callbacks& callbacks,
                                   const OHOS::Ace::ModalUIExtensionConfig& config) override;
    void CloseModalUIExtension(int32_t sessionId) override;

    std::function<void()> whileFinding = [] {};  // run by GetUIContent
    std::function<void()> whileOpening = [] {};  // run with the modal's callbacks among `opened`
    std::function<void()> whileClosing = [] {};
    std::vector<Callbacks> opened;
    std::vector<int32_t> closed;

private:
    std::shared_ptr<Context> CreateModuleContext(const std::string& /*name*/) override { return nullptr; }
    std::shared_ptr<Context> CreateModuleContext(const std::string&, const std::string&) override { return nullptr; }
    std::shared_ptr<OHOS::Global::Resource::ResourceManager> GetResourceManager() const override { return {}; }
    bool IsContext(size_t /*contextTypeId*/) const override { return true; }
};
