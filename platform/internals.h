#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "app_event.h"
#include "want.h"

namespace StandIn {

/// What only the device itself knows of Wants, their parameters and events. Any thread.
struct Internals {
    using Event = OHOS::HiviewDFX::HiAppEvent::Event;
    using Want = OHOS::AAFwk::Want;
    using WantParams = OHOS::AAFwk::WantParams;

    /// The value of a parameter.
    using Param = std::variant<int32_t, double, bool, std::string, std::vector<std::string>, WantParams>;

    static void SetParam(WantParams& params, const std::string& key, Param value);
    /// Null if there is none.
    static const Param* FindParam(const WantParams& params, const std::string& key);
    /// Calls `visit(key, param)` for all parameters, in the order of their keys. `visit` is false to stop, and so is
    /// the result.
    template <typename Visit>
    static bool VisitParams(const WantParams& params, const Visit& visit);

    static const std::string& DeviceIdOf(const Want& want) { return want.deviceId_; }
    static const std::string& BundleNameOf(const Want& want) { return want.bundleName_; }
    static const std::string& AbilityNameOf(const Want& want) { return want.abilityName_; }

    static const std::string& DomainOf(const Event& event) { return event.domain_; }
    static const std::string& NameOf(const Event& event) { return event.name_; }
    static auto TypeOf(const Event& event) { return event.type_; }
    static const auto& ParamsOf(const Event& event) { return event.params_; }
};

}  // namespace StandIn

struct OHOS::AAFwk::WantParams::Interface {
    StandIn::Internals::Param value;
};

template <typename Visit>
bool StandIn::Internals::VisitParams(const WantParams& params, const Visit& visit) {
    for (const auto& [key, interface] : params.params_) {
        if (!visit(key, interface->value)) return false;
    }
    return true;
}
