#include "want.h"

#include <utility>

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

Want& Want::SetElementName(std::string bundleName, std::string abilityName) {
    element_ = {"", std::move(bundleName), std::move(abilityName)};
    return *this;
}

Want& Want::SetParam(std::string key, int32_t value) {
    params_.SetParam(std::move(key), value);
    return *this;
}

Want& Want::SetParam(std::string key, std::string value) {
    params_.SetParam(std::move(key), std::move(value));
    return *this;
}

Want& Want::SetParam(std::string key, const char* value) {
    return SetParam(std::move(key), std::string(value == nullptr ? "" : value));
}

Want& Want::SetParams(WantParams params) {
    params_ = std::move(params);
    return *this;
}

}  // namespace OHOS::AAFwk
