#include "napi/records.h"

#include <nlohmann/json.hpp>
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

    // An optional field is set if it was given, even with the wrong type. Reading it asks for it once more: a proxy of
    // the game sees both questions.
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

// Assigns members one by one, because the library copies the elements of an initialiser list.
template <typename Fields>
json ToJson(Fields& record) {
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

template <typename Derived>
bool Record<Derived>::Read(napi_env env, napi_value object) {
    if (TypeOf(env, object) != napi_object) return false;
    static_cast<Derived*>(this)->VisitFields(FieldReader(env, object));
    return true;
}

template <typename Derived>
std::string Record<Derived>::ToString() && {
    return ToJson(static_cast<Derived&>(*this)).dump();
}

template struct Record<RVQPlayerRole>;
template struct Record<PurchaseParameter>;
template struct Record<CreatePurchaseResult>;
template struct Record<QuickGameLoginParam>;
template std::string Record<ThirdUserInfo>::ToString() &&;
template bool Record<UnionLoginParam>::Read(napi_env env, napi_value object);

// Icons are written as they are: JSON escapes no character of base64. Each is freed before the next one is written.
std::string UnionLoginParam::ToString() && {
    constexpr size_t FRAME_LENGTH = 80;  // of the object, without its accounts
    constexpr size_t ACCOUNT_FRAME_LENGTH = 40;
    size_t length = FRAME_LENGTH;
    for (const ThirdAccountInfo& info : thirdAccountInfos) {
        length += info.encodedIcon.size() + info.accountName.size() + ACCOUNT_FRAME_LENGTH;
    }
    json object = ToJson(*this);
    object["thirdAccountInfos"] = json::array();  // the last key
    std::string text;
    text.reserve(length);  // a long string would be copied each time its memory doubles
    text += object.dump();
    text.resize(text.rfind(']'));
    for (ThirdAccountInfo& info : thirdAccountInfos) {
        if (text.back() != '[') text += ',';
        text += R"({"accountName":)" + json(std::move(info.accountName)).dump() + R"(,"encodedIcon":")";
        text += std::exchange(info.encodedIcon, {});
        text += R"("})";
    }
    text += "]}";
    return text;
}

}  // namespace TAVIK::GAME_PLAYER
