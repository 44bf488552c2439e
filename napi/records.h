#ifndef NAPI_RECORDS_H
#define NAPI_RECORDS_H

#include <cstdint>
#include <string>
#include <vector>

namespace TAVIK::GAME_PLAYER {

// What a game passes to the extension. Each record is read from a JS object, leniently: what is missing or of
// the wrong type stays empty. `ToString` makes compact JSON (RFC 8259) in UTF-8, with the keys in order; it
// hands the record's texts over to the JSON, and so is called once.

/// What a game knows of its own account. A fact counts only if the game gave it.
struct ThirdUserInfo {
    std::string thirdOpenId;  // the account's id in the game
    bool isRealName = false;
    bool isAdult = false;
    int32_t ageRange = 0;  // a code of the extension's, passed through
    bool isRealNameSet = false;
    bool isAdultSet = false;
    bool ageRangeSet = false;

    std::string ToString() &&;
};

/// The role that a player plays, and the identifiers that it belongs to.
struct RVQPlayerRole {
    std::string roleId;
    std::string roleName;
    std::string serverId;
    std::string serverName;
    std::string gamePlayerId;
    std::string teamPlayerId;
    std::string thirdOpenId;

    std::string ToString() &&;
};

/// A product to be bought.
struct PurchaseParameter {
    std::string productId;
    int32_t productType = 0;  // the catalogue's kind of product, passed through
    std::string developerPayload;
    std::string reservedInfo;

    std::string ToString() &&;
};

/// The data of a purchase, as the game received them.
struct CreatePurchaseResult {
    std::string purchaseData;

    std::string ToString() &&;
};

/// The mini-game to log in to.
struct QuickGameLoginParam {
    std::string gameAppId;

    std::string ToString() &&;
};

/// One of the game's own accounts, as the login panel shows it.
struct ThirdAccountInfo {
    std::string encodedIcon;  // base64
    std::string accountName;
};

/// A joint login.
struct UnionLoginParam {
    bool showLoginDialog = false;
    int32_t loginPanelType = 0;
    std::vector<ThirdAccountInfo> thirdAccountInfos;
    bool hasLoginPanelType = false;  // the game gave one

    std::string ToString() &&;
};

}  // namespace TAVIK::GAME_PLAYER

#endif
