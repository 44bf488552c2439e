#pragma once

#include <cstdint>

namespace OHOS {

class IPCSkeleton {
public:
    /// The full token ID of the calling application; outside an IPC call, that of this process.
    static uint64_t GetCallingFullTokenID();
};

}  // namespace OHOS
