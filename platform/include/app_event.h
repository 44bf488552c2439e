#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace StandIn {
struct Internals;
}

namespace OHOS::HiviewDFX::HiAppEvent {

enum EventType { FAULT = 1, STATISTIC = 2, SECURITY = 3, BEHAVIOR = 4 };

/// One application event: its domain, name and type, and parameters in the order they were added.
///
/// There is no overload for `const char*`: a literal would be added as the boolean true.
class Event {
public:
    Event(const std::string& domain, const std::string& name, EventType type);

    void AddParam(const std::string& key, bool value);
    void AddParam(const std::string& key, int32_t value);
    void AddParam(const std::string& key, int64_t value);
    void AddParam(const std::string& key, double value);
    void AddParam(const std::string& key, const std::string& value);
    void AddParam(const std::string& key, const std::vector<bool>& value);
    void AddParam(const std::string& key, const std::vector<int32_t>& value);
    void AddParam(const std::string& key, const std::vector<int64_t>& value);
    void AddParam(const std::string& key, const std::vector<double>& value);
    void AddParam(const std::string& key, const std::vector<std::string>& value);

private:
    friend struct StandIn::Internals;
    using Value = std::variant<bool, int32_t, int64_t, double, std::string, std::vector<bool>, std::vector<int32_t>,
                               std::vector<int64_t>, std::vector<double>, std::vector<std::string>>;

    std::string domain_;
    std::string name_;
    EventType type_;
    std::vector<std::pair<std::string, Value>> params_;
};

/// Writes `event` for the registered processors. Returns 0, or another number if it fails. Callable from any thread.
int Write(const Event& event);

}  // namespace OHOS::HiviewDFX::HiAppEvent
