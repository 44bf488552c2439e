#include "want.h"

#include <utility>

namespace OHOS::AAFwk {

Want& Want::SetElementName(const std::string& bundleName, const std::string& abilityName)
{
    element_ = {"", bundleName, abilityName};
    return *this;
}

Want& Want::SetParam(const std::string& key, int32_t value)
{
    params_.SetParam(key, value);
    return *this;
}

Want& Want::SetParam(const std::string& key, std::string value)
{
    params_.SetParam(key, std::move(value));
    return *this;
}

Want& Want::SetParam(const std::string& key, const char* value)
{
    return SetParam(key, std::string(value == nullptr ? "" : value));
}

Want& Want::SetParams(WantParams params)
{
    params_ = std::move(params);
    return *this;
}

}  // namespace OHOS::AAFwk
