#pragma once

#include <node_api.h>

#include <map>
#include <memory>
#include <string>

#include "context.h"
#include "resources.h"
#include "window.h"

namespace StandIn {

/// The modules of an application by name; one with null resources has no resource manager.
using Modules = std::map<std::string, std::shared_ptr<const Resources>>;

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

}  // namespace StandIn
