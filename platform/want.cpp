#include "napi_common_want.h"

#include <utility>

#include "faults.h"
#include "internals.h"
#include "js_values.h"

namespace StandIn {

void Internals::SetParam(WantParams& params, const std::string& key, Param value) {
    params.params_[key] = std::make_shared<WantParams::Interface>(WantParams::Interface{std::move(value)});
}

const Internals::Param* Internals::FindParam(const WantParams& params, const std::string& key) {
    auto found = params.params_.find(key);
    return found == params.params_.end() ? nullptr : &found->second->value;
}

}  // namespace StandIn

namespace OHOS::AppExecFwk {

napi_value WrapWantParams(napi_env env, const AAFwk::WantParams& params) {
    return StandIn::Faults::Trip(StandIn::Call::WrapWantParams) ? nullptr : StandIn::Make(env, params);
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
