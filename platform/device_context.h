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

/// The modules of an application by name; one with null resources has no resource manager.
using Modules = std::map<std::string, std::shared_ptr<const Resources>>;

/// A window. Its content object is always there, but is found only while the window shows a page.
/// Thread-safe.
class Window final : public OHOS::Ace::UIContent {
public:
    /// The window of a context that lives in `environment`.
    Window(const std::shared_ptr<Environment>& environment, bool isShown);

    void Show() { isShown_ = true; }
    void Hide() { isShown_ = false; }
    /// The content as the module finds it: null while the window shows no page.
    OHOS::Ace::UIContent* FindContent();

    int32_t CreateModalUIExtension(OHOS::AAFwk::Want want, OHOS::Ace::ModalUIExtensionCallbacks callbacks,
                                   OHOS::Ace::ModalUIExtensionConfig config) override;
    void CloseModalUIExtension(int32_t sessionId) override;

private:
    const std::weak_ptr<Environment> environment_;
    std::atomic<bool> isShown_;
};

/// The module starts `thread`, by its birth number, on this one: holds the loop of the calling JS thread, if
/// the method that runs there found no window and so has that thread wait for one.
void BeginWindowWait(uint64_t thread);
/// As that thread ends.
void EndWindowWait(uint64_t thread);
/// Drops the holds of all that wait for a window: their threads are never to wake.
void DropWindowWaits();

enum class ContextKind {
    ABILITY,
    UI_EXTENSION,
    OTHER,  // of the stage model, but neither of the two
    EMPTY   // of the stage model, with nothing behind it
};

/// What stands behind a JS context object.
struct ContextRecord {
    std::shared_ptr<OHOS::AbilityRuntime::Context> context;  // empty: kind EMPTY
    std::shared_ptr<Window> window;                          // empty: the kind has none
};

/// Makes the context of an application with these modules. The kinds ABILITY and UI_EXTENSION need a window,
/// the others take none.
ContextRecord MakeContext(ContextKind kind, Modules modules, const std::shared_ptr<Window>& window);

/// Makes the JS object of a context. Null if the environment refuses. On `env`'s JS thread.
napi_value MakeContextObject(napi_env env, ContextRecord record);

/// What stands behind `value`, owned by the JS object; null if it is no context object. Leaves no exception.
/// On `env`'s JS thread.
const ContextRecord* FindContextRecord(napi_env env, napi_value value);

/// The next two are null if the environment refuses. On `env`'s JS thread.
napi_value MakeText(napi_env env, const std::string& text);

/// Makes a JS object of `params`, as `WrapWantParams` does for the module, but never fails on purpose.
napi_value MakeParamsObject(napi_env env, const OHOS::AAFwk::WantParams& params);

/// Makes this process one of a system application, or of an ordinary one again. Thread-safe.
void SetSystemApp(bool isSystem);

}  // namespace StandIn
