#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace OHOS::AAFwk {

/// Typed key-value parameters that travel between applications. A plain value type: copies share no mutable
/// state, so different threads may use different copies.
class WantParams {
public:
    /// A 32-bit integer, a double, a boolean, a UTF-8 string, a list of such strings or nested parameters.
    using Value = std::variant<int32_t, double, bool, std::string, std::vector<std::string>,
                               std::shared_ptr<const WantParams>>;

    /// Stores `value` under `key`, replacing a value of any type.
    void SetParam(std::string key, Value value);

    /// The value under `key`; null if there is none. Owned by this object, valid until the key changes.
    const Value* GetParam(const std::string& key) const;

    /// The integer under `key`; `defaultValue` if there is none or it is of another type.
    int32_t GetIntParam(const std::string& key, int32_t defaultValue) const;

    /// The string under `key`; empty if there is none or it is of another type.
    std::string GetStringParam(const std::string& key) const;

    /// All parameters, in key order.
    const std::map<std::string, Value>& GetParams() const { return params_; }

private:
    std::map<std::string, Value> params_;
};

}  // namespace OHOS::AAFwk
