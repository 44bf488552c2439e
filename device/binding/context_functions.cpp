#include <utility>

#include "device_context.h"
#include "functions.h"
#include "instance.h"

namespace StandIn {
namespace {

Bytes ReadBytes(napi_env env, napi_value value) {
    size_t length = 0;
    void* data = nullptr;
    (void)napi_get_typedarray_info(env, value, nullptr, &length, &data, nullptr, nullptr);
    const auto* first = static_cast<const uint8_t*>(data);
    return Bytes(first, first + length);
}

// From an array of pairs [key, bytes].
template <typename Key>
void ReadGroup(napi_env env, napi_value pairs, std::map<Key, Bytes>& group) {
    ForEachElement(env, pairs, [&](napi_value pair) {
        group[Read<Key>(env, ReadElement(env, pair, 0))] = ReadBytes(env, ReadElement(env, pair, 1));
    });
}

std::shared_ptr<const Resources> ReadResources(napi_env env, napi_value value) {
    if (IsOfType(env, value, napi_null)) return nullptr;
    auto resources = std::make_shared<Resources>();
    ReadGroup(env, ReadProperty(env, value, "mediaById"), resources->mediaById);
    ReadGroup(env, ReadProperty(env, value, "mediaByName"), resources->mediaByName);
    ReadGroup(env, ReadProperty(env, value, "rawFiles"), resources->rawFiles);
    return resources;
}

// Takes the resources as an array of pairs [module, resources].
napi_value CreateContext(napi_env env, bool isExtension, bool hasWindow, napi_value pairs) {
    Modules modules;
    ForEachElement(env, pairs, [&modules, env](napi_value pair) {
        modules[Read<std::string>(env, ReadElement(env, pair, 0))] = ReadResources(env, ReadElement(env, pair, 1));
    });
    const auto window = std::make_shared<Window>(Instance::Of(env).GetEnvironment(), hasWindow);
    const auto kind = isExtension ? ContextKind::UI_EXTENSION : ContextKind::ABILITY;
    return MakeContextObject(env, MakeContext(kind, std::move(modules), window));
}

napi_value CreateStageContext(napi_env env, bool isOther) {
    return MakeContextObject(env, MakeContext(isOther ? ContextKind::OTHER : ContextKind::EMPTY, {}, nullptr));
}

// False if the context has no window.
bool ChangeWindow(napi_env env, napi_value context, bool isShown) {
    const ContextBacking* backing = FindBacking(env, context);
    if (backing == nullptr || backing->window == nullptr) return false;
    isShown ? backing->window->Show() : backing->window->Hide();
    return true;
}

}  // namespace

bool DefineContextFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"createContext", Exposed<CreateContext>},
                            {"createStageContext", Exposed<CreateStageContext>},
                            {"changeWindow", Exposed<ChangeWindow>}});
}

}  // namespace StandIn
