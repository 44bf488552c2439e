#include "napi/records.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <streambuf>
#include <utility>

namespace TAVIK::GAME_PLAYER {

using nlohmann::json;

namespace {

/// Where a stream puts its text: at the end of a string.
class StringSink final : public std::streambuf
{
public:
    explicit StringSink(std::string& text) : text_(text) {}

protected:
    int_type overflow(int_type character) override
    {
        text_.push_back(static_cast<char>(character));
        return character;
    }
    std::streamsize xsputn(const char* characters, std::streamsize count) override
    {
        text_.append(characters, count);
        return count;
    }

private:
    std::string& text_;
};

// What `dump` makes, in one piece of memory if `length` is near the text's: for texts of many megabytes,
// which would be copied each time it doubles.
std::string DumpLong(const json& object, size_t length)
{
    std::string text;
    text.reserve(length);
    StringSink sink(text);
    std::ostream(&sink) << object;
    return text;
}

}  // namespace

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
    constexpr size_t FRAME_LENGTH = 80;  // of the object, without its accounts
    constexpr size_t ACCOUNT_FRAME_LENGTH = 40;
    size_t length = FRAME_LENGTH;
    json accounts = json::array();
    for (ThirdAccountInfo& info : thirdAccountInfos) {
        length += info.encodedIcon.size() + info.accountName.size() + ACCOUNT_FRAME_LENGTH;
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
    return DumpLong(object, length);
}

}  // namespace TAVIK::GAME_PLAYER
