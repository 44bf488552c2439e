#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace OHOS::HiviewDFX {

enum class EventType { FAULT = 1, STATISTIC = 2, SECURITY = 3, BEHAVIOR = 4 };

/// One application event: its domain, name and type, and parameters in the order they were added.
class Event {
public:
    using Value = std::variant<int32_t, int64_t, std::string>;
    using Params = std::vector<std::pair<std::string, Value>>;

    Event(std::string domain, std::string name, EventType type)
        : domain_(std::move(domain)), name_(std::move(name)), type_(type) {
        params_.reserve(USUAL_PARAMS);
    }

    void AddParam(std::string key, Value value) { params_.emplace_back(std::move(key), std::move(value)); }

    const std::string& GetDomain() const { return domain_; }
    const std::string& GetName() const { return name_; }
    EventType GetType() const { return type_; }
    const Params& GetParams() const { return params_; }

private:
    static constexpr size_t USUAL_PARAMS = 8;

    std::string domain_;
    std::string name_;
    EventType type_;
    Params params_;
};

/// Writes `event` for the registered processors. Returns 0, or a negative error. Callable from any thread.
int Write(Event event);

}  // namespace OHOS::HiviewDFX
