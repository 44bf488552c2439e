#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "app_event.h"
#include "receivers.h"
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

/// Passes on what happens on the device, as it happens and on the thread on which it happens. Thread-safe.
class RecordStream {
public:
    static Receivers<DeviceRecord>& Get();

    /// Check it before making a `DeviceRecord`: most games have no subscriber.
    static bool HasSubscribers() { return !Get().IsEmpty(); }
    static void Publish(DeviceRecord record);
};

}  // namespace StandIn
