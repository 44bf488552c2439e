#include "napi_common_want.h"

#include "faults.h"
#include "params_object.h"

namespace StandIn {
namespace {

using OHOS::AAFwk::WantParams;

struct ValueMaker {
    napi_env env;

    napi_value operator()(int32_t number) const {
        napi_value value = nullptr;
        (void)napi_create_int32(env, number, &value);
        return value;
    }
    napi_value operator()(double number) const {
        napi_value value = nullptr;
        (void)napi_create_double(env, number, &value);
        return value;
    }
    napi_value operator()(bool flag) const {
        napi_value value = nullptr;
        (void)napi_get_boolean(env, flag, &value);
        return value;
    }
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

// A property is defined, not set: setting "__proto__" would change the prototype.
napi_property_descriptor DescribeProperty(napi_value key, napi_value value) {
    napi_property_descriptor property{};
    property.name = key;
    property.value = value;
    property.attributes = napi_default_jsproperty;
    return property;
}

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
        properties.push_back(DescribeProperty(name, value));
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
