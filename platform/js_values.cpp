#include "js_values.h"

#include <cmath>
#include <limits>
#include <utility>

#include "internals.h"

namespace StandIn {
namespace {

using OHOS::AAFwk::WantParams;

Internals::Param ReadNumberParam(napi_env env, napi_value value) {
    using Int = std::numeric_limits<int32_t>;
    const double number = Read<double>(env, value);
    const bool isInt = number >= Int::min() && number <= Int::max() && std::trunc(number) == number;
    if (isInt && !(number == 0 && std::signbit(number))) return static_cast<int32_t>(number);
    return number;
}

Internals::Param ReadParam(napi_env env, napi_value value) {
    if (IsOfType(env, value, napi_number)) return ReadNumberParam(env, value);
    if (IsOfType(env, value, napi_boolean)) return Read<bool>(env, value);
    if (IsOfType(env, value, napi_string)) return Read<std::string>(env, value);
    if (!IsArray(env, value)) return Read<WantParams>(env, value);
    std::vector<std::string> texts;
    ForEachElement(env, value, [&](napi_value element) { texts.push_back(Read<std::string>(env, element)); });
    return texts;
}

}  // namespace

bool IsOfType(napi_env env, napi_value value, napi_valuetype type) {
    napi_valuetype actual = napi_undefined;
    return napi_typeof(env, value, &actual) == napi_ok && actual == type;
}

bool IsArray(napi_env env, napi_value value) {
    bool isArray = false;
    return napi_is_array(env, value, &isArray) == napi_ok && isArray;
}

void ReadInto(napi_env env, napi_value value, bool& flag) { (void)napi_get_value_bool(env, value, &flag); }

void ReadInto(napi_env env, napi_value value, int32_t& number) { (void)napi_get_value_int32(env, value, &number); }

void ReadInto(napi_env env, napi_value value, uint32_t& number) { (void)napi_get_value_uint32(env, value, &number); }

void ReadInto(napi_env env, napi_value value, uint64_t& number) {
    number = static_cast<uint64_t>(Read<double>(env, value));
}

void ReadInto(napi_env env, napi_value value, double& number) { (void)napi_get_value_double(env, value, &number); }

void ReadInto(napi_env env, napi_value value, std::string& text) {
    size_t length = 0;
    if (napi_get_value_string_utf8(env, value, nullptr, 0, &length) != napi_ok) return;
    text.resize(length + 1);  // Node-API appends a null byte
    (void)napi_get_value_string_utf8(env, value, text.data(), text.size(), &length);
    text.resize(length);
}

napi_value ReadElement(napi_env env, napi_value array, uint32_t index) {
    napi_value element = nullptr;
    (void)napi_get_element(env, array, index, &element);
    return element;
}

napi_value ReadProperty(napi_env env, napi_value object, const char* name) {
    napi_value value = nullptr;
    (void)napi_get_named_property(env, object, name, &value);
    return value;
}

void ReadInto(napi_env env, napi_value object, WantParams& params) {
    napi_value keys = nullptr;
    (void)napi_get_all_property_names(env, object, napi_key_own_only, napi_key_enumerable, napi_key_numbers_to_strings,
                                      &keys);
    ForEachElement(env, keys, [&](napi_value key) {
        napi_value value = nullptr;
        (void)napi_get_property(env, object, key, &value);
        Internals::SetParam(params, Read<std::string>(env, key), ReadParam(env, value));
    });
}

napi_value Make(napi_env env, double number) {
    napi_value value = nullptr;
    (void)napi_create_double(env, number, &value);
    return value;
}

napi_value Make(napi_env env, bool flag) {
    napi_value value = nullptr;
    (void)napi_get_boolean(env, flag, &value);
    return value;
}

ObjectMaker::ObjectMaker(napi_env env) : env_(env) { (void)napi_create_object(env, &object_); }

ObjectMaker& ObjectMaker::Set(const char* name, napi_value value) {
    if (value != nullptr) (void)napi_set_named_property(env_, object_, name, value);
    return *this;
}

napi_value Make(napi_env env, const std::string& text) {
    napi_value value = nullptr;
    (void)napi_create_string_utf8(env, text.data(), text.size(), &value);
    return value;
}

napi_value Make(napi_env env, const WantParams& params) {
    std::vector<napi_property_descriptor> properties;
    const bool isWhole = Internals::VisitParams(params, [&](const std::string& key, const auto& param) {
        napi_value name = Make(env, key);
        napi_value value = std::visit([env](const auto& each) { return Make(env, each); }, param);
        // Defined, not set: setting "__proto__" would change the prototype.
        properties.push_back({nullptr, name, nullptr, nullptr, nullptr, value, napi_default_jsproperty, nullptr});
        return name != nullptr && value != nullptr;
    });
    napi_value object = nullptr;
    if (!isWhole || napi_create_object(env, &object) != napi_ok ||
        napi_define_properties(env, object, properties.size(), properties.data()) != napi_ok) {
        return nullptr;
    }
    return object;
}

}  // namespace StandIn
