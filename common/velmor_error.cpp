#include "common/velmor_error.h"

#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {

namespace {

struct NamedNumber {
    int32_t number;
    const char* text;
};

// Plain arrays: detached threads read them while the process exits.
constexpr NamedNumber ERROR_MESSAGES[] = {
    {ERROR_SUCCESS, "Success"},
    {ERROR_PERMISSION_DENIED, "Permission denied, non-system app called system api."},
    {ERROR_PARAMETER, "Parameter error."},
    {ERROR_SYSTEM_INTERNAL, "System internal error."},
    {1002000002, "Network connection error."},
    {1002000003, "The Lumora ID is not signed in or not authorized."},
    {1002000004, "User cancels real name authentication or not real name."},
    {1002000005, "The country or region of the signed-in Lumora ID does not support."},
    {ERROR_UNDER_AGE, "The user is under age or not real-name."},
    {1002000007, "The application to which the product belongs is not listed in the specified country."},
    {1002000008, "The LUMORA ID is in the blocklist."},
    {1002000009, "The game account is unavailable for the game."},
    {1002000010, "The playerId is not current player."},
    {ERROR_AGREEMENT_NOT_AGREED, "Agreement not agreed."},
    {1002000012, "The thirdOpenId or teamPlayerId has been bound."},
    {1002000013, "The thirdOpenId and teamPlayerId are not bound."},
    {1002000014, "This interface is not available for this game."},
    {ERROR_PLAYER_INVALID,
     "The current player information is invalid. Execute the login process again to obtain the player "
     "information."},
    {1002000016, "Union login canceled by user."},
    {1002000017, "Illegal application identity."},
};

constexpr NamedNumber apiNameMap[] = {
    {REQUEST_UNKNOWN, "UNKNOWN API"},
    {REQUEST_INIT, "init"},
    {REQUEST_GET_LOCAL_PLAYER, "getLocalPlayer"},
    {REQUEST_SAVE_PLAYER_ROLE, "savePlayerRole"},
    {REQUEST_PRE_PURCHASE, "prePurchase"},
    {REQUEST_POST_PURCHASE, "postPurchase"},
    {REQUEST_LAUNCH_ANTI_ADDICTION, "launchAntiAddiction"},
    {REQUEST_BIND_PLAYER, "bindPlayer"},
    {REQUEST_UNBIND_PLAYER, "unbindPlayer"},
    {REQUEST_VERIFY_LOCAL_PLAYER, "verifyLocalPlayer"},
    {REQUEST_UNION_LOGIN, "unionLogin"},
    {REQUEST_ON, "on"},
    {REQUEST_OFF, "off"},
    {REQUEST_LAUNCH_WELCOME_BANNER, "launchWelcomeBanner"},
    {REQUEST_QUICK_GAME_LOGIN, "quickGameLogin"},
    {REQUEST_LAUNCH_COMMON_PAGE, "launchCommonPage"},
};

template <size_t N>
const char* Find(const NamedNumber (&rows)[N], int32_t number)
{
    for (const NamedNumber& row : rows) {
        if (row.number == number) {
            return row.text;
        }
    }
    return nullptr;
}

}  // namespace

const char* FindErrorMessage(int32_t code)
{
    return Find(ERROR_MESSAGES, code);
}

const char* FindApiName(int32_t requestType)
{
    const char* name = Find(apiNameMap, requestType);
    return name != nullptr ? name : "undefined";
}

bool IsFailureHidden(int32_t requestType)
{
    return requestType == REQUEST_INIT || requestType == REQUEST_SAVE_PLAYER_ROLE;
}

napi_value CreateBusinessError(const napi_env& env, int32_t code, const std::string& message)
{
    const char* fixedText = message.empty() ? FindErrorMessage(code) : nullptr;
    const char* text = fixedText != nullptr ? fixedText : message.c_str();
    GAME_LOGI("CreateBusinessError errCode: %{public}d errMsg: %{public}s", code, text);

    napi_value errorMessage = nullptr;
    if (napi_create_string_utf8(env, text, NAPI_AUTO_LENGTH, &errorMessage) != napi_ok) {
        GAME_LOGE("napi create errorMessage failed");
    }
    napi_value errorCode = nullptr;
    if (napi_create_int32(env, code, &errorCode) != napi_ok) {
        GAME_LOGE("napi create errorCode failed");
    }
    napi_value error = nullptr;
    if (napi_create_error(env, errorCode, errorMessage, &error) != napi_ok) {
        GAME_LOGE("napi create errorCode failed");
    }
    GAME_LOGI("CreateBusinessError exit");
    return error;
}

void ThrowBusinessError(const napi_env& env, int32_t code, const std::string& message)
{
    napi_status status = napi_throw(env, CreateBusinessError(env, code, message));
    GAME_LOGI("ThrowBusinessError napi_throw status %{public}d", status);
}

}  // namespace TAVIK::GAME_PLAYER
