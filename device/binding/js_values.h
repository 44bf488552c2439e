#pragma once

#include <node_api.h>

#include <functional>
#include <string>

#include "device_context.h"

// Small helpers on top of Node-API. All of them must run on the JS thread of `env`. Those that throw, read or
// visit leave a JS exception pending when they return false.

namespace StandIn {

/// What `value` is, for an error message: "null", "1.5", "an array".
std::string Describe(napi_env env, napi_value value);

/// Throws a TypeError. Always returns false.
bool ThrowTypeError(napi_env env, const std::string& message);
/// Throws a TypeError that says what `name` must be and what it is instead. Always returns false.
bool ThrowUnexpected(napi_env env, const std::string& name, const char* expected, napi_value value);

/// Reads a JS string as UTF-8.
bool ReadText(napi_env env, napi_value value, const std::string& name, std::string& text);

/// Whether `value` is a plain object: not an array, Date, Map or the like.
bool IsPlainObject(napi_env env, napi_value value);

using PropertyVisitor = std::function<bool(const std::string& key, napi_value value)>;

/// Calls `visit` with each own enumerable property of `object` that is not undefined, until it returns false.
bool ForEachProperty(napi_env env, napi_value object, const std::string& name, const PropertyVisitor& visit);

using ElementVisitor = std::function<bool(const std::string& name, napi_value value)>;

/// Calls `visit` with each element of `array` and its name, such as "names[2]", until it returns false.
bool ForEachElement(napi_env env, napi_value array, const std::string& name, const ElementVisitor& visit);

}  // namespace StandIn
