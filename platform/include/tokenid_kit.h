#pragma once

#include <cstdint>

namespace OHOS::Security::AccessToken {

class TokenIdKit {
public:
    /// Whether the full token ID `tokenId` belongs to a system application.
    static bool IsSystemAppByFullTokenID(uint64_t tokenId);
};

}  // namespace OHOS::Security::AccessToken
