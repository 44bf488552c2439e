#pragma once

#include <cstdint>

#include "refbase.h"

namespace OHOS::MiscServices {

/// The client of the time service. Callable from any thread.
class TimeServiceClient : public RefBase {
public:
    static sptr<TimeServiceClient> GetInstance();

    /// Milliseconds since the device booted, sleep included; never goes back.
    int64_t GetBootTimeMs();
};

}  // namespace OHOS::MiscServices
