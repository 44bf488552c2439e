#pragma once

#include <cstdint>
#include <string>

#include "common/js_value_helpers.h"
#include "modal/base_context.h"
#include "napi/records.h"

namespace TAVIK::GAME_PLAYER {

// The contexts of the requests: the parameters of each.

struct InitContext : BaseContext {};
struct GetLocalPlayerContext : BaseContext {};
struct BindPlayerContext : BaseContext {
    std::string thirdOpenId;
    std::string teamPlayerId;
};
struct UnbindPlayerContext : BindPlayerContext {};
struct VerifyLocalPlayerContext : BaseContext {
    ThirdUserInfo thirdUserInfo;
};
struct SavePlayerRoleContext : BaseContext {
    RVQPlayerRole playerRole;
};
struct PrePurchaseContext : BaseContext {
    PurchaseParameter purchaseParameter;
};
struct PostPurchaseContext : BaseContext {
    CreatePurchaseResult purchaseResult;
};
struct UnionLoginContext : BaseContext {
    UnionLoginParam unionLoginParam;
};
struct QuickGameLoginContext : BaseContext {
    QuickGameLoginParam quickGameLoginParam;
};
struct LaunchWelcomeBannerContext : BaseContext {
    std::string greetingInfo;
};
struct LaunchCommonPageContext : BaseContext {
    std::string pageInfo;
};
struct LaunchAntiAddictionContext : BaseContext {
    std::string antiAddictionInfo;  // the text of the page
    int32_t playableTime = 0;       // in seconds
};

/// Reads the fields of a record from a JS object. A field that is missing or has the wrong type keeps its
/// value, or becomes empty. On `env`'s JS thread.
class FieldReader {
public:
    FieldReader(napi_env env, napi_value object) : env_(env), object_(object) {}

    void operator()(const char* name, std::string& field) const {
        JsObjectToString(env_, object_, name, MAX_STRING_LENGTH, field);
    }
    void operator()(const char* name, int32_t& field) const { JsObjectToInt(env_, object_, name, field); }
    void operator()(const char* name, bool& field) const { JsObjectToBool(env_, object_, name, field); }

    /// For an optional field: sets `isSet` if the field was given, even with the wrong type.
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

/// Reads a parameter of a request. For a record: false if `value` is not an object. Arrays and dates are
/// objects, functions and `null` are not. A string is read like `GetStringUtf8`. On `env`'s JS thread.
template <typename Record>
bool ReadParameter(napi_env env, napi_value value, Record& record) {
    if (TypeOf(env, value) != napi_object) return false;
    record.VisitFields(FieldReader(env, value));
    return true;
}
inline bool ReadParameter(napi_env env, napi_value value, std::string& string) {
    string = GetStringUtf8(env, value);
    return true;
}

/// Reads the accounts of a joint login, with their icons from the game's resources. An account that cannot be
/// shown, or whose icon cannot be read, is left out. On `env`'s JS thread.
void JsObjectToAccountInfoList(napi_env env, napi_value object, UnionLoginContext& context);

}  // namespace TAVIK::GAME_PLAYER
