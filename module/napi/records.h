#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "modal/base_context.h"
#include "napi/native_api.h"

namespace TAVIK::GAME_PLAYER {

/// What a game passes to the extension. `VisitFields` visits a record's fields with their keys, in the order in which
/// they are read from a JS object. A field with a third argument is sent only if the game gave it.
template <typename Derived>
struct Record {
    /// Reads the fields on `env`'s JS thread; false if the value is not an object. Arrays and dates are objects,
    /// functions and `null` are not. A field that is missing keeps its value; with the wrong type, it keeps it or
    /// becomes empty.
    bool Read(napi_env env, napi_value object);

    /// Gives compact JSON (RFC 8259) in UTF-8, with sorted keys, and moves the strings.
    std::string ToString() &&;
};

/// What a game knows about its own account.
struct ThirdUserInfo : Record<ThirdUserInfo> {
    std::string thirdOpenId;  // the account's ID in the game
    bool isRealName = false;
    bool isAdult = false;
    int32_t ageRange = 0;  // a code of the extension, passed through
    bool isRealNameSet = false;
    bool isAdultSet = false;
    bool ageRangeSet = false;

    template <typename Visitor>
    void VisitFields(Visitor visit) {
        visit("thirdOpenId", thirdOpenId);
        visit("isRealName", isRealName, isRealNameSet);
        visit("isAdult", isAdult, isAdultSet);
        visit("ageRange", ageRange, ageRangeSet);
    }
    bool Read(napi_env env, napi_value object);  // logs the fields that the game gave
};

/// The role that a player plays, and the IDs that it belongs to.
struct RVQPlayerRole : Record<RVQPlayerRole> {
    std::string roleId;
    std::string roleName;
    std::string serverId;
    std::string serverName;
    std::string gamePlayerId;
    std::string teamPlayerId;
    std::string thirdOpenId;

    template <typename Visitor>
    void VisitFields(Visitor visit) {
        visit("roleId", roleId);
        visit("roleName", roleName);
        visit("serverId", serverId);
        visit("serverName", serverName);
        visit("gamePlayerId", gamePlayerId);
        visit("teamPlayerId", teamPlayerId);
        visit("thirdOpenId", thirdOpenId);
    }
};

/// A product to buy.
struct PurchaseParameter : Record<PurchaseParameter> {
    std::string productId;
    int32_t productType = 0;  // the kind of product in the catalogue, passed through
    std::string developerPayload;
    std::string reservedInfo;

    template <typename Visitor>
    void VisitFields(Visitor visit) {
        visit("productId", productId);
        visit("productType", productType);
        visit("developerPayload", developerPayload);
        visit("reservedInfo", reservedInfo);
    }
};

/// The data of a purchase, as the game received it.
struct CreatePurchaseResult : Record<CreatePurchaseResult> {
    std::string purchaseData;

    template <typename Visitor>
    void VisitFields(Visitor visit) {
        visit("purchaseData", purchaseData);
    }
};

/// The mini-game to log in to.
struct QuickGameLoginParam : Record<QuickGameLoginParam> {
    std::string gameAppId;

    template <typename Visitor>
    void VisitFields(Visitor visit) {
        visit("gameAppId", gameAppId);
    }
};

/// One of the game's own accounts, for the login panel.
struct ThirdAccountInfo {
    std::string encodedIcon;  // base64, from the game's resources
    std::string accountName;
};

/// A joint login.
struct UnionLoginParam : Record<UnionLoginParam> {
    bool showLoginDialog = false;
    int32_t loginPanelType = 0;
    std::vector<ThirdAccountInfo> thirdAccountInfos;  // read one by one
    bool hasLoginPanelType = false;

    template <typename Visitor>
    void VisitFields(Visitor visit) {
        visit("showLoginDialog", showLoginDialog);
        visit("loginPanelType", loginPanelType, hasLoginPanelType);
    }
    std::string ToString() &&;  // efficient even for icons of many megabytes
};

/// Reads the accounts of a joint login into `login`, with their icons from the game's resources. An account that cannot
/// be shown, or whose icon cannot be read, is left out. On `env`'s JS thread.
void JsObjectToAccountInfoList(napi_env env, napi_value object, const RequestOrigin& origin, UnionLoginParam& login);

}  // namespace TAVIK::GAME_PLAYER
