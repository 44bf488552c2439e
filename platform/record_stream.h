#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "app_event.h"
#include "want_params.h"

namespace StandIn {

/// Something that happened on the device: a call of the game, a modal, an answer, a log line. Its kinds and their
/// fields are those of `DeviceRecord` in device/index.d.ts.
struct DeviceRecord {
    using Value = std::variant<double, std::string, std::vector<std::string>, OHOS::AAFwk::WantParams,
                               OHOS::HiviewDFX::HiAppEvent::Event>;

    const char* kind = "";
    std::vector<std::pair<const char*, Value>> fields;
    int64_t time = 0;  // of the device, in milliseconds; set by `Publish`
};

/// Passes on what happens on the device, as it happens. Thread-safe.
class RecordStream {
public:
    /// Called on the thread on which it happens, one call at a time. Must not call back into this class.
    using Receiver = std::function<void(const DeviceRecord& record)>;

    static void Subscribe(const void* owner, Receiver receiver);
    static void Unsubscribe(const void* owner);
    /// Unsubscribes all.
    static void Reset();

    /// Check it before making a `DeviceRecord`: most games have no subscriber.
    static bool HasSubscribers() { return hasSubscribers_.load(std::memory_order_relaxed); }
    static void Publish(DeviceRecord record);

private:
    static std::atomic<bool> hasSubscribers_;
};

}  // namespace StandIn
