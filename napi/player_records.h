#ifndef NAPI_PLAYER_RECORDS_H
#define NAPI_PLAYER_RECORDS_H

#include <cstdint>
#include <string>

#include "napi/base_context.h"

namespace TAVIK::GAME_PLAYER {

/// What a game knows of its own account. A fact counts only if the game gave it.
struct ThirdUserInfo {
    std::string thirdOpenId;  // the account's id in the game
    bool isRealName = false;
    bool isAdult = false;
    int32_t ageRange = 0;  // a code of the extension's, passed through
    bool isRealNameSet = false;
    bool isAdultSet = false;
    bool ageRangeSet = false;

    /// Compact JSON in UTF-8, keys in order, without the facts that were not given.
    std::string ToString() const;
};

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

}  // namespace TAVIK::GAME_PLAYER

#endif
