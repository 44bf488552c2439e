#include <charconv>
#include <utility>

#include "device_context.h"
#include "functions.h"
#include "instance.h"
#include "making.h"
#include "reading.h"

namespace StandIn {
namespace {

struct ContextOptions {
    bool hasWindow = true;
    Modules modules;
};

bool ThrowUnknown(napi_env env, const std::string& name, const std::string& key, const char* possible) {
    return ThrowTypeError(env, name + " has no '" + key + "': possible are " + possible);
}

bool ReadBytes(napi_env env, napi_value value, const std::string& name, Bytes& bytes) {
    napi_typedarray_type type = napi_int8_array;
    size_t length = 0;
    void* data = nullptr;
    if (napi_get_typedarray_info(env, value, &type, &length, &data, nullptr, nullptr) != napi_ok ||
        type != napi_uint8_array) {
        return ThrowUnexpected(env, name, "a Uint8Array", value);
    }
    const auto* first = static_cast<const uint8_t*>(data);
    bytes.assign(first, first + length);
    return true;
}

bool ReadKey(napi_env /*env*/, const std::string& text, const std::string& /*name*/, std::string& key) {
    key = text;
    return true;
}

bool ReadKey(napi_env env, const std::string& text, const std::string& name, uint32_t& key) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, key);
    if (error != std::errc() || stop != end) {
        return ThrowTypeError(
            env, name + " has the key '" + text + "', but keys must be integers from 0 to 4294967295");
    }
    return true;
}

template <typename Key>
bool ReadGroup(napi_env env, napi_value value, const std::string& name, std::map<Key, Bytes>& group) {
    return ForEachProperty(env, value, name, [&](const std::string& text, napi_value bytes) {
        Key key{};
        return ReadKey(env, text, name, key) && ReadBytes(env, bytes, name + "." + text, group[key]);
    });
}

bool ReadResources(napi_env env, napi_value value, const std::string& name, Resources& resources) {
    return ForEachProperty(env, value, name, [&](const std::string& key, napi_value group) {
        const std::string groupName = name + "." + key;
        if (key == "mediaById") return ReadGroup(env, group, groupName, resources.mediaById);
        if (key == "mediaByName") return ReadGroup(env, group, groupName, resources.mediaByName);
        if (key == "rawFiles") return ReadGroup(env, group, groupName, resources.rawFiles);
        return ThrowUnknown(env, name, key, "mediaById, mediaByName and rawFiles");
    });
}

bool ReadModules(napi_env env, napi_value value, Modules& modules) {
    const std::string name = "options.modules";
    return ForEachProperty(env, value, name, [&](const std::string& key, napi_value module) {
        auto& stored = modules[key];
        if (IsOfType(env, module, napi_null)) return true;
        auto resources = std::make_shared<Resources>();
        const bool isRead = ReadResources(env, module, name + "." + key, *resources);
        stored = std::move(resources);
        return isRead;
    });
}

bool ReadOptions(napi_env env, napi_value value, ContextOptions& options) {
    if (IsOfType(env, value, napi_undefined)) return true;
    return ForEachProperty(env, value, "options", [&](const std::string& key, napi_value option) {
        if (key == "window") return ReadFlag(env, option, "options.window", options.hasWindow);
        if (key == "modules") return ReadModules(env, option, options.modules);
        return ThrowUnknown(env, "options", key, "window and modules");
    });
}

template <ContextKind KIND>
napi_value CreateContextWithWindow(napi_env env, napi_callback_info info) {
    ContextOptions options;
    if (!ReadOptions(env, Arguments<1>(env, info)[0], options)) return nullptr;
    const auto window = std::make_shared<Window>(Instance::Of(env).GetEnvironment(), options.hasWindow);
    return MakeContextObject(env, MakeContext(KIND, std::move(options.modules), window));
}

napi_value CreateStageContext(napi_env env, napi_callback_info info) {
    std::string kind;
    const napi_value value = Arguments<1>(env, info)[0];
    if (!ReadText(env, value, "kind", kind)) return nullptr;
    if (kind != "other" && kind != "empty") {
        (void)ThrowUnexpected(env, "kind", "'other' or 'empty'", value);
        return nullptr;
    }
    const auto contextKind = kind == "other" ? ContextKind::OTHER : ContextKind::EMPTY;
    return MakeContextObject(env, MakeContext(contextKind, {}, nullptr));
}

template <void (Window::*CHANGE)()>
napi_value ChangeWindow(napi_env env, napi_callback_info info) {
    const napi_value value = Arguments<1>(env, info)[0];
    const ContextRecord* record = FindContextRecord(env, value);
    if (record == nullptr || record->window == nullptr) {
        (void)ThrowTypeError(
            env,
            "context must come from createAbilityContext or createUIExtensionContext: others have no window");
        return nullptr;
    }
    ((*record->window).*CHANGE)();
    return nullptr;
}

}  // namespace

bool DefineContextFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"createAbilityContext", CreateContextWithWindow<ContextKind::ABILITY>},
                            {"createUIExtensionContext", CreateContextWithWindow<ContextKind::UI_EXTENSION>},
                            {"createStageContext", CreateStageContext},
                            {"showWindow", ChangeWindow<&Window::Show>},
                            {"hideWindow", ChangeWindow<&Window::Hide>}});
}

}  // namespace StandIn
