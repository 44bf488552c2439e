#pragma once

#include <node_api.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "context.h"
#include "environment.h"
#include "resource_manager.h"
#include "ui_content.h"
#include "want_params.h"

namespace StandIn {

using Bytes = std::vector<uint8_t>;

/// The resources of one module of an application.
struct Resources {
    std::map<uint32_t, Bytes> mediaById;
    std::map<std::string, Bytes> mediaByName;
    std::map<std::string, Bytes> rawFiles;
};

/// The modules of an application by name. A module with null resources has no resource manager.
using Modules = std::map<std::string, std::shared_ptr<const Resources>>;

/// A window. Its content object always exists, but `FindContent` returns it only while the window shows a page.
/// Thread-safe.
class Window final : public OHOS::Ace::UIContent {
public:
    /// The window of a context that lives in `environment`.
    Window(const std::shared_ptr<Environment>& environment, bool isShown);

    void Show() { isShown_ = true; }
    void Hide() { isShown_ = false; }
    /// The content as the module gets it: null while the window shows no page.
    OHOS::Ace::UIContent* FindContent();

    int32_t CreateModalUIExtension(const OHOS::AAFwk::Want& want, const OHOS::Ace::ModalUIExtensionCallbacks& callbacks,
                                   const OHOS::Ace::ModalUIExtensionConfig& config) override;
    void CloseModalUIExtension(int32_t sessionId) override;

private:
    const std::weak_ptr<Environment> environment_;
    std::atomic<bool> isShown_;
};

/// Call when this thread starts the module's thread `thread` (its thread number). If this is a JS thread and the call
/// that it serves found no window, the new thread waits for one: this holds the JS thread's loop.
void BeginWindowWait(uint64_t thread);
/// Call when that thread ends, or if it did not start.
void EndWindowWait(uint64_t thread);
/// Drops all these holds: the waiting threads never wake.
void DropWindowWaits();

/// What backs a JS context object of the stage model. One without a native context backs nothing.
struct ContextBacking {
    std::shared_ptr<OHOS::AbilityRuntime::Context> context;
    std::shared_ptr<Window> window;  // empty if it has none
};

/// Makes the context of a UI extension, or else of an ability, of an application with these modules.
ContextBacking MakeWindowContext(bool isOfExtension, Modules modules, const std::shared_ptr<Window>& window);
/// Makes a context that is neither.
ContextBacking MakeOtherContext();

/// Makes the JS object of a context. Null if a Node-API call fails. On `env`'s JS thread.
napi_value MakeContextObject(napi_env env, ContextBacking backing);

/// What backs `value`, owned by the JS object; null if `value` is not a context object. Leaves no exception pending. On
/// `env`'s JS thread.
const ContextBacking* FindBacking(napi_env env, napi_value value);

/// Sets whether this process belongs to a system application. Thread-safe.
void SetSystemApp(bool isSystem);

}  // namespace StandIn
