#include "napi/account_icon.h"

#include <cstddef>
#include <memory>

#include "common/js_value_helpers.h"
#include "common/velmor_log.h"
#include "common/velmor_util.h"
#include "resource_manager.h"

namespace TAVIK::GAME_PLAYER {

using OHOS::Global::Resource::ResourceManager;

namespace {

constexpr uint32_t SCREEN_DENSITY = 0;

/// The bytes of a resource; a length of 0 means that it was not found.
struct IconData {
    std::unique_ptr<uint8_t[]> bytes;
    size_t length = 0;
};

std::shared_ptr<ResourceManager> FindResources(const BaseContext& context, const std::string& moduleName)
{
    // A caller that is a UI extension has no ability context, and so no module context.
    auto moduleContext =
        context.abilityContext != nullptr ? context.abilityContext->CreateModuleContext(moduleName) : nullptr;
    if (moduleContext == nullptr) {
        GAME_LOGE("%{public}s is nullptr", "moduleContext");
        return nullptr;
    }
    auto resourceManager = moduleContext->GetResourceManager();
    if (resourceManager == nullptr) {
        GAME_LOGE("%{public}s is nullptr", "resourceManager");
    }
    return resourceManager;
}

void ReadByName(ResourceManager& resources, const std::string& name, IconData& icon)
{
    const size_t dot = name.rfind('.');
    if (dot != std::string::npos) {
        (void)resources.GetMediaDataByName(name.c_str() + dot + 1, icon.length, icon.bytes, SCREEN_DENSITY);
        GAME_LOGI("GetEncodedAccountIcon media iconName: %{public}s, len: %{public}zu", name.c_str(),
                  icon.length);
    }
    if (icon.length == 0) {
        (void)resources.GetRawFileFromHap(name, icon.length, icon.bytes);
        GAME_LOGI("GetEncodedAccountIcon raw iconName: %{public}s, len: %{public}zu", name.c_str(),
                  icon.length);
    }
}

// False if the names cannot be had.
bool ReadByNames(napi_env env, napi_value descriptor, ResourceManager& resources, IconData& icon)
{
    napi_value names = nullptr;
    uint32_t count = 0;
    if (napi_get_named_property(env, descriptor, "params", &names) != napi_ok ||
        napi_get_array_length(env, names, &count) != napi_ok) {
        return false;
    }
    for (uint32_t i = 0; i < count && icon.length == 0; ++i) {
        napi_value name = nullptr;
        if (napi_get_element(env, names, i, &name) != napi_ok) {
            return false;
        }
        ReadByName(resources, GetStringUtf8(env, name), icon);
    }
    return true;
}

}  // namespace

std::string GetEncodedAccountIcon(napi_env env, napi_value icon, const BaseContext& context)
{
    std::string moduleName;
    JsObjectToString(env, icon, "moduleName", MAX_STRING_LENGTH, moduleName);
    if (moduleName.empty()) {
        GAME_LOGE("GetEncodedAccountIcon moduleName is empty");
        return {};
    }
    auto resources = FindResources(context, moduleName);
    if (resources == nullptr) {
        return {};
    }
    int32_t id = 0;
    JsObjectToInt(env, icon, "id", id);
    IconData data;
    (void)resources->GetMediaDataById(static_cast<uint32_t>(id), data.length, data.bytes, SCREEN_DENSITY);
    if (data.length == 0 && !ReadByNames(env, icon, *resources, data)) {
        return {};
    }
    GAME_LOGI("GetEncodedAccountIcon id:%{public}d, len:%{public}zu, moduleName:%{public}s", id, data.length,
              moduleName.c_str());
    return Base64Encode(data.bytes.get(), data.length);
}

}  // namespace TAVIK::GAME_PLAYER
