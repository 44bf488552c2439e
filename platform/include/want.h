#pragma once

#include <string>
#include <vector>

#include "want_params.h"

namespace OHOS::AAFwk {

/// A request to start an ability: the element that names it, and its parameters. A plain value type.
class Want {
public:
    /// Addresses an ability of the local device.
    Want& SetElementName(const std::string& bundleName, const std::string& abilityName);

    /// Stores a value under `key`, replacing a value of any type. There is no overload for `const char*`: a literal
    /// would be stored as the boolean true.
    Want& SetParam(const std::string& key, bool value);
    Want& SetParam(const std::string& key, int value);
    Want& SetParam(const std::string& key, double value);
    Want& SetParam(const std::string& key, const std::string& value);
    Want& SetParam(const std::string& key, const std::vector<std::string>& value);
    Want& SetParam(const std::string& key, const WantParams& value);

    const WantParams& GetParams() const { return params_; }
    /// Replaces all parameters.
    Want& SetParams(const WantParams& params);

private:
    friend struct StandIn::Internals;

    std::string deviceId_;  // empty: the local device
    std::string bundleName_;
    std::string abilityName_;
    WantParams params_;
};

}  // namespace OHOS::AAFwk
