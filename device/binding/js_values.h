#pragma once

#include <node_api.h>

#include <functional>
#include <string>

#include "device_context.h"

// Small steps over Node-API. All of them belong on the JS thread of `env`. Those that answer false leave a JS
// exception pending.

namespace StandIn {

/// What `value` is, for an error message: "null", "1.5", "an array".
std::string Describe(napi_env env, napi_value value);

/// Throws a TypeError. Always false.
bool ThrowTypeError(napi_env env, const std::string& message);
/// Throws the TypeError that `name` must be `expected`, and tells what it is instead. Always false.
bool ThrowUnexpected(napi_env env, const std::string& name, const char* expected, napi_value value);

/// The text of a JS string, in UTF-8.
bool ReadText(napi_env env, napi_value value, const std::string& name, std::string& text);

/// Whether `value` is an object without a class of its own: no array, Date, Map and the like.
bool IsPlainObject(napi_env env, napi_value value);

using PropertyVisitor = std::function<bool(const std::string& key, napi_value value)>;

/// Shows `visit` the own enumerable properties of `object` that are not undefined, until it answers false.
bool ForEachProperty(napi_env env, napi_value object, const std::string& name, const PropertyVisitor& visit);

using ElementVisitor = std::function<bool(const std::string& name, napi_value value)>;

/// Shows `visit` the elements of `array`, each with its name as in "names[2]", until it answers false.
bool ForEachElement(napi_env env, napi_value array, const std::string& name, const ElementVisitor& visit);

}  // namespace StandIn
