#pragma once

#include <string>
#include <utility>

#include "want_params.h"

namespace OHOS::AAFwk {

/// A request to start an ability: the element that names it, and its parameters. A plain value type.
class Want {
public:
    /// The ability's address; an empty device ID means the local device.
    struct ElementName {
        std::string deviceId;
        std::string bundleName;
        std::string abilityName;
    };

    /// Addresses an ability of the local device.
    Want& SetElementName(std::string bundleName, std::string abilityName) {
        element_ = {"", std::move(bundleName), std::move(abilityName)};
        return *this;
    }
    const ElementName& GetElement() const { return element_; }

    Want& SetParam(std::string key, WantParams::Value value) {
        params_.SetParam(std::move(key), std::move(value));
        return *this;
    }

    const WantParams& GetParams() const { return params_; }
    /// Replaces all parameters.
    Want& SetParams(WantParams params) {
        params_ = std::move(params);
        return *this;
    }

private:
    ElementName element_;
    WantParams params_;
};

}  // namespace OHOS::AAFwk
