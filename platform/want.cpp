#include "napi_common_want.h"

#include <utility>

#include "device_context.h"
#include "faults.h"
#include "internals.h"

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
    napi_value operator()(const WantParams& nested) const { return MakeParamsObject(env, nested); }
};

}  // namespace

void Internals::SetParam(WantParams& params, const std::string& key, Param value) {
    params.params_[key] = std::make_shared<WantParams::Interface>(WantParams::Interface{std::move(value)});
}

const Internals::Param* Internals::FindParam(const WantParams& params, const std::string& key) {
    auto found = params.params_.find(key);
    return found == params.params_.end() ? nullptr : &found->second->value;
}

napi_value MakeText(napi_env env, const std::string& text) {
    napi_value value = nullptr;
    (void)napi_create_string_utf8(env, text.data(), text.size(), &value);
    return value;
}

napi_value MakeParamsObject(napi_env env, const WantParams& params) {
    std::vector<napi_property_descriptor> properties;
    const bool isWhole = Internals::VisitParams(params, [&](const std::string& key, const auto& param) {
        napi_value name = MakeText(env, key);
        napi_value value = std::visit(ValueMaker{env}, param);
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

namespace OHOS::AppExecFwk {

napi_value WrapWantParams(napi_env env, const AAFwk::WantParams& params) {
    return StandIn::Faults::Trip(StandIn::Call::WrapWantParams) ? nullptr : StandIn::MakeParamsObject(env, params);
}

}  // namespace OHOS::AppExecFwk

namespace OHOS::AAFwk {

int WantParams::GetIntParam(const std::string& key, int defaultValue) const {
    const auto* param = StandIn::Internals::FindParam(*this, key);
    const auto* number = param == nullptr ? nullptr : std::get_if<int32_t>(param);
    return number == nullptr ? defaultValue : *number;
}

std::string WantParams::GetStringParam(const std::string& key) const {
    const auto* param = StandIn::Internals::FindParam(*this, key);
    const auto* text = param == nullptr ? nullptr : std::get_if<std::string>(param);
    return text == nullptr ? std::string() : *text;
}

Want& Want::SetElementName(const std::string& bundleName, const std::string& abilityName) {
    deviceId_.clear();
    bundleName_ = bundleName;
    abilityName_ = abilityName;
    return *this;
}

#define SET_PARAM(type)                                        \
    Want& Want::SetParam(const std::string& key, type value) { \
        StandIn::Internals::SetParam(params_, key, value);     \
        return *this;                                          \
    }
SET_PARAM(bool)
SET_PARAM(int)
SET_PARAM(double)
SET_PARAM(const std::string&)
SET_PARAM(const std::vector<std::string>&)
SET_PARAM(const WantParams&)

Want& Want::SetParams(const WantParams& params) {
    params_ = params;
    return *this;
}

}  // namespace OHOS::AAFwk
