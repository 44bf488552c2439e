#include <utility>

#include "device_context.h"
#include "functions.h"
#include "instance.h"
#include "making.h"
#include "reading.h"

namespace StandIn {
namespace {

Bytes ReadBytes(napi_env env, napi_value value) {
    size_t length = 0;
    void* data = nullptr;
    (void)napi_get_typedarray_info(env, value, nullptr, &length, &data, nullptr, nullptr);
    const auto* first = static_cast<const uint8_t*>(data);
    return Bytes(first, first + length);
}

void ReadKey(napi_env env, napi_value value, std::string& key) { key = ReadText(env, value); }
void ReadKey(napi_env env, napi_value value, uint32_t& key) { (void)napi_get_value_uint32(env, value, &key); }

// From an array of pairs [key, bytes].
template <typename Key>
void ReadGroup(napi_env env, napi_value pairs, std::map<Key, Bytes>& group) {
    ForEachElement(env, pairs, [&](napi_value pair) {
        Key key{};
        ReadKey(env, ReadElement(env, pair, 0), key);
        group[key] = ReadBytes(env, ReadElement(env, pair, 1));
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

// Takes whether it is that of a UI extension, whether it has a window, and an array of pairs [module, resources].
napi_value CreateContext(napi_env env, napi_callback_info info) {
    const auto [isExtension, hasWindow, pairs] = Arguments<3>(env, info);
    Modules modules;
    ForEachElement(env, pairs, [&modules, env](napi_value pair) {
        modules[ReadText(env, ReadElement(env, pair, 0))] = ReadResources(env, ReadElement(env, pair, 1));
    });
    const auto window = std::make_shared<Window>(Instance::Of(env).GetEnvironment(), ReadFlag(env, hasWindow));
    const auto kind = ReadFlag(env, isExtension) ? ContextKind::UI_EXTENSION : ContextKind::ABILITY;
    return MakeContextObject(env, MakeContext(kind, std::move(modules), window));
}

napi_value CreateStageContext(napi_env env, napi_callback_info info) {
    const bool isOther = ReadFlag(env, Arguments<1>(env, info)[0]);
    return MakeContextObject(env, MakeContext(isOther ? ContextKind::OTHER : ContextKind::EMPTY, {}, nullptr));
}

// False if the context has no window.
napi_value ChangeWindow(napi_env env, napi_callback_info info) {
    const auto [context, isShown] = Arguments<2>(env, info);
    const ContextBacking* backing = FindBacking(env, context);
    if (backing == nullptr || backing->window == nullptr) return MakeFlag(env, false);
    ReadFlag(env, isShown) ? backing->window->Show() : backing->window->Hide();
    return MakeFlag(env, true);
}

}  // namespace

bool DefineContextFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(
        env, exports,
        {{"createContext", CreateContext}, {"createStageContext", CreateStageContext}, {"changeWindow", ChangeWindow}});
}

}  // namespace StandIn
