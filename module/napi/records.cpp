#include "napi/records.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <streambuf>
#include <utility>

namespace TAVIK::GAME_PLAYER {

using nlohmann::json;

namespace {

/// A stream buffer that appends to a string.
class StringSink final : public std::streambuf {
public:
    explicit StringSink(std::string& text) : text_(text) {}

protected:
    int_type overflow(int_type character) override {
        text_.push_back(static_cast<char>(character));
        return character;
    }
    std::streamsize xsputn(const char* characters, std::streamsize count) override {
        text_.append(characters, static_cast<size_t>(count));
        return count;
    }

private:
    std::string& text_;
};

// Assigns members one by one, because the library copies the elements of an initialiser list.
template <typename Record>
json ToJson(Record& record) {
    json object;
    record.VisitFields([&object](const char* key, auto& value, bool isSet = true) {
        if (isSet) object[key] = std::move(value);
    });
    return object;
}

}  // namespace

template <typename Record>
std::string WriteJson(Record& record) {
    return ToJson(record).dump();
}
template std::string WriteJson(ThirdUserInfo& record);
template std::string WriteJson(RVQPlayerRole& record);
template std::string WriteJson(PurchaseParameter& record);
template std::string WriteJson(CreatePurchaseResult& record);
template std::string WriteJson(QuickGameLoginParam& record);

// Writes account by account, so that each icon is freed before the next one is written.
std::string UnionLoginParam::ToString() && {
    constexpr size_t FRAME_LENGTH = 80;  // of the object, without its accounts
    constexpr size_t ACCOUNT_FRAME_LENGTH = 40;
    size_t length = FRAME_LENGTH;
    for (const ThirdAccountInfo& info : thirdAccountInfos) {
        length += info.encodedIcon.size() + info.accountName.size() + ACCOUNT_FRAME_LENGTH;
    }
    std::string text;
    text.reserve(length);  // a long string would be copied each time its memory doubles
    StringSink sink(text);
    std::ostream out(&sink);
    json object = ToJson(*this);
    object["thirdAccountInfos"] = json::array();  // the last key
    out << object;
    text.resize(text.rfind(']'));
    for (ThirdAccountInfo& info : thirdAccountInfos) {
        if (text.back() != '[') text.push_back(',');
        json account = ToJson(info);
        account["encodedIcon"] = std::move(info.encodedIcon);
        out << account;
    }
    text += "]}";
    return text;
}

}  // namespace TAVIK::GAME_PLAYER
