#pragma once

#include <cstdint>

namespace OHOS {

class IPCSkeleton {
public:
    /// The full token identifier of the calling application: of this process outside an IPC call.
    static uint64_t GetCallingFullTokenID();
};

}  // namespace OHOS
