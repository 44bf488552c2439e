#pragma once

#include <uv.h>

#include <memory>
#include <string>
#include <utility>

#include "ability_context.h"
#include "floors.h"
#include "want.h"

namespace Floors {

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

/// A request that sends one record under `key`, which READ makes of the second argument. Nobody answers it.
template <size_t COUNT, std::string (*READ)(napi_env env, napi_value object, Pending& pending)>
napi_value Request(napi_env env, napi_callback_info info, const char* method, const char* executeStep,
                   int32_t type, const char* key) {
    SAY(method, "begin %{public}s", method);
    Pending& pending = BeginUnanswered();
    const auto call = ReadCall<COUNT>(env, info);
    SAY(method, "%{public}s params size:%{public}lu", method, static_cast<unsigned long>(call.count));
    const napi_value promise = Promise(env, call.values[0], pending);
    CheckType(env, call.values[1], napi_object);
    std::string record = READ(env, call.values[1], pending);
    CheckNoException(env);
    SAY(executeStep, "begin %{public}s", executeStep);
    OHOS::AAFwk::Want want = MakeWant(type);
    want.SetParam(key, record);
    record = std::string();
    Open(pending, std::move(want));
    SAY(executeStep, "end %{public}s", executeStep);
    SAY(method, "end %{public}s", method);
    return promise;
}

}  // namespace Floors
