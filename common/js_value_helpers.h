#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

// All on `env`'s JS thread. The readers never fail: what is missing leaves the output as it was, what is of
// the wrong type reads as told below. A getter's exception stays pending for the JS caller.

/// The longest string read from JS, in bytes of UTF-8; the rest is cut off at a whole character.
inline constexpr int32_t MAX_STRING_LENGTH = 4096;

/// The type of a value; empty if it cannot be had.
std::optional<napi_valuetype> TypeOf(napi_env env, napi_value value);

/// Whether `object` has the property, itself or by its prototypes; false for what can have none.
bool HasProperty(napi_env env, napi_value object, const char* name);

/// The property's value; null if there is none or it cannot be had.
napi_value GetProperty(napi_env env, napi_value object, const char* name);

/// Reads a property as a string up to its first NUL, cut at `maxLength` bytes (at most `MAX_STRING_LENGTH`).
/// A value that is no string reads as empty.
void JsObjectToString(napi_env env, const napi_value& object, const char* name, int32_t maxLength,
                      std::string& output);

/// Reads a property as a 32-bit integer: the fraction is dropped, a number out of range keeps its lowest 32
/// bits, NaN and the infinities read as 0 (Node-API manual, napi_get_value_int32). A value that is no number
/// leaves `output` as it was.
void JsObjectToInt(napi_env env, const napi_value& object, const char* name, int32_t& output);

/// Reads a property as a boolean. A value that is none leaves `output` as it was.
void JsObjectToBool(napi_env env, const napi_value& object, const char* name, bool& output);

/// A JS string up to its first NUL, cut at `MAX_STRING_LENGTH` bytes; empty, and logged, for anything else.
std::string GetStringUtf8(napi_env env, napi_value value);

/// A JS number as `JsObjectToInt` reads it; anything else reads as 0.
int32_t ToInt32(napi_env env, napi_value value);

/// Sets a property to a number, or to a string up to its first NUL; a failure is logged, and its status
/// returned.
napi_status SetIntProperty(napi_env env, napi_value object, const char* name, int32_t value);
napi_status SetStringProperty(napi_env env, napi_value object, const char* name, const std::string& value);

/// Whether an exception is pending that JS will see when the current call returns.
bool IsExceptionPending(napi_env env);

/// False, and logged, for `undefined` and `null`.
bool ValidateTypeNotEmpty(napi_env env, napi_value value);

/// A handle scope of `env` for the life of this object; false if none was obtained. On `env`'s JS thread.
class HandleScope {
public:
    explicit HandleScope(napi_env env) : env_(env) { (void)napi_open_handle_scope(env, &scope_); }
    HandleScope(const HandleScope&) = delete;
    HandleScope& operator=(const HandleScope&) = delete;
    ~HandleScope() {
        if (scope_ != nullptr) (void)napi_close_handle_scope(env_, scope_);
    }

    explicit operator bool() const { return scope_ != nullptr; }

    /// Leaves the scope to an environment that has ended meanwhile.
    void Abandon() { scope_ = nullptr; }

private:
    napi_env env_;
    napi_handle_scope scope_ = nullptr;
};

}  // namespace TAVIK::GAME_PLAYER
