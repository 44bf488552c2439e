#include "napi_base_context.h"

#include <utility>

#include "device_context.h"
#include "faults.h"

namespace StandIn {
namespace {

// Marks the JS objects whose wrapped pointer is a ContextRecord.
constexpr napi_type_tag CONTEXT_TAG = {0x8b1f4a0c6d2e4957, 0xa3c57e19b06d42f8};

bool IsContextObject(napi_env env, napi_value value) {
    napi_valuetype type = napi_undefined;
    bool isTagged = false;
    return napi_typeof(env, value, &type) == napi_ok && type == napi_object &&
           napi_check_object_type_tag(env, value, &CONTEXT_TAG, &isTagged) == napi_ok && isTagged;
}

// Of an object that is tagged as a context.
const ContextRecord* Unwrap(napi_env env, napi_value object) {
    void* record = nullptr;
    (void)napi_unwrap(env, object, &record);
    return static_cast<const ContextRecord*>(record);
}

}  // namespace

napi_value MakeContextObject(napi_env env, ContextRecord record) {
    auto owned = std::make_unique<ContextRecord>(std::move(record));
    auto finalize = [](napi_env /*env*/, void* data, void* /*hint*/) {
        delete static_cast<ContextRecord*>(data);
    };
    napi_value object = nullptr;
    if (napi_create_object(env, &object) != napi_ok ||
        napi_type_tag_object(env, object, &CONTEXT_TAG) != napi_ok ||
        napi_wrap(env, object, owned.get(), finalize, nullptr, nullptr) != napi_ok) {
        return nullptr;
    }
    (void)owned.release();
    return object;
}

const ContextRecord* FindContextRecord(napi_env env, napi_value value) {
    return IsContextObject(env, value) ? Unwrap(env, value) : nullptr;
}

}  // namespace StandIn

namespace OHOS::AbilityRuntime {

napi_status IsStageContext(napi_env env, napi_value value, bool& isStage) {
    if (StandIn::Faults::Trip("IsStageContext")) return napi_generic_failure;
    isStage = StandIn::IsContextObject(env, value);
    return napi_ok;
}

std::shared_ptr<Context> GetStageModeContext(napi_env env, napi_value value) {
    const StandIn::ContextRecord* record = StandIn::Unwrap(env, value);
    return StandIn::Faults::Trip("GetStageModeContext") || record == nullptr ? nullptr : record->context;
}

}  // namespace OHOS::AbilityRuntime
