#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

// All on `env`'s JS thread. The readers never fail. A missing value leaves the output unchanged; the comments below say
// what a value of the wrong type does. An exception of a getter stays pending for the JS caller.

/// The longest string read from JS, in bytes of UTF-8. Longer ones are cut without splitting a character.
inline constexpr int32_t MAX_STRING_LENGTH = 4096;

/// The type of a value; empty if it cannot be determined.
std::optional<napi_valuetype> TypeOf(napi_env env, napi_value value);

/// Whether `object` or one of its prototypes has the property; false for values that cannot have properties.
bool HasProperty(napi_env env, napi_value object, const char* name);

/// The property's value; null if it does not exist or cannot be read.
napi_value GetProperty(napi_env env, napi_value object, const char* name);

/// Reads a property as a string up to its first NUL, truncated to `maxLength` bytes (at most `MAX_STRING_LENGTH`). A
/// value that is not a string reads as empty.
void JsObjectToString(napi_env env, const napi_value& object, const char* name, int32_t maxLength, std::string& output);

/// Reads a property as a 32-bit integer. The fraction is dropped, a number out of range keeps its lowest 32 bits, and
/// NaN and the infinities read as 0 (Node-API manual, napi_get_value_int32). A value that is not a number leaves
/// `output` unchanged.
void JsObjectToInt(napi_env env, const napi_value& object, const char* name, int32_t& output);

/// Reads a property as a boolean. A value that is not a boolean leaves `output` unchanged.
void JsObjectToBool(napi_env env, const napi_value& object, const char* name, bool& output);

/// A JS string up to its first NUL, cut to `MAX_STRING_LENGTH` bytes. Anything else is empty and logged.
std::string GetStringUtf8(napi_env env, napi_value value);

/// A JS number, read like `JsObjectToInt`; anything else reads as 0.
int32_t ToInt32(napi_env env, napi_value value);

/// Sets a property to a number, or to a string up to its first NUL. Logs a failure and returns its status.
napi_status SetIntProperty(napi_env env, napi_value object, const char* name, int32_t value);
napi_status SetStringProperty(napi_env env, napi_value object, const char* name, const std::string& value);

/// Whether an exception is pending that JS will see when the current call returns.
bool IsExceptionPending(napi_env env);

/// A handle scope of `env` while this object lives; false if none could be opened. On `env`'s JS thread.
class HandleScope {
public:
    explicit HandleScope(napi_env env) : env_(env) { (void)napi_open_handle_scope(env, &scope_); }
    HandleScope(const HandleScope&) = delete;
    HandleScope& operator=(const HandleScope&) = delete;
    ~HandleScope() {
        if (scope_ != nullptr) (void)napi_close_handle_scope(env_, scope_);
    }

    explicit operator bool() const { return scope_ != nullptr; }

    /// Does not close the scope, because the environment has ended meanwhile.
    void Abandon() { scope_ = nullptr; }

private:
    napi_env env_;
    napi_handle_scope scope_ = nullptr;
};

}  // namespace TAVIK::GAME_PLAYER
