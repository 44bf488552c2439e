#include "napi_common_want.h"

#include <utility>

#include "device_context.h"
#include "faults.h"
#include "want.h"

namespace StandIn {
namespace {

using OHOS::AAFwk::WantParams;

template <auto CREATE, typename From>
napi_value Make(napi_env env, const From& from) {
    napi_value value = nullptr;
    (void)CREATE(env, from, &value);
    return value;
}

struct ValueMaker {
    napi_env env;

    napi_value operator()(int32_t number) const { return Make<napi_create_int32>(env, number); }
    napi_value operator()(double number) const { return Make<napi_create_double>(env, number); }
    napi_value operator()(bool flag) const { return Make<napi_get_boolean>(env, flag); }
    napi_value operator()(const std::string& text) const { return MakeText(env, text); }
    napi_value operator()(const std::vector<std::string>& texts) const {
        napi_value array = nullptr;
        if (napi_create_array_with_length(env, texts.size(), &array) != napi_ok) return nullptr;
        uint32_t index = 0;
        for (const std::string& text : texts) {
            if (napi_set_element(env, array, index++, MakeText(env, text)) != napi_ok) return nullptr;
        }
        return array;
    }
    napi_value operator()(const std::shared_ptr<const WantParams>& nested) const {
        return nested == nullptr ? nullptr : MakeParamsObject(env, *nested);
    }
};

}  // namespace

napi_value MakeText(napi_env env, const std::string& text) {
    napi_value value = nullptr;
    (void)napi_create_string_utf8(env, text.data(), text.size(), &value);
    return value;
}

napi_value MakeParamsObject(napi_env env, const WantParams& params) {
    std::vector<napi_property_descriptor> properties;
    for (const auto& [key, param] : params.GetParams()) {
        napi_value name = MakeText(env, key);
        napi_value value = std::visit(ValueMaker{env}, param);
        if (name == nullptr || value == nullptr) return nullptr;
        // Defined, not set: setting "__proto__" would change the prototype.
        properties.push_back(
            {nullptr, name, nullptr, nullptr, nullptr, value, napi_default_jsproperty, nullptr});
    }
    napi_value object = nullptr;
    if (napi_create_object(env, &object) != napi_ok ||
        napi_define_properties(env, object, properties.size(), properties.data()) != napi_ok) {
        return nullptr;
    }
    return object;
}

}  // namespace StandIn

namespace OHOS::AppExecFwk {

napi_value WrapWantParams(napi_env env, const AAFwk::WantParams& params) {
    return StandIn::Faults::Trip(StandIn::Call::WrapWantParams) ? nullptr
                                                                : StandIn::MakeParamsObject(env, params);
}

}  // namespace OHOS::AppExecFwk

namespace OHOS::AAFwk {

void WantParams::SetParam(std::string key, Value value) {
    params_.insert_or_assign(std::move(key), std::move(value));
}

const WantParams::Value* WantParams::GetParam(const std::string& key) const {
    auto found = params_.find(key);
    return found == params_.end() ? nullptr : &found->second;
}

int32_t WantParams::GetIntParam(const std::string& key, int32_t defaultValue) const {
    const Value* value = GetParam(key);
    const auto* number = value == nullptr ? nullptr : std::get_if<int32_t>(value);
    return number == nullptr ? defaultValue : *number;
}

std::string WantParams::GetStringParam(const std::string& key) const {
    const Value* value = GetParam(key);
    const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
    return text == nullptr ? std::string() : *text;
}

}  // namespace OHOS::AAFwk
