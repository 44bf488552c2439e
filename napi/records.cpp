#include "napi/records.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace TAVIK::GAME_PLAYER {

using nlohmann::json;

// Members are assigned one by one: the library copies what an initialiser list holds.

std::string ThirdUserInfo::ToString() &&
{
    json object;
    object["thirdOpenId"] = std::move(thirdOpenId);
    if (isRealNameSet) {
        object["isRealName"] = isRealName;
    }
    if (isAdultSet) {
        object["isAdult"] = isAdult;
    }
    if (ageRangeSet) {
        object["ageRange"] = ageRange;
    }
    return object.dump();
}

std::string RVQPlayerRole::ToString() &&
{
    json object;
    object["roleId"] = std::move(roleId);
    object["roleName"] = std::move(roleName);
    object["serverId"] = std::move(serverId);
    object["serverName"] = std::move(serverName);
    object["gamePlayerId"] = std::move(gamePlayerId);
    object["teamPlayerId"] = std::move(teamPlayerId);
    object["thirdOpenId"] = std::move(thirdOpenId);
    return object.dump();
}

std::string PurchaseParameter::ToString() &&
{
    json object;
    object["productId"] = std::move(productId);
    object["productType"] = productType;
    object["developerPayload"] = std::move(developerPayload);
    object["reservedInfo"] = std::move(reservedInfo);
    return object.dump();
}

std::string CreatePurchaseResult::ToString() &&
{
    json object;
    object["purchaseData"] = std::move(purchaseData);
    return object.dump();
}

std::string QuickGameLoginParam::ToString() &&
{
    json object;
    object["gameAppId"] = std::move(gameAppId);
    return object.dump();
}

std::string UnionLoginParam::ToString() &&
{
    json accounts = json::array();
    for (ThirdAccountInfo& info : thirdAccountInfos) {
        json account;
        account["encodedIcon"] = std::move(info.encodedIcon);
        account["accountName"] = std::move(info.accountName);
        accounts.push_back(std::move(account));
    }
    json object;
    object["showLoginDialog"] = showLoginDialog;
    if (hasLoginPanelType) {
        object["loginPanelType"] = loginPanelType;
    }
    object["thirdAccountInfos"] = std::move(accounts);
    return object.dump();
}

}  // namespace TAVIK::GAME_PLAYER
