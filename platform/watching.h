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

/// Something that happened on the device: a call of the game, a modal, an answer, a log line. Its kinds and
/// their fields are those of `DeviceRecord` in device/index.d.ts.
struct Happening {
    using Value = std::variant<double, std::string, std::vector<std::string>, OHOS::AAFwk::WantParams,
                               OHOS::HiviewDFX::HiAppEvent::Event>;

    const char* kind = "";
    std::vector<std::pair<const char*, Value>> fields;
    int64_t time = 0;  // of the device, in milliseconds; set by `Tell`
};

/// Tells watchers what happens on the device, as it happens. Thread-safe.
class Watching {
public:
    /// Called on the thread on which it happens, one call at a time. Must not call back into this class.
    using Receiver = std::function<void(const Happening& happening)>;

    static void Begin(const void* owner, Receiver receiver);
    static void End(const void* owner);

    /// Whether anybody watches. Check it before making a `Happening`: nobody watches most games.
    static bool IsOn() { return isOn_.load(std::memory_order_relaxed); }
    static void Tell(Happening happening);

private:
    static std::atomic<bool> isOn_;  // whether there are receivers
};

}  // namespace StandIn
