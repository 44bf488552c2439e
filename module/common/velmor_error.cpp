#include "common/velmor_error.h"

#include "common/js_value_helpers.h"
#include "common/velmor_log.h"

namespace TAVIK::GAME_PLAYER {
namespace {

struct ErrorRow {
    int32_t code;
    const char* message;
};

// A plain array: detached threads read it while the process exits.
constexpr ErrorRow ERROR_MESSAGES[] = {
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

const char* ChooseText(int32_t code, const std::string& message) {
    const char* fixedText = message.empty() ? FindErrorMessage(code) : nullptr;
    return fixedText != nullptr ? fixedText : message.c_str();
}

void ThrowError(napi_env env, napi_value error) {
    const napi_status status = napi_throw(env, error);
    GAME_LOGI_AS("ThrowBusinessError", "ThrowBusinessError napi_throw status %{public}d", status);
}

}  // namespace

const char* FindErrorMessage(int32_t code) {
    for (const ErrorRow& row : ERROR_MESSAGES) {
        if (row.code == code) return row.message;
    }
    return nullptr;
}

napi_value CreateBusinessError(const napi_env& env, int32_t code, const std::string& message) {
    const char* text = ChooseText(code, message);
    GAME_LOGI("CreateBusinessError errCode: %{public}d errMsg: %{public}s", code, text);

    napi_value errorMessage = nullptr;
    if (napi_create_string_utf8(env, text, NAPI_AUTO_LENGTH, &errorMessage) != napi_ok) {
        GAME_LOGE("napi create errorMessage failed");
    }
    napi_value errorCode = nullptr;
    if (napi_create_int32(env, code, &errorCode) != napi_ok) GAME_LOGE("napi create errorCode failed");
    napi_value error = nullptr;
    const napi_status status = napi_create_error(env, errorCode, errorMessage, &error);
    if (status != napi_ok) GAME_LOGE("napi create errorCode failed");  // the text of both failures
    GAME_LOGI("CreateBusinessError exit");
    return error;
}

// Throwing an error and catching it may work in an environment that cannot create one.
napi_value ObtainBusinessError(napi_env env, int32_t code, const std::string& message) {
    napi_value error = CreateBusinessError(env, code, message);
    if (error == nullptr && napi_throw_error(env, nullptr, ChooseText(code, message)) == napi_ok &&
        napi_get_and_clear_last_exception(env, &error) == napi_ok) {
        (void)SetIntProperty(env, error, "code", code);
    }
    return error;
}

void ThrowBusinessError(const napi_env& env, int32_t code, const std::string& message) {
    ThrowError(env, CreateBusinessError(env, code, message));
}

void ThrowBusinessError(const std::shared_ptr<EnvInfo>& envInfo, int32_t code, const std::string& message) {
    if (!IsValidEnv(envInfo)) return;
    napi_value error = CreateBusinessError(envInfo->env, code, message);
    if (IsValidEnv(envInfo)) ThrowError(envInfo->env, error);
}

}  // namespace TAVIK::GAME_PLAYER
