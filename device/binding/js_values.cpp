#include "js_values.h"

namespace StandIn {
namespace {

// A failed call has usually left an exception of its own, such as a getter's.
bool FailRead(napi_env env, const std::string& name) {
    bool isPending = false;
    if (napi_is_exception_pending(env, &isPending) == napi_ok && isPending) return false;
    return ThrowTypeError(env, name + " cannot be read");
}

/// Describes a number or a short string by its value, a longer one as `kind`.
std::string DescribeText(napi_env env, napi_value value, napi_valuetype type, const char* kind) {
    constexpr size_t LONGEST = 40;
    char text[LONGEST + 1];
    size_t length = 0;
    napi_value string = nullptr;
    if (napi_coerce_to_string(env, value, &string) != napi_ok ||
        napi_get_value_string_utf8(env, string, nullptr, 0, &length) != napi_ok || length > LONGEST ||
        napi_get_value_string_utf8(env, string, text, sizeof(text), &length) != napi_ok) {
        return kind;
    }
    return type == napi_number ? text : "'" + std::string(text, length) + "'";
}

}  // namespace

std::string Describe(napi_env env, napi_value value) {
    constexpr const char* KINDS[] = {"undefined", "null",      "a boolean",  "a number",    "a string",
                                     "a symbol",  "an object", "a function", "an external", "a BigInt"};
    napi_valuetype type = napi_undefined;
    bool isArray = false;
    (void)napi_typeof(env, value, &type);
    if (type == napi_number || type == napi_string) return DescribeText(env, value, type, KINDS[type]);
    if (napi_is_array(env, value, &isArray) == napi_ok && isArray) return "an array";
    return type == napi_object && !IsPlainObject(env, value) ? "an object of a class" : KINDS[type];
}

bool ThrowTypeError(napi_env env, const std::string& message) {
    (void)napi_throw_type_error(env, nullptr, message.c_str());
    return false;
}

bool ThrowUnexpected(napi_env env, const std::string& name, const char* expected, napi_value value) {
    return ThrowTypeError(env, name + " must be " + expected + ", not " + Describe(env, value));
}

bool ReadText(napi_env env, napi_value value, const std::string& name, std::string& text) {
    size_t length = 0;
    if (napi_get_value_string_utf8(env, value, nullptr, 0, &length) != napi_ok) {
        return ThrowUnexpected(env, name, "a string", value);
    }
    text.resize(length + 1);  // Node-API appends a null byte
    if (napi_get_value_string_utf8(env, value, text.data(), text.size(), &length) != napi_ok) {
        return FailRead(env, name);
    }
    text.resize(length);
    return true;
}

bool IsPlainObject(napi_env env, napi_value value) {
    napi_valuetype type = napi_undefined;
    napi_value prototype = nullptr;
    if (napi_typeof(env, value, &type) != napi_ok || type != napi_object ||
        napi_get_prototype(env, value, &prototype) != napi_ok) {
        return false;
    }
    // An object literal of any realm: it has no prototype, or its prototype has none.
    napi_value last = nullptr;
    return napi_typeof(env, prototype, &type) == napi_ok &&
           (type == napi_null || (napi_get_prototype(env, prototype, &last) == napi_ok &&
                                  napi_typeof(env, last, &type) == napi_ok && type == napi_null));
}

bool ForEachElement(napi_env env, napi_value array, const std::string& name, const ElementVisitor& visit) {
    uint32_t length = 0;
    if (napi_get_array_length(env, array, &length) != napi_ok) {
        return ThrowUnexpected(env, name, "an array", array);
    }
    for (uint32_t i = 0; i < length; ++i) {
        napi_value element = nullptr;
        const std::string elementName = name + "[" + std::to_string(i) + "]";
        if (napi_get_element(env, array, i, &element) != napi_ok) return FailRead(env, elementName);
        if (!visit(elementName, element)) return false;
    }
    return true;
}

bool ForEachProperty(napi_env env, napi_value object, const std::string& name, const PropertyVisitor& visit) {
    if (!IsPlainObject(env, object)) return ThrowUnexpected(env, name, "a plain object", object);
    napi_value keys = nullptr;
    const auto filter = static_cast<napi_key_filter>(napi_key_enumerable | napi_key_skip_symbols);
    if (napi_get_all_property_names(env, object, napi_key_own_only, filter, napi_key_numbers_to_strings,
                                    &keys) != napi_ok) {
        return FailRead(env, name);
    }
    return ForEachElement(env, keys, name, [&](const std::string& /*position*/, napi_value key) {
        std::string text;
        napi_value value = nullptr;
        napi_valuetype type = napi_undefined;
        if (!ReadText(env, key, name, text)) return false;
        if (napi_get_property(env, object, key, &value) != napi_ok ||
            napi_typeof(env, value, &type) != napi_ok) {
            return FailRead(env, name + "." + text);
        }
        return type == napi_undefined || visit(text, value);
    });
}

}  // namespace StandIn
