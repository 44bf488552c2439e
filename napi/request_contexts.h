#ifndef NAPI_REQUEST_CONTEXTS_H
#define NAPI_REQUEST_CONTEXTS_H

#include <cstdint>
#include <string>

#include "napi/base_context.h"
#include "napi/records.h"

namespace TAVIK::GAME_PLAYER {

// The requests' contexts: what each carries besides the common part.

struct InitContext : BaseContext {
    using BaseContext::BaseContext;
};

struct GetLocalPlayerContext : BaseContext {
    using BaseContext::BaseContext;
};

struct BindPlayerContext : BaseContext {
    using BaseContext::BaseContext;

    std::string thirdOpenId;
    std::string teamPlayerId;
};

struct UnbindPlayerContext : BindPlayerContext {
    using BindPlayerContext::BindPlayerContext;
};

struct VerifyLocalPlayerContext : BaseContext {
    using BaseContext::BaseContext;

    ThirdUserInfo thirdUserInfo;
};

struct SavePlayerRoleContext : BaseContext {
    using BaseContext::BaseContext;

    RVQPlayerRole playerRole;
};

struct PrePurchaseContext : BaseContext {
    using BaseContext::BaseContext;

    PurchaseParameter purchaseParameter;
};

struct PostPurchaseContext : BaseContext {
    using BaseContext::BaseContext;

    CreatePurchaseResult purchaseResult;
};

struct UnionLoginContext : BaseContext {
    using BaseContext::BaseContext;

    UnionLoginParam unionLoginParam;
};

struct QuickGameLoginContext : BaseContext {
    using BaseContext::BaseContext;

    QuickGameLoginParam quickGameLoginParam;
};

struct LaunchWelcomeBannerContext : BaseContext {
    using BaseContext::BaseContext;

    std::string greetingInfo;
};

struct LaunchCommonPageContext : BaseContext {
    using BaseContext::BaseContext;

    std::string pageInfo;
};

struct LaunchAntiAddictionContext : BaseContext {
    using BaseContext::BaseContext;

    std::string antiAddictionInfo;  // the text of the page
    int32_t playableTime = 0;       // seconds
};

}  // namespace TAVIK::GAME_PLAYER

#endif
