#include "want.h"

#include <utility>

namespace OHOS::AAFwk {

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
