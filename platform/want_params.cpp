#include "want_params.h"

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

}  // namespace OHOS::AAFwk
