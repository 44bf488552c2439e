#include "napi/records.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <streambuf>
#include <utility>

#include "common/js_value_helpers.h"
#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {

using nlohmann::json;

namespace {

// Reads the fields of a record from a JS object.
class FieldReader {
public:
    FieldReader(napi_env env, napi_value object) : env_(env), object_(object) {}

    void operator()(const char* name, std::string& field) const {
        JsObjectToString(env_, object_, name, MAX_STRING_LENGTH, field);
    }
    void operator()(const char* name, int32_t& field) const { JsObjectToInt(env_, object_, name, field); }
    void operator()(const char* name, bool& field) const { JsObjectToBool(env_, object_, name, field); }

    // An optional field is set if it was given, even with the wrong type. Reading it asks for it once more: a
    // proxy of the game sees both questions.
    template <typename Field>
    void operator()(const char* name, Field& field, bool& isSet) const {
        if (!HasProperty(env_, object_, name)) return;
        (*this)(name, field);
        isSet = true;
    }

private:
    napi_env env_;
    napi_value object_;
};

template <typename Record>
bool ReadFields(napi_env env, napi_value object, Record& record) {
    if (TypeOf(env, object) != napi_object) return false;
    record.VisitFields(FieldReader(env, object));
    return true;
}

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

bool ThirdUserInfo::Read(napi_env env, napi_value object) {
    if (TypeOf(env, object) != napi_object) return false;
    const FieldReader read(env, object);
    VisitFields([&read](const char* name, auto& field, auto&... isSet) {
        read(name, field, isSet...);
        if ((isSet || ...)) GAME_LOGI_AS("ParseVerifyLocalPlayerReq", "has %{public}s field", name);
    });
    return true;
}
std::string ThirdUserInfo::ToString() && { return ToJson(*this).dump(); }

bool RVQPlayerRole::Read(napi_env env, napi_value object) { return ReadFields(env, object, *this); }
std::string RVQPlayerRole::ToString() && { return ToJson(*this).dump(); }

bool PurchaseParameter::Read(napi_env env, napi_value object) { return ReadFields(env, object, *this); }
std::string PurchaseParameter::ToString() && { return ToJson(*this).dump(); }

bool CreatePurchaseResult::Read(napi_env env, napi_value object) { return ReadFields(env, object, *this); }
std::string CreatePurchaseResult::ToString() && { return ToJson(*this).dump(); }

bool QuickGameLoginParam::Read(napi_env env, napi_value object) { return ReadFields(env, object, *this); }
std::string QuickGameLoginParam::ToString() && { return ToJson(*this).dump(); }

bool UnionLoginParam::Read(napi_env env, napi_value object) { return ReadFields(env, object, *this); }

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
