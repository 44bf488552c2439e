#include <cstddef>
#include <memory>
#include <utility>

#include "common/js_value_helpers.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "napi/records.h"
#include "resource_manager.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::Global::Resource::ResourceManager;

namespace {

constexpr const char* KEY_ACCOUNTS = "thirdAccountInfos";
constexpr const char* KEY_ICON = "accountIcon";
constexpr int32_t PANEL_WITHOUT_ICONS = 1;  // the only panel that shows accounts without icons
constexpr uint32_t SCREEN_DENSITY = 0;

// The functions whose steps stand here, for the log.
constexpr const char* LIST_READER = "JsObjectToAccountInfoList";
constexpr const char* ICON_READER = "GetEncodedAccountIcon";

/// The bytes of a resource. The length is 0 if it was not found.
struct IconData {
    std::unique_ptr<uint8_t[]> bytes;
    size_t length = 0;
};

std::shared_ptr<ResourceManager> FindResources(const RequestOrigin& origin, const std::string& moduleName) {
    // A UI extension has no ability context, and therefore no module context.
    auto moduleContext =
        origin.abilityContext != nullptr ? origin.abilityContext->CreateModuleContext(moduleName) : nullptr;
    auto resources = moduleContext != nullptr ? moduleContext->GetResourceManager() : nullptr;
    if (resources == nullptr) {
        GAME_LOGE_AS(ICON_READER, "%{public}s is nullptr",
                     moduleContext == nullptr ? "moduleContext" : "resourceManager");
    }
    return resources;
}

void ReadByName(ResourceManager& resources, const std::string& name, IconData& icon) {
    const size_t dot = name.rfind('.');
    if (dot != std::string::npos) {
        (void)resources.GetMediaDataByName(name.c_str() + dot + 1, icon.length, icon.bytes, SCREEN_DENSITY);
        GAME_LOGI_AS(ICON_READER, "GetEncodedAccountIcon media iconName: %{public}s, len: %{public}zu", name.c_str(),
                     icon.length);
    }
    if (icon.length == 0) {
        (void)resources.GetRawFileFromHap(name, icon.length, icon.bytes);
        GAME_LOGI_AS(ICON_READER, "GetEncodedAccountIcon raw iconName: %{public}s, len: %{public}zu", name.c_str(),
                     icon.length);
    }
}

// False if the names cannot be read.
bool ReadByNames(napi_env env, napi_value descriptor, ResourceManager& resources, IconData& icon) {
    napi_value names = nullptr;
    uint32_t count = 0;
    // Read without asking whether it exists: without it, the length cannot be read either.
    if (napi_get_named_property(env, descriptor, "params", &names) != napi_ok ||
        napi_get_array_length(env, names, &count) != napi_ok) {
        return false;
    }
    for (uint32_t i = 0; i < count && icon.length == 0; ++i) {
        napi_value name = nullptr;
        if (napi_get_element(env, names, i, &name) != napi_ok) return false;
        ReadByName(resources, GetStringUtf8(env, name), icon);
    }
    return true;
}

// The icon of one of the game's resource descriptors, in base64; empty if it is not found. It is looked up by the
// descriptor's `id`, then by each name in `params`: as media by the part after the last dot, or as a raw file by the
// whole name.
std::string GetEncodedAccountIcon(napi_env env, napi_value icon, const RequestOrigin& origin) {
    std::string moduleName;
    JsObjectToString(env, icon, "moduleName", MAX_STRING_LENGTH, moduleName);
    if (moduleName.empty()) {
        GAME_LOGE("GetEncodedAccountIcon moduleName is empty");
        return {};
    }
    auto resources = FindResources(origin, moduleName);
    if (resources == nullptr) return {};
    int32_t id = 0;
    JsObjectToInt(env, icon, "id", id);
    IconData data;
    (void)resources->GetMediaDataById(static_cast<uint32_t>(id), data.length, data.bytes, SCREEN_DENSITY);
    if (data.length == 0 && !ReadByNames(env, icon, *resources, data)) return {};
    GAME_LOGI("GetEncodedAccountIcon id:%{public}d, len:%{public}zu, moduleName:%{public}s", id, data.length,
              moduleName.c_str());
    return Base64Encode(data.bytes.get(), data.length);
}

// False if the account must be left out because it has no icon.
bool ReadIcon(napi_env env, napi_value element, const RequestOrigin& origin, ThirdAccountInfo& account) {
    if (!HasProperty(env, element, KEY_ICON)) {
        GAME_LOGW_AS(LIST_READER, "JsObjectToAccountInfoList has not accountIcon property");
        return false;
    }
    GAME_LOGI_AS(LIST_READER, "JsObjectToAccountInfoList has accountIcon property, accountName=%{public}s",
                 account.accountName.c_str());
    napi_value icon = nullptr;
    (void)napi_get_named_property(env, element, KEY_ICON, &icon);
    account.encodedIcon = GetEncodedAccountIcon(env, icon, origin);
    if (account.encodedIcon.empty()) {
        GAME_LOGW_AS(LIST_READER, "JsObjectToAccountInfoList icon size is 0");
        return false;
    }
    return true;
}

void ReadAccount(napi_env env, napi_value element, const RequestOrigin& origin, UnionLoginParam& login) {
    ThirdAccountInfo account;
    JsObjectToString(env, element, "accountName", MAX_STRING_LENGTH, account.accountName);
    if (login.loginPanelType == PANEL_WITHOUT_ICONS || ReadIcon(env, element, origin, account)) {
        login.thirdAccountInfos.push_back(std::move(account));
    }
}

}  // namespace

void JsObjectToAccountInfoList(napi_env env, napi_value object, const RequestOrigin& origin, UnionLoginParam& login) {
    if (!HasProperty(env, object, KEY_ACCOUNTS)) {
        GAME_LOGE("JsObjectToAccountInfoList %{public}s not existed", KEY_ACCOUNTS);
        return;
    }
    napi_value accounts = nullptr;
    (void)napi_get_named_property(env, object, KEY_ACCOUNTS, &accounts);
    bool isArray = false;
    if (napi_is_array(env, accounts, &isArray) != napi_ok || !isArray) {
        GAME_LOGE("JsObjectToAccountInfoList thirdAccountInfos not array");
        return;
    }
    uint32_t length = 0;
    (void)napi_get_array_length(env, accounts, &length);
    {
        HandleScope scope(env);
        // Goes on after a getter has thrown: the reads that follow fail, and the exception ends the call.
        for (uint32_t i = 0; i < length; ++i) {
            napi_value element = nullptr;
            (void)napi_get_element(env, accounts, i, &element);
            ReadAccount(env, element, origin, login);
        }
    }
    GAME_LOGI("JsObjectToAccountInfoList end, length=%{public}d", static_cast<int>(length));
}

}  // namespace TAVIK::GAME_PLAYER
