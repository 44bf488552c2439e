#pragma once

#include <cstdint>
#include <string>

#include "modal/base_context.h"
#include "napi/records.h"

namespace TAVIK::GAME_PLAYER {

// The requests' contexts: what each carries besides the common part.

struct InitContext : BaseContext {};

struct GetLocalPlayerContext : BaseContext {};

struct BindPlayerContext : BaseContext {
    std::string thirdOpenId;
    std::string teamPlayerId;
};

struct UnbindPlayerContext : BindPlayerContext {};

struct VerifyLocalPlayerContext : BaseContext {
    ThirdUserInfo thirdUserInfo;
};

struct SavePlayerRoleContext : BaseContext {
    RVQPlayerRole playerRole;
};

struct PrePurchaseContext : BaseContext {
    PurchaseParameter purchaseParameter;
};

struct PostPurchaseContext : BaseContext {
    CreatePurchaseResult purchaseResult;
};

struct UnionLoginContext : BaseContext {
    UnionLoginParam unionLoginParam;
};

struct QuickGameLoginContext : BaseContext {
    QuickGameLoginParam quickGameLoginParam;
};

struct LaunchWelcomeBannerContext : BaseContext {
    std::string greetingInfo;
};

struct LaunchCommonPageContext : BaseContext {
    std::string pageInfo;
};

struct LaunchAntiAddictionContext : BaseContext {
    std::string antiAddictionInfo;  // the text of the page
    int32_t playableTime = 0;       // seconds
};

}  // namespace TAVIK::GAME_PLAYER
