#ifndef COMMON_VELMOR_UTIL_H
#define COMMON_VELMOR_UTIL_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <shared_mutex>
#include <string>

#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

// JS values. All on `env`'s JS thread. The readers never fail: what is missing leaves the output as it was,
// what is of the wrong type reads as told below. A getter's exception stays pending for the JS caller.

/// The longest text read from JS, in bytes of UTF-8; the rest is cut off at a whole character.
inline constexpr int32_t MAX_TEXT_LENGTH = 4096;

/// Reads a property as text up to its first NUL, cut at `maxLength` bytes (at most `MAX_TEXT_LENGTH`).
/// A value that is no string reads as empty.
void JsObjectToString(napi_env env, const napi_value& object, const char* name, int32_t maxLength,
                      std::string& output);

/// Reads a property as a 32-bit integer: the fraction is dropped, a number out of range keeps its lowest 32
/// bits, NaN and the infinities read as 0 (Node-API manual, napi_get_value_int32). A value that is no number
/// leaves `output` as it was.
void JsObjectToInt(napi_env env, const napi_value& object, const char* name, int32_t& output);

/// Reads a property as a boolean. A value that is none leaves `output` as it was.
void JsObjectToBool(napi_env env, const napi_value& object, const char* name, bool& output);

/// Whether `object` has the property, itself or by its prototypes; false for what can have none.
bool HasProperty(napi_env env, napi_value object, const char* name);

/// A JS string up to its first NUL, cut at `MAX_TEXT_LENGTH` bytes. Anything else is logged and reads as
/// empty.
std::string GetStringUtf8(napi_env env, napi_value value);

/// A JS number as `JsObjectToInt` reads it; anything else reads as 0.
int32_t ToInt32(napi_env env, napi_value value);

/// Sets a property to a number or to a text up to its first NUL; a failure is logged, and its status
/// returned.
napi_status SetIntProperty(napi_env env, napi_value object, const char* name, int32_t value);
napi_status SetStringProperty(napi_env env, napi_value object, const char* name, const std::string& value);

/// Whether the value's type is `object`: arrays and dates are, functions and `null` are not.
bool IsObject(napi_env env, napi_value value);

/// Whether an exception is pending that JS will see when the current call returns.
bool IsExceptionPending(napi_env env);

/// False, and logged, for `undefined` and `null`.
bool ValidateTypeNotEmpty(napi_env env, napi_value value);

// JS environments.

/// One JS environment. It lives as long as anybody holds it, so that its address cannot come to name another
/// environment while a late answer still asks for this one; it is alive only while it is registered.
struct EnvInfo {
    napi_env env = nullptr;
};

/// The environment of this JS thread, from the first load of the module on; empty on other threads.
extern thread_local std::shared_ptr<EnvInfo> gEnvInfo;

/// Registers a live environment, and takes one off that ended unnoticed, as its `env` shows. Any thread; null
/// is logged.
void SaveEnvInfo(const std::shared_ptr<EnvInfo>& info);

/// Takes an environment off the registry; one that is not on it is left alone. Any thread; null is logged.
void DeleteEnvInfo(const EnvInfo* info);

/// Whether an environment is registered. Any thread; null is logged and is not.
bool IsValidEnv(const EnvInfo* info);
inline bool IsValidEnv(const std::shared_ptr<EnvInfo>& info)
{
    return IsValidEnv(info.get());
}

/// Asks the same, and if the environment is registered keeps it so: its end waits until this object is gone.
/// For the few calls that other threads make on an environment; must not live while JS runs. One per thread
/// at a time.
class LiveEnv
{
public:
    explicit LiveEnv(const std::shared_ptr<EnvInfo>& info);

    explicit operator bool() const { return lock_.owns_lock(); }

private:
    std::shared_lock<std::shared_mutex> lock_;
};

// The process. Callable from any thread.

/// The identifier that ties a game's requests together; one for the whole process, empty until it is set.
void SetTraceId(std::string traceId);
std::string GetTraceId();

/// Milliseconds since the device booted.
int64_t GetCurrentTimestamp();

/// `length` bytes in base64 (RFC 4648, section 4: with padding, on one line). Empty, and logged, if there is
/// nothing to encode or memory runs out. `length` must fit an int.
std::string Base64Encode(const uint8_t* data, size_t length);

/// Whether the caller is a system application; if not, that is logged.
bool IsSystemAppCalling();

}  // namespace TAVIK::GAME_PLAYER

#endif
