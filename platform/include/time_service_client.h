#pragma once

#include <cstdint>

#include "refbase.h"

namespace OHOS::MiscServices {

/// The client of the time service. Callable from any thread.
class TimeServiceClient : public RefBase {
public:
    static sptr<TimeServiceClient> GetInstance();

    /// Milliseconds since the device booted, including sleep. Never goes backwards.
    int64_t GetBootTimeMs();
};

}  // namespace OHOS::MiscServices
