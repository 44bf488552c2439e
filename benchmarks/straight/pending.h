#pragma once

#include <uv.h>

#include <memory>

#include "ability_context.h"
#include "straight.h"
#include "want.h"

namespace Straight {

/// A request that waits for its answer, and the work that brings that to JS.
struct Pending : uv_work_t {
    napi_env env = nullptr;
    napi_deferred deferred = nullptr;
    std::shared_ptr<OHOS::AbilityRuntime::AbilityContext> context;
    int32_t sessionId = 0;
    int64_t begin = 0;  // in boot milliseconds
};

/// Now, in boot milliseconds.
int64_t Now();
/// A request that nobody answers; forget() deletes it.
Pending& BeginUnanswered();
/// The promise of a request in the context that JS passed.
napi_value Promise(napi_env env, napi_value contextValue, Pending& pending);
OHOS::AAFwk::Want MakeWant(int32_t requestType);
/// Opens the modal.
void Open(Pending& pending, OHOS::AAFwk::Want want);

}  // namespace Straight
