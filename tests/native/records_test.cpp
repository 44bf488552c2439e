// What goes out: the base64 of icons and the JSON of records, and that nothing does for a dead environment.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "common/env_registry.h"
#include "common/velmor_util.h"
#include "napi/game_player_extension_ability.h"
#include "napi/records.h"
#include "records.h"

using namespace TAVIK::GAME_PLAYER;

namespace {

std::string Encode(const std::string& text) {
    return Base64Encode(reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

/// The value of one base64 digit; 64 for any other character.
uint32_t DigitOf(char digit) {
    constexpr std::string_view DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    return static_cast<uint32_t>(std::min(DIGITS.find(digit), DIGITS.size()));
}

/// RFC 4648, section 4, read strictly; "invalid" for what that forbids, bits that are left over included.
std::string Decode(const std::string& text) {
    const size_t end = std::min(text.find('='), text.size());
    if (text.size() % 4 != 0 || text.size() - end > 2 ||
        text.find_first_not_of('=', end) != std::string::npos) {
        return "invalid";
    }
    std::string bytes;
    uint32_t bits = 0;
    int count = 0;
    for (size_t i = 0; i < end; ++i) {
        if (DigitOf(text[i]) > 63) return "invalid";
        bits = bits << 6 | DigitOf(text[i]);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.push_back(static_cast<char>(bits >> count & 0xff));
        }
    }
    return (bits & ((1U << count) - 1)) == 0 ? bytes : "invalid";
}

/// `length` bytes that count up from another one for each length.
std::string SomeBytes(size_t length) {
    std::string bytes(length, '\0');
    std::iota(bytes.begin(), bytes.end(), static_cast<char>(length));
    return bytes;
}

std::string LastMessage() {
    const std::string message = StandIn::LogStore::Get().All().back().message;
    return message.substr(message.find(']') + 1);
}

}  // namespace

TEST(Base64, EncodesTheKnownVectors) {
    for (auto [text, encoded] : {std::pair{"f", "Zg=="},
                                 {"fo", "Zm8="},
                                 {"foo", "Zm9v"},
                                 {"foob", "Zm9vYg=="},
                                 {"fooba", "Zm9vYmE="},
                                 {"foobar", "Zm9vYmFy"}}) {
        EXPECT_EQ(Encode(text), encoded);
    }
    EXPECT_EQ(Encode("\xfb\xff\xbf"), "+/+/");
}

TEST(Base64, IsReadBackFromAnyLengthOnOneLine) {
    for (size_t length = 1; length <= 200; ++length) {
        const std::string bytes = SomeBytes(length);
        const std::string encoded = Encode(bytes);
        ASSERT_EQ(encoded.size(), (length + 2) / 3 * 4) << length;
        ASSERT_EQ(Decode(encoded), bytes) << length;
    }
    const std::string large = SomeBytes((size_t{4} << 20) + 1);
    EXPECT_TRUE(Decode(Encode(large)) == large);
}

TEST(Base64, EncodesNothingToNothing) {
    const uint8_t byte = 0;
    for (auto [data, length] : {std::pair<const uint8_t*, size_t>{nullptr, 0}, {nullptr, 1}, {&byte, 0}}) {
        StandIn::LogStore::Get().Clear();
        EXPECT_EQ(Base64Encode(data, length), "");
        EXPECT_EQ(LastMessage(), "Base64Encode error: invalid input param.");
    }
}

TEST(Records, WriteTheirFieldsByKeyAndTextAsItIs) {
    EXPECT_EQ((RVQPlayerRole{"1", "\u5c0f\u9f99", "3", "\U0001f409", "5", "6", "7"}.ToString()),
              "{\"gamePlayerId\":\"5\",\"roleId\":\"1\",\"roleName\":\"\u5c0f\u9f99\",\"serverId\":\"3\","
              "\"serverName\":\"\U0001f409\",\"teamPlayerId\":\"6\",\"thirdOpenId\":\"7\"}");
    EXPECT_EQ((PurchaseParameter{"1", INT32_MIN, "3", "4"}.ToString()),
              R"({"developerPayload":"3","productId":"1","productType":-2147483648,"reservedInfo":"4"})");
    EXPECT_EQ(QuickGameLoginParam{"1"}.ToString(), R"({"gameAppId":"1"})");
    EXPECT_EQ(CreatePurchaseResult{"{\"a\":\"\\\n\"}"}.ToString(), R"({"purchaseData":"{\"a\":\"\\\n\"}"})");
    EXPECT_EQ((UnionLoginParam{true, 0, {{"Zg==", "b"}, {"", "a"}}, true}.ToString()),
              R"({"loginPanelType":0,"showLoginDialog":true,"thirdAccountInfos":)"
              R"([{"accountName":"b","encodedIcon":"Zg=="},{"accountName":"a","encodedIcon":""}]})");
}

TEST(Records, LeaveOutWhatWasNotGiven) {
    EXPECT_EQ((UnionLoginParam{false, 5, {}, false}.ToString()),
              R"({"showLoginDialog":false,"thirdAccountInfos":[]})");
    for (auto [isRealName, isAdult, ageRange, text] :
         {std::tuple{true, false, false, R"({"isRealName":true,"thirdOpenId":"o"})"},
          {false, true, false, R"({"isAdult":true,"thirdOpenId":"o"})"},
          {false, false, true, R"({"ageRange":9,"thirdOpenId":"o"})"},
          {true, true, true, R"({"ageRange":9,"isAdult":true,"isRealName":true,"thirdOpenId":"o"})"}}) {
        EXPECT_EQ((ThirdUserInfo{"o", true, true, 9, isRealName, isAdult, ageRange}.ToString()), text);
    }
}

// Any call of Node-API would end this process.
TEST(Methods, DoNothingInAnEnvironmentThatIsGone) {
    using Manager = GamePlayerExtensionAbilityManager;
    const std::vector<std::pair<std::string, napi_callback>> methods = {
        {"Init", Manager::Init},
        {"GetLocalPlayer", Manager::GetLocalPlayer},
        {"SavePlayerRole", Manager::SavePlayerRole},
        {"PrePurchase", Manager::PrePurchase},
        {"PostPurchase", Manager::PostPurchase},
        {"BindPlayer", Manager::BindPlayer},
        {"UnbindPlayer", Manager::UnbindPlayer},
        {"VerifyLocalPlayer", Manager::VerifyLocalPlayer},
        {"UnionLogin", Manager::UnionLogin},
        {"LaunchWelcomeBanner", Manager::LaunchWelcomeBanner},
        {"LaunchAntiAddiction", Manager::LaunchAntiAddiction},
        {"QuickGameLogin", Manager::QuickGameLogin},
        {"LaunchCommonPage", Manager::LaunchCommonPage},
        {"ReportEventOperation", Manager::ReportEventOperation},
        {"OnEventCallback", Manager::OnEventCallback},
    };
    for (const auto& gone : {std::shared_ptr<EnvInfo>(), std::make_shared<EnvInfo>()}) {
        gEnvInfo = gone;
        for (const auto& [name, method] : methods) {
            EXPECT_EQ(method(nullptr, nullptr), nullptr);
            EXPECT_EQ(LastMessage(), name + " invalid env");
        }
    }
    gEnvInfo = nullptr;
}
