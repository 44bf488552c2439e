#include <utility>

#include "device_context.h"
#include "functions.h"
#include "instance.h"
#include "internals.h"

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
    return MakeContextObject(env, MakeWindowContext(isExtension, std::move(modules), window));
}

napi_value CreateStageContext(napi_env env, bool isOther) {
    return MakeContextObject(env, isOther ? MakeOtherContext() : ContextBacking());
}

// False if the context has no window.
bool ChangeWindow(napi_env env, napi_value context, bool isShown) {
    const ContextBacking* backing = FindBacking(env, context);
    if (backing == nullptr || backing->window == nullptr) return false;
    isShown ? backing->window->Show() : backing->window->Hide();
    return true;
}

napi_value MakeFlags(napi_env env, std::initializer_list<bool> flags) {
    return MakeArray(env, flags, [env](bool flag) { return Make(env, flag); });
}

napi_value MakeWant(napi_env env, const Modal::Want& want) {
    return ObjectMaker(env)
        .Set("bundleName", Internals::BundleNameOf(want))
        .Set("abilityName", Internals::AbilityNameOf(want))
        .Set("deviceId", Internals::DeviceIdOf(want))
        .Set("parameters", want.GetParams())
        .Object();
}

napi_value MakeConfig(napi_env env, const Modal::Config& config) {
    return ObjectMaker(env)
        .Set("leading", MakeFlags(env, {config.isProhibitBack, config.isAsyncModalBinding, config.isAllowedBeCovered}))
        .Set("trailing", MakeFlags(env, {config.prohibitedRemoveByRouter, config.isAllowAddChildBelowModalUec,
                                         config.isDensityFollowHost, config.prohibitedRemoveByNavigation}))
        .Object();
}

bool IsModalOpen(int32_t id) {
    const auto modal = Modals::Get().Find(id);
    return modal != nullptr && modal->IsOpen();
}

bool IsModalAnswered(int32_t id) {
    const auto modal = Modals::Get().Find(id);
    return modal != nullptr && modal->IsAnswered();
}

// Takes what the device's JS knows of the methods: an array of { type, method, isPage }.
void NameRequests(napi_env env, napi_value methods) {
    std::vector<RequestMethod> requests;
    ForEachElement(env, methods, [&requests, env](napi_value request) {
        requests.push_back({Read<int32_t>(env, ReadProperty(env, request, "type")),
                            Read<std::string>(env, ReadProperty(env, request, "method")),
                            Read<bool>(env, ReadProperty(env, request, "isPage"))});
    });
    SetRequestMethods(std::move(requests));
}

}  // namespace

napi_value Make(napi_env env, const std::shared_ptr<Modal>& modal) {
    if (modal == nullptr) return nullptr;
    return ObjectMaker(env)
        .Set("id", modal->id)
        .Set("generation", modal->generation)
        .Set("want", MakeWant(env, modal->opening.want))
        .Set("config", MakeConfig(env, modal->opening.config))
        .Object();
}

bool DefineModalFunctions(napi_env env, napi_value exports) {
    return DefineFunctions(env, exports,
                           {{"createContext", Exposed<CreateContext>},
                            {"createStageContext", Exposed<CreateStageContext>},
                            {"changeWindow", Exposed<ChangeWindow>},
                            {"modalIds", Exposed<&Modals::Ids>},
                            {"modalSnapshot", Exposed<&Modals::Find>},
                            {"isModalOpen", Exposed<IsModalOpen>},
                            {"isModalAnswered", Exposed<IsModalAnswered>},
                            {"reportSilentModals", Exposed<&Modals::ReportSilent>},
                            {"takeModal", Exposed<&Modals::Take>},
                            {"nameRequests", Exposed<NameRequests>},
                            {"onModal", On<&Instance::OnModal>},
                            {"onOpening", On<&Instance::OnOpening>}});
}

}  // namespace StandIn
