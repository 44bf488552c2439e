#pragma once

#include <map>
#include <memory>
#include <string>

namespace StandIn {
struct Internals;
}

namespace OHOS::AAFwk {

/// Typed key-value parameters that travel between applications. A plain value type: copies share no mutable state, so
/// different threads may use different copies.
class WantParams {
public:
    /// The integer under `key`; `defaultValue` if there is none or it is of another type.
    int GetIntParam(const std::string& key, int defaultValue) const;

    /// The string under `key`; empty if there is none or it is of another type.
    std::string GetStringParam(const std::string& key) const;

private:
    friend struct StandIn::Internals;
    struct Interface;  // one value, whose type is known to the platform alone

    std::map<std::string, std::shared_ptr<const Interface>> params_;
};

}  // namespace OHOS::AAFwk
