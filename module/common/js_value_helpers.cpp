#include "common/js_value_helpers.h"

#include <algorithm>

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {
namespace {

// Empty if the value is not a string.
std::string ReadString(napi_env env, napi_value value, int32_t maxLength) {
    char buffer[MAX_STRING_LENGTH + 1];
    buffer[0] = '\0';  // the result if the call below writes nothing
    (void)napi_get_value_string_utf8(env, value, buffer, static_cast<size_t>(maxLength) + 1, nullptr);
    return buffer;
}

// For `setter`, the function that created the value.
napi_status SetCreated(const char* setter, napi_env env, napi_value object, const char* name, napi_status created,
                       napi_value value) {
    if (created != napi_ok) {
        GAME_LOGE_AS(setter, "create %{public}s failed", name);
        return created;
    }
    napi_status status = napi_set_named_property(env, object, name, value);
    if (status != napi_ok) GAME_LOGE_AS(setter, "set %{public}s failed", name);
    return status;
}

}  // namespace

std::optional<napi_valuetype> TypeOf(napi_env env, napi_value value) {
    napi_valuetype type = napi_undefined;
    if (napi_typeof(env, value, &type) != napi_ok) return std::nullopt;
    return type;
}

bool HasProperty(napi_env env, napi_value object, const char* name) {
    bool hasProperty = false;
    return napi_has_named_property(env, object, name, &hasProperty) == napi_ok && hasProperty;
}

napi_value GetProperty(napi_env env, napi_value object, const char* name) {
    napi_value value = nullptr;
    if (HasProperty(env, object, name)) (void)napi_get_named_property(env, object, name, &value);
    return value;
}

void JsObjectToString(napi_env env, const napi_value& object, const char* name, int32_t maxLength,
                      std::string& output) {
    napi_value value = GetProperty(env, object, name);
    if (value == nullptr) return;
    output = ReadString(env, value, std::min(maxLength, MAX_STRING_LENGTH));
}

void JsObjectToInt(napi_env env, const napi_value& object, const char* name, int32_t& output) {
    (void)napi_get_value_int32(env, GetProperty(env, object, name), &output);
}

void JsObjectToBool(napi_env env, const napi_value& object, const char* name, bool& output) {
    (void)napi_get_value_bool(env, GetProperty(env, object, name), &output);
}

std::string GetStringUtf8(napi_env env, napi_value value) {
    if (TypeOf(env, value) != napi_string) {
        GAME_LOGE("GetStringUtf8 value param type is not string");
        return {};
    }
    return ReadString(env, value, MAX_STRING_LENGTH);
}

int32_t ToInt32(napi_env env, napi_value value) {
    int32_t number = 0;
    (void)napi_get_value_int32(env, value, &number);
    return number;
}

napi_status SetIntProperty(napi_env env, napi_value object, const char* name, int32_t value) {
    napi_value number = nullptr;
    napi_status created = napi_create_int32(env, value, &number);
    return SetCreated(__FUNCTION__, env, object, name, created, number);
}

napi_status SetStringProperty(napi_env env, napi_value object, const char* name, const std::string& value) {
    napi_value string = nullptr;
    napi_status created = napi_create_string_utf8(env, value.c_str(), NAPI_AUTO_LENGTH, &string);
    return SetCreated(__FUNCTION__, env, object, name, created, string);
}

bool IsExceptionPending(napi_env env) {
    bool isPending = false;
    (void)napi_is_exception_pending(env, &isPending);
    return isPending;
}

}  // namespace TAVIK::GAME_PLAYER
